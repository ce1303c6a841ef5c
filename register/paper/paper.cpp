#include "register/paper/paper.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "register/paper/columns.h"

namespace lorimat {
namespace {

constexpr char kEscape = 27;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The length of the escape sequence at the start of the text: ESC, "|", an optional "!",
// digits, small letters and a closing capital. 0 when there is none.
size_t SequenceLength(std::string_view text) {
  if (text.size() < 3 || text[0] != kEscape || text[1] != '|') return 0;
  size_t at = 2;
  if (text[at] == '!') ++at;
  while (at < text.size() && (IsDigit(text[at]) || (text[at] >= 'a' && text[at] <= 'z'))) ++at;
  if (at >= text.size() || !IsLetter(text[at])) return 0;
  return at + 1;
}

bool IsPlain(std::string_view sizes) {
  return std::all_of(sizes.begin(), sizes.end(), [](char size) { return size == kPlainSize; });
}

// Like substr, for a text that may be shorter.
std::string_view Piece(std::string_view text, size_t at, size_t count = std::string_view::npos) {
  return at < text.size() ? text.substr(at, count) : std::string_view();
}

}  // namespace

HostText ReadHostText(std::string_view text) {
  HostText result;
  int size = kPlainSize;
  for (size_t at = 0; at < text.size();) {
    const size_t length = SequenceLength(text.substr(at));
    if (length > 0) {
      const std::string_view sequence = text.substr(at + 2, length - 2);
      if (sequence == "cA") result.alignment = Alignment::kCentre;
      if (sequence == "rA") result.alignment = Alignment::kRight;
      if (sequence == "lA") result.alignment = Alignment::kLeft;
      if (sequence == "2C" || sequence == "4C") size |= kDoubleWidth;
      if (sequence == "3C" || sequence == "4C") size |= kDoubleHeight;
      if (sequence == "1C" || sequence == "N") size = kPlainSize;
      at += length;
      continue;
    }
    const unsigned char byte = static_cast<unsigned char>(text[at++]);
    result.text += byte < 0x20 || byte == 0x7F ? ' ' : static_cast<char>(byte);
    result.sizes += static_cast<char>(size);
    if ((size & kDoubleWidth) != 0) {
      result.text += ' ';
      result.sizes += static_cast<char>(size | kFilled);
    }
  }
  if (IsPlain(result.sizes)) result.sizes.clear();
  return result;
}

void Paper::Text(std::string_view text) {
  const HostText host = ReadHostText(text);
  Wrap(host, host.alignment);
}

void Paper::Centred(std::string_view text) { Wrap(ReadHostText(text), Alignment::kCentre); }

void Paper::Aligned(std::string_view text, Alignment alignment) {
  Wrap({std::string(text), alignment}, alignment);
}

void Paper::Wrap(const HostText& host, Alignment alignment) {
  size_t at = 0;
  do {
    const size_t bytes = FittingBytes(Piece(host.text, at), kColumns);
    std::string_view part = Piece(host.text, at, bytes);
    const std::string_view sizes = Piece(host.sizes, at, bytes);
    at += bytes;
    if (alignment != Alignment::kLeft) {
      while (!part.empty() && part.back() == ' ') part.remove_suffix(1);
    }
    const size_t columns = ColumnsOf(part);
    const size_t room = columns < kColumns ? kColumns - columns : 0;
    const size_t indent = alignment == Alignment::kCentre  ? room / 2
                          : alignment == Alignment::kRight ? room
                                                           : 0;
    Add(std::string(indent, ' ').append(part), std::string(indent, kPlainSize).append(sizes));
  } while (at < host.text.size());
}

void Paper::Pair(std::string_view left, std::string_view right) {
  const HostText host = ReadHostText(left);
  const size_t room = right.size() + 1 < kColumns ? kColumns - right.size() - 1 : 0;
  const std::string_view fitting = Piece(host.text, 0, FittingBytes(host.text, room));
  Add(fmt::format("{:<{}} {}", fitting, room, right), Piece(host.sizes, 0, fitting.size()));
}

void Paper::Item(std::string_view description, std::string_view vat, std::string_view amount) {
  const HostText host = ReadHostText(description);
  size_t at = 0;
  size_t bytes = FittingBytes(host.text, kDescriptionColumns);
  while (at + bytes < host.text.size()) {
    Add(host.text.substr(at, bytes), Piece(host.sizes, at, bytes));
    at += bytes;
    bytes = FittingBytes(Piece(host.text, at), kDescriptionColumns);
  }
  Add(fmt::format("{:<{}}{:>{}} {:>{}}", host.text.substr(at), kDescriptionColumns,
                  vat.substr(0, FittingBytes(vat, kVatColumns)), kVatColumns, amount,
                  kAmountColumns),
      Piece(host.sizes, at));
}

void Paper::Blank() { Add(std::string()); }

void Paper::Gap() {
  if (lines_.empty() || !lines_.back().empty()) Blank();
}

void Paper::Cut() {
  Add(std::string(kColumns, '-'));
  Mark(lines_.size() - 1, CutRow{});
}

void Paper::Barcode(BarcodeRow barcode, std::string_view name) {
  const size_t line = lines_.size();
  Aligned(fmt::format("[{} {}]", name, ReadHostText(barcode.data).text), barcode.alignment);
  Mark(line, std::move(barcode));
}

void Paper::Logo(int number, std::string file) {
  const size_t line = lines_.size();
  Centred(fmt::format("[LOGO {}]", number));
  if (!file.empty()) Mark(line, LogoRow{std::move(file)});
}

void Paper::Append(Paper other) {
  Reserve(other.lines_.size());
  for (PaperRow& row : other.rows_) {
    row.line += lines_.size();
    rows_.push_back(std::move(row));
  }
  for (std::string& line : other.lines_) lines_.push_back(std::move(line));
}

// A line has at most one row.
void Paper::Reserve(size_t lines) {
  const auto reserve = [lines](auto& all) {
    const size_t wanted = all.size() + lines;
    if (wanted > all.capacity()) all.reserve(std::max(wanted, 2 * all.size()));
  };
  reserve(lines_);
  reserve(rows_);
}

void Paper::TakeBack(const Extent& extent) noexcept {
  const auto shorten = [](auto* all, size_t size) {
    if (size < all->size())
      all->erase(all->begin() + static_cast<std::ptrdiff_t>(size), all->end());
  };
  shorten(&lines_, extent.lines);
  shorten(&rows_, extent.rows);
}

void Paper::Drop(size_t lines) noexcept {
  lines = std::min({lines, lines_.size(), std::max(held_, dropped_) - dropped_});
  if (lines == 0) return;
  lines_.erase(lines_.begin(), lines_.begin() + static_cast<std::ptrdiff_t>(lines));
  std::erase_if(rows_, [lines](const PaperRow& row) { return row.line < lines; });
  for (PaperRow& row : rows_) row.line -= lines;
  dropped_ += lines;
}

std::string Paper::text() const {
  std::string all;
  for (const std::string& line : lines_) all.append(line).push_back('\n');
  return all;
}

void Paper::Add(std::string line, std::string_view sizes) {
  while (!line.empty() && line.back() == ' ') line.pop_back();
  sizes = sizes.substr(0, line.size());
  const bool plain = IsPlain(sizes);
  lines_.push_back(std::move(line));
  if (!plain) Mark(lines_.size() - 1, SizedRow{std::string(sizes)});
}

void Paper::Mark(size_t line, decltype(PaperRow::content) content) {
  rows_.push_back({line, lines_.size() - line, std::move(content)});
}

}  // namespace lorimat
