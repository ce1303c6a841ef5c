// Numbers and texts: read, mapped to keys, edited.

#include <climits>
#include <cstring>

#include "model/comparison.h"
#include "model/translator_model.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

void CompareReading(Comparison& comparison, const std::string& source) {
  std::string text = source;
  const auto check = [&](const char* what, int64_t expected, int64_t answer) {
    comparison.Check(expected == answer, [&] {
      return std::string(what) + " of " + Shown(source) + ": the model says " +
             std::to_string(expected) + ", the translator " + std::to_string(answer);
    });
  };
  for (const char separator : {'.', ','}) {
    for (const int precision : {4, 2, 0}) {
      for (const bool implied : {false, true}) {
        check("price", model::Price(source, implied, separator, precision),
              lorimatutility::TradPrice(text.data(), implied, separator, precision));
      }
      check("percentage", model::Percentage(source, separator, precision),
            lorimatutility::TradPercentage(text.data(), separator, precision));
    }
    check("quantity", model::Quantity(source, separator),
          lorimatutility::TradQuantity(text.data(), separator));
  }
  check("whole number", model::WholeNumber(source), lorimatutility::TradNumInt64(text.data()));
  check("number", model::IsNumber(source, true), lorimatutility::SeNum(text.data()));
  check("number without point", model::IsNumber(source, false),
        lorimatutility::SeNumeric(text.data()));
  check("flag", model::IsTrue(source), lorimatutility::CheckTrue(text.data()));

  const auto check_keys = [&](const char* what, const std::string& expected, bool for_device) {
    std::string keys(source.size() + 1, 'x');
    const char* end = for_device ? lorimatutility::TradNumToECR(keys.data(), text.data())
                                 : lorimatutility::TradNum(keys.data(), text.data());
    const std::string answer(keys.data(), static_cast<size_t>(end - keys.data()));
    comparison.Check(expected == answer && *end == 0, [&] {
      return std::string(what) + " of " + Shown(source) + ": the model says " + Shown(expected) +
             ", the translator " + Shown(answer);
    });
  };
  check_keys("digits", model::Digits(source, '0', '.'), false);
  check_keys("keys", model::Digits(source, 10, 13), true);
}

void CompareLiteral(Comparison& comparison, const std::string& source) {
  std::string literal = source;
  for (const size_t longest : {size_t{2}, size_t{32}}) {
    std::string expected;
    const int fault = model::TakeText(source, longest, '\'', expected);
    char text[33] = {};
    const int answer =
        lorimatutility::EstraeAlfa(literal.data(), text, static_cast<int>(longest), '\'');
    comparison.Check(fault == answer && (fault != 0 || expected == text), [&] {
      return "literal " + Shown(source) + ": the model says " + std::to_string(fault) + " " +
             Shown(expected) + ", the translator " + std::to_string(answer) + " " + Shown(text);
    });
  }
}

void CompareEditing(Comparison& comparison, long number) {
  char text[128];
  const auto check = [&](const char* what, long factor, const std::string& expected) {
    comparison.Check(expected == text, [&] {
      return std::string(what) + " of " + std::to_string(number) + " by " + std::to_string(factor) +
             ": the model says " + Shown(expected) + ", the translator " + Shown(text);
    });
  };
  char name[] = "IVA";
  for (const long factor : {10000L, 1000L, 100L, 1L}) {
    for (const bool short_zero : {false, true}) {
      lorimatutility::NumToString(text, number, factor, short_zero);
      check("number", factor, model::EditNumber(number, factor, short_zero));
      lorimatutility::NumToStringDescription(text, name, number, factor, short_zero);
      check("description", factor, model::EditDescription(name, number, factor, short_zero));
      for (const int place_factor : {100, 1, 10}) {
        lorimatutility::CurrencyToString(text, number, factor, short_zero, place_factor);
        check("currency", factor, model::EditCurrency(number, factor, short_zero, place_factor));
      }
    }
  }
}

void ComparePadding(Comparison& comparison, long number) {
  std::string source = std::to_string(number);
  char text[128];
  const auto check = [&](const char* what, int with, const std::string& expected) {
    comparison.Check(expected == text, [&] {
      return std::string(what) + " of " + Shown(source) + " with " + std::to_string(with) +
             ": the model says " + Shown(expected) + ", the translator " + Shown(text);
    });
  };
  for (const int base : {0, 1, 2, 10, 16, 35, 36, -2}) {
    lorimatutility::itoa(static_cast<int>(number), text, base);
    check("digits", base, model::InBase(static_cast<int>(number), base));
  }
  for (const int width : {-1, 0, 3, 12}) {
    lorimatutility::FnLPAD(text, source.data(), width, '0');
    check("right-justified", width, model::PadLeft(source, width, '0'));
    *lorimatutility::FnRPAD(text, source.data(), width, ' ') = 0;
    check("left-justified", width, model::PadRight(source, width, ' '));
  }
}

std::string ChanceNumberText(Comparison& comparison) {
  std::string text;
  const size_t length = 1 + comparison.Below(28);
  const std::string alphabet = comparison.Once(2) ? "0123456789" : "0123456789.,- A\xE8'+e";
  for (uint64_t i = 0; i < length; ++i) text += comparison.Any(alphabet);
  if (comparison.Once(3)) text.insert(comparison.Below(length), ".");
  return text;
}

}  // namespace

void CompareNumbers(Comparison& comparison, uint64_t most) {
  // What one number costs in comparisons: reading 26, editing 40, padding 16.
  const uint64_t each = most / (4 * 26);
  const size_t numbers = EveryText(
      "0915.,- Av", each, [&](const std::string& text) { CompareReading(comparison, text); });
  for (uint64_t i = 0; i < each; ++i) CompareReading(comparison, ChanceNumberText(comparison));
  const size_t literals = EveryText(
      "'A ", most / 8 / 2, [&](const std::string& text) { CompareLiteral(comparison, text); });
  const uint64_t edited = most / 4 / 56;
  for (uint64_t i = 0; i < edited; ++i) {
    long number = static_cast<long>(i) - static_cast<long>(edited / 2);
    if (comparison.Once(2)) {
      const size_t digits = comparison.Below(31);
      number = static_cast<long>(comparison.Below(size_t{1} << digits));
      if (comparison.Once(2)) number = -number;
    }
    CompareEditing(comparison, number);
    ComparePadding(comparison, number);
  }
  for (const long number : {long{INT_MAX}, long{INT_MIN}, 0L, LONG_MAX, LONG_MIN}) {
    CompareEditing(comparison, number);
    ComparePadding(comparison, number);
  }
  std::printf(
      "every number of %zu characters of 10 and numbers by chance, every literal of %zu "
      "characters of 3, %llu numbers edited\n",
      numbers, literals, static_cast<unsigned long long>(edited));
}
