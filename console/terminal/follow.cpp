#include "console/terminal/follow.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <string_view>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

// Between two looks: what is sold is seen at once, as a person has it, and a till hardly notices.
constexpr timespec kPause = {0, 250'000'000};
constexpr timespec kNoPause = {0, 0};

// The signals of a watch come while something is waited for, and at no other time: none is missed
// between a look at what came and the waiting.
class HeldSignals {
 public:
  HeldSignals() {
    const sigset_t signals = InterruptSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
  }
  ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  const sigset_t* before() const { return &before_; }

 private:
  sigset_t before_;
};

// Nobody reads any more, and nothing was written that would have told so.
int ReaderHasGone() {
  struct sigaction action = {};
  sigaction(SIGPIPE, nullptr, &action);
  if (action.sa_handler != SIG_IGN) return kExitReaderGone;
  throw ReaderGone(Tr("cannot write to standard output: {}", SystemMessage(EPIPE)));
}

enum class Waited { kReady, kPaused, kGone, kInterrupted };

// For the descriptor to take something, or for a pause.
Waited Wait(int descriptor, short events, const timespec* pause, const HeldSignals& held) {
  if (interrupted != 0) return Waited::kInterrupted;  // before they were held
  pollfd place = {descriptor, events, 0};
  const int found = ppoll(&place, 1, pause, held.before());
  if (interrupted != 0) return Waited::kInterrupted;
  if (found == 0 || (found < 0 && errno == EINTR)) return Waited::kPaused;
  if (found < 0) throw Failure(Tr("cannot write to standard output: {}", SystemMessage(errno)));
  // A terminal that was closed hangs up, and a pipe that nobody reads has an error.
  if ((place.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) return Waited::kGone;
  return Waited::kReady;
}

}  // namespace

int Follow(const std::function<Following()>& look, Streams& streams) {
  // It goes last: what came twice meets the watch when it is let in, and not what kills.
  const InterruptWatch watch;
  const HeldSignals held;
  const int output = streams.output_descriptor();
  const auto ended = [] { return interrupted == SIGINT ? kExitGood : InterruptExit(); };
  for (;;) {
    const Following found = look();
    const std::string text = streams.ForOutput(found.text);
    for (std::string_view rest = text; !rest.empty();) {
      const Waited waited = Wait(output, POLLOUT, nullptr, held);
      if (waited == Waited::kInterrupted) return ended();
      if (waited == Waited::kPaused) continue;
      // So much fits a pipe that has room. One that nobody reads tells so itself.
      const size_t size = std::min<size_t>(rest.size(), PIPE_BUF);
      streams.Output(rest.substr(0, size));
      rest.remove_prefix(size);
    }
    if (found.ended) return kExitGood;
    const Waited waited = Wait(output, 0, found.more ? &kNoPause : &kPause, held);
    if (waited == Waited::kInterrupted) return ended();
    if (waited == Waited::kGone) return ReaderHasGone();
  }
}

}  // namespace lorimat::console
