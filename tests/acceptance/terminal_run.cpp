#include "terminal_run.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

constexpr int kPatience = 60000;  // milliseconds without any output

winsize Window(size_t columns, size_t height) {
  winsize size{};
  size.ws_col = static_cast<unsigned short>(columns);
  size.ws_row = static_cast<unsigned short>(height);
  return size;
}

[[noreturn]] void Become(const std::vector<std::string>& arguments,
                         const TerminalSetting& setting) {
  if (!setting.folder.empty() && chdir(setting.folder.c_str()) != 0) _exit(127);
  setenv("LORIMATRT_REGISTRY", "/nonexistent/registry.ini", 1);
  setenv("TERM", "xterm", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("PAGER", "", 1);
  for (const char* name : {"LORIMAT_LIBRARY", "LORIMAT_REGISTER", "XDG_STATE_HOME", "LANGUAGE",
                           "NO_COLOR", "EDITRC", "LESS"}) {
    unsetenv(name);
  }
  for (const auto& [name, value] : setting.environment) setenv(name.c_str(), value.c_str(), 1);
  const std::string path =
      setting.program.empty() ? std::string(LORIMAT_BIN_FOLDER) + "/lorimat" : setting.program;
  std::vector<char*> argv = {const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execv(path.c_str(), argv.data());
  _exit(127);
}

}  // namespace

TerminalRun::TerminalRun(const std::vector<std::string>& arguments, const TerminalSetting& setting)
    : setting_(setting), screen_(setting.columns, setting.height) {
  winsize size = Window(setting.columns, setting.height);
  child_ = forkpty(&master_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error(std::string("forkpty: ") + strerror(errno));
  if (child_ == 0) Become(arguments, setting_);
  fcntl(master_, F_SETFD, FD_CLOEXEC);
  WaitUntil("the first prompt", [&] { return AtPrompt(0); });
  prompt_row_ = screen_.cursor_row();
}

TerminalRun::~TerminalRun() {
  if (master_ >= 0) close(master_);
  if (child_ > 0) waitpid(child_, nullptr, 0);
}

bool TerminalRun::ReadSome() {
  std::array<char, 4096> buffer;
  pollfd input = {master_, POLLIN, 0};
  const int ready = poll(&input, 1, kPatience);
  if (ready < 0 && errno == EINTR) return true;
  if (ready == 0) throw std::runtime_error("nothing comes; the screen:\n" + screen_.text());
  const ssize_t got = read(master_, buffer.data(), buffer.size());
  if (got < 0 && errno == EINTR) return true;
  // The end of the program reads as EIO.
  if (got <= 0) return false;
  const std::string_view text(buffer.data(), static_cast<size_t>(got));
  raw_ += text;
  screen_.Take(text);
  return true;
}

void TerminalRun::WaitUntil(const std::string& what, const std::function<bool()>& condition) {
  while (!condition()) {
    std::string cause = "the program ended";
    try {
      if (ReadSome()) continue;
    } catch (const std::runtime_error& error) {
      cause = error.what();
    }
    throw std::runtime_error("waiting for " + what + ": " + cause + "; the screen:\n" +
                             screen_.text());
  }
}

bool TerminalRun::AtPrompt(size_t above) const {
  return (above == 0 || screen_.cursor_row() > above) && screen_.before_cursor() == setting_.prompt;
}

void TerminalRun::Type(const std::string& keys) {
  size_t written = 0;
  while (written < keys.size()) {
    // The program's echo has to be taken off, or neither could write on.
    pollfd both = {master_, POLLIN | POLLOUT, 0};
    if (poll(&both, 1, kPatience) <= 0) throw std::runtime_error("keys are not taken");
    if ((both.revents & POLLIN) != 0 && !ReadSome()) throw std::runtime_error("no one reads keys");
    if ((both.revents & POLLOUT) == 0) continue;
    const ssize_t put =
        write(master_, keys.data() + written, std::min<size_t>(keys.size() - written, 256));
    if (put < 0 && errno != EINTR && errno != EAGAIN) throw std::runtime_error("keys are lost");
    if (put > 0) written += static_cast<size_t>(put);
  }
}

std::vector<std::string> TerminalRun::TypeForPrompt(const std::string& keys) {
  const size_t begin = prompt_row_;
  Type(keys);
  WaitUntil("a prompt behind the keys", [&] { return AtPrompt(begin); });
  prompt_row_ = screen_.cursor_row();
  const std::vector<std::string> rows = screen_.rows();
  return {rows.begin() + static_cast<std::ptrdiff_t>(begin) + 1,
          rows.begin() + static_cast<std::ptrdiff_t>(prompt_row_)};
}

std::vector<std::string> TerminalRun::Enter(const std::string& line) {
  return TypeForPrompt(line + "\r");
}

void TerminalRun::WaitForTyped(const std::string& text) {
  WaitUntil("the typed text '" + text + "'",
            [&] { return screen_.before_cursor() == setting_.prompt + text; });
  // A list of candidates has moved the line down.
  prompt_row_ = screen_.cursor_row();
}

void TerminalRun::WaitFor(const std::string& text) {
  WaitUntil("'" + text + "'", [&] {
    const std::vector<std::string> rows = screen_.rows();
    for (size_t i = prompt_row_; i < rows.size(); ++i) {
      if (rows[i].find(text) != std::string::npos) return true;
    }
    return false;
  });
}

void TerminalRun::Resize(size_t columns, size_t height) {
  winsize size = Window(columns, height);
  ioctl(master_, TIOCSWINSZ, &size);
}

void TerminalRun::SendSignal(int signal) { kill(child_, signal); }

int TerminalRun::WaitForEnd() {
  while (ReadSome()) {
  }
  int status = 0;
  while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
  }
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
