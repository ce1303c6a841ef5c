#include "console/check/definition_check.h"

#include <fmt/format.h>

#include <algorithm>

#include "console/check/definition_fault.h"
#include "console/message/translate.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/lorimatenums.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

constexpr size_t kPartLimit = 79;
constexpr int kLastKeyCode = 255;  // a key's code is one byte
constexpr size_t kLongestSymbol = MAXSIMBLN;
constexpr const char* kQuote = "'";

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool IsInteger(const std::string& text) {
  const size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
  return text.size() > first && text.find_first_not_of("0123456789", first) == std::string::npos;
}

bool AllDigits(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

const std::vector<std::string>& SectionNames() {
  static const std::vector<std::string> names = {"OPCOD",  "EQU",  "EQUTASTI",
                                                 "INTMSG", "TOTG", "ERRMSG"};
  return names;
}

}  // namespace

// A section of texts, and what it takes.
struct DefinitionCheck::Texts {
  const char* section;
  int rows;
  size_t longest;
};

const DefinitionCheck::Texts* DefinitionCheck::FindTexts(const std::string& section) {
  static constexpr Texts kTexts[] = {
      {"INTMSG", 40, 32},  {"TOTG", 100, 32},   {"ERRMSG", 50, 80},  {"ERRMSG0", 50, 80},
      {"ERRMSG1", 40, 80}, {"ERRMSG2", 20, 80}, {"ERRMSG3", 30, 80}, {"ERRMSG4", 10, 80},
      {"ERRMSG5", 10, 80}, {"ERRMSG6", 20, 80}, {"ERRMSG7", 20, 80}, {"ERRMSG8", 10, 80},
      {"ERRMSG9", 10, 80},
  };
  for (const Texts& texts : kTexts) {
    if (section == texts.section) return &texts;
  }
  return nullptr;
}

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
  if (line.length > kDefinitionLineLimit) {
    const std::string cut = CleanedDefinitionLine(line.text.substr(0, kDefinitionLineLimit));
    if (cut != CleanedDefinitionLine(line.text)) {
      Add(Severity::kError, "line-too-long",
          Tr("the line has {} characters, more than {}", line.length, kDefinitionLineLimit),
          Tr("the library cuts it there"));
    }
  }
}

void DefinitionCheck::Take(const SourceLine& line) {
  line_ = line.number;
  CheckBytes(line);
  std::string text = line.text.substr(0, kDefinitionLineLimit);
  if (line.number == 1 && text.rfind("\xEF\xBB\xBF", 0) == 0) {
    Add(Severity::kError, "byte-order-mark", Tr("the file begins with a byte order mark"),
        Tr("the library takes it for a part of the first line"));
  }
  text = CleanedDefinitionLine(text);
  if (text.empty()) return;
  if (text.front() == '[') {
    TakeHeader(text);
  } else {
    TakeEntry(text);
  }
}

// --- Headers.

void DefinitionCheck::TakeHeader(const std::string& text) {
  section_seen_ = true;
  section_ = SectionName(text);
  texts_ = FindTexts(section_);
  id_ = 0;
  if (text.size() < 2 || text.back() != ']') {
    Add(Severity::kError, "header-not-closed", Tr("'{}' is not closed by a ']'", text),
        Tr("its last character is dropped, so that it names the section '{}'", section_));
  }
  if (section_ == "OPCOD") {
    kind_ = Kind::kCommands;
    OpenRows(DefinitionRows::kCommandSlot);
  } else if (section_ == "EQU") {
    kind_ = Kind::kSymbols;
  } else if (section_ == "EQUTASTI") {
    kind_ = Kind::kKeys;
  } else if (texts_ != nullptr) {
    kind_ = Kind::kTexts;
  } else if (section_.rfind("ERRMSG", 0) == 0) {
    kind_ = Kind::kDropped;
    Add(Severity::kError, "unknown-section",
        Tr("[{}] is no section of messages; they are ERRMSG0 to ERRMSG9", section_),
        Tr("its lines have no effect or go to another table"));
  } else {
    TakeNumberHeader();
  }
}

// Any other name counts as a number, as far as it begins with one.
void DefinitionCheck::TakeNumberHeader() {
  id_ = TextToInt(section_.c_str());
  const bool has_rows = id_ >= 1 && id_ < MAXOPCOD;
  kind_ = has_rows ? Kind::kFields : Kind::kDropped;
  if (!AllDigits(section_)) {
    const std::string bare = Trimmed(section_);
    std::string near = NearestWord(bare, SectionNames());
    if (near.empty() && AllDigits(bare)) near = bare;
    Add(Severity::kError, "unknown-section", Tr("there is no section [{}]", section_),
        has_rows ? Tr("its entries count as fields of the command {}", id_)
                 : Tr("its entries have no effect"),
        near.empty() ? near : "[" + near + "]");
  } else if (!has_rows) {
    Add(Severity::kError, "section-out-of-range",
        Tr("[{}] is no command's number; they go from 1 to {}", section_, MAXOPCOD - 1),
        Tr("its entries have no effect"));
  }
  if (has_rows) OpenRows(id_);
}

// A section of rows that is opened again starts its highest row anew.
void DefinitionCheck::OpenRows(int slot) {
  uint64_t& opened = rows_.section_lines[slot];
  if (opened != 0) {
    Add(Severity::kWarning, "section-twice",
        Tr("[{}] was opened in line {} already", section_, opened),
        Tr("only rows up to the highest one below this header can be found"));
  }
  opened = line_;
}

// --- Entries.

DefinitionCheck::Entry DefinitionCheck::Split(const std::string& text) {
  const size_t equals = text.find('=');
  Entry entry{Trimmed(text.substr(0, equals)), Trimmed(text.substr(equals + 1))};
  for (std::string* part : {&entry.left, &entry.right}) {
    // A text is taken whole, or not at all.
    const bool is_text = part == &entry.right && kind_ == Kind::kTexts;
    if (part->size() <= kPartLimit || is_text) continue;
    Add(Severity::kError, "part-too-long",
        Tr("a side of the '=' has {} characters, more than {}", part->size(), kPartLimit),
        Tr("the library cuts it there"));
    *part = Trimmed(part->substr(0, kPartLimit));
  }
  return entry;
}

void DefinitionCheck::TakeEntry(const std::string& text) {
  if (!section_seen_ && !entry_before_section_told_) {
    entry_before_section_told_ = true;
    Add(Severity::kError, "entry-before-section", Tr("an entry in front of the first section"),
        Tr("it has no effect"));
  }
  const std::string fault = StoppingFault(section_, text);
  if (!fault.empty()) {
    if (stop_line_ == 0) stop_line_ = line_;
    Add(Severity::kError, "stops-reading", fault,
        stop_line_ == line_ ? Tr("the library stops reading here and answers 2")
                            : Tr("the library would stop here, too"));
    return;
  }
  const Entry entry = Split(text);
  switch (kind_) {
    case Kind::kCommands:
      return TakeCommand(entry, text);
    case Kind::kFields:
      return TakeField(entry, text);
    case Kind::kSymbols:
    case Kind::kKeys:
      return TakeSymbol(entry, text);
    case Kind::kTexts:
      return TakeText(entry, text);
    case Kind::kDropped:
      return;
  }
}

void DefinitionCheck::CheckRowNumber(const std::string& text) {
  if (IsInteger(text)) return;
  Add(Severity::kWarning, "not-a-number", Tr("the row '{}' is no number", text),
      Tr("the library reads {}", TextToInt(text.c_str())));
}

void DefinitionCheck::CheckName(const std::string& name, bool is_command) {
  if (name.empty()) {
    Add(Severity::kError, "name-missing", Tr("the row has no name"), Tr("no word finds it"));
    return;
  }
  if (name.size() > MAXSIMBLN) {
    Add(Severity::kError, "name-too-long",
        Tr("'{}' has {} characters, more than {}", name, name.size(), static_cast<int>(MAXSIMBLN)),
        Tr("the library keeps '{}'", name.substr(0, MAXSIMBLN)));
  }
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

// The common part of command and field rows; whether the row reaches a table.
bool DefinitionCheck::TakeRow(const Entry& entry, const std::string& text, int slot) {
  const bool is_command = slot == DefinitionRows::kCommandSlot;
  CheckRowNumber(entry.left);
  const int row = TextToInt(entry.left.c_str());
  const int last = is_command ? int{MAXOPCOD} : int{MAXCAMPI};
  if (row < 1 || row > last) {
    Add(Severity::kError, "row-out-of-range", Tr("row {} is not in 1 to {}", row, last),
        Tr("the entry has no effect"));
    return false;
  }
  // A comma in front belongs to the name.
  size_t comma = entry.right.find(',');
  if (comma == 0) comma = std::string::npos;
  const std::string name = Trimmed(entry.right.substr(0, comma));
  CheckName(name, is_command);
  if (comma != std::string::npos) {
    const std::string behind = Trimmed(entry.right.substr(comma + 1));
    const bool mark = entry.right.size() > comma + 1 && entry.right[comma + 1] == 'O';
    const int number = TextToInt(behind.c_str());
    if (mark && is_command) {
      Add(Severity::kWarning, "mark-without-effect", Tr("a command cannot be mandatory"),
          Tr("the ',O' has no effect"));
    } else if (!mark && !behind.empty() && !IsInteger(behind)) {
      Add(Severity::kWarning, "not-a-number",
          Tr("behind the comma '{}' is no number and no 'O'", behind),
          Tr("the library reads {}",
             number == 0 ? Tr("the row's own number") : std::to_string(number)));
    }
    const int highest = is_command ? MAXOPCOD - 1 : int{MAXCAMPI};
    if (number < 0 || number > highest) {
      Add(Severity::kError, "number-out-of-range",
          Tr("number {} is not in 1 to {}", number, highest),
          is_command ? Tr("a line with it answers 268") : Tr("a line with it answers 260"));
    }
  }
  const DefinitionRows::Row* before = rows_.Find(slot, row);
  if (before != nullptr) {
    Add(before->name == name ? Severity::kWarning : Severity::kError, "row-twice",
        Tr("row {} was given in line {} already, as {}", row, before->line,
           before->name.empty() ? Tr("nothing") : before->name),
        Tr("the library keeps this one"));
  }
  Store(slot, row, name, text);
  return true;
}

void DefinitionCheck::Store(int slot, int row, const std::string& name, const std::string& text) {
  const auto section = rows_.section_lines.find(slot);
  DefinitionRows::Row& stored = rows_.rows[{slot, row}];
  stored.line = line_;
  stored.section_line = section == rows_.section_lines.end() ? 0 : section->second;
  stored.name = name.substr(0, MAXSIMBLN);
  stored.text = text;
}

void DefinitionCheck::TakeCommand(const Entry& entry, const std::string& text) {
  if (!TakeRow(entry, text, DefinitionRows::kCommandSlot)) return;
  if (TextToInt(entry.left.c_str()) == MAXOPCOD) {
    Add(Severity::kError, "row-out-of-reach",
        Tr("row {} is behind the last that is searched", static_cast<int>(MAXOPCOD)),
        Tr("the library reads it and never finds it"));
  }
}

void DefinitionCheck::TakeField(const Entry& entry, const std::string& text) {
  TakeRow(entry, text, id_);
}

void DefinitionCheck::TakeSymbol(const Entry& entry, const std::string& text) {
  const bool is_key = kind_ == Kind::kKeys;
  if (!IsInteger(entry.right)) {
    Add(Severity::kError, "not-a-number",
        Tr("the value '{}' of {} is no number", entry.right, entry.left),
        Tr("the library reads {}", TextToInt(entry.right.c_str())));
  }
  const int value = TextToInt(entry.right.c_str());
  if (rows_.symbols.size() >= MAXSIMB - 1) {
    if (symbols_over_++ == 0) {
      Add(Severity::kError, "too-many-symbols", Tr("more than {} symbols", MAXSIMB - 1),
          Tr("this one and those behind it have no effect"));
    }
    return;
  }
  std::string name = entry.left;
  std::string bare = name;
  if (name.size() > kLongestSymbol) {
    Add(Severity::kError, "name-too-long",
        Tr("'{}' has {} characters, more than {}", name, name.size(), kLongestSymbol),
        Tr("the library keeps '{}', which is another word", name.substr(0, kLongestSymbol)));
    name.resize(kLongestSymbol);
  }
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
  rows_.symbols.push_back({line_, is_key, text});
}

void DefinitionCheck::TakeText(const Entry& entry, const std::string& text) {
  CheckRowNumber(entry.left);
  const int row = TextToInt(entry.left.c_str());
  if (row < 0 || row >= texts_->rows) {
    Add(Severity::kError, "row-out-of-range",
        Tr("row {} of [{}] is not in 0 to {}", row, section_, texts_->rows - 1),
        Tr("the entry has no effect"));
    return;
  }
  std::string right = entry.right;
  std::string taken(texts_->longest + 1, '\0');
  const int refused = lorimatutility::EstraeAlfa(right.data(), taken.data(),
                                                 static_cast<int>(texts_->longest), *kQuote);
  if (refused == 9) {
    Add(Severity::kError, "text-too-long",
        Tr("the text has more than {} characters", texts_->longest), Tr("the entry has no effect"));
    return;
  }
  if (refused != 0) {
    Add(Severity::kError, "bad-quote",
        Tr("a quote is not closed, or stands behind the text's begin"),
        Tr("the entry has no effect"));
    return;
  }
  const auto [before, is_new] = text_lines_.emplace(std::make_pair(texts_, row), line_);
  if (!is_new) {
    Add(Severity::kWarning, "row-twice",
        Tr("row {} was given in line {} already", row, before->second),
        Tr("the library keeps this one"));
    before->second = line_;
  }
  if (section_ == "INTMSG") Store(DefinitionRows::kMessageSlot, row, "", text);
}

void DefinitionCheck::Finish() {
  line_ = 0;
  CheckWords(rows_, findings_);
}

}  // namespace lorimat::console
