// Reads a file of command lines as the library's own batch run does: a line ends at a line feed,
// a carriage return before it goes too, and the last line may lack its end.
#pragma once

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

// The longest line that the library takes; it answers 274 to a longer one.
constexpr size_t kLongestLine = 2046;

struct SourceLine {
  uint64_t number = 0;  // from 1, every physical line counts
  std::string text;     // its first bytes, as many as the reader keeps
  uint64_t length = 0;  // the whole line's
  uint64_t nul_at = 0;  // column of the first NUL byte, from 1; 0 when there is none
};

// Waits until there is something to read, or its end; false when *stop was set, by a handler of the
// signals of interrupt.h, before or while it waits. A null pointer waits for nothing.
bool WaitForInput(int file, const volatile std::sig_atomic_t* stop);

class LineReader {
 public:
  // What is kept of a line, where nothing else is asked for: more than kLongestLine, enough for the
  // library to see that it is too long, so that a file without a line feed does not fill the
  // memory.
  static constexpr size_t kKept = 4096;

  // Opens the file; "-" is standard input. Throws Failure when it is missing, a directory or
  // unreadable. Reading ends, as at the end of the file, once *stop is set by a handler of
  // the signals of interrupt.h, also while it waits for a pipe or a terminal.
  explicit LineReader(const std::string& file, const volatile std::sig_atomic_t* stop = nullptr,
                      size_t kept = kKept);

  // For those who take no longer line: one is read no further than its first bytes behind so many,
  // whose count is its length then, and nothing may be read behind it. Without it all are read to
  // their end, which a line of a device such as /dev/zero does not have.
  void GiveUpBehind(uint64_t length) { most_ = length; }

  // Reads the next line; false at the end of the file. Throws Failure on a read error.
  bool Next(SourceLine* line);

  const std::string& name() const { return name_; }  // for messages
  bool is_regular() const { return regular_; }
  uint64_t size() const { return size_; }  // of a regular file, else 0
  uint64_t bytes_read() const { return bytes_read_; }

 private:
  bool fill();

  std::string name_;
  const volatile std::sig_atomic_t* stop_;
  size_t kept_;
  uint64_t most_ = UINT64_MAX;
  Descriptor file_;
  bool regular_ = false;
  uint64_t size_ = 0;
  uint64_t bytes_read_ = 0;
  uint64_t number_ = 0;
  std::array<char, 65536> buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
};

}  // namespace lorimat::console
