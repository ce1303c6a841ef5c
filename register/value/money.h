// The register's arithmetic: integers only. An amount counts ten-thousandths of the
// currency (12.34 is 123400), a percentage ten-thousandths of a percent (22 % is 220000), a
// quantity thousandths of a piece (1.5 is 1500). What is sold, paid or printed as money is
// rounded to whole cents, half away from zero, once per line.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace lorimat {

using Amount = int64_t;

inline constexpr Amount kCent = 100;
inline constexpr Amount kCurrencyUnit = 10000;
inline constexpr int64_t kWholePercentage = 1000000;  // 100 %
inline constexpr int32_t kOnePiece = 1000;
// The largest line and the largest total of a document, 9999999,99: with its sign it fills
// the eleven columns that the paper has for an amount.
inline constexpr Amount kMaxAmount = 99999999900;

// a * b / divisor, rounded half away from zero to a multiple of `step`. Nothing when the
// result does not fit; divisor and step are above 0.
std::optional<int64_t> MultiplyDivide(int64_t a, int64_t b, int64_t divisor, int64_t step);

// Adds to a sum, or with sign -1 takes off. What a damaged file holds may pass the range of the
// numbers: then the sum is wrong, and nothing worse.
template <typename Number>
void AddTo(Number* sum, Number value, int sign = 1) {
  using Bits = std::make_unsigned_t<Number>;
  *sum = static_cast<Number>(static_cast<Bits>(*sum) +
                             static_cast<Bits>(sign) * static_cast<Bits>(value));
}

std::optional<Amount> RoundToCents(Amount amount);

// Whole cents, 0 or above, to the nearest five cents, which are what coins come to.
Amount RoundToFiveCents(Amount amount);

// Quantity (thousandths) times unit price, in whole cents.
std::optional<Amount> LineAmount(int32_t quantity, Amount unit_price);

// The given percentage (ten-thousandths of a percent) of an amount, in whole cents.
std::optional<Amount> PercentageOf(Amount base, int64_t percentage);

// The tax contained in a gross amount: gross * rate / (100 % + rate), in whole cents.
Amount VatPart(Amount gross, int64_t rate);

// Spreads an amount (whole cents) over the positive weights in proportion to them. The shares
// add up to the amount exactly: cents left over by the division go to the largest remainders,
// and among equal ones to the lowest key. Empty when no weight is positive.
std::map<int, Amount> Spread(Amount amount, const std::map<int, Amount>& weights);

// "12,34", "-0,05": two decimals. The amount counts whole cents.
std::string FormatAmount(Amount amount);
// "1,20", "1,2345": two decimals at least, four where they are needed.
std::string FormatUnitPrice(Amount amount);
// "3", "1,5": no trailing zeros.
std::string FormatQuantity(int32_t quantity);
// "22%", "7,3%", "0%".
std::string FormatRate(int64_t rate);

// Reads decimal digits with at most one point ("12", "12.5") as a number of `decimals` places.
// Without a point the last `implied` digits count as decimals. Nothing for an empty text, for
// other characters, for more decimals than fit and for numbers that pass int64_t.
std::optional<int64_t> ParseDecimal(std::string_view text, int decimals, int implied);

}  // namespace lorimat
