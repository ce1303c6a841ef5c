// The reading of decimal numbers that the parsers of Locale share.
#pragma once

#include <cstddef>
#include <cstdint>

struct DecimalText {
  bool negative;
  bool separator;    // the text had a separator
  int64_t decimals;  // digits behind it
  uint64_t value;    // all digits, 18 significant ones at most
};

// Reads up to `n` characters or to the terminator; false where the text is no number. It is
// forgiving before the decimals and strict in them: "EUR 1.234,50" reads well, while a letter
// among the decimals, or one decimal more than `max_decimals`, refuses the text, since there
// it would change the value by a factor of ten.
bool readDecimalText(const char* s, size_t n, char separator, int64_t max_decimals,
                     DecimalText& text);

// `value` multiplied by ten `times` times. It wraps at 64 bits; times below 1 leave it alone.
uint64_t scaleByTens(uint64_t value, int64_t times);
