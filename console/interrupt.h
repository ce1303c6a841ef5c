// Ctrl-C. While a watch lives, SIGINT is noted and what is at work ends at a place of its own
// choice; a second Ctrl-C ends the program at once.
#pragma once

#include <csignal>

extern volatile std::sig_atomic_t interrupted;  // 1 once Ctrl-C was noted

class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

 private:
  struct sigaction before_ {};
};
