#include "console/check/definition_check.h"

#include <optional>
#include <vector>

#include "console/check/definition_fault.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatenums.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

using Cause = FindingCause;

constexpr int kLastKeyCode = 255;  // a key's code is one byte
constexpr const char* kQuote = "'";

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool AllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

const std::vector<std::string>& SectionNames() {
  static const std::vector<std::string> names = {"OPCOD",  "EQU",  "EQUTASTI",
                                                 "INTMSG", "TOTG", "ERRMSG"};
  return names;
}

// Whether a section's name stands for a table of messages, and for that one alone.
bool NamesMessages(std::string_view name) {
  constexpr std::string_view kMessages = "ERRMSG";
  const std::string_view digit = name.substr(kMessages.size());
  return digit.empty() || (digit.size() == 1 && IsDigit(digit.front()));
}

}  // namespace

DefinitionCheck::DefinitionCheck(Findings& findings)
    : findings_(findings),
      language_(Language::WithoutWords()),
      reader_(language_.translator(), this) {}

void DefinitionCheck::Add(Cause cause, std::vector<FindingArgument> arguments,
                          std::string suggestion) {
  Finding finding = MakeFinding(cause, std::move(arguments));
  finding.line = line_;
  finding.suggestion = std::move(suggestion);
  findings_.Add(std::move(finding));
}

void DefinitionCheck::CheckBytes(const SourceLine& line) {
  if (line.nul_at != 0) Add(Cause::kNulByte, {line.nul_at});
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) Add(Cause::kCarriageReturn, {carriage_return + 1});
  if (line.length > DefinitionReader::kLineLimit) {
    const std::string cut = CleanedDefinitionLine(CutDefinitionLine(line));
    if (cut != CleanedDefinitionLine(line.text)) {
      Add(Cause::kLineCut, {line.length, DefinitionReader::kLineLimit});
    }
  }
}

void DefinitionCheck::Take(const SourceLine& line) {
  line_ = line.number;
  CheckBytes(line);
  std::string text = CutDefinitionLine(line);
  if (line.number == 1 && text.rfind("\xEF\xBB\xBF", 0) == 0) {
    Add(Cause::kFileMark);
  }
  reader_.TakeLine(text.data(), line.number);
}

void DefinitionCheck::Take(const DefinitionNote& note) {
  if (std::optional<Finding> fault = StoppingFault(note)) return TakeStop(*std::move(fault));
  switch (note.cause) {
    case DefinitionCause::kHeaderNotClosed:
      return Add(Cause::kHeaderNotClosed, {note.text, note.kept});
    case DefinitionCause::kSection:
      return TakeHeader(note);
    case DefinitionCause::kNoSection:
      if (entry_before_section_told_) return;
      entry_before_section_told_ = true;
      return Add(Cause::kEntryBeforeSection);
    case DefinitionCause::kPartCut:
      return Add(Cause::kPartCut, {note.text.size(), note.limit});
    default:
      // The header has told that they have no effect.
      if (!dropped_) TakeEntry(note);
  }
}

void DefinitionCheck::TakeStop(Finding fault) {
  if (stop_line_ == 0) stop_line_ = line_;
  fault.stopped_before = stop_line_ != line_;
  findings_.Add(std::move(fault));
}

// --- Headers.

void DefinitionCheck::TakeHeader(const DefinitionNote& note) {
  dropped_ = false;
  switch (note.section) {
    case DefinitionSection::kCommands:
      return OpenRows(DefinitionRows::kCommandSlot, note.section_name);
    case DefinitionSection::kFields:
      return TakeNumberHeader(note);
    case DefinitionSection::kMessages:
      dropped_ = !NamesMessages(note.section_name);
      if (!dropped_) return;
      return Add(Cause::kNoMessageSection, {note.section_name});
    default:
      return;
  }
}

// Any other name counts as a number, as far as it begins with one.
void DefinitionCheck::TakeNumberHeader(const DefinitionNote& note) {
  const bool has_rows = note.id >= 1 && note.id < MAXOPCOD;
  dropped_ = !has_rows;
  if (!AllDigits(note.section_name)) {
    const std::string bare = Trimmed(std::string(note.section_name));
    std::string near = NearestWord(bare, SectionNames());
    if (near.empty() && AllDigits(bare)) near = bare;
    Add(has_rows ? Cause::kSectionAsNumber : Cause::kNoSection, {note.section_name, note.id},
        near.empty() ? near : "[" + near + "]");
  } else if (!has_rows) {
    Add(Cause::kSectionOutOfRange, {note.section_name, MAXOPCOD - 1});
  }
  if (has_rows) OpenRows(note.id, note.section_name);
}

// A section of rows that is opened again starts its highest row anew.
void DefinitionCheck::OpenRows(int slot, std::string_view name) {
  uint64_t& opened = rows_.section_lines[slot];
  if (opened != 0) Add(Cause::kSectionTwice, {name, opened});
  opened = line_;
}

// --- Entries.

void DefinitionCheck::TakeEntry(const DefinitionNote& note) {
  const bool is_command = note.section == DefinitionSection::kCommands;
  const bool is_row = is_command || note.section == DefinitionSection::kFields;
  switch (note.cause) {
    case DefinitionCause::kRowNotANumber:
      return Add(Cause::kRowNotANumber, {note.text, note.number});
    case DefinitionCause::kRowOutOfRange:
      if (is_row) return Add(Cause::kRowOutOfRange, {note.row, note.limit});
      return Add(Cause::kMessageOutOfRange, {note.row, note.section_name, note.limit});
    case DefinitionCause::kRowOutOfReach:
      return Add(Cause::kRowOutOfReach, {note.row});
    case DefinitionCause::kNameMissing:
      return Add(Cause::kNameMissing);
    case DefinitionCause::kNameCut:
      return Add(is_row ? Cause::kNameCut : Cause::kSymbolCut,
                 {note.text, note.text.size(), note.limit, note.kept});
    case DefinitionCause::kNameRead:
      return CheckName(std::string(note.text), is_command);
    case DefinitionCause::kMarkIgnored:
      return Add(Cause::kMarkIgnored);
    case DefinitionCause::kNumberNotANumber:
      return Add(note.number == 0 ? Cause::kNumberFromRow : Cause::kNumberNotANumber,
                 {note.text, note.number});
    case DefinitionCause::kCommand:
    case DefinitionCause::kField:
      return TakeRow(note);
    case DefinitionCause::kValueNotANumber:
      return Add(Cause::kValueNotANumber, {note.text, note.kept, note.number});
    case DefinitionCause::kTableFull:
      if (too_many_symbols_told_) return;
      too_many_symbols_told_ = true;
      return Add(Cause::kTooManySymbols, {note.limit});
    case DefinitionCause::kSymbol:
      return TakeSymbol(note);
    case DefinitionCause::kTextTooLong:
      return Add(Cause::kTextTooLong, {note.limit});
    case DefinitionCause::kTextBadlyQuoted:
      return Add(Cause::kTextBadlyQuoted);
    case DefinitionCause::kText:
      return TakeText(note);
    default:
      return;
  }
}

// What a line cannot write, or not so that the library finds it.
void DefinitionCheck::CheckName(const std::string& name, bool is_command) {
  if (name.find(kQuote) != std::string::npos) {
    Add(is_command ? Cause::kCommandHasQuote : Cause::kFieldHasQuote, {name});
  } else if (name.find(',') != std::string::npos) {
    Add(Cause::kNameBeginsWithComma, {name});
  } else if (is_command && name.find(' ') != std::string::npos) {
    Add(Cause::kCommandHasBlank, {name});
  } else if (is_command && name.front() == '@') {
    Add(Cause::kCommandBeginsWithAt, {name});
  } else if (name.front() == '#' && AllDigits(name.substr(1))) {
    Add(Cause::kNameIsNumber, {name});
  }
}

// A command's or field's row that was stored.
void DefinitionCheck::TakeRow(const DefinitionNote& note) {
  const bool is_command = note.cause == DefinitionCause::kCommand;
  const int highest = is_command ? MAXOPCOD - 1 : int{MAXCAMPI};
  if (note.number < 0 || note.number > highest) {
    Add(is_command ? Cause::kOpcodeOutOfRange : Cause::kFieldOutOfRange, {note.number, highest});
  }
  const int slot = is_command ? DefinitionRows::kCommandSlot : note.id;
  if (const DefinitionRows::Row* before = rows_.Find(slot, note.row)) {
    const bool alike = before->name == note.text;
    if (before->name.empty()) {
      Add(alike ? Cause::kUnnamedRowTwice : Cause::kRowTwiceUnnamed, {note.row, before->line});
    } else {
      Add(alike ? Cause::kRowTwiceAlike : Cause::kRowTwice, {note.row, before->line, before->name});
    }
  }
  Store(slot, note.row, note.kept);
}

void DefinitionCheck::Store(int slot, int row, std::string_view name) {
  DefinitionRows::Row& stored = rows_.rows[{slot, row}];
  stored.line = line_;
  stored.name = name;
}

void DefinitionCheck::TakeSymbol(const DefinitionNote& note) {
  ++symbols_;
  const bool is_key = note.section == DefinitionSection::kKeys;
  const int value = note.number;
  const std::string name(note.kept);
  std::string bare(note.text);
  if (lorimatutility::SeNum(bare.data())) {
    Add(Cause::kSymbolIsNumber, {name});
  } else if (name.find_first_of(",'") != std::string::npos) {
    Add(Cause::kSymbolUnwritable, {name});
  } else if (is_key && name.find(' ') != std::string::npos) {
    Add(Cause::kKeyHasBlank, {name});
  }
  const bool is_key_code = is_key && value >= 0 && value <= kLastKeyCode;
  if (is_key && !is_key_code) {
    Add(Cause::kKeyOutOfRange, {value, kLastKeyCode, value & kLastKeyCode});
  }
  const auto [before, is_new] = symbol_lines_.emplace(name, line_);
  if (!is_new) Add(Cause::kSymbolTwice, {name, before->second});
  if (is_key_code) {
    const auto [first, is_first] = key_lines_.emplace(value, line_);
    if (!is_first) {
      Add(Cause::kKeyTwice, {value, first->second});
      first->second = line_;
    }
  }
}

void DefinitionCheck::TakeText(const DefinitionNote& note) {
  const auto [before, is_new] =
      text_lines_.emplace(std::make_pair(std::string(note.section_name), note.row), line_);
  if (!is_new) {
    Add(Cause::kTextTwice, {note.row, before->second});
    before->second = line_;
  }
  if (note.section == DefinitionSection::kInternal) {
    Store(DefinitionRows::kMessageSlot, note.row, "");
  }
}

void DefinitionCheck::Finish() {
  line_ = 0;
  CheckWords(rows_, language_, findings_);
}

}  // namespace lorimat::console
