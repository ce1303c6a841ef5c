#include "console/terminal/streams.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <utility>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/styles.h"
#include "register/value/planted_link.h"

namespace lorimat::console {

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) close(fd_);
    fd_ = other.release();
  }
  return *this;
}

Descriptor::~Descriptor() {
  if (fd_ >= 0) close(fd_);
}

int Descriptor::release() { return std::exchange(fd_, -1); }

bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fd, text.data(), text.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    text.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

namespace {

// The library writes through the same stdio and iostream objects as this program.
void FlushSharedBuffers() {
  std::cout.flush();
  std::fflush(stdout);
}

Descriptor CopyOf(int fd) {
  Descriptor copy(fcntl(fd, F_DUPFD_CLOEXEC, 3));
  if (!copy.is_open()) {
    throw Failure(Tr("cannot keep the standard streams apart: {}", SystemMessage(errno)));
  }
  return copy;
}

}  // namespace

Streams::Streams(std::string program) : program_(std::move(program)) {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(fd, F_GETFD) != -1) continue;
    // Opened the wrong way round, so that using the closed stream still fails.
    const int place_holder = open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    if (place_holder >= 0 && place_holder != fd) {
      dup2(place_holder, fd);
      close(place_holder);
    }
  }
  own_output_ = CopyOf(STDOUT_FILENO);
  own_error_ = CopyOf(STDERR_FILENO);
}

Streams::~Streams() { FlushSharedBuffers(); }

void Streams::Output(std::string_view text) {
  if (!WriteAll(own_output_.get(), text)) {
    if (errno == EPIPE) {
      throw ReaderGone(Tr("cannot write to standard output: {}", SystemMessage(errno)));
    }
    throw Failure(Tr("cannot write to standard output: {}", SystemMessage(errno)));
  }
}

std::string Streams::ForOutput(std::string_view text) const {
  return isatty(own_output_.get()) == 1 ? ShownLines(text) : std::string(text);
}

void Streams::OutputText(std::string_view text) {
  if (isatty(own_output_.get()) == 1) {
    Output(ShownLines(text));
  } else {
    Output(text);
  }
}

bool Streams::IsOutput(std::string_view file) {
  return file == "/dev/stdout" || file == "/dev/fd/1" || file == "/proc/self/fd/1";
}

void Streams::Error(std::string_view text) { WriteAll(own_error_.get(), text); }

bool Streams::error_is_terminal() const { return isatty(own_error_.get()) == 1; }

size_t Streams::error_columns() const {
  winsize window{};
  return ioctl(own_error_.get(), TIOCGWINSZ, &window) == 0 ? window.ws_col : 0;
}

size_t Streams::notice_columns() const { return wraps_ ? error_columns() : 0; }

bool Streams::output_has_colours() const { return HasColours(own_output_.get()); }

bool Streams::error_has_colours() const { return HasColours(own_error_.get()); }

void Streams::StartTrace(const std::string& file) {
  FlushSharedBuffers();
  if (file == "-") {
    trace_ = CopyOf(own_error_.get());
  } else {
    const char* path = file.empty() ? "/dev/null" : file.c_str();
    if (lorimat::IsPlantedLink(path)) {
      throw Failure(Tr("{}: cannot write the trace: {}", Shown(file), SystemMessage(ELOOP)));
    }
    trace_ = Descriptor(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666));
  }
  tracing_ = !file.empty();
  trace_name_ = file;
  if (!trace_.is_open() || dup2(trace_.get(), STDOUT_FILENO) < 0) {
    if (file.empty())
      throw Failure(Tr("{}: cannot be opened: {}", "/dev/null", SystemMessage(errno)));
    throw Failure(Tr("{}: cannot write the trace: {}", Shown(file), SystemMessage(errno)));
  }
}

void Streams::Trace(std::string_view line) {
  if (!tracing_) return;
  FlushTrace();
  if (!WriteAll(trace_.get(), fmt::format("{}\n", line))) trace_error_ = errno;
}

// What the library writes fails in the buffers that it shares with this program.
void Streams::FlushTrace() {
  std::cout.flush();
  if (std::fflush(stdout) != 0) trace_error_ = errno;
}

std::string Streams::trace_failure() {
  if (!tracing_) return {};
  FlushTrace();
  if (trace_error_ == 0 && std::ferror(stdout) != 0) trace_error_ = EIO;
  if (trace_error_ == 0) return {};
  return Tr("{}: cannot write the trace: {}", Shown(trace_name_), SystemMessage(trace_error_));
}

void Streams::DivertErrors() {
  std::fflush(stderr);
  if (trace_.is_open()) dup2(trace_.get(), STDERR_FILENO);
}

void Streams::RestoreErrors() {
  std::fflush(stderr);
  dup2(own_error_.get(), STDERR_FILENO);
}

}  // namespace lorimat::console
