// Checks a definition file: the library's own reader tells line by line what it refuses, drops or
// cuts, and at the end the words are looked at that cannot be found. It keeps the rows that the
// library has room for and no more, however long the file is.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/check/definition_words.h"
#include "console/check/finding.h"
#include "console/check/language.h"
#include "console/terminal/line_reader.h"
#include "pal/protocols/lorimat/front/definition_reader.h"

namespace lorimat::console {

class DefinitionCheck final : private DefinitionSink {
 public:
  // findings has to outlive this object.
  explicit DefinitionCheck(Findings& findings);

  void Take(const SourceLine& line);
  // Behind the last line.
  void Finish();

  // The first line at which the library stops and answers 2; 0 when it reads the whole file.
  uint64_t stop_line() const { return stop_line_; }
  size_t commands() const { return rows_.Count(DefinitionRows::kCommandSlot); }
  size_t fields() const { return rows_.field_count(); }
  size_t symbols() const { return symbols_; }

 private:
  void Add(FindingCause cause, std::vector<FindingArgument> arguments = {},
           std::string suggestion = {});
  void CheckBytes(const SourceLine& line);

  // What the reader tells.
  void Take(const DefinitionNote& note) override;
  void TakeEntry(const DefinitionNote& note);
  void TakeStop(Finding fault);
  void TakeHeader(const DefinitionNote& note);
  void TakeNumberHeader(const DefinitionNote& note);
  void OpenRows(int slot, std::string_view name);
  void CheckName(const std::string& name, bool is_command);
  void TakeRow(const DefinitionNote& note);
  void TakeSymbol(const DefinitionNote& note);
  void TakeText(const DefinitionNote& note);
  void Store(int slot, int row, std::string_view name);

  Findings& findings_;
  Language language_;
  DefinitionReader reader_;
  DefinitionRows rows_;
  uint64_t line_ = 0;
  uint64_t stop_line_ = 0;
  bool entry_before_section_told_ = false;
  bool dropped_ = true;  // nothing reads the entries of the section at hand
  size_t symbols_ = 0;
  bool too_many_symbols_told_ = false;
  std::map<std::pair<std::string, int>, uint64_t> text_lines_;  // by the section's name and row
  std::map<std::string, uint64_t, std::less<>> symbol_lines_;
  std::map<int, uint64_t> key_lines_;
};

}  // namespace lorimat::console
