// Text operations on std::string and on plain buffers, and the conversions between text and
// binary coded decimals (BCD, a digit in each half byte).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

class StringUtils {
 public:
  // True for an empty text alone, false for every other, hexadecimal or not. That is meant:
  // callers rest on it. The test for hexadecimal text is Hex::Check.
  static bool isHex(const std::string& str);

  // Replaces every occurrence of pattern, searching again from the front after each one, so
  // that an occurrence which a replacement completes is replaced too. The replacement must
  // not contain the pattern: such a call would never end, and so would one with an empty
  // pattern; both leave the text as it is.
  static void replace_all(std::string& str, const std::string& pattern,
                          const std::string& replace_with);

  // Reduces a text to its first line, for fields that hold one line: it is cut at the first
  // CR LF, then at the first LF, and each TAB becomes a blank. A lone CR stays.
  static void normalize(std::string& str);

  // Value of a hexadecimal digit of either case; any other character is given back as it is.
  static unsigned char hexval(unsigned char c);

  // num, right-aligned in len characters and filled with "0". The field keeps its width: a
  // longer text loses its leading characters. The sign is a character like the digits, so
  // that -5 in 4 places reads "00-5".
  static std::string zeroPadNumber(int len, long long num);

  // "0x" and num in lower-case hexadecimal; a negative number as its two's complement.
  static std::string decimalToHex(long long num);

  // Each pair of characters of in, read by hexval, gives a byte of out, the first as the high
  // half. A single character left at the end is dropped.
  static void hex2ascii(const std::string& in, std::string& out);

  // Erase white space at the left, the right or both ends; give back s.
  static std::string& ltrim(std::string& s);
  static std::string& rtrim(std::string& s);
  static std::string& trim(std::string& s);

  // Trims the len bytes in place, puts a closing NUL behind the rest and gives its length.
  // The buffer has room for len + 1 bytes. With len 0 nothing is written.
  static int trim(char* str, int len);
  static int trim(unsigned char* str, int len);

  // A copy, changed character by character in the global locale.
  static std::string toUpper(const std::string& str);
  static std::string toLower(const std::string& str);

  // Whether str begins with value, case ignored.
  static bool startsWith(const std::string& str, const std::string& value);

  // Reads a whole number in the given base (as strtoll, prefixes and 0 as base included) into
  // *val, which is written in any case. False when there is no digit or text follows the
  // number. The range test knows the limits of 32 bits alone, 0x7FFFFFFF and -0x80000000,
  // although 64 bits are read: a number past 64 bits gives the largest or the smallest one
  // and counts as read. That is meant.
  template <typename Int64>
  requires(std::is_signed_v<Int64> &&
           sizeof(Int64) == 8) static bool StrToLong(const char* str, int base, Int64* val) {
    long long value;
    const bool read = ReadLongLong(str, base, &value);
    *val = value;
    return read;
  }

  // Whether the len bytes are digits, or digits and letters of either case; true for len 0.
  static bool CheckAsciiNum(const char* src, size_t len);
  static bool CheckAsciiAlphaNum(const char* src, size_t len);

  // Two characters for each byte, high half first: digits, "A" to "F" for 10 to 15, and a
  // closing NUL. ascii has room for 2 * BCDLen + 1.
  static void BCDToAscii(const uint8_t* BCD, size_t BCDLen, char* ascii);

  // Clears (AsciiLen + 1) / 2 bytes and fills half bytes from the hexadecimal digits of either
  // case, high half first; other characters are passed over without using one up.
  static void AsciiToBCD(const char* ascii, size_t AsciiLen, uint8_t* BCD);

  // Encodes len bytes for a URL: a blank is "+", digits and letters stay, everything else is
  // "%" and its hexadecimal value in two places. Ends where the output is full; a "%" form
  // needs four free places. A closing NUL follows if there is room. A byte below 16 has one
  // digit and a NUL in its two places, so that the text, read as a string, ends there; that
  // is meant. Always true.
  static bool URLEncoding(const char* src, size_t len, char* out_buf, size_t out_max_len);

  // Packs up to eight digits, the first in the lowest half byte; the half bytes left are 0xF,
  // which ends the number. False, with *out_bcd untouched, when str has anything else.
  static bool AsciiNumToBCD(const std::string& str, uint32_t* out_bcd);

  // The reverse: digits up to the first 0xF, eight of them or max_buffer_size, and a closing
  // NUL if there is room. Always true.
  static bool BCDToAsciiNum(uint32_t in_bcd, char* buffer, size_t max_buffer_size);

 private:
  static bool ReadLongLong(const char* str, int base, long long* val);
};
