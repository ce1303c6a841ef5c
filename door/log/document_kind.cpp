#include "door/log/document_kind.h"

#include <algorithm>
#include <iterator>

namespace lorimat::door {
namespace {

constexpr const char* kKindNames[] = {"receipt", "invoice", "refund", "void"};
static_assert(std::size(kKindNames) == static_cast<size_t>(DocumentKind::kCancel) + 1);

}  // namespace

const char* DocumentKindName(DocumentKind kind) { return kKindNames[static_cast<size_t>(kind)]; }

std::optional<DocumentKind> FindDocumentKind(std::string_view name) {
  const auto* found = std::find(std::begin(kKindNames), std::end(kKindNames), name);
  if (found == std::end(kKindNames)) return std::nullopt;
  return static_cast<DocumentKind>(found - std::begin(kKindNames));
}

}  // namespace lorimat::door
