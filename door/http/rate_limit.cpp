#include "door/http/rate_limit.h"

#include <algorithm>

namespace lorimat::door {

bool RateLimit::Take(Time now) {
  const Time due = std::max(due_, now);
  if (due - now > rate_.pause * (rate_.at_once - 1)) return false;
  due_ = due + rate_.pause;
  return true;
}

}  // namespace lorimat::door
