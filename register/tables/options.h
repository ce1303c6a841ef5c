// The device's options: data items that a host sets once and the device keeps. What most of
// them do is the business of a real device; this one keeps them and gives them back.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace lorimat {

// Whether the drawer opens when a receipt ends. The host opens it.
inline constexpr int kDrawerAtEnd = 459;

class DeviceOptions {
 public:
  static constexpr size_t kTextSize = 49;  // what a caller's buffer takes
  static constexpr size_t kNumberDigits = 9;

  // The value of an option, its factory value as long as nobody set it. Empty for an item that
  // is no option.
  std::string Read(int item) const;
  // RTF_E_ILLEGAL for an item that is no option and for a value that it cannot have,
  // RTF_EFPTR_BAD_LENGTH for a text that is too long.
  int Write(int item, std::string_view text);
  // Those that were set.
  const std::map<int, std::string>& values() const { return values_; }

 private:
  std::map<int, std::string> values_;
};

}  // namespace lorimat
