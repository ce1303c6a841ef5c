// What the tests of Number share: its text and the checks of its canonical forms.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "utility/number.h"

inline constexpr int64_t kLimit = 10000000000000000;  // 10 to the 16

inline std::string Text(const Number& num) {
  std::ostringstream out;
  out << num;
  return out.str();
}

inline Number Overflow() { return Number(kLimit); }

// The canonical overflow form: no sign, its own magnitude.
inline void ExpectOverflow(const Number& num) {
  EXPECT_EQ(num.flags, Number::kOverflow);
  EXPECT_EQ(num.data, Number::POSITIVE_OVERFLOW);
}

inline void ExpectNan(const Number& num) {
  EXPECT_EQ(num.flags, 258u);
  EXPECT_EQ(num.data, 0u);
}

inline void ExpectZero(const Number& num) {
  EXPECT_EQ(num.flags, 256u);
  EXPECT_EQ(num.data, 0u);
}
