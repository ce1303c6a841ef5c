// Texts of statements that the compiler puts together: the numbers of kinds come from their
// enumerations, lists of columns stand in one place, and the text is a literal all the same. A
// partial index takes part only where its condition stands in the statement as digits, so that a
// bound parameter would not do.
//
// What takes a statement takes a SqlLiteral, and none of these can be made at run time: no text
// that somebody has entered or stored becomes part of one.
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

// The text of one or more statements: a literal, or kSql<...>. It lasts as long as the program.
class SqlLiteral {
 public:
  // Both read the text, so that one which can change is no constant and does not compile.
  template <size_t size>
  // NOLINTNEXTLINE(google-explicit-constructor): literals are to stand where statements do.
  consteval SqlLiteral(const char (&literal)[size]) : text_(Checked(literal, size)) {}
  template <size_t size>
  // NOLINTNEXTLINE(google-explicit-constructor)
  consteval SqlLiteral(const SqlText<size>& sql) : text_(Checked(sql.text, size)) {}

  constexpr std::string_view text() const { return text_; }
  // Closed with a zero.
  constexpr const char* c_str() const { return text_.data(); }

 private:
  static consteval std::string_view Checked(const char* text, size_t size) {
    size_t end = 0;
    while (end < size && text[end] != 0) ++end;
    if (end == size - 1) return {text, end};
    // Not a constant, and so refused by the compiler.
    throw "a statement ends at its only zero";
  }

  std::string_view text_;
};

}  // namespace lorimat
