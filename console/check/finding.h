// What a check has found in a file, and how it is shown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/message/finding.h"
#include "console/message/json_text.h"

namespace lorimat::console {

// The findings of one file. A file may have millions of faults: the first of them are kept, all
// are counted.
class Findings {
 public:
  static constexpr size_t kKept = 1000;

  void Add(Finding finding);
  uint64_t errors() const { return errors_; }
  uint64_t warnings() const { return warnings_; }
  // Those kept, by lines; the file's own come last.
  std::vector<Finding> sorted() const;
  uint64_t dropped() const { return dropped_; }

 private:
  std::vector<Finding> kept_;
  uint64_t errors_ = 0;
  uint64_t warnings_ = 0;
  uint64_t dropped_ = 0;
};

// The source around the place, and below it a caret under the column, a number of bytes from 1.
std::string PlaceText(const std::string& source, uint64_t column, bool colours);

// "words.ini:7: error: ...", with the line and a caret behind when there is a place.
std::string FindingText(const std::string& file, const Finding& finding, bool colours);
// In English, with texts as they are.
Json FindingJson(const Finding& finding);

}  // namespace lorimat::console
