#include "pal/drivers/clock.h"

namespace pal {

bool BreakDownUtc(time_t moment, struct tm* time) {
  struct tm result;
  if (gmtime_r(&moment, &result) == nullptr) return false;
  *time = result;
  return true;
}

bool BreakDownLocal(time_t moment, struct tm* time) {
  struct tm result;
  // localtime_r need not look at TZ again by itself, as localtime does.
  tzset();
  if (localtime_r(&moment, &result) == nullptr) return false;
  *time = result;
  return true;
}

}  // namespace pal
