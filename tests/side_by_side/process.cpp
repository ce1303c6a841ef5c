#include "process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace lorimat {
namespace {

void MakePipe(int ends[2]) {
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

void Close(int* descriptor) {
  if (*descriptor >= 0) close(*descriptor);
  *descriptor = -1;
}

}  // namespace

Process::Process(std::vector<std::string> command, const std::string& errors) {
  signal(SIGPIPE, SIG_IGN);
  int input[2];
  int output[2];
  MakePipe(input);
  MakePipe(output);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  if (!errors.empty()) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  }
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t own;
  sigemptyset(&own);
  sigaddset(&own, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &own);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  std::vector<char*> arguments;
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  char language[] = "LC_ALL=C";
  char* environment[] = {language, nullptr};
  const int error = posix_spawn(&child_, command.front().c_str(), &actions, &attributes,
                                arguments.data(), environment);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  close(input[0]);
  close(output[1]);
  input_ = input[1];
  output_ = output[0];
  if (error != 0) throw std::runtime_error(command.front() + " cannot be started");
}

Process::~Process() {
  Close(&input_);
  Close(&output_);
  if (child_ > 0) {
    kill(child_, SIGKILL);
    Wait();
  }
}

bool Process::Give(char byte) { return write(input_, &byte, 1) == 1; }
void Process::CloseInput() { Close(&input_); }
void Process::CloseOutput() { Close(&output_); }
void Process::Signal(int signal) const { kill(child_, signal); }

bool Process::Take() {
  char byte = 0;
  return read(output_, &byte, 1) == 1;
}

bool Process::TakeLine(std::string* line) {
  for (;;) {
    if (const size_t end = read_.find('\n'); end != read_.npos) {
      *line = read_.substr(0, end);
      read_.erase(0, end + 1);
      return true;
    }
    char bytes[4096];
    const ssize_t size = read(output_, bytes, sizeof bytes);
    if (size <= 0) return false;
    read_.append(bytes, static_cast<size_t>(size));
  }
}

int Process::Wait() {
  int status = 0;
  if (child_ <= 0 || waitpid(child_, &status, 0) != child_) return -1000;
  child_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace lorimat
