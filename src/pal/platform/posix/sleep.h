// The waiting of this platform, apart from the clock it waits by.
#pragma once

#include <ctime>

namespace platform {

// Sleeps by that function, which works as nanosleep does, and sleeps again for the time
// that is left whenever a signal ends the sleep early.
void SleepThrough(int milliseconds, int (*sleep)(const timespec* time, timespec* left));

}  // namespace platform
