// The item list: a report of its own state in which a host compares what it sells with what the
// register knows, for one VAT entry.
#pragma once

#include <string_view>

#include "register/core/core.h"
#include "register/desk/layout.h"

namespace lorimat {

class ItemList {
 public:
  explicit ItemList(RegisterCore& core) : core_(core), layout_(core) {}

  int Begin(int vat);
  // An article by its code or description, or a department by its name: RTF_E_NOEXIST for one
  // that the register does not have, RTF_EFPTR_BAD_VAT for one of another VAT entry.
  int Verify(std::string_view name, int vat);
  int End();

 private:
  int FindVatOf(std::string_view name) const;

  RegisterCore& core_;
  Layout layout_;
};

}  // namespace lorimat
