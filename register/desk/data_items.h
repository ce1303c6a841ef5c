// The register's data items: its parameters under the plain numbers that hosts use. One
// table says what each is, whether it can be written, and where its value comes from.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "register/core/core.h"

namespace lorimat {

class Keyboard;

struct DataItem {
  int number;
  std::string_view name;
  std::string_view unit;
  std::string (*read)(const RegisterCore&, const Keyboard&);  // null: cannot be read
  int (*write)(RegisterCore&, std::string_view);              // null: cannot be written
};

// At most 49 characters of a value are given out; with the closing NUL that is the size of
// every caller's buffer.
inline constexpr size_t kDataItemSize = 50;

// All items, by rising number.
std::span<const DataItem> DataItems();
// Null for a number that the register does not have.
const DataItem* FindDataItem(int number);

}  // namespace lorimat
