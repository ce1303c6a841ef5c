#include "console/message/shown_text.h"

#include <fmt/format.h>

#include <cerrno>
#include <string_view>
#include <system_error>

#include "console/message/translate.h"

namespace lorimat::console {

std::string Shown(std::string_view text, size_t limit) {
  const bool cut = limit != 0 && text.size() > limit;
  if (cut) {
    text = text.substr(0, limit);
    // A cut in the middle of a UTF-8 sequence would leave half a character.
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
      text.remove_suffix(1);
    }
    if (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80) != 0) {
      text.remove_suffix(1);
    }
  }
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const unsigned char byte = static_cast<unsigned char>(c);
    if (text.substr(at, kByteOrderMark.size()) == kByteOrderMark) {
      out += "\\xEF\\xBB\\xBF";
      at += kByteOrderMark.size() - 1;
    } else if (byte < 0x20 || byte == 0x7F) {
      out += fmt::format("\\x{:02X}", byte);
    } else {
      out += c;
    }
  }
  if (cut) out += "...";
  return out;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The C library has them in other languages only where a package of languages is installed.
std::string SystemMessage(int error) {
  struct Row {
    int error;
    const char* text;
  };
  static constexpr Row kMessages[] = {
      {ENOENT, TR_TEXT("No such file or directory")},
      {EACCES, TR_TEXT("Permission denied")},
      {EPERM, TR_TEXT("Operation not permitted")},
      {ENOSPC, TR_TEXT("No space left on device")},
      {EDQUOT, TR_TEXT("Disk quota exceeded")},
      {EROFS, TR_TEXT("Read-only file system")},
      {EISDIR, TR_TEXT("Is a directory")},
      {ENOTDIR, TR_TEXT("Not a directory")},
      {EEXIST, TR_TEXT("File exists")},
      {ENAMETOOLONG, TR_TEXT("File name too long")},
      {EFBIG, TR_TEXT("File too large")},
      {EBADF, TR_TEXT("Bad file descriptor")},
      {EMFILE, TR_TEXT("Too many open files")},
      {ELOOP, TR_TEXT("Too many levels of symbolic links")},
      {EIO, TR_TEXT("Input/output error")},
      {EPIPE, TR_TEXT("Broken pipe")},
      {EINVAL, TR_TEXT("Invalid argument")},
      {ENXIO, TR_TEXT("No such device or address")},
      {EBUSY, TR_TEXT("Device or resource busy")},
      {ETXTBSY, TR_TEXT("Text file busy")},
      {EAGAIN, TR_TEXT("Resource temporarily unavailable")},
      {ENOMEM, TR_TEXT("Cannot allocate memory")},
  };
  for (const Row& row : kMessages) {
    if (row.error == error) return std::string(Translated(row.text));
  }
  return std::generic_category().message(error);
}

}  // namespace lorimat::console
