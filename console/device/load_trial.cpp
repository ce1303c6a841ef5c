#include "console/device/load_trial.h"

#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>
#include <string_view>

#include "console/terminal/interrupt.h"
#include "console/terminal/streams.h"

namespace lorimat::console {
namespace {

using FileHeader = ElfW(Ehdr);
using Segment = ElfW(Phdr);

// How far the trial has come: one letter of each, and a text behind some.
constexpr char kRefused = 'E';  // what the loader says
constexpr char kMissing = 'M';  // the function's name
constexpr char kLoaded = 'L';
constexpr char kReport = 'R';  // the length of the work's text in bytes, a blank, and the text
constexpr char kEnded = 'Z';

template <typename T>
std::optional<T> ReadAt(int file, uint64_t place) {
  T value;
  const ssize_t got = pread(file, &value, sizeof value, static_cast<off_t>(place));
  if (got != static_cast<ssize_t>(sizeof value)) return std::nullopt;
  return value;
}

bool BeginsLikeElf(const std::array<unsigned char, EI_NIDENT>& begin) {
  return std::memcmp(begin.data(), ELFMAG, SELFMAG) == 0;
}

// The header of this program, whose kind a library has to be of.
std::optional<FileHeader> OwnHeader() {
  const Descriptor self(open("/proc/self/exe", O_RDONLY | O_CLOEXEC));
  return self.is_open() ? ReadAt<FileHeader>(self.get(), 0) : std::nullopt;
}

// What the file's tables tell, so that most trials that must fail need no process.
LoadFailure LookAtFile(const std::string& path) {
  // A pipe would keep a reader waiting.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status;
  if (!file.is_open() || fstat(file.get(), &status) != 0) {
    return {LoadCause::kUnreadable, {errno}};
  }
  if (!S_ISREG(status.st_mode)) return {LoadCause::kNoRegularFile};
  const uint64_t size = static_cast<uint64_t>(status.st_size);
  const auto cut = [&](uint64_t needed) -> LoadFailure {
    return {LoadCause::kCutShort, {status.st_size, static_cast<int64_t>(needed)}};
  };
  const auto begin = ReadAt<std::array<unsigned char, EI_NIDENT>>(file.get(), 0);
  if (!begin || !BeginsLikeElf(*begin)) return {LoadCause::kNoSharedObject};
  const std::optional<FileHeader> own = OwnHeader();
  if (own && std::memcmp(begin->data(), own->e_ident, EI_VERSION) != 0) {
    return {LoadCause::kOtherMachine};
  }
  const std::optional<FileHeader> header = ReadAt<FileHeader>(file.get(), 0);
  if (!header) return cut(sizeof(FileHeader));
  if (own && header->e_machine != own->e_machine) return {LoadCause::kOtherMachine};
  if (header->e_type != ET_DYN) return {LoadCause::kNoSharedObject};
  uint64_t needed = header->e_phoff + uint64_t{header->e_phnum} * sizeof(Segment);
  for (size_t i = 0; i < header->e_phnum; ++i) {
    const auto segment = ReadAt<Segment>(file.get(), header->e_phoff + i * sizeof(Segment));
    if (segment && segment->p_type == PT_LOAD) {
      needed = std::max<uint64_t>(needed, segment->p_offset + segment->p_filesz);
    }
  }
  return needed > size ? cut(needed) : LoadFailure();
}

// --- In the other process

void Tell(int pipe, char letter, std::string_view text = {}) {
  std::string all(1, letter);
  all += text;
  WriteAll(pipe, all);
}

// Nothing of it is to be seen, and it stays no longer than this process.
void BecomeTrial(pid_t parent, int seconds) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // That may have ended ahead of this.
  if (getppid() != parent) _exit(1);
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  // Those that a terminal sends are for the program.
  for (const int signal : {SIGINT, SIGQUIT, SIGTSTP}) std::signal(signal, SIG_IGN);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const rlimit no_core = {0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  const rlim_t limit = static_cast<rlim_t>(seconds);
  const rlimit processor = {limit, limit};
  setrlimit(RLIMIT_CPU, &processor);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
}

[[noreturn]] void RunTrial(pid_t parent, int pipe, const std::string& path,
                           std::span<const char* const> functions, const TrialWork& work,
                           const TrialEnd& end, int seconds) noexcept {
  BecomeTrial(parent, seconds);
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* cause = dlerror();
    Tell(pipe, kRefused, cause != nullptr ? cause : "");
    _exit(0);
  }
  for (const char* function : functions) {
    if (dlsym(handle, function) != nullptr) continue;
    Tell(pipe, kMissing, function);
    _exit(0);
  }
  Tell(pipe, kLoaded);
  try {
    const std::string report = work(handle);
    Tell(pipe, kReport, std::to_string(report.size()) + " " + report);
    if (end) end(handle);
    Tell(pipe, kEnded);
  } catch (...) {
    _exit(1);
  }
  _exit(0);
}

// --- In this one

// Reads to the end of the pipe; false when that does not come in time, or a signal came.
bool ReadToEnd(int pipe, int seconds, std::string* text) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::array<char, 4096> buffer;
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    pollfd input = {pipe, POLLIN, 0};
    // A signal may come right ahead of the wait.
    constexpr int64_t kSlice = 100;
    const int ready =
        poll(&input, 1, static_cast<int>(std::clamp<int64_t>(left.count(), 0, kSlice)));
    if (ready == 0 && (interrupted != 0 || std::chrono::steady_clock::now() >= end)) return false;
    if (ready == 0) continue;
    if (ready < 0 && errno != EINTR) return true;
    if (ready < 0) continue;
    const ssize_t got = read(pipe, buffer.data(), buffer.size());
    if (got == 0 || (got < 0 && errno != EINTR)) return true;
    if (got > 0) text->append(buffer.data(), static_cast<size_t>(got));
  }
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return 0;
  }
  return status;
}

// How far it came: 0 it was being loaded, 1 at work, 2 at its end.
int64_t StageOf(std::string_view told) {
  if (told.empty()) return 0;
  return told.size() == 1 ? 1 : 2;
}

Trial ReadTrial(std::string_view told, int status) {
  const int64_t signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  if (told.empty()) return {.failure = {LoadCause::kDiesAtLoad, {signal}}};
  const std::string text(told.substr(1));
  if (told.front() == kRefused) return {.failure = {LoadCause::kLoader, {}, text}};
  if (told.front() == kMissing) return {.failure = {LoadCause::kLacks, {}, text}};
  const Trial dead = {.failure = {LoadCause::kDiesAtWork, {signal}}};
  if (text.empty() || text.front() != kReport) return dead;
  size_t size = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), size);
  const size_t begin = static_cast<size_t>(end - text.data()) + 1;
  if (error != std::errc() || begin > text.size() || size > text.size() - begin) return dead;
  Trial trial = {.failure = {}, .report = text.substr(begin, size)};
  const std::string_view behind = std::string_view(text).substr(begin + size);
  if (behind.empty()) trial.failure = {LoadCause::kDiesAtEnd, {signal}};
  return trial;
}

}  // namespace

Trial TryLoading(const std::string& path, std::span<const char* const> functions,
                 const TrialWork& work, int seconds, const TrialEnd& end) {
  if (LoadFailure failure = LookAtFile(path)) return {.failure = std::move(failure)};
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {.failure = {LoadCause::kNotTried, {errno}}};
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) return {.failure = {LoadCause::kNotTried, {errno}}};
  if (child == 0) RunTrial(parent, writing.get(), path, functions, work, end, seconds);
  writing = Descriptor();
  std::string told;
  const bool in_time = ReadToEnd(reading.get(), seconds, &told);
  if (!in_time) kill(child, SIGKILL);
  const int status = WaitFor(child);
  if (!in_time && interrupted != 0) return {.failure = {LoadCause::kStopped}};
  if (!in_time) return {.failure = {LoadCause::kHangs, {seconds, StageOf(told)}}};
  return ReadTrial(told, status);
}

}  // namespace lorimat::console
