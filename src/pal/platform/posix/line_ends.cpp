#include "pal/platform/platform.h"

namespace platform {

bool DefaultModeTranslates() { return false; }

}  // namespace platform
