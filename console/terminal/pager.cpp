#include "console/terminal/pager.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "console/message/catalogs.h"
#include "console/terminal/shell_text.h"

namespace lorimat::console {
namespace {

constexpr int kNotFound = 127;  // as a shell answers where there is no such program

// The rows that a text takes in a window so wide.
size_t RowsOf(std::string_view text, size_t columns) {
  size_t rows = 0;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    rows += std::max<size_t>(1, (ColumnsOf(text.substr(0, end)) + columns - 1) / columns);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return rows;
}

// With a row for the prompt. A window that does not tell its size has room for anything.
bool FitsWindow(int output, std::string_view text) {
  winsize window{};
  if (ioctl(output, TIOCGWINSZ, &window) != 0 || window.ws_row == 0 || window.ws_col == 0) {
    return true;
  }
  return RowsOf(text, window.ws_col) < window.ws_row;
}

bool IsInstalled(const std::string& program) {
  if (program.find('/') != std::string::npos) return access(program.c_str(), X_OK) == 0;
  const char* path = std::getenv("PATH");
  std::string_view folders = path != nullptr ? path : "/usr/bin:/bin";
  while (!folders.empty()) {
    const size_t end = std::min(folders.find(':'), folders.size());
    const std::string folder(folders.substr(0, end));
    if (access(((folder.empty() ? "." : folder) + "/" + program).c_str(), X_OK) == 0) return true;
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return false;
}

// As a shell takes it; empty for none.
std::string PagerCommand() {
  const char* terminal = std::getenv("TERM");
  if (terminal == nullptr || std::string_view(terminal) == "dumb") return {};
  const char* chosen = std::getenv("PAGER");
  const std::string command = chosen != nullptr ? chosen : "less";
  const size_t begin = std::min(command.find_first_not_of(" \t"), command.size());
  const std::string program = command.substr(begin, command.find_first_of(" \t", begin) - begin);
  return program == "cat" || program.empty() || !IsInstalled(program) ? "" : command;
}

// What keys mean to the pager alone, and its early end. Ctrl-Z stops both.
class PagerSignals {
 public:
  PagerSignals() {
    for (size_t i = 0; i < kSignals.size(); ++i) {
      struct sigaction action {};
      action.sa_handler = kSignals[i] == SIGTSTP ? SIG_DFL : SIG_IGN;
      sigemptyset(&action.sa_mask);
      sigaction(kSignals[i], &action, &before_[i]);
    }
  }
  ~PagerSignals() {
    for (size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before_[i], nullptr);
  }
  PagerSignals(const PagerSignals&) = delete;
  PagerSignals& operator=(const PagerSignals&) = delete;

  static sigset_t set() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : kSignals) sigaddset(&signals, signal);
    return signals;
  }

 private:
  static constexpr std::array<int, 4> kSignals = {SIGINT, SIGQUIT, SIGPIPE, SIGTSTP};
  std::array<struct sigaction, kSignals.size()> before_;
};

std::vector<char*> PointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Starts the command with the text's pipe as its input. 0 when it cannot.
pid_t StartPager(const std::string& command, int input, int output) {
  std::vector<std::string> arguments = {"sh", "-c", command};
  std::vector<std::string> environment = UserEnvironment();
  // The last page stays on the screen, and a text that fits after all is shown at once.
  if (std::getenv("LESS") == nullptr) environment.emplace_back("LESS=FRX");

  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;
  if (posix_spawn_file_actions_init(&files) != 0) return 0;
  if (posix_spawnattr_init(&attributes) != 0) {
    posix_spawn_file_actions_destroy(&files);
    return 0;
  }
  const sigset_t defaults = PagerSignals::set();
  sigset_t none;
  sigemptyset(&none);
  pid_t child = 0;
  const bool ready =
      posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO) == 0 &&
      posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO) == 0 &&
      posix_spawnattr_setsigdefault(&attributes, &defaults) == 0 &&
      posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
      posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK) == 0;
  if (!ready || posix_spawn(&child, "/bin/sh", &files, &attributes, PointersTo(arguments).data(),
                            PointersTo(environment).data()) != 0) {
    child = 0;
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return child;
}

// Whether the pager has shown the text.
bool WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return true;
  }
  return !WIFEXITED(status) || WEXITSTATUS(status) != kNotFound;
}

bool ShowInPager(int output, std::string_view text) {
  if (isatty(output) != 1 || FitsWindow(output, text)) return false;
  const std::string command = PagerCommand();
  int ends[2];
  if (command.empty() || pipe2(ends, O_CLOEXEC) != 0) return false;
  Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const PagerSignals signals;
  const pid_t child = StartPager(command, reading.get(), output);
  if (child == 0) return false;
  reading = Descriptor();
  // A reader that has seen enough leaves the rest.
  WriteAll(writing.get(), text);
  writing = Descriptor();
  return WaitFor(child);
}

}  // namespace

void ShowHelp(Streams& streams, const std::string& text) {
  if (!ShowInPager(streams.output_descriptor(), text)) streams.Output(text);
}

}  // namespace lorimat::console
