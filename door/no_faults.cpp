#include <utility>

#include "door/faults.h"

namespace lorimat::door {

StepWatch FaultWatch() { return nullptr; }
LineRunner WithFaults(LineRunner run) { return run; }

}  // namespace lorimat::door
