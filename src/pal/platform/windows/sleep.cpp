#include <windows.h>

#include "pal/platform/platform.h"

namespace platform {

void SleepMs(int milliseconds) {
  if (milliseconds > 0) SleepEx(static_cast<DWORD>(milliseconds), FALSE);
}

}  // namespace platform
