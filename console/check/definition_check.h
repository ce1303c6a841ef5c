// Checks a definition file: line by line for what the library would refuse, drop or cut, and at
// the end for words that cannot be found. It keeps the rows that the library has room for and no
// more, however long the file is.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "console/check/definition_words.h"
#include "console/check/finding.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {

class DefinitionCheck {
 public:
  // findings has to outlive this object.
  explicit DefinitionCheck(Findings& findings) : findings_(findings) {}

  void Take(const SourceLine& line);
  // Behind the last line.
  void Finish();

  // The first line at which the library stops and answers 2; 0 when it reads the whole file.
  uint64_t stop_line() const { return stop_line_; }
  size_t commands() const { return rows_.Count(DefinitionRows::kCommandSlot); }
  size_t fields() const { return rows_.field_count(); }
  size_t symbols() const { return rows_.symbols.size(); }

 private:
  enum class Kind { kCommands, kFields, kSymbols, kKeys, kTexts, kDropped };
  struct Texts;
  struct Entry {
    std::string left;
    std::string right;
  };

  static const Texts* FindTexts(const std::string& section);
  void Add(Severity severity, const char* rule, std::string what, std::string effect = {},
           std::string suggestion = {});
  void CheckBytes(const SourceLine& line);
  void TakeHeader(const std::string& text);
  void TakeNumberHeader();
  void OpenRows(int slot);
  void TakeEntry(const std::string& text);
  Entry Split(const std::string& text);
  void CheckRowNumber(const std::string& text);
  void CheckName(const std::string& name, bool is_command);
  bool TakeRow(const Entry& entry, const std::string& text, int slot);
  void TakeCommand(const Entry& entry, const std::string& text);
  void TakeField(const Entry& entry, const std::string& text);
  void TakeSymbol(const Entry& entry, const std::string& text);
  void TakeText(const Entry& entry, const std::string& text);
  void Store(int slot, int row, const std::string& name, const std::string& text);

  Findings& findings_;
  DefinitionRows rows_;
  uint64_t line_ = 0;
  uint64_t stop_line_ = 0;
  bool section_seen_ = false;
  bool entry_before_section_told_ = false;
  Kind kind_ = Kind::kDropped;
  std::string section_;  // its name
  int id_ = 0;           // of a numeric section
  const Texts* texts_ = nullptr;
  std::map<std::pair<const Texts*, int>, uint64_t> text_lines_;
  std::map<std::string, uint64_t> symbol_lines_;
  std::map<int, uint64_t> key_lines_;
  uint64_t symbols_over_ = 0;
};

}  // namespace lorimat::console
