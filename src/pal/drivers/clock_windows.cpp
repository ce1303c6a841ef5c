#include "pal/drivers/clock.h"

namespace pal {

// The runtime keeps a result for each thread.

bool BreakDownUtc(time_t moment, struct tm* time) {
  const struct tm* result = gmtime(&moment);
  if (result == nullptr) return false;
  *time = *result;
  return true;
}

bool BreakDownLocal(time_t moment, struct tm* time) {
  const struct tm* result = localtime(&moment);
  if (result == nullptr) return false;
  *time = *result;
  return true;
}

}  // namespace pal
