#include "register/closures.h"

#include <tuple>

namespace lorimat {

int CompareMinutes(const std::tm& a, const std::tm& b) {
  const auto key = [](const std::tm& time) {
    return std::make_tuple(time.tm_year, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min);
  };
  return key(a) < key(b) ? -1 : key(a) == key(b) ? 0 : 1;
}

std::vector<const Closure*> FindClosures(const std::vector<Closure>& closures, int from, int to) {
  std::vector<const Closure*> found;
  for (const Closure& closure : closures) {
    if (closure.number >= from && closure.number <= to) found.push_back(&closure);
  }
  return found;
}

std::vector<const Closure*> FindClosures(const std::vector<Closure>& closures, const std::tm& from,
                                         const std::tm& to) {
  std::vector<const Closure*> found;
  for (const Closure& closure : closures) {
    if (CompareMinutes(from, closure.time) <= 0 && CompareMinutes(closure.time, to) <= 0) {
      found.push_back(&closure);
    }
  }
  return found;
}

}  // namespace lorimat
