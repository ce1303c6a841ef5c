#include "register/totals/closures.h"

#include <tuple>

namespace lorimat {

int CompareMinutes(const std::tm& a, const std::tm& b) {
  const auto key = [](const std::tm& time) {
    return std::make_tuple(time.tm_year, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min);
  };
  return key(a) < key(b) ? -1 : key(a) == key(b) ? 0 : 1;
}

}  // namespace lorimat
