#include "register/state/interrupted.h"

#include <fmt/format.h>

namespace lorimat {

std::string UnansweredDocument::number_text() const {
  if (kind == "invoice") return std::to_string(number);
  return number > 0 ? fmt::format("{:04}-{:04}", closure, number) : fmt::format("{:04}", closure);
}

}  // namespace lorimat
