// The texts of the device client's calls: what comes in as char pointers, and what goes out
// into buffers whose size only the contract tells.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace lorimat {

// A text that may be null.
inline std::string_view View(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

// The text of a buffer that may lack its closing NUL.
inline std::string_view BoundedView(const char* buffer, size_t size) {
  const void* end = std::memchr(buffer, '\0', size);
  return {buffer,
          end != nullptr ? static_cast<size_t>(static_cast<const char*>(end) - buffer) : size};
}

// Copies a text into a caller's buffer of `size` characters, cut to what fits with its NUL.
inline void Give(std::string_view text, char* buffer, size_t size) {
  const size_t length = std::min(text.size(), size - 1);
  if (length > 0) std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

}  // namespace lorimat
