#include "pal/drivers/clock.h"

namespace pal {

// The runtime keeps a result for each thread.

bool break_down_utc(time_t moment, struct tm* time) {
  const struct tm* result = gmtime(&moment);
  if (result == nullptr) return false;
  *time = *result;
  return true;
}

bool break_down_local(time_t moment, struct tm* time) {
  const struct tm* result = localtime(&moment);
  if (result == nullptr) return false;
  *time = *result;
  return true;
}

}  // namespace pal
