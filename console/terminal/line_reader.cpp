#include "console/terminal/line_reader.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {

// Signals are let in during the wait alone, so that none can slip between the test and the wait.
bool WaitForInput(int file, const volatile std::sig_atomic_t* stop) {
  if (stop == nullptr) return true;
  const sigset_t signals = InterruptSignals();
  sigset_t before;
  sigprocmask(SIG_BLOCK, &signals, &before);
  pollfd input = {file, POLLIN, 0};
  while (*stop == 0 && ppoll(&input, 1, nullptr, &before) < 0 && errno == EINTR) {
  }
  const bool go_on = *stop == 0;
  sigprocmask(SIG_SETMASK, &before, nullptr);
  return go_on;
}

LineReader::LineReader(const std::string& file, const volatile std::sig_atomic_t* stop, size_t kept)
    : name_(file == "-" ? Tr("standard input") : Shown(file)),
      stop_(stop),
      kept_(kept),
      file_(file == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)
                        : open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (!file_.is_open()) {
    throw Failure(Tr("{}: cannot be opened: {}", name_, SystemMessage(errno)));
  }
  struct stat status;
  if (fstat(file_.get(), &status) != 0) {
    throw Failure(Tr("{}: cannot be read: {}", name_, SystemMessage(errno)));
  }
  if (S_ISDIR(status.st_mode)) {
    throw Failure(Tr("{}: is a directory, not a file of lines", name_));
  }
  regular_ = S_ISREG(status.st_mode);
  if (regular_) size_ = static_cast<uint64_t>(status.st_size);
}

bool LineReader::fill() {
  if (!WaitForInput(file_.get(), stop_)) return false;
  ssize_t got;
  do {
    got = read(file_.get(), buffer_.data(), buffer_.size());
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    throw Failure(Tr("{}:{}: cannot be read: {}", name_, number_ + 1, SystemMessage(errno)));
  }
  begin_ = 0;
  end_ = static_cast<size_t>(got);
  return got > 0;
}

bool LineReader::Next(SourceLine* line) {
  line->text.clear();
  line->length = 0;
  line->nul_at = 0;
  char last = 0;
  bool ended = false;
  while (!ended && line->length <= most_) {
    if (begin_ == end_ && !fill()) {
      if (line->length == 0) return false;
      break;
    }
    const char* from = buffer_.data() + begin_;
    const size_t available = end_ - begin_;
    const char* feed = static_cast<const char*>(std::memchr(from, '\n', available));
    const size_t count = feed != nullptr ? static_cast<size_t>(feed - from) : available;
    if (line->nul_at == 0) {
      const void* nul = std::memchr(from, 0, count);
      if (nul != nullptr) {
        line->nul_at =
            line->length + static_cast<uint64_t>(static_cast<const char*>(nul) - from) + 1;
      }
    }
    line->text.append(from, std::min(count, kept_ - line->text.size()));
    line->length += count;
    if (count > 0) last = from[count - 1];
    ended = feed != nullptr;
    begin_ += count + (ended ? 1 : 0);
    bytes_read_ += count + (ended ? 1 : 0);
  }
  line->number = ++number_;
  if (line->length > 0 && last == '\r') {
    if (line->length == line->text.size()) line->text.pop_back();
    --line->length;
  }
  return true;
}

}  // namespace lorimat::console
