// The standard streams of the program, kept apart from those of the library.
//
// The library writes lines of its own to standard output ("Load working..." when it is
// loaded, log lines, "Unload working..." when it goes) and one to standard error when it is
// unloaded. Both would spoil a paper that is piped on. So the program keeps a private copy of its
// standard output for itself and turns descriptor 1 elsewhere while the library is
// there, and turns descriptor 2 away for the moment of unloading.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lorimat::console {

// An open file descriptor, closed with the object.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  int get() const { return fd_; }
  bool is_open() const { return fd_ >= 0; }
  int release();

 private:
  int fd_ = -1;
};

// Writes all of the text; false, with errno set, when that fails.
bool WriteAll(int fd, std::string_view text);

class Streams {
 public:
  // Gives a closed standard descriptor a place holder, so that no file opened later takes its
  // number, and takes the copies. Notices begin with the program's name. Throws Failure.
  explicit Streams(std::string program = "lorimat");
  // Flushes what is still buffered. Descriptor 1 stays turned away: the library's last lines
  // may come as late as the end of the process.
  ~Streams();
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

  // The program's standard output; throws Failure when the text cannot be written, which is
  // ReaderGone when nobody reads it.
  void Output(std::string_view text);
  // A text that somebody else has written, such as a paper: a terminal gets it as ShownLines has
  // it, a file or a pipe as it is.
  void OutputText(std::string_view text);
  // The text as OutputText writes it.
  std::string ForOutput(std::string_view text) const;
  int output_descriptor() const { return own_output_.get(); }
  // Whether a file that is named so ("/dev/stdout") is the program's standard output. By its name
  // it cannot be opened while descriptor 1 is turned away.
  static bool IsOutput(std::string_view file);
  // The program's standard error. A failure is ignored: there is no place left to tell it.
  void Error(std::string_view text);
  bool error_is_terminal() const;
  // From here on notices are wrapped where standard error is a terminal.
  void WrapNotices() { wraps_ = true; }
  // What notices begin with.
  const std::string& program() const { return program_; }
  // The width of the terminal that standard error is; 0 where it is none.
  size_t error_columns() const;
  // The columns that a notice may take; 0 for any number.
  size_t notice_columns() const;
  // Whether texts for them may be coloured.
  bool output_has_colours() const;
  bool error_has_colours() const;

  // Turns descriptor 1 to the trace from here on. "-" is standard error, an empty name
  // discards what the library writes. Throws Failure when the file cannot be opened.
  void StartTrace(const std::string& file);
  // A line of the trace, with its line end; nothing without a trace.
  void Trace(std::string_view line);
  bool tracing() const { return tracing_; }
  // Why the trace is not whole; empty while all of it was written.
  std::string trace_failure();
  // Turns descriptor 2 to the trace, and back.
  void DivertErrors();
  void RestoreErrors();

 private:
  std::string program_;
  Descriptor own_output_;
  Descriptor own_error_;
  Descriptor trace_;
  void FlushTrace();

  std::string trace_name_;
  bool tracing_ = false;
  int trace_error_ = 0;  // an errno value
  bool wraps_ = false;
};

}  // namespace lorimat::console
