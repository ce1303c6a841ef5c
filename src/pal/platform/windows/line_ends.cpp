#include "pal/platform/platform.h"

namespace platform {

bool DefaultModeTranslates() { return true; }

}  // namespace platform
