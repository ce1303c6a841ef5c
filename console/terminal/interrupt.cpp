#include "console/terminal/interrupt.h"

#include <cstddef>

namespace lorimat::console {

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t interrupt_count = 0;

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

void NoteInterrupt(int signal) {
  if (interrupted == 0) interrupted = signal;
  interrupt_count = interrupt_count + 1;
}

}  // namespace

sigset_t InterruptSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kSignals) sigaddset(&signals, signal);
  return signals;
}

std::string InterruptName() {
  if (interrupted == SIGTERM) return "SIGTERM";
  return interrupted == SIGHUP ? "SIGHUP" : "Ctrl-C";
}

int InterruptExit() { return 128 + interrupted; }

InterruptWatch::InterruptWatch() {
  struct sigaction action {};
  action.sa_handler = &NoteInterrupt;
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
