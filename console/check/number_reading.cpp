#include "console/check/number_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "language/field_kinds.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

constexpr char kSeparator = '.';
constexpr int kPrecision = 4;  // of prices and percentages
constexpr int64_t kTenThousand = 10000;
constexpr int64_t kThousand = 1000;

int64_t ScaleOf(NumberKind kind) {
  switch (kind) {
    case NumberKind::kPrice:
    case NumberKind::kPercentage:
      return kTenThousand;
    case NumberKind::kQuantity:
      return kThousand;
    default:
      return 1;
  }
}

bool IsPlain(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  const size_t point = text.find(kSeparator);
  if (point != text.npos && text.find(kSeparator, point + 1) != text.npos) return false;
  return text.find_first_of("0123456789") != text.npos &&
         text.find_first_not_of("0123456789.") == text.npos;
}

// A plain number without zeros that say nothing: "-1.5" of "-01.50".
std::string Shortest(std::string_view text) {
  const bool negative = text.front() == '-';
  if (negative) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  std::string out(text);
  if (out.find(kSeparator) != out.npos) {
    while (out.back() == '0') out.pop_back();
    if (out.back() == kSeparator) out.pop_back();
  }
  if (out.empty() || out.front() == kSeparator) out.insert(out.begin(), '0');
  if (negative && out != "0") out.insert(out.begin(), '-');
  return out;
}

std::string Decimal(int64_t value, int64_t scale) {
  // In unsigned arithmetic: the least value has no positive counterpart.
  const uint64_t size = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  const uint64_t unit = static_cast<uint64_t>(scale);
  const int digits = scale == kTenThousand ? 4 : scale == kThousand ? 3 : 0;
  const char* sign = value < 0 ? "-" : "";
  return Shortest(digits == 0 ? fmt::format("{}{}", sign, size)
                              : fmt::format("{}{}.{:0{}}", sign, size / unit, size % unit, digits));
}

int64_t Read(NumberKind kind, std::string text) {
  switch (kind) {
    case NumberKind::kPrice:
      return lorimatutility::TradPrice(text.data(), false, kSeparator, kPrecision);
    case NumberKind::kPercentage:
      return lorimatutility::TradPercentage(text.data(), kSeparator, kPrecision);
    case NumberKind::kQuantity:
      return lorimatutility::TradQuantity(text.data(), kSeparator);
    case NumberKind::kDepartment:
      return std::clamp<int64_t>(lorimatutility::TradNumInt64(text.data()), INT32_MIN, INT32_MAX);
    default:
      return TextToInt(text.c_str());
  }
}

}  // namespace

NumberKind KindOfNumber(int opcode, int field) {
  switch (language::field_kind(opcode, field)) {
    case language::FieldKind::kPrice:
      return NumberKind::kPrice;
    case language::FieldKind::kPercentage:
      return NumberKind::kPercentage;
    case language::FieldKind::kQuantity:
      return NumberKind::kQuantity;
    case language::FieldKind::kDepartment:
      return NumberKind::kDepartment;
    case language::FieldKind::kWhole:
      return NumberKind::kWhole;
    default:
      return NumberKind::kNone;
  }
}

NumberReading ReadNumber(NumberKind kind, const std::string& value) {
  NumberReading reading;
  reading.plain = IsPlain(value);
  reading.value = Read(kind, value);
  reading.text = Decimal(reading.value, ScaleOf(kind));
  reading.exact = reading.plain && Shortest(value) == reading.text;
  return reading;
}

std::string DecimalText(int64_t price) { return Decimal(price, kTenThousand); }

std::string LikelyNumber(NumberKind kind, const std::string& value) {
  std::string text;
  for (const char c : value) {
    if (c != ' ' && c != '\'') text += c == ',' ? kSeparator : c;
  }
  // The last mark of several parts the decimals, unless it is the same as those in front of it.
  const size_t last = value.find_last_of(",.");
  if (last != value.npos) {
    const char mark = value[last];
    const bool alone = value.find(mark) == last;
    const size_t kept = text.rfind(kSeparator);
    for (size_t i = text.size(); i-- > 0;) {
      if (text[i] == kSeparator && (i != kept || !alone)) text.erase(i, 1);
    }
  }
  return IsPlain(text) && ReadNumber(kind, text).exact ? text : "";
}

}  // namespace lorimat::console
