// Number beside two decimal types: Boost's cpp_dec_float of 16 digits and the compiler's decimal64.
// All take the same amounts with two decimals and come to the same results, which are held against
// each other. A quotient of ours has four decimals, cut; theirs have sixteen digits, the last one
// inexact with Boost.
#include <benchmark/benchmark.h>

#include <array>
#include <boost/multiprecision/cpp_dec_float.hpp>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <decimal/decimal>
#include <random>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "bench_tools.h"
#include "utility/number.h"

namespace {

namespace mp = boost::multiprecision;
using Boost = mp::number<mp::cpp_dec_float<16>, mp::et_off>;  // results, no expressions
using Decimal64 = std::decimal::decimal64;

constexpr size_t kAmounts = 1024;

// Amounts in hundredths, of one to seven digits, either sign, never zero.
const std::array<int64_t, kAmounts>& Hundredths() {
  static const auto amounts = [] {
    std::array<int64_t, kAmounts> made{};
    std::mt19937_64 random(20261122);
    int64_t bound = 10;
    for (int64_t& amount : made) {
      amount = static_cast<int64_t>(random() % static_cast<uint64_t>(bound)) + 1;
      if (random() % 4 == 0) amount = -amount;
      bound = bound == 10'000'000 ? 10 : bound * 10;
    }
    return made;
  }();
  return amounts;
}

// What each side does in its own way: an amount of hundredths, its text, and its value in
// ten-thousandths, cut, to hold the results against each other.
struct Ours {
  using Type = Number;
  static Type Make(int64_t hundredths) { return Number(hundredths, 2U); }
  static Type Rounded(Type number) { return number.round(1, Number::RT_MATH); }
  static int64_t TenThousandths(const Type& number) { return number.toInt64(4U); }
  static Type Parsed(const std::string& text) { return Number(text); }
};

struct OfBoost {
  using Type = Boost;
  static Type Make(int64_t hundredths) { return Type(hundredths) / 100; }
  static Type Rounded(const Type& number) { return mp::round(number * 10) / 10; }
  static int64_t TenThousandths(const Type& number) {
    return static_cast<int64_t>(mp::trunc(number * 10000));
  }
  static Type Parsed(const std::string& text) { return Type(text); }
};

struct OfDecimal64 {
  using Type = Decimal64;
  static Type Make(int64_t hundredths) {
    return std::decimal::make_decimal64(static_cast<long long>(hundredths), -2);
  }
  // The type has no rounding of its own: half away from zero, through an integer.
  static Type Rounded(Type number) {
    static const Type half = std::decimal::make_decimal64(5LL, -1);
    const Type tens = number * 10;
    const long long whole =
        std::decimal::decimal64_to_long_long(number < 0 ? tens - half : tens + half);
    return std::decimal::make_decimal64(whole, -1);
  }
  static int64_t TenThousandths(Type number) {
    return std::decimal::decimal64_to_long_long(number * 10000);
  }
};

template <class Side>
std::vector<typename Side::Type> Amounts() {
  std::vector<typename Side::Type> amounts;
  for (const int64_t amount : Hundredths()) amounts.push_back(Side::Make(amount));
  return amounts;
}

// Each amount with the one behind it, round and round. The results of the first pass are held
// against ours, from which they may be off by so many ten-thousandths.
template <class Side, class Operation>
void OfPairs(benchmark::State& state, Operation operation, int64_t off = 0) {
  const auto amounts = Amounts<Side>();
  const auto expected = Amounts<Ours>();
  const auto next = [](size_t place) { return (place + 1) % kAmounts; };
  for (size_t i = 0; i < kAmounts; ++i) {
    const auto result = operation(amounts[i], amounts[next(i)]);
    const Number ours = operation(expected[i], expected[next(i)]);
    Require(std::abs(Side::TenThousandths(result) - Ours::TenThousandths(ours)) <= off,
            "the results differ");
  }
  size_t place = 0;
  for (auto _ : state) {
    auto result = operation(amounts[place], amounts[next(place)]);
    benchmark::DoNotOptimize(result);
    benchmark::ClobberMemory();
    place = next(place);
  }
  state.SetItemsProcessed(state.iterations());
}

template <class Side>
void Add(benchmark::State& state) {
  OfPairs<Side>(state, [](const auto& a, const auto& b) { return a + b; });
}
template <class Side>
void Multiply(benchmark::State& state) {
  OfPairs<Side>(state, [](const auto& a, const auto& b) { return a * b; });
}
template <class Side>
void Divide(benchmark::State& state) {
  OfPairs<Side>(
      state, [](const auto& a, const auto& b) { return a / b; }, 1);
}

// To one decimal, half away from zero.
template <class Side>
void Round(benchmark::State& state) {
  const auto amounts = Amounts<Side>();
  const auto expected = Amounts<Ours>();
  for (size_t i = 0; i < kAmounts; ++i) {
    Require(Side::TenThousandths(Side::Rounded(amounts[i])) ==
                Ours::TenThousandths(Ours::Rounded(expected[i])),
            "the results differ");
  }
  size_t place = 0;
  for (auto _ : state) {
    auto result = Side::Rounded(amounts[place]);
    benchmark::DoNotOptimize(result);
    benchmark::ClobberMemory();
    place = (place + 1) % kAmounts;
  }
  state.SetItemsProcessed(state.iterations());
}

std::string TextOf(int64_t hundredths) {
  char text[32];
  const uint64_t magnitude = Number::magnitudeOf(hundredths);
  std::snprintf(text, sizeof text, "%s%llu.%02llu", hundredths < 0 ? "-" : "",
                static_cast<unsigned long long>(magnitude / 100),
                static_cast<unsigned long long>(magnitude % 100));
  return text;
}

template <class Side>
void Parse(benchmark::State& state) {
  std::vector<std::string> texts;
  for (const int64_t amount : Hundredths()) {
    texts.push_back(TextOf(amount));
    Require(Side::TenThousandths(Side::Parsed(texts.back())) == amount * 100, "not read");
  }
  size_t place = 0;
  for (auto _ : state) {
    auto result = Side::Parsed(texts[place]);
    benchmark::DoNotOptimize(result);
    benchmark::ClobberMemory();
    place = (place + 1) % kAmounts;
  }
  state.SetItemsProcessed(state.iterations());
}

// A stream into a buffer, which is begun again for each number.
class FixedBuffer : public std::streambuf {
 public:
  FixedBuffer() { Begin(); }
  void Begin() { setp(text_.data(), text_.data() + text_.size()); }
  std::string_view text() const { return {text_.data(), static_cast<size_t>(pptr() - pbase())}; }

 private:
  std::array<char, 128> text_{};
};

// With two decimals, all shown.
template <class Side>
void Print(benchmark::State& state) {
  const auto amounts = Amounts<Side>();
  FixedBuffer buffer;
  std::ostream out(&buffer);
  out.setf(std::ios::fixed);
  out.precision(2);
  for (size_t i = 0; i < kAmounts; ++i) {
    buffer.Begin();
    out << amounts[i];
    Require(buffer.text() == TextOf(Hundredths()[i]), "the texts differ");
  }
  size_t place = 0;
  for (auto _ : state) {
    buffer.Begin();
    out << amounts[place];
    benchmark::ClobberMemory();
    place = (place + 1) % kAmounts;
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(Add<Ours>)->Name("number_add/ours");
BENCHMARK(Add<OfBoost>)->Name("number_add/boost");
BENCHMARK(Add<OfDecimal64>)->Name("number_add/decimal64");
BENCHMARK(Multiply<Ours>)->Name("number_mul/ours");
BENCHMARK(Multiply<OfBoost>)->Name("number_mul/boost");
BENCHMARK(Multiply<OfDecimal64>)->Name("number_mul/decimal64");
BENCHMARK(Divide<Ours>)->Name("number_div/ours");
BENCHMARK(Divide<OfBoost>)->Name("number_div/boost");
BENCHMARK(Divide<OfDecimal64>)->Name("number_div/decimal64");
BENCHMARK(Round<Ours>)->Name("number_round/ours");
BENCHMARK(Round<OfBoost>)->Name("number_round/boost");
BENCHMARK(Round<OfDecimal64>)->Name("number_round/decimal64");
BENCHMARK(Parse<Ours>)->Name("number_parse/ours");
BENCHMARK(Parse<OfBoost>)->Name("number_parse/boost");
BENCHMARK(Print<Ours>)->Name("number_print/ours");
BENCHMARK(Print<OfBoost>)->Name("number_print/boost");

}  // namespace
