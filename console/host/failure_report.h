// The lines that fail, on standard error: each with its place, code and answer and the line
// itself, and below them what explains it.
//
//   till.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
//       VNED REP=2, PRE=1.50
//       ^
//     no command is called 'VNED'; did you mean VEND?
//     class 1: syntax and command errors
//     No command of the definition file has the name that the line begins with.
//
// A file of the wrong kind fails in every line: of each code so many are shown, and all are
// counted, for the summary at the end.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "console/check/language.h"
#include "console/terminal/progress.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

struct FailedLine {
  std::string place;        // "FILE:7"
  long code = 0;            // as the library answered
  std::string answer;       // its text
  std::string text;         // the line itself
  std::string reason = {};  // why the register refused it; empty when that is not known
};

class FailureReport {
 public:
  // Of each code.
  static constexpr uint64_t kShown = 20;

  // Without a language every line is shown in the bare form: place, code, answer and line, and
  // there is no summary. `wraps` breaks explanations at the width of the terminal, if it is one.
  // What is given has to outlive this object.
  FailureReport(Streams& streams, const Language* language, bool wraps)
      : streams_(streams), language_(language), wraps_(wraps) {}
  // A bar to be taken away ahead of each line that is shown.
  void SetProgress(Progress* progress) { progress_ = progress; }

  void Report(const FailedLine& failed);
  // A line that was not given to the library, and why.
  void ReportNotRun(const std::string& place, const std::string& why, std::string_view text);
  // A text that belongs to no line.
  void ReportText(const std::string& place, const std::string& what);
  // All of them.
  uint64_t count() const { return count_; }

  // A row for each code: how often, the code, the first line with it, and what it means. Nothing in
  // the bare form, or when no line failed.
  void Summarize();

 private:
  struct Kind {
    uint64_t count = 0;
    uint64_t order = 0;  // of its first line among all that failed
    std::string first;   // the place of that line
  };

  // Counts one more; whether it is to be shown.
  bool Take(long code, const std::string& place);
  void Show(const std::string& place, const std::string& heading, const std::string& what,
            std::string_view text);
  void Explain(const FailedLine& failed);
  size_t columns() const { return wraps_ ? streams_.error_columns() : 0; }

  Streams& streams_;
  const Language* language_;
  bool wraps_;
  Progress* progress_ = nullptr;
  uint64_t count_ = 0;
  std::map<long, Kind> kinds_;  // by code, 0 for lines that were not run
};

}  // namespace lorimat::console
