// The shell on a terminal of its own, with a folder of its own as the user's.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

inline constexpr const char* kUp = "\x1b[A";
inline constexpr const char* kDown = "\x1b[B";
inline constexpr const char* kLeft = "\x1b[D";
inline constexpr const char* kCtrlC = "\x03";
inline constexpr const char* kCtrlD = "\x04";
inline constexpr const char* kReady = "READY  key registering";

class ShellOnTerminal : public testing::Test {
 protected:
  TerminalSetting setting() const {
    return {.folder = folder_.path(), .environment = {{"HOME", folder_.path()}}};
  }
  static std::vector<std::string> shell() { return {"shell", "--clock", "2026-11-20 11:03"}; }
  std::string history() const { return folder_.Path(".local/state/lorimat/history"); }

  TestFolder folder_;
};
