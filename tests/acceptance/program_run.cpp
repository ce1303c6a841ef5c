#include "program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

void Fail(const std::string& what) { throw std::runtime_error(what + ": " + strerror(errno)); }

struct Pipe {
  int read_end = -1;
  int write_end = -1;
};

Pipe MakePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) Fail("pipe");
  return {ends[0], ends[1]};
}

// A terminal that hands text through unchanged.
Pipe MakeTerminal() {
  int master = -1;
  int terminal = -1;
  if (openpty(&master, &terminal, nullptr, nullptr, nullptr) != 0) Fail("openpty");
  termios mode;
  tcgetattr(terminal, &mode);
  cfmakeraw(&mode);
  tcsetattr(terminal, TCSANOW, &mode);
  fcntl(master, F_SETFD, FD_CLOEXEC);
  fcntl(terminal, F_SETFD, FD_CLOEXEC);
  return {master, terminal};
}

// Appends what is there; false at the end.
bool ReadSome(int fd, std::string* text) {
  std::array<char, 4096> buffer;
  const ssize_t got = read(fd, buffer.data(), buffer.size());
  if (got < 0 && errno == EINTR) return true;
  // The last close of a pseudo-terminal reads as EIO.
  if (got <= 0) return false;
  text->append(buffer.data(), static_cast<size_t>(got));
  return true;
}

// Until the program waits for its input (or has ended), so that a signal finds it there.
void WaitUntilAsleep(pid_t child) {
  for (;;) {
    std::ifstream file("/proc/" + std::to_string(child) + "/stat");
    std::string number, name, state;
    if (!(file >> number >> name >> state) || state == "S" || state == "Z") return;
    sched_yield();
  }
}

[[noreturn]] void Become(const std::string& path, const std::vector<std::string>& arguments,
                         const ProgramSetting& setting, int input, int output, int errors) {
  if (!setting.folder.empty() && chdir(setting.folder.c_str()) != 0) _exit(127);
  setenv("LORIMATRT_REGISTRY", "/nonexistent/registry.ini", 1);
  setenv("TERM", "xterm", 1);
  for (const char* name : {"LORIMAT_LIBRARY", "LORIMAT_REGISTER", "LC_ALL", "LC_MESSAGES", "LANG",
                           "LANGUAGE", "NO_COLOR"}) {
    unsetenv(name);
  }
  for (const auto& [name, value] : setting.environment) setenv(name.c_str(), value.c_str(), 1);
  dup2(input, STDIN_FILENO);
  if (setting.close_output) {
    close(STDOUT_FILENO);
  } else {
    dup2(output, STDOUT_FILENO);
  }
  dup2(errors, STDERR_FILENO);
  if (setting.as_nobody && geteuid() == 0) {
    constexpr unsigned kNobody = 65534;
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(127);
  }
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(path.c_str()));
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  execv(path.c_str(), argv.data());
  _exit(127);
}

}  // namespace

ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const ProgramSetting& setting) {
  signal(SIGPIPE, SIG_IGN);
  const std::string path =
      program.front() == '/' ? program : std::string(LORIMAT_BIN_FOLDER) + "/" + program;
  const Pipe input = MakePipe();
  fcntl(input.write_end, F_SETFL, O_NONBLOCK);
  Pipe output = setting.output_to_terminal ? MakeTerminal() : MakePipe();
  if (!setting.output_file.empty()) {
    close(output.write_end);
    output.write_end = open(setting.output_file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (output.write_end < 0) Fail(setting.output_file);
  }
  const Pipe errors = setting.errors_to_terminal ? MakeTerminal() : MakePipe();

  const pid_t child = fork();
  if (child < 0) Fail("fork");
  if (child == 0) {
    signal(SIGPIPE, SIG_DFL);
    Become(path, arguments, setting, input.read_end, output.write_end, errors.write_end);
  }
  close(input.read_end);
  close(output.write_end);
  close(errors.write_end);

  ProgramRun run;
  size_t written = 0;
  bool interrupted = setting.interrupt_at.empty();
  pollfd fds[3] = {
      {input.write_end, POLLOUT, 0}, {output.read_end, POLLIN, 0}, {errors.read_end, POLLIN, 0}};
  const auto end_input = [&] {
    if (setting.interrupt_at.empty()) close(input.write_end);
    fds[0].fd = -1;
  };
  if (setting.input.empty()) end_input();
  while (fds[1].fd >= 0 || fds[2].fd >= 0) {
    if (poll(fds, 3, -1) < 0 && errno != EINTR) Fail("poll");
    if (fds[0].fd >= 0 && fds[0].revents != 0) {
      const ssize_t put =
          write(fds[0].fd, setting.input.data() + written, setting.input.size() - written);
      if (put > 0) written += static_cast<size_t>(put);
      if (put < 0 && (errno == EAGAIN || errno == EINTR)) continue;
      if (put <= 0 || written == setting.input.size()) end_input();
    }
    if (fds[1].fd >= 0 && fds[1].revents != 0 && !ReadSome(fds[1].fd, &run.output)) {
      close(fds[1].fd);
      fds[1].fd = -1;
    }
    if (fds[2].fd >= 0 && fds[2].revents != 0 && !ReadSome(fds[2].fd, &run.errors)) {
      close(fds[2].fd);
      fds[2].fd = -1;
    }
    if (!interrupted && run.errors.find(setting.interrupt_at) != std::string::npos) {
      interrupted = true;
      WaitUntilAsleep(child);
      kill(child, setting.signal);
    }
  }
  if (fds[0].fd >= 0 || !setting.interrupt_at.empty()) close(input.write_end);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
  return run;
}

ProgramSetting WithPreload(const std::string& library, ProgramSetting setting) {
  setting.environment["LD_PRELOAD"] = library;
  // A build with a sanitizer wants to be the first of the libraries.
  setting.environment["ASAN_OPTIONS"] = "verify_asan_link_order=0";
  return setting;
}

ProgramRun RunConsole(const std::vector<std::string>& arguments, const ProgramSetting& setting) {
  return RunProgram("lorimat", arguments, setting);
}

TestFolder::TestFolder() {
  static int number = 0;
  path_ = "/tmp/lorimat-acceptance-" + std::to_string(getpid()) + "-" + std::to_string(++number);
  std::filesystem::create_directory(path_);
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TestFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream file(Path(name), std::ios::binary);
  file << content;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + Path(name));
  return Path(name);
}

std::string TestFolder::Read(const std::string& name) const { return ReadFile(Path(name)); }

std::vector<std::string> TestFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

std::string SourceFile(const std::string& name) {
  return std::string(LORIMAT_SOURCE_DIR) + "/" + name;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string ExpectedPaper(const std::string& name) {
  return ReadFile(SourceFile("tests/acceptance/expected/" + name));
}
