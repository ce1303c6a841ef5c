// Numbers out of bytes that chance or a fuzzer chose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lorimat {

// Zeros behind the end of the bytes.
class InputNumbers {
 public:
  explicit InputNumbers(std::string_view bytes) : bytes_(bytes) {}
  // Bytes that were taken, none from behind the end.
  size_t used() const { return place_; }
  bool empty() const { return place_ >= bytes_.size(); }
  uint8_t Byte() { return empty() ? 0 : static_cast<uint8_t>(bytes_[place_++]); }
  // Mostly an amount as a shop has it; some as no shop has.
  int64_t Amount();
  int Small(int count) { return Byte() % count; }

 private:
  std::string_view bytes_;
  size_t place_ = 0;
};

}  // namespace lorimat
