// What the shell does with a line, typed or piped: runs it, shows answer and paper, or carries out
// one of the shell's own words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/check/language.h"
#include "console/device/device.h"
#include "console/host/failure_report.h"
#include "console/host/library.h"
#include "console/host/line_hints.h"
#include "console/host/line_run.h"
#include "console/host/memory_watch.h"
#include "console/shell/shell_completion.h"
#include "console/shell/shell_help.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

class ShellSession : private LineSink {
 public:
  // How lines and answers are shown.
  struct Look {
    bool terminal = false;  // else plain: paper on standard output, all else on standard error
    bool colours = false;
    bool terse = false;               // plain: failing lines without explanation and summary
    std::function<size_t()> columns;  // of the window; 0 where lines are not wrapped
  };

  // All of them have to outlive this object; the library has been started.
  ShellSession(const Language& language, Library& library, Device& device, OutputGuard& guard,
               Look look, Streams& streams);

  // Runs a line; place, "standard input:7", names it where that is not plain to see. Throws
  // Failure when its output cannot be written.
  void Take(const SourceLine& line, const std::string& place);
  // Shows what has been printed since the last call.
  void ShowPaper();

  // Of a pipe: what lines failed with.
  void SummarizeFailures() { report_.Summarize(); }

  // What a sale would do that is out of the ordinary, for the line above the prompt; else empty.
  std::string NextSaleWarning() const;

  bool quit() const { return quit_; }
  void Stay() { quit_ = false; }
  uint64_t failures() const { return failures_; }
  // Whether all lines of batches that failed are among them.
  bool failures_known() const { return failures_known_; }
  // Lines of ".batch" files, and of batches with failures, that were run; none when not all are
  // known.
  std::optional<uint64_t> file_lines() const {
    return batches_not_counted_ == 0 ? std::optional(file_lines_) : std::nullopt;
  }
  Completion Complete(std::string_view line, size_t cursor) const {
    return completer_.Complete(line, cursor);
  }

 private:
  bool Take(const SourceLine& line, const std::string& place, const LineAnswer& answer) override;
  void ShowBatch(const std::string& text, const std::string& place, const LineAnswer& answer);
  void ShowBatchFailures(const BatchRun& batch);
  FailureReport* LineReport();
  std::string next_sale_text() const;
  void ShowAnswer(const std::string& text, long code, const std::string& answer,
                  const std::string& place, const std::string& reason);
  void ShowNotRun(const SourceLine& line, const std::string& place, const std::string& why);
  void EndEcho();
  void TellStop(const std::string& text);
  void Fail(const std::string& place, const std::string& what, std::string_view line);
  // The line as one of the shell's own words, which begin with a sign; empty where it is for the
  // library.
  std::string OwnLine(std::string_view text) const;
  void Help(std::string_view word);
  void RunOwnWord(std::string_view text);
  void ShowHints(const std::string& text, const std::string& place);
  void ListOwnWords();
  void ShowLastPaper(const std::string& number);
  void ChangeFaults(std::string_view words);
  void RunFile(const std::string& file);
  void TellPaperOfFile();
  const std::vector<std::string>& Printed() const;
  std::string PaperStrip(const std::string& line) const;
  // A text of the shell's own, in lines that fit the window.
  std::string LaidOut(const std::string& text) const;

  const Language& language_;
  Library& library_;
  Device& device_;
  Look look_;
  Streams& streams_;
  ShellHelp help_;
  ShellCompleter completer_;
  MemoryWatch memory_;
  LineHost host_;
  LineHints hints_;
  uint64_t lines_answered_ = 0;  // with 0
  FailureReport report_;         // of a pipe
  // Of the lines of ".batch", while they run on a terminal.
  std::optional<FailureReport> file_report_;
  bool echo_ended_ = false;   // of the Ctrl-C that stopped what ran
  std::string plain_answer_;  // of a line that has nothing to say
  size_t paper_shown_ = 0;    // lines
  uint64_t failures_ = 0;
  bool failures_known_ = true;
  bool file_at_work_ = false;  // of ".batch"
  uint64_t file_lines_ = 0;
  uint64_t batches_not_counted_ = 0;  // whose lines are not known
  bool quit_ = false;
};

}  // namespace lorimat::console
