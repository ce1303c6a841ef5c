// Decimal digits of magnitudes of 64 bits: counted, cut off and written, without a loop of
// divisions and without a branch that the digits decide.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace decimal_digits {

// 1, 10, 100 ... 10 to the 19, the last that 64 bits hold.
inline constexpr std::array<uint64_t, 20> kTens = [] {
  std::array<uint64_t, 20> tens{};
  uint64_t ten = 1;
  for (uint64_t& entry : tens) {
    entry = ten;
    ten *= 10;
  }
  return tens;
}();

// How many digits a magnitude has, 1 for 0.
constexpr unsigned int Count(uint64_t magnitude) {
  magnitude |= 1;  // no power of ten but 1 lies between the two
  // The bits times the logarithm of 2, which is one too few from a power of ten on.
  const auto guess = static_cast<unsigned int>(std::bit_width(magnitude)) * 1233 >> 12;
  return guess + (magnitude >= kTens[guess] ? 1 : 0);
}

// The magnitude without its last digits, 4 at most: a division by a constant, which is none.
constexpr uint64_t WithoutLast(uint64_t magnitude, unsigned int digits) {
  switch (digits) {
    case 0:
      return magnitude;
    case 1:
      return magnitude / 10;
    case 2:
      return magnitude / 100;
    case 3:
      return magnitude / 1000;
    default:
      return magnitude / 10000;
  }
}

// Writes the last count digits of a magnitude, zeros in front where it has fewer. Returns the end.
inline char* WriteLast(char* text, uint64_t magnitude, unsigned int count) {
  for (char* place = text + count; place != text; magnitude /= 10) {
    *--place = static_cast<char>('0' + magnitude % 10);
  }
  return text + count;
}

// Writes all digits of a magnitude, 20 at most. Returns the end.
inline char* Write(char* text, uint64_t magnitude) {
  return WriteLast(text, magnitude, Count(magnitude));
}

}  // namespace decimal_digits
