#include "register/state/interrupted.h"

#include <fmt/format.h>

#include <array>

namespace lorimat {

std::string_view InterruptedKindName(InterruptedKind kind) {
  constexpr std::array<std::string_view, static_cast<size_t>(InterruptedKind::kLast) + 1> kNames = {
      "receipt", "invoice", "credit note", "void", "non-fiscal", "training", "closing"};
  return kNames[static_cast<size_t>(kind)];
}

std::string UnansweredDocument::number_text() const {
  if (kind == InterruptedKind::kInvoice) return std::to_string(number);
  return number > 0 ? fmt::format("{:04}-{:04}", closure, number) : fmt::format("{:04}", closure);
}

}  // namespace lorimat
