#include "utility/stringutils.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <locale>

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

bool IsSpace(unsigned char c) { return std::isspace(c) != 0; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsAlphanumeric(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }

// Moves what white space encloses to the front of the buffer; gives its length.
template <typename Char>
int TrimBuffer(Char* str, int len) {
  if (len <= 0) return 0;
  const auto is_text = [](Char c) { return !IsSpace(static_cast<unsigned char>(c)); };
  Char* const end = str + len;
  Char* const first = std::find_if(str, end, is_text);
  Char* last = end;
  while (last > first && !is_text(last[-1])) --last;
  std::copy(first, last, str);
  const auto rest = static_cast<int>(last - first);
  str[rest] = 0;
  return rest;
}

}  // namespace

bool StringUtils::isHex(const std::string& str) {
  // The closing NUL is part of what a text is tested for, and no hexadecimal digit: only the
  // empty text, which is not looked at, passes.
  return str.empty();
}

void StringUtils::replace_all(std::string& str, const std::string& pattern,
                              const std::string& replace_with) {
  // An empty pattern is in every replacement.
  if (replace_with.find(pattern) != std::string::npos) return;
  for (size_t at = str.find(pattern); at != std::string::npos; at = str.find(pattern)) {
    str.replace(at, pattern.size(), replace_with);
  }
}

void StringUtils::normalize(std::string& str) {
  for (const char* line_end : {"\r\n", "\n"}) {
    const size_t at = str.find(line_end);
    if (at != std::string::npos) str.erase(at);
  }
  replace_all(str, "\t", " ");
}

unsigned char StringUtils::hexval(unsigned char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned char>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned char>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned char>(c - 'A' + 10);
  return c;
}

std::string StringUtils::zeroPadNumber(int len, long long num) {
  const size_t width = len > 0 ? static_cast<size_t>(len) : 0;
  std::string text = std::to_string(num);
  if (text.size() < width) {
    text.insert(0, width - text.size(), '0');
  } else {
    text.erase(0, text.size() - width);
  }
  return text;
}

std::string StringUtils::decimalToHex(long long num) {
  std::string digits;
  auto rest = static_cast<unsigned long long>(num);
  do {
    digits.insert(digits.begin(), "0123456789abcdef"[rest & 0x0F]);
    rest >>= 4;
  } while (rest != 0);
  return "0x" + digits;
}

void StringUtils::hex2ascii(const std::string& in, std::string& out) {
  // Built aside: in and out may be one text.
  std::string bytes;
  bytes.reserve(in.size() / 2);
  for (size_t i = 0; i + 1 < in.size(); i += 2) {
    const unsigned high = hexval(static_cast<unsigned char>(in[i]));
    const unsigned low = hexval(static_cast<unsigned char>(in[i + 1]));
    bytes.push_back(static_cast<char>((high << 4) + low));
  }
  out = std::move(bytes);
}

std::string& StringUtils::ltrim(std::string& s) {
  s.erase(s.begin(), std::find_if_not(s.begin(), s.end(), IsSpace));
  return s;
}

std::string& StringUtils::rtrim(std::string& s) {
  s.erase(std::find_if_not(s.rbegin(), s.rend(), IsSpace).base(), s.end());
  return s;
}

std::string& StringUtils::trim(std::string& s) { return ltrim(rtrim(s)); }

int StringUtils::trim(char* str, int len) { return TrimBuffer(str, len); }

int StringUtils::trim(unsigned char* str, int len) { return TrimBuffer(str, len); }

std::string StringUtils::toUpper(const std::string& str) {
  const std::locale global;
  std::string upper = str;
  for (char& c : upper) c = std::toupper(c, global);
  return upper;
}

std::string StringUtils::toLower(const std::string& str) {
  const std::locale global;
  std::string lower = str;
  for (char& c : lower) c = std::tolower(c, global);
  return lower;
}

bool StringUtils::startsWith(const std::string& str, const std::string& value) {
  return toUpper(str).starts_with(toUpper(value));
}

bool StringUtils::ReadLongLong(const char* str, int base, long long* val) {
  char* end = nullptr;
  errno = 0;
  *val = std::strtoll(str, &end, base);
  if (end == nullptr || end == str || *end != '\0') return false;
  return !((*val == 0x7FFFFFFFLL || *val == -0x80000000LL) && errno == ERANGE);
}

bool StringUtils::CheckAsciiNum(const char* src, size_t len) {
  return std::all_of(src, src + len, IsDigit);
}

bool StringUtils::CheckAsciiAlphaNum(const char* src, size_t len) {
  return std::all_of(src, src + len, IsAlphanumeric);
}

void StringUtils::BCDToAscii(const uint8_t* BCD, size_t BCDLen, char* ascii) {
  for (size_t i = 0; i < BCDLen; ++i) {
    *ascii++ = kDigits[BCD[i] >> 4];
    *ascii++ = kDigits[BCD[i] & 0x0F];
  }
  *ascii = '\0';
}

void StringUtils::AsciiToBCD(const char* ascii, size_t AsciiLen, uint8_t* BCD) {
  std::fill_n(BCD, (AsciiLen + 1) / 2, uint8_t{0});
  size_t half = 0;
  for (size_t i = 0; i < AsciiLen; ++i) {
    if (!IsHexDigit(ascii[i])) continue;
    const unsigned value = hexval(static_cast<unsigned char>(ascii[i]));
    BCD[half / 2] = static_cast<uint8_t>(BCD[half / 2] | (half % 2 == 0 ? value << 4 : value));
    ++half;
  }
}

bool StringUtils::URLEncoding(const char* src, size_t len, char* out_buf, size_t out_max_len) {
  size_t used = 0;
  for (size_t i = 0; i < len && used < out_max_len; ++i) {
    const char c = src[i];
    if (c == ' ') {
      out_buf[used++] = '+';
    } else if (IsAlphanumeric(c)) {
      out_buf[used++] = c;
    } else {
      if (out_max_len - used < 4) break;
      // Two places behind the "%", whatever the value takes up: without a leading zero a
      // byte below 16 leaves a NUL in the second one.
      const auto byte = static_cast<unsigned char>(c);
      char* const form = out_buf + used;
      form[0] = '%';
      form[1] = kDigits[byte < 16 ? byte : byte >> 4];
      form[2] = byte < 16 ? '\0' : kDigits[byte & 0x0F];
      used += 3;
    }
  }
  if (used < out_max_len) out_buf[used] = '\0';
  return true;
}

bool StringUtils::AsciiNumToBCD(const std::string& str, uint32_t* out_bcd) {
  if (!CheckAsciiNum(str.data(), str.size())) return false;
  uint32_t bcd = 0xFFFFFFFF;
  const size_t digits = std::min<size_t>(str.size(), 8);
  for (size_t i = 0; i < digits; ++i) {
    bcd &= ~(uint32_t{0xF} << (4 * i));
    bcd |= static_cast<uint32_t>(str[i] - '0') << (4 * i);
  }
  *out_bcd = bcd;
  return true;
}

bool StringUtils::BCDToAsciiNum(uint32_t in_bcd, char* buffer, size_t max_buffer_size) {
  size_t used = 0;
  while (used < 8 && used < max_buffer_size) {
    const uint32_t half = (in_bcd >> (4 * used)) & 0xF;
    if (half == 0xF) break;
    buffer[used++] = static_cast<char>('0' + half);
  }
  if (used < max_buffer_size) buffer[used] = '\0';
  return true;
}
