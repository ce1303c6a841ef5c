// Texts of statements that the compiler puts together: the numbers of kinds come from their
// enumerations, lists of columns stand in one place, and the text is a literal all the same. A
// partial index takes part only where its condition stands in the statement as digits, so that a
// bound parameter would not do.
//
//   database.Prepare(kSql<"SELECT id FROM document WHERE kind = ",
//   kSqlNumber<DocumentKind::kSale>>)
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace lorimat {

// A part of a statement, or all of it; `size` counts the zero at its end.
template <size_t size>
struct SqlText {
  char text[size] = {};

  constexpr SqlText() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): literals are to stand where parts do.
  constexpr SqlText(const char (&literal)[size]) { std::copy_n(literal, size, text); }
  // NOLINTNEXTLINE(google-explicit-constructor): what takes a statement takes a text.
  constexpr operator std::string_view() const { return {text, size - 1}; }
};

template <size_t first, size_t second>
constexpr SqlText<first + second - 1> operator+(const SqlText<first>& a, const SqlText<second>& b) {
  SqlText<first + second - 1> sum;
  std::copy_n(a.text, first - 1, sum.text);
  std::copy_n(b.text, second, sum.text + first - 1);
  return sum;
}

// The parts as one text, which lasts as long as the program.
template <SqlText... parts>
inline constexpr auto kSql = (parts + ...);

template <auto value>
consteval auto SqlDigits() {
  constexpr auto kNumber = static_cast<int>(value);
  static_assert(kNumber >= 0);
  if constexpr (kNumber < 10) {
    return SqlText<2>({static_cast<char>('0' + kNumber), '\0'});
  } else {
    return SqlDigits<kNumber / 10>() + SqlDigits<kNumber % 10>();
  }
}

// The number of an enumerator, as it is stored.
template <auto value>
inline constexpr auto kSqlNumber = SqlDigits<value>();

}  // namespace lorimat
