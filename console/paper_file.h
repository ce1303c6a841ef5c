// Where the paper goes: a file, or standard output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "streams.h"

// A file that no paper may replace.
struct KeptFile {
  std::string name;
  std::string what;  // "the file of lines"
};

class PaperFile {
 public:
  // Opens the file, so that a run does not start whose paper could not be kept; what the file
  // holds stays until the paper is written. Throws Failure when it cannot be opened, or when
  // it is one of `kept`.
  PaperFile(const std::string& file, const std::vector<KeptFile>& kept, Streams& streams);

  // Writes the whole paper; throws Failure.
  void write(std::string_view paper);

 private:
  std::string name_;
  Descriptor file_;
  Streams& streams_;
};
