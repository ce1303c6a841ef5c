// Character tests of the command language. It knows ASCII alone, whatever locale the
// host has set: every other byte is plain text.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

inline char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Whether the first length characters of two texts are the same, ignoring case.
inline bool SameIgnoringCase(const char* a, const char* b, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

// Whether a text begins with another, ignoring case.
inline bool BeginsWith(const char* text, const char* beginning) {
  for (; *beginning != 0; ++text, ++beginning) {
    if (Lower(*text) != Lower(*beginning)) return false;
  }
  return true;
}

inline bool EqualsIgnoringCase(const char* a, const char* b) {
  return std::strlen(a) == std::strlen(b) && BeginsWith(a, b);
}

// The long next to a number: a long has 32 bits on Windows.
inline long NearestLong(int64_t number) {
  return static_cast<long>(std::clamp<int64_t>(number, LONG_MIN, LONG_MAX));
}

// The number at the beginning of a text, 0 when there is none. A number beyond an int
// gives the nearest one.
inline int TextToInt(const char* text) {
  const long value = std::strtol(text, nullptr, 10);
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}
