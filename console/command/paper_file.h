// Where the paper goes: a file, or standard output.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "console/terminal/replacing_file.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

class PaperFile {
 public:
  // Makes the file, so that a run does not start whose paper could not be kept. It takes its name
  // when the paper is written: a file that has the name by now stays whole till then. What is no
  // ordinary file, a pipe or a device, is opened and written as it is, and so is a file of several
  // names, which stay those of one file. Throws Failure when that
  // cannot be done.
  PaperFile(const std::string& file, Streams& streams);
  PaperFile(const PaperFile&) = delete;
  PaperFile& operator=(const PaperFile&) = delete;

  // Whether it is waited for as long as a reader pleases: standard output, a pipe.
  bool has_reader() const { return name_.empty() || !file_; }
  // Writes the whole paper; throws Failure, which is ReaderGone for standard output that nobody
  // reads. Behind a Failure an ordinary file of one name is what it was.
  void Write(std::string_view paper);

 private:
  [[noreturn]] void Fail(int error) const;

  std::string name_;  // empty for standard output
  std::optional<ReplacingFile> file_;
  Descriptor other_;  // what is no ordinary file
  Streams& streams_;
};

}  // namespace lorimat::console
