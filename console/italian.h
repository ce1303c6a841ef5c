// The Italian of the program's messages: the one table of it.
#pragma once

#include <span>
#include <string_view>

struct ItalianText {
  std::string_view english;  // as it stands in the code that shows it
  std::string_view italian;  // with the same fields
};

// In no order.
std::span<const ItalianText> italian_texts();
