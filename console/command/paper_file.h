// Where the paper goes: a file, or standard output.
#pragma once

#include <string>
#include <string_view>

#include "console/terminal/streams.h"

namespace lorimat::console {

class PaperFile {
 public:
  // Opens the file, so that a run does not start whose paper could not be kept; what the file
  // holds stays until the paper is written. Throws Failure when it cannot be opened.
  PaperFile(const std::string& file, Streams& streams);
  // Takes away a file that was made and got no paper.
  ~PaperFile();
  PaperFile(const PaperFile&) = delete;
  PaperFile& operator=(const PaperFile&) = delete;

  // Writes the whole paper; throws Failure, which is ReaderGone for standard output that nobody
  // reads.
  void write(std::string_view paper);

 private:
  void remove() const;

  std::string name_;
  Descriptor file_;
  bool made_ = false;  // and has no paper yet
  Streams& streams_;
};

}  // namespace lorimat::console
