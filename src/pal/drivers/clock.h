// The platform's conversions from seconds to broken-down times, without the shared results
// of gmtime and localtime: any thread may call them.
#pragma once

#include <ctime>

namespace pal {

// False, with *time untouched, where the moment has no broken-down form. The local one
// follows the zone that is set when it is called.
bool BreakDownUtc(time_t moment, struct tm* time);
bool BreakDownLocal(time_t moment, struct tm* time);

}  // namespace pal
