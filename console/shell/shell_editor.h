// A line typed on a terminal: keys, history and completion by libedit.
#pragma once

#include <histedit.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "console/shell/shell_completion.h"
#include "console/shell/shell_history.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

// While one lives, SIGINT, SIGTERM and SIGHUP are noted and end nothing, and a change of the
// window or Ctrl-Z are kept for the editor. Ctrl-C sets `interrupted` of interrupt.h.
class TerminalSignals {
 public:
  TerminalSignals();
  ~TerminalSignals();
  TerminalSignals(const TerminalSignals&) = delete;
  TerminalSignals& operator=(const TerminalSignals&) = delete;

 private:
  struct Before;
  std::unique_ptr<Before> before_;
};

class ShellEditor {
 public:
  enum class Event {
    kLine,
    kEnd,        // Ctrl-D, or the terminal is gone
    kInterrupt,  // Ctrl-C dropped the line
    kSignal      // SIGTERM or SIGHUP; signal() tells which
  };
  using Completer = std::function<Completion(std::string_view line, size_t cursor)>;

  // Longer lines than this are not typed: the rest is dropped. The library takes less.
  static constexpr size_t kLongestTyped = 4096;

  // input and output are a terminal's. Throws Failure when the editor cannot start.
  ShellEditor(int input, int output, const ShellHistory& history, Completer completer);
  ~ShellEditor();
  ShellEditor(const ShellEditor&) = delete;
  ShellEditor& operator=(const ShellEditor&) = delete;

  // Reads a line, without its end; every byte is kept as it was typed. TerminalSignals has to be
  // there.
  Event Read(const std::string& prompt, std::string* line);
  // A line that the up key brings back.
  void Remember(const std::string& line);
  int signal() const { return signal_; }
  // Of the window; 80 when it does not tell.
  size_t columns() const;

 private:
  static int ReadCharacter(EditLine* edit, wchar_t* character);
  static unsigned char Complete(EditLine* edit, wint_t key);
  static wchar_t* PromptOf(EditLine* edit);

  int NextCharacter(wchar_t* character);
  bool WaitForKey();
  void Suspend();
  unsigned char CompleteWord();
  void List(const Completion& completion);

  int input_;
  int output_;
  Completer completer_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> input_file_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> output_file_;
  std::unique_ptr<EditLine, void (*)(EditLine*)> edit_;
  std::unique_ptr<HistoryW, void (*)(HistoryW*)> history_;
  std::wstring prompt_;
  std::string pending_;  // bytes of a character that has begun
  Event event_ = Event::kLine;
  int signal_ = 0;
};

// The text as the terminal's characters and back, in the locale of the user. A byte that is no
// character there becomes one of the private code points U+DC80 to U+DCFF, so that it comes back.
std::wstring ToWide(std::string_view text);
std::string ToBytes(std::wstring_view text);

}  // namespace lorimat::console
