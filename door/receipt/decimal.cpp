#include "door/receipt/decimal.h"

#include <fmt/format.h>

#include "register/value/money.h"

namespace lorimat::door {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::optional<int64_t> ReadDecimal(std::string_view text, int places, int decimals, int whole) {
  if (text.empty() || !IsDigit(text.front()) || !IsDigit(text.back())) return std::nullopt;
  const size_t point = text.find('.');
  const size_t before = point == text.npos ? text.size() : point;
  const size_t behind = point == text.npos ? 0 : text.size() - point - 1;
  if (before > static_cast<size_t>(whole) || behind > static_cast<size_t>(decimals)) {
    return std::nullopt;
  }
  return ParseDecimal(text, places, 0);
}

std::string DecimalText(int64_t value, int places, int least) {
  const uint64_t all = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  std::string digits = fmt::format("{:0{}}", all, places + 1);
  const size_t point = digits.size() - static_cast<size_t>(places);
  const size_t shortest = point + static_cast<size_t>(least);
  while (digits.size() > shortest && digits.back() == '0') digits.pop_back();
  if (digits.size() > point) digits.insert(point, 1, '.');
  return value < 0 ? "-" + digits : digits;
}

std::string MoneyText(int64_t amount) {
  constexpr int kPlaces = 4;
  constexpr int kCents = 2;
  return DecimalText(amount, kPlaces, kCents);
}

}  // namespace lorimat::door
