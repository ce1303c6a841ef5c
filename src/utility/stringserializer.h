// Integers and texts in raw byte buffers, in a stated byte order: the layout of records for
// the device and of marshalled values.
//
// Every write takes the destination and a value and returns the pointer behind what it
// wrote; every read takes the source and a pointer to the result and returns the pointer
// behind what it read. So calls chain. The buffer and its size are the caller's: nothing is
// checked here. Buffers may be of char or of unsigned char, with the same result, and need
// no alignment.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

// A buffer's element.
template <typename B>
concept SerializerByte = std::same_as < std::remove_const_t<B>,
char > || std::same_as<std::remove_const_t<B>, unsigned char>;

// A value of 1, 2, 4 or 8 bytes, signed or unsigned.
template <typename T>
concept SerializerInteger = std::integral<T> && !std::same_as<T, bool>;

// A value of the 40-bit forms.
template <typename T>
concept SerializerInteger64 = SerializerInteger<T> && sizeof(T) == 8;

class StringSerializer {
 public:
  // Bias of the signed 40-bit form: offset binary, not two's complement. 0 is stored as
  // 0x7FFFFFFFFF, -0x7FFFFFFFFF as 0. Values outside -0x7FFFFFFFFF to 0x8000000000 wrap.
  static constexpr int64_t INT40_MAX_VALUE = 0x7FFFFFFFFF;

  // The text's characters, without a terminator.
  template <SerializerByte B>
  static B* append(B* dest, const std::string& str) {
    return append(dest, str.data(), str.size());
  }

  // A plain copy of len bytes.
  template <SerializerByte B>
  static B* append(B* dest, const void* src, size_t len) {
    if (len != 0) std::memcpy(dest, src, len);
    return dest + len;
  }
  template <SerializerByte B>
  static B* get(B* src, void* dest, size_t len) {
    if (len != 0) std::memcpy(dest, src, len);
    return src + len;
  }

  // sizeof(T) bytes, the least significant first.
  template <SerializerByte B, SerializerInteger T>
  static B* append_le(B* dest, T value) {
    return WriteLe<sizeof(T)>(dest, static_cast<uint64_t>(value));
  }
  template <SerializerByte B, SerializerInteger T>
  static B* get_le(B* src, T* value) {
    uint64_t raw;
    src = ReadLe<sizeof(T)>(src, &raw);
    *value = static_cast<T>(raw);
    return src;
  }

  // sizeof(T) bytes, the most significant first.
  template <SerializerByte B, SerializerInteger T>
  static B* append_be(B* dest, T value) {
    return WriteBe<sizeof(T)>(dest, static_cast<uint64_t>(value));
  }
  template <SerializerByte B, SerializerInteger T>
  static B* get_be(B* src, T* value) {
    uint64_t raw;
    src = ReadBe<sizeof(T)>(src, &raw);
    *value = static_cast<T>(raw);
    return src;
  }

  // 5 bytes: the low 40 bits of an unsigned value, a signed one with its bias. Reading
  // clears the high bytes.
  template <SerializerInteger64 T>
  static char* append_le40(char* dest, T value) {
    return WriteLe<5>(dest, Biased(value));
  }
  template <SerializerInteger64 T>
  static char* append_be40(char* dest, T value) {
    return WriteBe<5>(dest, Biased(value));
  }
  template <typename B, SerializerInteger64 T>
  requires std::same_as < std::remove_const_t<B>,
  char > static B* get_le40(B* src, T* value) {
    uint64_t raw;
    src = ReadLe<5>(src, &raw);
    *value = Unbiased<T>(raw);
    return src;
  }
  template <typename B, SerializerInteger64 T>
  requires std::same_as < std::remove_const_t<B>,
  char > static B* get_be40(B* src, T* value) {
    uint64_t raw;
    src = ReadBe<5>(src, &raw);
    *value = Unbiased<T>(raw);
    return src;
  }

 private:
  template <size_t kBytes, typename B>
  static B* WriteLe(B* dest, uint64_t value) {
    for (size_t i = 0; i < kBytes; ++i) *dest++ = static_cast<B>((value >> (8 * i)) & 0xFF);
    return dest;
  }
  template <size_t kBytes, typename B>
  static B* WriteBe(B* dest, uint64_t value) {
    for (size_t i = kBytes; i-- > 0;) *dest++ = static_cast<B>((value >> (8 * i)) & 0xFF);
    return dest;
  }
  template <size_t kBytes, typename B>
  static B* ReadLe(B* src, uint64_t* value) {
    *value = 0;
    for (size_t i = 0; i < kBytes; ++i) *value |= uint64_t{static_cast<uint8_t>(*src++)} << (8 * i);
    return src;
  }
  template <size_t kBytes, typename B>
  static B* ReadBe(B* src, uint64_t* value) {
    *value = 0;
    for (size_t i = 0; i < kBytes; ++i) *value = *value << 8 | static_cast<uint8_t>(*src++);
    return src;
  }

  // The sums are unsigned, where going past the end of 64 bits is defined.
  template <typename T>
  static uint64_t Biased(T value) {
    if constexpr (std::is_signed_v<T>) {
      return static_cast<uint64_t>(value) + static_cast<uint64_t>(INT40_MAX_VALUE);
    } else {
      return value;
    }
  }
  template <typename T>
  static T Unbiased(uint64_t raw) {
    if constexpr (std::is_signed_v<T>) {
      return static_cast<T>(raw - static_cast<uint64_t>(INT40_MAX_VALUE));
    } else {
      return raw;
    }
  }
};
