#include "console/check/definition_check.h"

#include <fmt/format.h>

#include <vector>

#include "console/check/definition_fault.h"
#include "console/message/translate.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatenums.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

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

void DefinitionCheck::Add(Severity severity, const char* rule, std::string what, std::string effect,
                          std::string suggestion) {
  Finding finding;
  finding.severity = severity;
  finding.rule = rule;
  finding.line = line_;
  finding.what = std::move(what);
  finding.effect = std::move(effect);
  finding.suggestion = std::move(suggestion);
  findings_.Add(std::move(finding));
}

void DefinitionCheck::CheckBytes(const SourceLine& line) {
  if (line.nul_at != 0) {
    Add(Severity::kError, "nul-byte", Tr("a NUL byte in column {}", line.nul_at),
        Tr("the library reads the line only up to there"));
  }
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) {
    Add(Severity::kError, "bare-carriage-return",
        Tr("a carriage return in column {} ends no line", carriage_return + 1),
        Tr("what follows belongs to the same line"));
  }
  if (line.length > DefinitionReader::kLineLimit) {
    const std::string cut = CleanedDefinitionLine(CutDefinitionLine(line));
    if (cut != CleanedDefinitionLine(line.text)) {
      Add(Severity::kError, "line-too-long",
          Tr("the line has {} characters, more than {}", line.length, DefinitionReader::kLineLimit),
          Tr("the library cuts it there"));
    }
  }
}

void DefinitionCheck::Take(const SourceLine& line) {
  line_ = line.number;
  CheckBytes(line);
  std::string text = CutDefinitionLine(line);
  if (line.number == 1 && text.rfind("\xEF\xBB\xBF", 0) == 0) {
    Add(Severity::kError, "byte-order-mark", Tr("the file begins with a byte order mark"),
        Tr("the library takes it for a part of the first line"));
  }
  reader_.TakeLine(text.data(), line.number);
}

void DefinitionCheck::Take(const DefinitionNote& note) {
  const std::string fault = StoppingFault(note);
  if (!fault.empty()) return TakeStop(fault);
  switch (note.cause) {
    case DefinitionCause::kHeaderNotClosed:
      return Add(Severity::kError, "header-not-closed",
                 Tr("'{}' is not closed by a ']'", note.text),
                 Tr("its last character is dropped, so that it names the section '{}'", note.kept));
    case DefinitionCause::kSection:
      return TakeHeader(note);
    case DefinitionCause::kNoSection:
      if (entry_before_section_told_) return;
      entry_before_section_told_ = true;
      return Add(Severity::kError, "entry-before-section",
                 Tr("an entry in front of the first section"), Tr("it has no effect"));
    case DefinitionCause::kPartCut:
      return Add(
          Severity::kError, "part-too-long",
          Tr("a side of the '=' has {} characters, more than {}", note.text.size(), note.limit),
          Tr("the library cuts it there"));
    default:
      // The header has told that they have no effect.
      if (!dropped_) TakeEntry(note);
  }
}

void DefinitionCheck::TakeStop(const std::string& fault) {
  if (stop_line_ == 0) stop_line_ = line_;
  Add(Severity::kError, "stops-reading", fault,
      stop_line_ == line_ ? Tr("the library stops reading here and answers 2")
                          : Tr("the library would stop here, too"));
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
      return Add(
          Severity::kError, "unknown-section",
          Tr("[{}] is no section of messages; they are ERRMSG0 to ERRMSG9", note.section_name),
          Tr("its lines have no effect or go to another table"));
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
    Add(Severity::kError, "unknown-section", Tr("there is no section [{}]", note.section_name),
        has_rows ? Tr("its entries count as fields of the command {}", note.id)
                 : Tr("its entries have no effect"),
        near.empty() ? near : "[" + near + "]");
  } else if (!has_rows) {
    Add(Severity::kError, "section-out-of-range",
        Tr("[{}] is no command's number; they go from 1 to {}", note.section_name, MAXOPCOD - 1),
        Tr("its entries have no effect"));
  }
  if (has_rows) OpenRows(note.id, note.section_name);
}

// A section of rows that is opened again starts its highest row anew.
void DefinitionCheck::OpenRows(int slot, std::string_view name) {
  uint64_t& opened = rows_.section_lines[slot];
  if (opened != 0) {
    Add(Severity::kWarning, "section-twice", Tr("[{}] was opened in line {} already", name, opened),
        Tr("only rows up to the highest one below this header can be found"));
  }
  opened = line_;
}

// --- Entries.

void DefinitionCheck::TakeEntry(const DefinitionNote& note) {
  const bool is_command = note.section == DefinitionSection::kCommands;
  const bool is_row = is_command || note.section == DefinitionSection::kFields;
  switch (note.cause) {
    case DefinitionCause::kRowNotANumber:
      return Add(Severity::kWarning, "not-a-number", Tr("the row '{}' is no number", note.text),
                 Tr("the library reads {}", note.number));
    case DefinitionCause::kRowOutOfRange:
      return Add(
          Severity::kError, "row-out-of-range",
          is_row ? Tr("row {} is not in 1 to {}", note.row, note.limit)
                 : Tr("row {} of [{}] is not in 0 to {}", note.row, note.section_name, note.limit),
          Tr("the entry has no effect"));
    case DefinitionCause::kRowOutOfReach:
      return Add(Severity::kError, "row-out-of-reach",
                 Tr("row {} is behind the last that is searched", note.row),
                 Tr("the library reads it and never finds it"));
    case DefinitionCause::kNameMissing:
      return Add(Severity::kError, "name-missing", Tr("the row has no name"),
                 Tr("no word finds it"));
    case DefinitionCause::kNameCut:
      return Add(
          Severity::kError, "name-too-long",
          Tr("'{}' has {} characters, more than {}", note.text, note.text.size(), note.limit),
          is_row ? Tr("the library keeps '{}'", note.kept)
                 : Tr("the library keeps '{}', which is another word", note.kept));
    case DefinitionCause::kNameRead:
      return CheckName(std::string(note.text), is_command);
    case DefinitionCause::kMarkIgnored:
      return Add(Severity::kWarning, "mark-without-effect", Tr("a command cannot be mandatory"),
                 Tr("the ',O' has no effect"));
    case DefinitionCause::kNumberNotANumber:
      return Add(Severity::kWarning, "not-a-number",
                 Tr("behind the comma '{}' is no number and no 'O'", note.text),
                 Tr("the library reads {}",
                    note.number == 0 ? Tr("the row's own number") : std::to_string(note.number)));
    case DefinitionCause::kCommand:
    case DefinitionCause::kField:
      return TakeRow(note);
    case DefinitionCause::kValueNotANumber:
      return Add(Severity::kError, "not-a-number",
                 Tr("the value '{}' of {} is no number", note.text, note.kept),
                 Tr("the library reads {}", note.number));
    case DefinitionCause::kTableFull:
      if (too_many_symbols_told_) return;
      too_many_symbols_told_ = true;
      return Add(Severity::kError, "too-many-symbols", Tr("more than {} symbols", note.limit),
                 Tr("this one and those behind it have no effect"));
    case DefinitionCause::kSymbol:
      return TakeSymbol(note);
    case DefinitionCause::kTextTooLong:
      return Add(Severity::kError, "text-too-long",
                 Tr("the text has more than {} characters", note.limit),
                 Tr("the entry has no effect"));
    case DefinitionCause::kTextBadlyQuoted:
      return Add(Severity::kError, "bad-quote",
                 Tr("a quote is not closed, or stands behind the text's begin"),
                 Tr("the entry has no effect"));
    case DefinitionCause::kText:
      return TakeText(note);
    default:
      return;
  }
}

// What a line cannot write, or not so that the library finds it.
void DefinitionCheck::CheckName(const std::string& name, bool is_command) {
  if (name.find(kQuote) != std::string::npos) {
    Add(Severity::kError, "name-never-found", Tr("the name {} holds a quote", name),
        is_command ? Tr("a line cannot be cleaned of comments behind it")
                   : Tr("a line with it answers 262"));
  } else if (name.find(',') != std::string::npos) {
    Add(Severity::kError, "name-never-found", Tr("the name '{}' begins with a comma", name),
        Tr("the comma belongs to the name, and no line can write it"));
  } else if (is_command && name.find(' ') != std::string::npos) {
    Add(Severity::kError, "name-never-found", Tr("the name '{}' holds a blank", name),
        Tr("a command's word ends there"));
  } else if (is_command && name.front() == '@') {
    Add(Severity::kError, "name-never-found", Tr("the name '{}' begins with '@'", name),
        Tr("such a line names a batch file"));
  } else if (name.front() == '#' && AllDigits(name.substr(1))) {
    Add(Severity::kError, "name-never-found", Tr("the name '{}' is a number", name),
        Tr("the library takes it for the number itself as far as there is one"));
  }
}

// A command's or field's row that was stored.
void DefinitionCheck::TakeRow(const DefinitionNote& note) {
  const bool is_command = note.cause == DefinitionCause::kCommand;
  const int highest = is_command ? MAXOPCOD - 1 : int{MAXCAMPI};
  if (note.number < 0 || note.number > highest) {
    Add(Severity::kError, "number-out-of-range",
        Tr("number {} is not in 1 to {}", note.number, highest),
        is_command ? Tr("a line with it answers 268") : Tr("a line with it answers 260"));
  }
  const int slot = is_command ? DefinitionRows::kCommandSlot : note.id;
  const DefinitionRows::Row* before = rows_.Find(slot, note.row);
  if (before != nullptr) {
    Add(before->name == note.text ? Severity::kWarning : Severity::kError, "row-twice",
        Tr("row {} was given in line {} already, as {}", note.row, before->line,
           before->name.empty() ? Tr("nothing") : before->name),
        Tr("the library keeps this one"));
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
    Add(Severity::kError, "name-never-found", Tr("the symbol '{}' is a number", name),
        Tr("the library takes it for the number itself"));
  } else if (name.find_first_of(",'") != std::string::npos) {
    Add(Severity::kError, "name-never-found", Tr("the symbol {} holds a comma or a quote", name),
        Tr("no line can write it"));
  } else if (is_key && name.find(' ') != std::string::npos) {
    Add(Severity::kWarning, "name-never-found", Tr("the key '{}' holds a blank", name),
        Tr("a macro takes it for two keys"));
  }
  const bool is_key_code = is_key && value >= 0 && value <= kLastKeyCode;
  if (is_key && !is_key_code) {
    Add(Severity::kWarning, "key-out-of-range",
        Tr("key code {} is not in 0 to {}", value, kLastKeyCode),
        Tr("no command plays it, and a key programmed with it gets the code {}",
           value & kLastKeyCode));
  }
  const auto [before, is_new] = symbol_lines_.emplace(name, line_);
  if (!is_new) {
    Add(Severity::kError, "symbol-twice",
        Tr("the symbol {} was given in line {} already", name, before->second),
        Tr("the library finds the first one"));
  }
  if (is_key_code) {
    const auto [first, is_first] = key_lines_.emplace(value, line_);
    if (!is_first) {
      Add(Severity::kWarning, "key-twice",
          Tr("key code {} has a word already, in line {}", value, first->second),
          Tr("dumps are written with this one"));
      first->second = line_;
    }
  }
}

void DefinitionCheck::TakeText(const DefinitionNote& note) {
  const auto [before, is_new] =
      text_lines_.emplace(std::make_pair(std::string(note.section_name), note.row), line_);
  if (!is_new) {
    Add(Severity::kWarning, "row-twice",
        Tr("row {} was given in line {} already", note.row, before->second),
        Tr("the library keeps this one"));
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
