// The number parser behind prices, percentages and quantities of the line language, and the
// machine that it shares with the local numbers.

#include "utility/locale/parse_number.h"

#include "utility/locale/locale.h"

namespace {

constexpr int kMostDigits = 18;  // behind leading zeros

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes a digit; false for one too many.
bool TakeDigit(char c, DecimalText& text, int& significant_digits) {
  text.value = text.value * 10 + static_cast<uint64_t>(c - '0');
  return text.value == 0 || ++significant_digits <= kMostDigits;
}

}  // namespace

bool readDecimalText(const char* s, size_t n, char separator, int64_t max_decimals,
                     DecimalText& text) {
  text = DecimalText{false, false, 0, 0};
  const char* const limit = s + n;
  const auto ended = [&] { return s == limit || *s == '\0'; };

  for (; !ended() && !IsDigit(*s); ++s) {
    if (*s == '-') {
      text.negative = true;
      continue;
    }
    // Behind a sign stands a digit, or the sign once more.
    if (text.negative) return false;
    if (*s == separator) break;
  }
  if (ended()) return false;

  int significant_digits = 0;
  for (; !ended(); ++s) {
    if (IsDigit(*s)) {
      if (!TakeDigit(*s, text, significant_digits)) return false;
    } else if (*s == separator) {
      text.separator = true;
      ++s;
      break;
    }
  }

  for (; !ended(); ++s) {
    if (!IsDigit(*s)) return false;
    if (text.decimals >= max_decimals || significant_digits == kMostDigits) return false;
    ++text.decimals;
    if (!TakeDigit(*s, text, significant_digits)) return false;
  }
  return true;
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
