// A run as one "@" batch: the request line, and the file of errors that the library writes.
#pragma once

#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

namespace lorimat::console {

// A folder for files that the library writes, removed with the object and with them. Its path has
// no capital letters, since the library lower-cases the names of an "@" line.
class ScratchFolder {
 public:
  // Throws Failure when no folder can be made.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string error_file() const { return path_ + "/errors.txt"; }
  std::string batch_file() const { return path_ + "/batch.txt"; }

 private:
  std::string path_;
};

// Copies what comes out of a pipe, to its end, into a file. Throws Failure, which names the pipe as
// place, when that cannot be done, or once *stop is set by a handler of the signals of interrupt.h:
// also while nobody writes.
void CopyPipe(const std::string& pipe, const std::string& file, const std::string& place,
              const volatile std::sig_atomic_t* stop);

// Throws Failure, saying why, when an "@" line cannot name the file: capital letters, control
// characters, a blank at the end.
void RequireBatchName(const std::string& name);

// The "@" line for both files, each quoted, so that a separator, a comment sign or a
// quote in a name stays part of it.
std::string BatchLine(const std::string& name, const std::string& error_file);

// One operand of it.
std::string QuotedOperand(const std::string& name);

// Whether the library would take a line for a batch.
bool IsBatchLine(const std::string& line);

// A message of the error file.
struct BatchError {
  uint64_t line = 0;  // of the batch file; 0 when the message names none
  long code = 0;
  std::string text;  // the message without its line number
};

// Reads a message such as "ERROR 1/12 in line 7 : SINTAX ERROR 12 : ...".
BatchError ParseBatchError(const std::string& message);

// The error file's messages, one for each failing line; the library writes most of them twice.
// Throws Failure when the file cannot be read.
std::vector<BatchError> ReadBatchErrors(const std::string& error_file);

}  // namespace lorimat::console
