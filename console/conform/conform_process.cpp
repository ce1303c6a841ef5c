#include "console/conform/conform_process.h"

#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>

#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

// What a process tells: one letter, the length of the text in bytes, and the text.
constexpr char kDevice = 'D';
constexpr char kPiece = 'P';
constexpr char kWhole = 'W';  // and '1' where all was recorded that was to be
constexpr char kFailed = 'F';

using Size = uint32_t;
constexpr size_t kHead = 1 + sizeof(Size);

// How often a signal and the end of the process are looked for.
constexpr int kLookMillis = 50;

[[noreturn]] void Refuse(int error) {
  throw Failure(Tr("there is no process for the device: {}", SystemMessage(error)));
}

// The new process ends with the one before, is told of signals by it alone, and one at a time.
void BecomeChild(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // That may have ended ahead of this.
  if (getppid() != parent) _exit(1);
  struct sigaction noted;
  sigaction(SIGINT, nullptr, &noted);
  sigaction(SIGTERM, &noted, nullptr);
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGHUP, SIG_IGN);
}

}  // namespace

ConformProcess::ConformProcess() {
  void* shared = mmap(nullptr, sizeof(ConformWatch), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) Refuse(errno);
  watch_ = new (shared) ConformWatch();
}

ConformProcess::~ConformProcess() { munmap(watch_, sizeof(ConformWatch)); }

bool ConformProcess::Begin() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) Refuse(errno);
  Descriptor own(ends[0]);
  Descriptor others(ends[1]);
  watch_->operation = -1;
  came_.clear();
  is_whole_ = has_failed_ = false;
  const pid_t parent = getpid();
  child_ = fork();
  if (child_ < 0) Refuse(errno);
  if (child_ > 0) {
    line_ = std::move(own);
    return false;
  }
  BecomeChild(parent);
  line_ = std::move(others);
  return true;
}

// --- In the new process

void ConformProcess::Tell(char kind, std::string_view text) {
  const auto size = static_cast<Size>(text.size());
  std::string all(1, kind);
  all.append(reinterpret_cast<const char*>(&size), sizeof size);
  all += text;
  // Where nobody listens any more, this process is about to be ended.
  WriteAll(line_.get(), all);
}

void ConformProcess::TellDevice(const TriedDevice& device) {
  // The texts are the device's, of any bytes.
  std::string bytes;
  Json::to_cbor(Json::array({device.name, device.version, device.training}), bytes);
  Tell(kDevice, bytes);
}

void ConformProcess::TellPiece(const ConformProgress& progress, size_t piece) {
  Tell(kPiece, progress.Changes(piece));
}

void ConformProcess::TellWhole(bool recorded) {
  Tell(kWhole, recorded ? "1" : "0");
  char heard = 0;
  while (read(line_.get(), &heard, 1) < 0 && errno == EINTR) {
  }
}

void ConformProcess::TellFailed() { Tell(kFailed, {}); }

// --- In the one before

bool ConformProcess::Receive() {
  std::array<char, 4096> buffer;
  const ssize_t got = recv(line_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (got > 0) came_.append(buffer.data(), static_cast<size_t>(got));
  return got > 0;
}

void ConformProcess::TakeWhatCame(ConformProgress* progress,
                                  const std::function<void(size_t piece)>& behind,
                                  const std::function<void()>& whole) {
  while (came_.size() >= kHead) {
    Size size = 0;
    std::memcpy(&size, came_.data() + 1, sizeof size);
    if (came_.size() - kHead < size) return;
    const char kind = came_[0];
    const std::string text = came_.substr(kHead, size);
    came_.erase(0, kHead + size);
    if (kind == kDevice && !device_) {
      const Json json = Json::from_cbor(text);
      device_ = {.name = json.at(0), .version = json.at(1), .training = json.at(2)};
    } else if (kind == kPiece) {
      progress->Take(text);
      behind(progress->tried);
    } else if (kind == kWhole) {
      is_whole_ = true;
      recorded_ = text == "1";
      whole();
      send(line_.get(), "", 1, MSG_NOSIGNAL);
    } else if (kind == kFailed) {
      has_failed_ = true;
    }
  }
}

ConformProcess::Outcome ConformProcess::Follow(ConformProgress* progress,
                                               const std::function<void(size_t piece)>& behind,
                                               const std::function<void()>& whole) {
  int told = 0;  // signals
  int status = 0;
  for (bool is_over = false; !is_over;) {
    pollfd input = {line_.get(), POLLIN, 0};
    poll(&input, 1, kLookMillis);
    for (; told < interrupt_count; ++told) kill(child_, SIGTERM);
    // What it leaves behind may hold the other end of the line open: its own end is what counts.
    const pid_t ended = waitpid(child_, &status, WNOHANG);
    is_over = ended == child_ || (ended < 0 && errno != EINTR);
    while (Receive()) TakeWhatCame(progress, behind, whole);
    // It has let go of the line, and is on its way out.
    if ((input.revents & (POLLHUP | POLLERR)) != 0 && !is_over) poll(nullptr, 0, kLookMillis);
  }
  line_ = Descriptor();
  end_ = {.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0,
          .code = WIFEXITED(status) ? WEXITSTATUS(status) : 0};
  if (is_whole_) {
    return end_.signal == 0 && end_.code == 0 ? Outcome::kWhole : Outcome::kAtClose;
  }
  return has_failed_ ? Outcome::kFailed : Outcome::kEnded;
}

std::string_view ConformProcess::operation() const {
  if (watch_->operation < 0) return {};
  return ClientOperationName(static_cast<ClientOperation>(watch_->operation));
}

}  // namespace lorimat::console
