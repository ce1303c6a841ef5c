// Where a test puts itself between the door and its device. The program that is installed has none
// of it (no_faults.cpp).
#pragma once

#include <memory>

#include "door/job/fiscal_device.h"
#include "door/job/worker.h"

namespace lorimat::door {

// What is called at each step of a job; may be null.
StepWatch FaultWatch();
// The translator, as it is or with something that goes wrong; and the device.
LineRunner WithFaults(LineRunner run);
std::unique_ptr<FiscalDevice> WithFaults(std::unique_ptr<FiscalDevice> device);

}  // namespace lorimat::door
