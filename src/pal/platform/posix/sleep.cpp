#include "pal/platform/posix/sleep.h"

#include <cerrno>

#include "pal/platform/platform.h"

namespace platform {

void SleepThrough(int milliseconds, int (*sleep)(const timespec* time, timespec* left)) {
  if (milliseconds <= 0) return;
  timespec time = {};
  time.tv_sec = milliseconds / 1000;
  time.tv_nsec = milliseconds % 1000 * 1000000L;
  timespec left = {};
  while (sleep(&time, &left) != 0 && errno == EINTR) time = left;
}

void SleepMs(int milliseconds) { SleepThrough(milliseconds, nanosleep); }

}  // namespace platform
