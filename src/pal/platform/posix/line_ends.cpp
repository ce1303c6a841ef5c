#include "pal/platform/platform.h"

namespace platform {

bool default_mode_translates() { return false; }

}  // namespace platform
