#include "utility/hex.h"

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

// Value of an upper-case hexadecimal digit, -1 for any other character.
int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

void Hex::Encode(const uint8_t* data, size_t size, char* out) {
  for (size_t i = 0; i < size; ++i) {
    *out++ = kDigits[data[i] >> 4];
    *out++ = kDigits[data[i] & 0x0F];
  }
  *out = '\0';
}

void Hex::Decode(const char* hex, size_t size, uint8_t* out) {
  for (size_t i = 0; i < size; i += 2, ++out) {
    const int high = DigitValue(hex[i]);
    const int low = DigitValue(hex[i + 1]);
    if (high >= 0) *out = static_cast<uint8_t>(high << 4);
    // Added, not merged: without a valid high half the byte's old value goes into the sum.
    if (low >= 0) *out = static_cast<uint8_t>(*out + low);
  }
}

bool Hex::Check(const char* hex, size_t size) {
  if (size % 2 != 0) return false;
  for (size_t i = 0; i < size; ++i) {
    if (DigitValue(hex[i]) < 0) return false;
  }
  return true;
}
