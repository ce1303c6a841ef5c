// The number parser behind prices, percentages and quantities of the line language, and the
// machine that it shares with the local numbers.

#include "utility/locale/parse_number.h"

#include "utility/locale/locale.h"

bool readDecimalText(const char* s, size_t n, char separator, int64_t max_decimals,
                     DecimalText& text) {
  enum { START, NUMBER, DOT } state = START;
  int significant_digits = 0;
  text = DecimalText{false, false, 0, 0};

  for (size_t i = 0; i < n && s[i] != '\0'; ++i) {
    const char c = s[i];
    if (c < '0' || c > '9') {
      if (state == DOT) return false;
      if (state == START) {
        if (c == '-') {
          text.negative = true;
          continue;
        }
        // Behind a sign stands a digit, or the sign once more.
        if (text.negative) return false;
      }
      if (c == separator) {
        state = DOT;
        text.separator = true;
      }
      continue;
    }

    if (state == DOT) {
      if (text.decimals >= max_decimals || significant_digits > 17) return false;
      ++text.decimals;
    } else {
      state = NUMBER;
    }
    text.value = text.value * 10 + static_cast<uint64_t>(c - '0');
    if (text.value != 0 && ++significant_digits > 18) return false;
  }
  return state != START;
}

uint64_t scaleByTens(uint64_t value, int64_t times) {
  // 64 tens make every value 0, which ends the loop.
  for (; times > 0 && value != 0; --times) value *= 10;
  return value;
}

bool Locale::toLocalNumber(const char* s, size_t n, int64_t& output, bool bVF,
                           char currency_decimal_separator, int desired_precision) {
  DecimalText text;
  if (!readDecimalText(s, n, currency_decimal_separator, desired_precision, text)) return false;

  // In fixed point mode the two last places of a text without decimals are implied. A text
  // that ends in its separator has no decimals either.
  int64_t places = desired_precision;
  if (bVF && text.decimals == 0) places -= 2;
  const uint64_t value = scaleByTens(text.value, places - text.decimals);
  output = static_cast<int64_t>(text.negative ? 0 - value : value);
  return true;
}
