// Ctrl-C, SIGTERM, and SIGHUP of a terminal that was closed. While a watch lives they are noted,
// and what is at work ends at a place of its own choice. One that comes again changes nothing of
// that: what is left to do is to write the paper, of which it stops the pictures. SIGQUIT and
// SIGKILL end the program at once.
#pragma once

#include <csignal>
#include <string>

namespace lorimat::console {

// 0, or the number of the signal that was noted.
extern volatile std::sig_atomic_t interrupted;

// How many were noted.
extern volatile std::sig_atomic_t interrupt_count;

// The signals that a watch notes.
sigset_t InterruptSignals();
// What was noted, for a message: "Ctrl-C", "SIGTERM" or "SIGHUP".
std::string InterruptName();
// The exit code behind it: 128 plus the signal's number, as shells have it.
int InterruptExit();

// SIGTERM and SIGHUP that were ignored when the watch began stay ignored: "nohup lorimat run".
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

 private:
  struct sigaction before_[3] = {};
};

}  // namespace lorimat::console
