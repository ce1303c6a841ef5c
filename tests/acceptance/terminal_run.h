// Runs the console on a pseudo-terminal of its own, as a person sits at it: keys are typed, and
// the screen is looked at until it shows what is waited for.
#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "terminal_screen.h"

struct TerminalSetting {
  std::string folder = {};  // to run in; empty stays here
  // Added to the caller's. HOME has to be a folder of the test.
  std::map<std::string, std::string> environment = {};
  size_t columns = 80;
  size_t height = 24;
  std::string prompt = "lorimat> ";
  std::string program = {};  // a path; empty is the build's console
};

class TerminalRun {
 public:
  // The prompt of the program has come when this returns.
  TerminalRun(const std::vector<std::string>& arguments, const TerminalSetting& setting);
  // Hangs up, when the program is still there.
  ~TerminalRun();
  TerminalRun(const TerminalRun&) = delete;
  TerminalRun& operator=(const TerminalRun&) = delete;

  // Keys as a terminal sends them: "\r" is Enter, "\t" TAB, "\x03" Ctrl-C, "\x1b[A" up.
  void Type(const std::string& keys);
  // Types a line and Enter, waits for the next prompt, and returns the rows between the line and
  // that prompt.
  std::vector<std::string> Enter(const std::string& line);
  // Types keys that end in a new prompt, and returns the rows up to it.
  std::vector<std::string> TypeForPrompt(const std::string& keys);
  // Waits until the row of the cursor is the prompt and this text, up to the cursor.
  void WaitForTyped(const std::string& text);
  // Waits until the row of the last prompt, or one below it, holds the text. The last prompt is the
  // one that enter, TypeForPrompt or WaitForTyped saw.
  void WaitFor(const std::string& text);
  // Makes the window another one, and tells the program.
  void Resize(size_t columns, size_t height);
  void SendSignal(int signal);
  // Waits until the program has ended; its exit code, or -1 when a signal ended it.
  int WaitForEnd();

  const TerminalScreen& screen() const { return screen_; }
  // All that has come, as it came.
  const std::string& raw() const { return raw_; }

 private:
  // Reads until the condition holds. Throws, with the screen, when the program ends first or
  // nothing comes for a minute.
  void WaitUntil(const std::string& what, const std::function<bool()>& condition);
  bool ReadSome();
  bool AtPrompt(size_t above) const;

  TerminalSetting setting_;
  TerminalScreen screen_;
  std::string raw_;
  int master_ = -1;
  pid_t child_ = -1;
  size_t prompt_row_ = 0;
};
