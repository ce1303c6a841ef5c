#include "console/terminal/interrupt.h"

#include <cstddef>

namespace lorimat::console {

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t interrupt_count = 0;

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

void note_interrupt(int signal) {
  if (interrupted == 0) interrupted = signal;
  interrupt_count = interrupt_count + 1;
}

}  // namespace

sigset_t interrupt_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kSignals) sigaddset(&signals, signal);
  return signals;
}

std::string interrupt_name() {
  if (interrupted == SIGTERM) return "SIGTERM";
  return interrupted == SIGHUP ? "SIGHUP" : "Ctrl-C";
}

int interrupt_exit() { return 128 + interrupted; }

InterruptWatch::InterruptWatch() {
  struct sigaction action {};
  action.sa_handler = &note_interrupt;
  sigemptyset(&action.sa_mask);
  size_t place = 0;
  for (const int signal : kSignals) {
    struct sigaction& before = before_[place++];
    sigaction(signal, nullptr, &before);
    if (signal != SIGINT && before.sa_handler == SIG_IGN) continue;
    sigaction(signal, &action, nullptr);
  }
}

InterruptWatch::~InterruptWatch() {
  size_t place = 0;
  for (const int signal : kSignals) sigaction(signal, &before_[place++], nullptr);
}

}  // namespace lorimat::console
