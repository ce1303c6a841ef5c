// Integers, numbers and money as local text, and back.

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "utility/locale/locale.h"
#include "utility/locale/parse_number.h"
#include "utility/number.h"

const Locale::currency_data_t Locale::currencies[] = {
    {"EURO", TextCode::kNull, 2, ','}, {"CHF", TextCode::kNull, 2, ','},
    {"HK$", TextCode::kNull, 2, ','},  {"S$", TextCode::kNull, 2, '.'},
    {"MYR", TextCode::kNull, 2, ','},  {"MOP$", TextCode::kNull, 2, ','},
    {"\243", TextCode::kNull, 2, ','},  // the pound sign
    {"SEK", TextCode::kNull, 2, ','},  {"Z\220", TextCode::kNull, 2, ','},
};

// 100000000 stands at 8 and at 9: that is meant, the table of Number has the same form. No
// number has more than 4 decimals, so nothing looks past 4.
const uint32_t Locale::pow10[11] = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 100000000, 1000000000,
};

namespace {

const char kEuroSign = '\200';  // in the code page of the device

// --- Integers ----------------------------------------------------------------------------

// strtol with base 10 over a text that need not be terminated, with the same 32-bit limits
// whatever the width of long is.
bool readInteger(const char* s, size_t n, int32_t& output) {
  size_t i = 0;
  while (i < n && (s[i] == ' ' || (s[i] >= '\t' && s[i] <= '\r'))) ++i;
  bool negative = false;
  if (i < n && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';

  const int64_t limit = negative ? int64_t{INT32_MAX} + 1 : INT32_MAX;
  const size_t first = i;
  int64_t value = 0;
  for (; i < n && s[i] >= '0' && s[i] <= '9'; ++i) {
    value = value * 10 + (s[i] - '0');
    if (value > limit) return false;
  }
  if (i == first) return false;
  output = static_cast<int32_t>(negative ? -value : value);
  return true;
}

// The result of a print of one value: whether any of it stands in the text.
bool Printed(size_t n, int length) { return n > 1 && length > 0; }

// --- Numbers -----------------------------------------------------------------------------

// A number taken apart for printing.
struct Parts {
  uint64_t integer;
  uint64_t fraction;
  int places;  // of the fraction, without its trailing zeros
  int zeros;   // to print behind them
};

Parts takeApart(const Number& number) {
  const unsigned int precision = std::min<unsigned int>(number.precision, 10);
  const uint64_t power = Locale::pow10[precision];
  Parts parts{number.data / power, number.data % power, static_cast<int>(precision), 0};
  if (parts.fraction == 0) parts.places = 0;
  while (parts.places > 0 && parts.fraction % 10 == 0) {
    parts.fraction /= 10;
    --parts.places;
  }
  return parts;
}

// Cuts the fraction to at most `places`, and pads it to exactly that many where `force`.
void setPlaces(Parts& parts, int places, bool force) {
  places = std::max(places, 0);
  if (parts.places > places) {
    parts.fraction /= Locale::pow10[parts.places - places];
    parts.places = places;
  } else if (force) {
    parts.zeros = places - parts.places;
  }
}

// How a kind of number is printed.
struct Form {
  char decimal_separator;
  int group_size;
  char group_separator;
};

// Prints `head` (a currency symbol, or nothing), the sign and the parts.
bool printParts(char* s, size_t n, const char* head, bool negative, const Parts& parts,
                const Form& form) {
  if (n == 0) return false;
  s[0] = '\0';

  char digits[24];
  const int count = std::snprintf(digits, sizeof digits, "%" PRIu64, parts.integer);
  const size_t head_length = std::strlen(head) + (negative ? 1 : 0);
  const size_t ungrouped = head_length + static_cast<size_t>(count);
  if (ungrouped >= n) return false;
  size_t separators = 0;
  if (form.group_size >= 1 && form.group_size < count) {
    separators = static_cast<size_t>((count - 1) / form.group_size);
  }
  // The test counts the characters alone: a grouped text that fills `n` to the last one
  // passes, and then loses that one to its terminator.
  if (ungrouped + separators > n) return false;

  char fraction[24] = "";
  size_t fraction_length = 0;
  if (parts.places > 0) {
    fraction_length = static_cast<size_t>(
        std::snprintf(fraction, sizeof fraction, "%0*" PRIu64, parts.places, parts.fraction));
  }
  const size_t zeros = static_cast<size_t>(parts.zeros);
  const bool has_fraction = fraction_length + zeros > 0;
  if (has_fraction && ungrouped + separators + 1 + fraction_length + zeros >= n) return false;

  size_t at = 0;
  const auto put = [&](char c) {
    if (at + 1 < n) s[at++] = c;
  };
  for (const char* c = head; *c != '\0'; ++c) put(*c);
  if (negative) put('-');
  for (int i = 0; i < count; ++i) {
    if (separators != 0 && i != 0 && (count - i) % form.group_size == 0) {
      put(form.group_separator);
    }
    put(digits[i]);
  }
  if (has_fraction) {
    put(form.decimal_separator);
    for (size_t i = 0; i < fraction_length; ++i) put(fraction[i]);
    for (size_t i = 0; i < zeros; ++i) put('0');
  }
  s[at] = '\0';
  return true;
}

}  // namespace

bool Locale::fromLocalInteger(const char* s, size_t n, int32_t& output) {
  return readInteger(s, n, output);
}

bool Locale::fromLocalInteger(const char* s, size_t n, int64_t& output) {
  int32_t value;
  if (!readInteger(s, n, value)) return false;
  output = value;
  return true;
}

bool Locale::fromLocalInteger(const char* s, size_t n, uint64_t& output) {
  int32_t value;
  if (!readInteger(s, n, value)) return false;
  output = static_cast<uint64_t>(int64_t{value});
  return true;
}

bool Locale::toLocalInteger(char* s, size_t n, int32_t i) {
  return Printed(n, std::snprintf(s, n, "%" PRId32, i));
}

bool Locale::toLocalInteger(char* s, size_t n, int64_t i) {
  return Printed(n, std::snprintf(s, n, "%" PRId64, i));
}

bool Locale::toLocalInteger(char* s, size_t n, uint8_t i) {
  return toLocalInteger(s, n, uint32_t{i});
}

bool Locale::toLocalInteger(char* s, size_t n, uint16_t i) {
  return toLocalInteger(s, n, uint32_t{i});
}

bool Locale::toLocalInteger(char* s, size_t n, uint32_t i) {
  return Printed(n, std::snprintf(s, n, "%" PRIu32, i));
}

bool Locale::toLocalInteger(char* s, size_t n, uint64_t i) {
  return Printed(n, std::snprintf(s, n, "%" PRIu64, i));
}

bool Locale::fromLocalNumber(const char* s, size_t n, Number& output) const {
  return fromLocalNumber(s, n, number_decimal_separator_, output, false, 0, 0);
}

bool Locale::fromLocalNumber(const char* s, size_t n, char separator, Number& output,
                             bool virgola_fissa, int desired_precision, int fixed_decimal) {
  DecimalText text;
  const int64_t max_decimals = virgola_fissa ? desired_precision : int64_t{Number::maxPrecision};
  if (!readDecimalText(s, n, separator, max_decimals, text)) return false;

  if (virgola_fissa) {
    int64_t tens = desired_precision - text.decimals;
    if (!text.separator) tens = std::min<int64_t>(tens, fixed_decimal);
    text.value = scaleByTens(text.value, tens);
    text.decimals = std::max(desired_precision, 0);
  }
  const Number number(static_cast<int64_t>(text.value), static_cast<unsigned int>(text.decimals));
  output = text.negative ? -number : number;
  return true;
}

bool Locale::toLocalNumber(char* s, size_t n, const Number& number, int decimal_digits,
                           bool force_decimals) const {
  return toLocalNumber(s, n, number_decimal_separator_, number, decimal_digits, force_decimals);
}

bool Locale::toLocalNumber(char* s, size_t n, char separator, const Number& number,
                           int decimal_digits, bool force_decimals) const {
  bool force = force_decimals && decimal_digits != 0;
  if (decimal_digits == -1) {
    decimal_digits = number_decimal_digits_;
    force = number_force_decimals_;
  }
  Parts parts = takeApart(number);
  setPlaces(parts, decimal_digits, force);
  return printParts(s, n, "", number.isNegative(), parts,
                    {separator, number_group_size_, number_group_separator_});
}

bool Locale::toLocalCurrency(char* s, size_t n, const Number& number, bool cur_symbol) const {
  return toLocalCurrencyFullPrecision(s, n, number, cur_symbol, false);
}

bool Locale::toLocalCurrencyFullPrecision(char* s, size_t n, const Number& number, bool cur_symbol,
                                          bool full_precision) const {
  char head[16] = "";
  if (cur_symbol) {
    if (currency_index_ == 0) {
      std::snprintf(head, sizeof head, "%c ", kEuroSign);
    } else {
      std::snprintf(head, sizeof head, "%s ", GetCurrentCurrencyName());
    }
  }

  const int places = std::max(currency_decimal_digits_, 0);
  Parts parts = takeApart(number);
  if (currency_force_decimals_) {
    if (parts.places < places || !full_precision) setPlaces(parts, places, true);
  } else if (!full_precision && parts.places > places) {
    // The fraction is not cut with them, so that all its digits show: that is meant, unlike
    // in the forced branch.
    parts.places = places;
  }
  return printParts(s, n, head, number.isNegative(), parts,
                    {currency_decimal_separator_, currency_group_size_, currency_group_separator_});
}

bool Locale::fromLocalCurrency(const char* s, size_t n, Number& num) const {
  // A sign has no effect: that is meant, the callers know the sign of what they ask for.
  const size_t first = n != 0 && s[0] == '-' ? 1 : 0;
  if (first == n || s[first] == '\0') return false;

  Number value;
  bool fraction = false;
  size_t decimals = 0;
  for (size_t i = first; i < n && s[i] != '\0'; ++i) {
    if (s[i] >= '0' && s[i] <= '9') {
      value *= 10;
      value += s[i] - '0';
      if (fraction) ++decimals;
    } else if (fraction) {
      return false;
    } else if (s[i] == currency_group_separator_) {
      continue;
    } else if (s[i] == currency_decimal_separator_) {
      fraction = true;
    } else {
      return false;
    }
  }
  for (; decimals > 0; --decimals) value /= 10;
  num = value;
  return true;
}

int Locale::GetCurrencyCount() { return sizeof currencies / sizeof currencies[0]; }

int Locale::GetCurrentCurrency() const { return currency_index_; }

const char* Locale::GetCurrentCurrencyName() const { return GetCurrencyName(currency_index_); }

const char* Locale::GetCurrencyName(int index) { return currencies[index].name; }

void Locale::SetCurrentCurrency(int index) {
  const currency_data_t& currency = currencies[index];
  currency_index_ = index;
  number_decimal_digits_ = currency.decimal_digits;
  currency_decimal_digits_ = currency.decimal_digits;
  number_decimal_separator_ = currency.decimal_separator;
  currency_decimal_separator_ = currency.decimal_separator;
  // The group separator of plain numbers stays as it is: they have no groups by default.
  currency_group_separator_ = currency.decimal_separator == '.' ? ',' : '.';
}
