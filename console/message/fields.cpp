#include "console/message/fields.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lorimat::console {
namespace {

struct Field {
  // A number without zeros in front, or a name that is no number.
  std::string_view name;
  std::string_view format;
  auto operator<=>(const Field&) const = default;
};

// No message has more of them; one that had would be shown in English.
constexpr size_t kMostFields = 16;
constexpr std::array<std::string_view, kMostFields> kNumbers = {
    "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15"};

class Fields {
 public:
  // False for a text that {fmt} may refuse.
  bool Read(std::string_view text) {
    for (size_t at = text.find_first_of("{}"); at < text.size();
         at = text.find_first_of("{}", at)) {
      if (text.substr(at + 1, 1) == text.substr(at, 1)) {
        at += 2;
        continue;
      }
      const size_t end = text.find_first_of("{}", at + 1);
      if (text[at] == '}' || end == std::string_view::npos || text[end] == '{') return false;
      if (!Add(text.substr(at + 1, end - at - 1))) return false;
      at = end + 1;
    }
    std::sort(fields_.begin(), fields_.begin() + static_cast<std::ptrdiff_t>(count_));
    // {fmt} counts the fields, or takes their numbers.
    return !counted_ || !numbered_;
  }

  bool operator==(const Fields& other) const {
    return std::equal(fields_.begin(), fields_.begin() + static_cast<std::ptrdiff_t>(count_),
                      other.fields_.begin(),
                      other.fields_.begin() + static_cast<std::ptrdiff_t>(other.count_));
  }

 private:
  bool Add(std::string_view field) {
    if (count_ == kMostFields) return false;
    const size_t colon = std::min(field.find(':'), field.size());
    std::string_view name = field.substr(0, colon);
    if (name.empty()) {
      name = kNumbers[next_++];
      counted_ = true;
    } else if (name.front() >= '0' && name.front() <= '9') {
      numbered_ = true;
    }
    fields_[count_++] = {name, field.substr(colon)};
    return true;
  }

  std::array<Field, kMostFields> fields_;
  size_t count_ = 0;
  size_t next_ = 0;
  bool counted_ = false;
  bool numbered_ = false;
};

}  // namespace

bool HasSameFields(std::string_view original, std::string_view translation) {
  Fields of_original;
  Fields of_translation;
  return of_original.Read(original) && of_translation.Read(translation) &&
         of_original == of_translation;
}

}  // namespace lorimat::console
