#include "interrupt.h"

volatile std::sig_atomic_t interrupted = 0;

namespace {

void note_interrupt(int) { interrupted = 1; }

}  // namespace

InterruptWatch::InterruptWatch() {
  struct sigaction action {};
  action.sa_handler = &note_interrupt;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &before_);
}

InterruptWatch::~InterruptWatch() { sigaction(SIGINT, &before_, nullptr); }
