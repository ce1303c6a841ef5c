// Upper-case hexadecimal text of raw bytes, two characters for each byte.
#pragma once

#include <cstddef>
#include <cstdint>

class Hex {
 public:
  // Writes 2 * size characters, the high half of each byte first, and a closing NUL: out
  // has room for 2 * size + 1.
  static void Encode(const uint8_t* data, size_t size, char* out);

  // Reads size characters in pairs into (size + 1) / 2 bytes. Digits and "A" to "F" count;
  // nothing reports other characters, so Check comes first. The high half of a byte is
  // assigned, the low half added to what the byte holds, and a character that does not
  // count leaves its half alone: out is not cleared beforehand. An odd size reads the one
  // character behind it, which must be readable (the closing NUL will do).
  static void Decode(const char* hex, size_t size, uint8_t* out);

  // Whether the size characters are pairs of digits and "A" to "F". Lower case is refused,
  // and so is an odd size, whose last character has no partner. An empty text passes.
  static bool Check(const char* hex, size_t size);
};
