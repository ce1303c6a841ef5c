// Names and words of the language in one case, to be compared at once: the first twelve characters,
// more than any name has, and the length.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

class FoldedText {
 public:
  FoldedText() = default;
  FoldedText(const char* text, size_t length)
      : low_(Lowered(First(text, std::min(length, kLow)))), length_(static_cast<uint32_t>(length)) {
    if (length > kLow) {
      high_ = static_cast<uint32_t>(Lowered(First(text + kLow, std::min(length, kKept) - kLow)));
    }
  }

  size_t length() const { return length_; }

  // Whether both are the same over the shorter one, of which twelve characters count. *compared
  // receives its length.
  bool Matches(const FoldedText& other, size_t* compared) const {
    const size_t shorter = std::min(length_, other.length_);
    *compared = shorter;
    uint64_t low = low_ ^ other.low_;
    uint64_t high = high_ ^ other.high_;
    if (shorter < kLow) {
      low &= BitsOf(shorter);
      high = 0;
    } else {
      high &= BitsOf(std::min(shorter, kKept) - kLow);
    }
    return (low | high) == 0;
  }

 private:
  static constexpr size_t kLow = 8;
  static constexpr size_t kKept = 12;

  static uint64_t Byte(char c) { return static_cast<unsigned char>(c); }

  static uint64_t Four(const char* text) {
    return Byte(text[0]) | Byte(text[1]) << 8 | Byte(text[2]) << 16 | Byte(text[3]) << 24;
  }

  // Eight characters at most. The parts overlap, which is cheaper than one after the other.
  static uint64_t First(const char* text, size_t length) {
    if (length >= 4) return Four(text) | Four(text + length - 4) << (8 * (length - 4));
    if (length == 0) return 0;
    const size_t middle = length / 2;
    const size_t last = length - 1;
    return Byte(text[0]) | Byte(text[middle]) << (8 * middle) | Byte(text[last]) << (8 * last);
  }

  // The bits of so many characters, 7 at most.
  static uint64_t BitsOf(size_t characters) { return (uint64_t{1} << (8 * characters)) - 1; }

  // Every byte by itself: ASCII alone has cases here.
  static uint64_t Lowered(uint64_t bytes) {
    constexpr uint64_t kEach = 0x0101010101010101;
    const uint64_t plain = bytes & (0x7F * kEach);
    const uint64_t from_a = plain + (0x80 - 'A') * kEach;
    const uint64_t behind_z = plain + (0x7F - 'Z') * kEach;
    const uint64_t capitals = (from_a ^ behind_z) & ~bytes & (0x80 * kEach);
    return bytes | capitals >> 2;
  }

  uint64_t low_ = 0;
  uint32_t high_ = 0;
  uint32_t length_ = 0;
};
