// A signal that comes to the console at a known place of its work: behind the n-th progress bar.
#pragma once

#include <string>
#include <utility>

#include "program_run.h"

// Adds to a setting that the program draws its bars, and gets the signal behind this one, from 1.
inline ProgramSetting WithSignalAtBar(int signal, int bar, ProgramSetting setting = {}) {
  setting.errors_to_terminal = true;
  setting.environment["NO_COLOR"] = "1";
  setting = WithPreload(LORIMAT_BAR_SIGNAL, std::move(setting));
  setting.environment["LORIMAT_TEST_BAR_SIGNAL"] =
      std::to_string(signal) + " " + std::to_string(bar);
  return setting;
}

// How many bars a run drew.
inline int BarsOf(const ProgramRun& run) {
  int count = 0;
  for (const std::string begin : {"\r[", "\r\x1b[K["}) {
    for (size_t at = run.errors.find(begin); at != run.errors.npos;
         at = run.errors.find(begin, at + 1)) {
      ++count;
    }
  }
  return count;
}
