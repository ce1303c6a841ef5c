// Another program, with its standard input and output.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace lorimat {

class Process {
 public:
  // Messages are English; standard error goes to a file, or where that of the tests goes.
  explicit Process(std::vector<std::string> command, const std::string& errors = {});
  // Kills it.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // A byte to its standard input; false when it does not read any more.
  bool Give(char byte = '.');
  void CloseInput();
  // The next byte, or line, of its standard output; false behind the last one.
  bool Take();
  bool TakeLine(std::string* line);
  // Nobody reads its standard output from here on.
  void CloseOutput();
  void Signal(int signal) const;
  // Waits for its end: the exit code, or the number of the signal below 0.
  int Wait();

 private:
  pid_t child_ = 0;
  int input_ = -1;
  int output_ = -1;
  std::string read_;  // of its output, and not taken yet
};

}  // namespace lorimat
