// What a check finds in a file, and how it is shown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/message/json_text.h"

namespace lorimat::console {

enum class Severity { kError, kWarning, kNote };

struct Finding {
  Severity severity = Severity::kError;
  std::string rule;        // a fixed name, for programs
  uint64_t line = 0;       // 0 for the file as a whole
  uint64_t column = 0;     // in bytes, from 1; 0 when there is no one place
  int code = 0;            // what the library answers to the line; 0 when nothing
  std::string what;        // the fault
  std::string effect;      // what the library does with it; may be empty
  std::string suggestion;  // a better word; may be empty
  std::string remedy;      // what to write instead, where no word alone says it; may be empty
  std::string source;      // the line, to be shown with a caret under the column; may be empty
};

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

// What was found, with a better word behind it.
std::string FindingWords(const Finding& finding);

// "words.ini:7: error: ...", with the line and a caret behind when there is a place.
std::string FindingText(const std::string& file, const Finding& finding, bool colours);
Json FindingJson(const Finding& finding);

}  // namespace lorimat::console
