// The kinds of documents as clients name them. Sales, credit notes and voids are numbered together,
// invoices by themselves.
#pragma once

#include <optional>
#include <string_view>

#include "register/document/receipt.h"

namespace lorimat::door {

// "receipt", "invoice", "refund", "void".
const char* DocumentKindName(DocumentKind kind);
// Nothing for another name.
std::optional<DocumentKind> FindDocumentKind(std::string_view name);

}  // namespace lorimat::door
