// Copies into the translator's fixed buffers. Every one knows the size of its
// destination, cuts what does not fit, and closes the text with NUL. A size of 0 writes
// nothing.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

// The length of a text in a row that may be full and then has no closing NUL.
inline size_t RowLength(const char* row, size_t size) {
  const void* nul = std::memchr(row, 0, size);
  return nul ? static_cast<size_t>(static_cast<const char*>(nul) - row) : size;
}

// Copies length bytes of source.
inline void CopyBytes(char* dest, size_t size, const char* source, size_t length) {
  if (size == 0) return;
  if (length > size - 1) length = size - 1;
  std::memmove(dest, source, length);
  dest[length] = 0;
}

// The same for texts that are mostly short, which it copies without a call: by two parts of the
// same size that overlap, both read before one is written.
inline void CopyFewBytes(char* dest, size_t size, const char* source, size_t length) {
  if (length < 2 || length > 16 || length >= size) return CopyBytes(dest, size, source, length);
  const auto copy = [=](auto first) {
    auto last = first;
    const size_t behind = length - sizeof first;
    std::memcpy(&first, source, sizeof first);
    std::memcpy(&last, source + behind, sizeof last);
    std::memcpy(dest, &first, sizeof first);
    std::memcpy(dest + behind, &last, sizeof last);
  };
  if (length >= 8) {
    copy(uint64_t{});
  } else if (length >= 4) {
    copy(uint32_t{});
  } else {
    copy(uint16_t{});
  }
  dest[length] = 0;
}

inline void CopyText(char* dest, size_t size, const char* source) {
  CopyBytes(dest, size, source, std::strlen(source));
}

inline void AppendBytes(char* dest, size_t size, const char* source, size_t length) {
  const size_t used = RowLength(dest, size);
  if (used < size) CopyBytes(dest + used, size - used, source, length);
}

inline void AppendText(char* dest, size_t size, const char* source) {
  AppendBytes(dest, size, source, std::strlen(source));
}

// Appends a row of a table, which may be full.
template <size_t N>
void AppendRow(char* dest, size_t size, const char (&row)[N]) {
  AppendBytes(dest, size, row, RowLength(row, N));
}

#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
inline void
AppendFormat(char* dest, size_t size, const char* format, ...) {
  const size_t used = RowLength(dest, size);
  if (used >= size) return;
  va_list arguments;
  va_start(arguments, format);
  if (std::vsnprintf(dest + used, size - used, format, arguments) < 0) dest[used] = 0;
  va_end(arguments);
}

// The same for arrays, whose size the compiler knows.
template <size_t N>
void CopyText(char (&dest)[N], const char* source) {
  CopyText(dest, N, source);
}
template <size_t N>
void AppendText(char (&dest)[N], const char* source) {
  AppendText(dest, N, source);
}

// Writes one character behind the other. What does not fit is dropped, but for the place of the
// NUL.
class BufferWriter {
 public:
  BufferWriter(char* dest, size_t size) : place_(dest), room_(size) {}

  void Put(char c) {
    if (room_ < 2) return;
    *place_++ = c;
    --room_;
  }
  void Put(const char* text) {
    for (; *text != 0; ++text) Put(*text);
  }
  // The text may be in the same buffer.
  void Move(const char* text, size_t length) {
    if (room_ < 2) return;
    const size_t moved = length < room_ ? length : room_ - 1;
    std::memmove(place_, text, moved);
    place_ += moved;
    room_ -= moved;
  }
  // Returns the place of the NUL.
  char* Close() {
    if (room_ > 0) *place_ = 0;
    return place_;
  }

 private:
  char* place_;
  size_t room_;
};

// Stores a text into a row of a table: a text that fills the row has no closing NUL.
template <size_t N>
void StoreRow(char (&row)[N], const char* source) {
  const size_t length = std::strlen(source);
  std::memset(row, 0, N);
  std::memcpy(row, source, length < N ? length : N);
}
