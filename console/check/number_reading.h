// How the library reads the numbers of a line.
#pragma once

#include <cstdint>
#include <string>

namespace lorimat::console {

enum class NumberKind { kNone, kPrice, kPercentage, kQuantity, kDepartment, kWhole };

// What a field takes; kNone for one that takes no number.
NumberKind KindOfNumber(int opcode, int field);

struct NumberReading {
  bool plain = false;  // digits, a point at most, a minus in front
  int64_t value = 0;   // what the library reads, in the units of its kind
  std::string text;    // the same as a decimal number
  bool exact = false;  // whether that is what is written; for a plain number
};

NumberReading ReadNumber(NumberKind kind, const std::string& value);

// A price in ten-thousandths as a decimal number.
std::string DecimalText(int64_t price);

// The number as it was probably meant: "1.50" for "1,50"; empty when that is no guess to make.
std::string LikelyNumber(NumberKind kind, const std::string& value);

}  // namespace lorimat::console
