// The virtual paper: a roll of text lines of 42 columns. Texts from the host may hold any
// byte; no control character gets onto the paper, and lines end between characters
// (register/paper/columns.h). What text cannot
// show stands on it as a line of text too, and beside the lines as a row of its own kind, for
// those who draw the paper (register/paper/picture.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lorimat {

enum class Alignment { kLeft, kCentre, kRight };

// A host's text as it is to be printed. Escape sequences of the form ESC "|" ... are taken
// out: "cA" centres, "rA" right-aligns, "lA" aligns left, "2C" and "4C" double the width
// (shown by a blank behind each character), "3C" and "4C" the height (not shown in text), "1C"
// and "N" end both. Others are dropped. Every control character becomes a blank.
struct HostText {
  std::string text;
  Alignment alignment = Alignment::kLeft;
  std::string sizes = {};  // a CharacterSize for each byte of the text; empty for a plain one
};

// How a column of the paper is printed: bits that add up.
enum CharacterSize : char {
  kPlainSize = 0,
  kDoubleWidth = 1,
  kDoubleHeight = 2,
  kFilled = 4,  // the blank behind a character of double width, which covers it
};

HostText ReadHostText(std::string_view text);

// What a row is that is more than plain text.
// The edge where the paper is cut.
struct CutRow {};
// Text with characters of double size.
struct SizedRow {
  std::string sizes;  // as in HostText, for the columns of the line
};
struct BarcodeRow {
  std::string_view type;  // the number of a BarcodeType
  std::string data;
  int scale = 1;             // 1 to 9: the width of the narrowest bar
  bool check_digit = false;  // of a CODE39
  Alignment alignment = Alignment::kCentre;
};
struct LogoRow {
  std::string file;
};

// A row and the lines of text that stand in for it: one, or more where a barcode's content
// needs them.
struct PaperRow {
  size_t line = 0;  // its first
  size_t line_count = 1;
  std::variant<CutRow, SizedRow, BarcodeRow, LogoRow> content;
};

class Paper {
 public:
  static constexpr size_t kColumns = 42;
  static constexpr size_t kDescriptionColumns = 24;
  static constexpr size_t kVatColumns = 6;
  static constexpr size_t kAmountColumns = 11;

  // A host's text, wrapped to as many lines as it needs; an empty text is a blank line.
  void Text(std::string_view text);
  void Centred(std::string_view text);
  void Aligned(std::string_view text, Alignment alignment);
  // A text at the left and an amount at the right. The text is cut where both do not fit.
  void Pair(std::string_view left, std::string_view right);
  // A line of the document's body. A description wider than its column is wrapped, and VAT
  // and amount stand on its last line.
  void Item(std::string_view description, std::string_view vat, std::string_view amount);
  void Blank();
  // A blank line, where none ends the paper yet.
  void Gap();
  // The edge where the paper is cut.
  void Cut();
  // A barcode. Text shows its type's name and its data.
  void Barcode(BarcodeRow barcode, std::string_view name);
  // A logo of this number, from an image file; without a file it is only named.
  void Logo(int number, std::string file);
  // A line that another paper holds already.
  void Line(std::string line) { lines_.push_back(std::move(line)); }
  // Another paper's lines and rows as they stand. Behind Reserve for as many lines it cannot
  // fail.
  void Append(Paper other);
  void Reserve(size_t lines);

  // A row of lines that another paper holds already.
  void Row(PaperRow row) { rows_.push_back(std::move(row)); }

  // --- What was printed, as far as it reaches
  struct Extent {
    size_t lines = 0;
    size_t rows = 0;
  };
  Extent extent() const noexcept { return {lines_.size(), rows_.size()}; }
  // Takes back what was printed since.
  void TakeBack(const Extent& extent) noexcept;
  // Tears off the oldest lines, none that is held. The first line that is left is the one of
  // number dropped(), counted from 0.
  void Drop(size_t lines) noexcept;
  size_t dropped() const { return dropped_; }
  // Holds the lines from this number on.
  void Hold(size_t line) { held_ = line; }
  // Makes an empty roll the rest of a longer one.
  void StartAt(size_t line) { dropped_ = line; }

  // The lines, without trailing blanks and line ends.
  const std::vector<std::string>& lines() const { return lines_; }
  // The rows that are more than plain text, from the first line to the last.
  const std::vector<PaperRow>& rows() const { return rows_; }
  // All lines, each ended by a line feed.
  std::string text() const;

 private:
  void Add(std::string line, std::string_view sizes = {});
  void Wrap(const HostText& host, Alignment alignment);
  // Makes the lines from this one on into a row.
  void Mark(size_t line, decltype(PaperRow::content) content);

  std::vector<std::string> lines_;
  std::vector<PaperRow> rows_;
  size_t dropped_ = 0;
  size_t held_ = SIZE_MAX;
};

}  // namespace lorimat
