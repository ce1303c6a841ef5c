#include "console/terminal/line_encoding.h"

#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr size_t kFewestBytes = 4;  // that tell UTF-16 from a line with a NUL byte

bool is_nul_from(std::string_view text, size_t first) {
  for (size_t i = 0; i < text.size(); ++i) {
    if ((text[i] == 0) != (i % 2 == first)) return false;
  }
  return true;
}

bool begins_with_utf16_mark(std::string_view text) {
  return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

bool is_half_nul(std::string_view text) {
  return text.size() >= kFewestBytes && (is_nul_from(text, 0) || is_nul_from(text, 1));
}

}  // namespace

bool begins_with_byte_order_mark(std::string_view line) {
  return line.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

bool shows_utf16(const SourceLine& line) {
  return (line.number == 1 && begins_with_utf16_mark(line.text)) || is_half_nul(line.text);
}

std::string encoding_hint(std::string_view line) {
  if (begins_with_byte_order_mark(line)) {
    return tr("; the line begins with a byte order mark, which the library takes for a part of it");
  }
  if (begins_with_utf16_mark(line) || is_half_nul(line)) {
    return tr("; the file is UTF-16, which the library cannot read");
  }
  return {};
}

}  // namespace lorimat::console
