#include "console/terminal/line_encoding.h"

#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr size_t kFewestBytes = 4;  // that tell UTF-16 from a line with a NUL byte

bool IsNulFrom(std::string_view text, size_t first) {
  for (size_t i = 0; i < text.size(); ++i) {
    if ((text[i] == 0) != (i % 2 == first)) return false;
  }
  return true;
}

bool BeginsWithUtf16Mark(std::string_view text) {
  return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

bool IsHalfNul(std::string_view text) {
  return text.size() >= kFewestBytes && (IsNulFrom(text, 0) || IsNulFrom(text, 1));
}

}  // namespace

bool BeginsWithByteOrderMark(std::string_view line) {
  return line.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

bool ShowsUtf16(const SourceLine& line) {
  return (line.number == 1 && BeginsWithUtf16Mark(line.text)) || IsHalfNul(line.text);
}

std::string EncodingHint(std::string_view line) {
  if (BeginsWithByteOrderMark(line)) {
    return Tr("; the line begins with a byte order mark, which the library takes for a part of it");
  }
  if (BeginsWithUtf16Mark(line) || IsHalfNul(line)) {
    return Tr("; the file is UTF-16, which the library cannot read");
  }
  return {};
}

}  // namespace lorimat::console
