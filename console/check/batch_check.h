// Checks the lines of a batch file with the library's own parser. No command runs.
#pragma once

#include <cstdint>

#include "console/check/finding.h"
#include "console/check/kept_files.h"
#include "console/check/language.h"
#include "console/check/line_outputs.h"
#include "console/check/sequence_traps.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {

class BatchCheck {
 public:
  // All have to outlive this object. Names of outputs count from the folder that the program is in,
  // and those that lines go to.
  BatchCheck(const Language& language, Findings& findings, const KeptFiles* kept = nullptr);

  void Take(const SourceLine& line);
  // Behind the last line: what the lines leave behind.
  void Finish() { sequence_.Finish(); }
  uint64_t lines() const { return lines_; }        // lines taken
  uint64_t commands() const { return commands_; }  // that hold more than a comment

 private:
  void CheckBytes(const SourceLine& line);

  const Language& language_;
  Findings& findings_;
  std::vector<CommandWord> words_;
  std::vector<std::string> symbols_;
  SequenceTraps sequence_;
  const KeptFiles* kept_;  // that no line may write over; null where none is looked for
  WorkFolder folder_;
  uint64_t lines_ = 0;
  uint64_t commands_ = 0;
};

}  // namespace lorimat::console
