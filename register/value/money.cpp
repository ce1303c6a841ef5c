#include "register/value/money.h"

#include <charconv>
#include <limits>
#include <string>
#include <vector>

namespace lorimat {
namespace {

__extension__ using Wide = __int128;

constexpr int64_t kFactor[] = {1, 10, 100, 1000, 10000};

// The decimals of a fraction of `places` digits, without trailing zeros but for the first
// `keep`.
std::string Decimals(uint64_t fraction, int places, int keep) {
  std::string digits(static_cast<size_t>(places), '0');
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, fraction /= 10) {
    *digit = static_cast<char>('0' + fraction % 10);
  }
  while (static_cast<int>(digits.size()) > keep && digits.back() == '0') digits.pop_back();
  return digits;
}

std::string FormatFixed(int64_t value, int places, int keep) {
  const bool negative = value < 0;
  const uint64_t size =
      negative ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  const uint64_t factor = static_cast<uint64_t>(kFactor[places]);
  const std::string decimals = Decimals(size % factor, places, keep);
  char digits[24];
  char* end = digits;
  if (negative) *end++ = '-';
  end = std::to_chars(end, digits + sizeof(digits), size / factor).ptr;
  std::string text(digits, end);
  if (!decimals.empty()) text.append(1, ',').append(decimals);
  return text;
}

}  // namespace

std::optional<int64_t> MultiplyDivide(int64_t a, int64_t b, int64_t divisor, int64_t step) {
  const Wide product = static_cast<Wide>(a) * b;
  const Wide unit = static_cast<Wide>(divisor) * step;
  const Wide half = unit / 2;
  Wide steps = product / unit;
  const Wide rest = product % unit;
  // Half away from zero; an odd unit has no exact half, and rest > half is the test then.
  if (rest > half || (rest == half && unit % 2 == 0 && rest != 0)) ++steps;
  if (-rest > half || (-rest == half && unit % 2 == 0 && rest != 0)) --steps;
  const Wide limit = std::numeric_limits<int64_t>::max() / step;
  if (steps > limit || steps < -limit) return std::nullopt;
  return static_cast<int64_t>(steps) * step;
}

std::optional<Amount> RoundToCents(Amount amount) { return MultiplyDivide(amount, 1, 1, kCent); }

Amount RoundToFiveCents(Amount amount) {
  constexpr Amount kCoin = 5 * kCent;
  return (amount + kCoin / 2) / kCoin * kCoin;
}

std::optional<Amount> LineAmount(int32_t quantity, Amount unit_price) {
  return MultiplyDivide(quantity, unit_price, kOnePiece, kCent);
}

std::optional<Amount> PercentageOf(Amount base, int64_t percentage) {
  return MultiplyDivide(base, percentage, kWholePercentage, kCent);
}

Amount VatPart(Amount gross, int64_t rate) {
  if (rate <= 0 || rate > kWholePercentage) return 0;
  return MultiplyDivide(gross, rate, kWholePercentage + rate, kCent).value_or(0);
}

std::map<int, Amount> Spread(Amount amount, const std::map<int, Amount>& weights) {
  Wide total = 0;
  for (const auto& [key, weight] : weights) {
    if (weight > 0) total += weight;
  }
  std::map<int, Amount> shares;
  if (total == 0) return shares;

  const bool negative = amount < 0;
  const int64_t cents = (negative ? -amount : amount) / kCent;
  std::map<int, Wide> remainders;
  int64_t left = cents;
  for (const auto& [key, weight] : weights) {
    if (weight <= 0) continue;
    const Wide product = static_cast<Wide>(cents) * weight;
    const int64_t share = static_cast<int64_t>(product / total);
    shares[key] = share * kCent;
    remainders[key] = product % total;
    left -= share;
  }
  while (left > 0) {
    auto best = remainders.begin();
    for (auto it = remainders.begin(); it != remainders.end(); ++it) {
      if (it->second > best->second) best = it;
    }
    shares[best->first] += kCent;
    best->second = -1;
    --left;
  }
  if (negative) {
    for (auto& [key, share] : shares) share = -share;
  }
  return shares;
}

std::string FormatAmount(Amount amount) { return FormatFixed(amount / kCent, 2, 2); }
std::string FormatUnitPrice(Amount amount) { return FormatFixed(amount, 4, 2); }
std::string FormatQuantity(int32_t quantity) { return FormatFixed(quantity, 3, 0); }
std::string FormatRate(int64_t rate) { return FormatFixed(rate, 4, 0) + "%"; }

std::optional<int64_t> ParseDecimal(std::string_view text, int decimals, int implied) {
  if (text.empty()) return std::nullopt;
  int64_t value = 0;
  int places = -1;  // decimals read; -1 ahead of the point
  bool digits = false;
  for (const char c : text) {
    if (c == '.') {
      if (places >= 0) return std::nullopt;
      places = 0;
      continue;
    }
    if (c < '0' || c > '9') return std::nullopt;
    digits = true;
    if (places >= 0 && ++places > decimals) return std::nullopt;
    if (value > (std::numeric_limits<int64_t>::max() - 9) / 10) return std::nullopt;
    value = value * 10 + (c - '0');
  }
  if (!digits) return std::nullopt;
  for (int place = places >= 0 ? places : implied; place < decimals; ++place) {
    if (value > std::numeric_limits<int64_t>::max() / 10) return std::nullopt;
    value *= 10;
  }
  return value;
}

}  // namespace lorimat
