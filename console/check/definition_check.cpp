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

std::string trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool is_integer(const std::string& text) {
  const size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
  return text.size() > first && text.find_first_not_of("0123456789", first) == std::string::npos;
}

bool all_digits(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

const std::vector<std::string>& section_names() {
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

const DefinitionCheck::Texts* DefinitionCheck::find_texts(const std::string& section) {
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

void DefinitionCheck::add(Severity severity, const char* rule, std::string what, std::string effect,
                          std::string suggestion) {
  Finding finding;
  finding.severity = severity;
  finding.rule = rule;
  finding.line = line_;
  finding.what = std::move(what);
  finding.effect = std::move(effect);
  finding.suggestion = std::move(suggestion);
  findings_.add(std::move(finding));
}

void DefinitionCheck::check_bytes(const SourceLine& line) {
  if (line.nul_at != 0) {
    add(Severity::kError, "nul-byte", tr("a NUL byte in column {}", line.nul_at),
        tr("the library reads the line only up to there"));
  }
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) {
    add(Severity::kError, "bare-carriage-return",
        tr("a carriage return in column {} ends no line", carriage_return + 1),
        tr("what follows belongs to the same line"));
  }
  if (line.length > kDefinitionLineLimit) {
    const std::string cut = cleaned_definition_line(line.text.substr(0, kDefinitionLineLimit));
    if (cut != cleaned_definition_line(line.text)) {
      add(Severity::kError, "line-too-long",
          tr("the line has {} characters, more than {}", line.length, kDefinitionLineLimit),
          tr("the library cuts it there"));
    }
  }
}

void DefinitionCheck::take(const SourceLine& line) {
  line_ = line.number;
  check_bytes(line);
  std::string text = line.text.substr(0, kDefinitionLineLimit);
  if (line.number == 1 && text.rfind("\xEF\xBB\xBF", 0) == 0) {
    add(Severity::kError, "byte-order-mark", tr("the file begins with a byte order mark"),
        tr("the library takes it for a part of the first line"));
  }
  text = cleaned_definition_line(text);
  if (text.empty()) return;
  if (text.front() == '[') {
    take_header(text);
  } else {
    take_entry(text);
  }
}

// --- Headers.

void DefinitionCheck::take_header(const std::string& text) {
  section_seen_ = true;
  section_ = section_name(text);
  texts_ = find_texts(section_);
  id_ = 0;
  if (text.size() < 2 || text.back() != ']') {
    add(Severity::kError, "header-not-closed", tr("'{}' is not closed by a ']'", text),
        tr("its last character is dropped, so that it names the section '{}'", section_));
  }
  if (section_ == "OPCOD") {
    kind_ = Kind::kCommands;
    open_rows(DefinitionRows::kCommandSlot);
  } else if (section_ == "EQU") {
    kind_ = Kind::kSymbols;
  } else if (section_ == "EQUTASTI") {
    kind_ = Kind::kKeys;
  } else if (texts_ != nullptr) {
    kind_ = Kind::kTexts;
  } else if (section_.rfind("ERRMSG", 0) == 0) {
    kind_ = Kind::kDropped;
    add(Severity::kError, "unknown-section",
        tr("[{}] is no section of messages; they are ERRMSG0 to ERRMSG9", section_),
        tr("its lines have no effect or go to another table"));
  } else {
    take_number_header();
  }
}

// Any other name counts as a number, as far as it begins with one.
void DefinitionCheck::take_number_header() {
  id_ = text_to_int(section_.c_str());
  const bool has_rows = id_ >= 1 && id_ < MAXOPCOD;
  kind_ = has_rows ? Kind::kFields : Kind::kDropped;
  if (!all_digits(section_)) {
    const std::string bare = trimmed(section_);
    std::string near = nearest_word(bare, section_names());
    if (near.empty() && all_digits(bare)) near = bare;
    add(Severity::kError, "unknown-section", tr("there is no section [{}]", section_),
        has_rows ? tr("its entries count as fields of the command {}", id_)
                 : tr("its entries have no effect"),
        near.empty() ? near : "[" + near + "]");
  } else if (!has_rows) {
    add(Severity::kError, "section-out-of-range",
        tr("[{}] is no command's number; they go from 1 to {}", section_, MAXOPCOD - 1),
        tr("its entries have no effect"));
  }
  if (has_rows) open_rows(id_);
}

// A section of rows that is opened again starts its highest row anew.
void DefinitionCheck::open_rows(int slot) {
  uint64_t& opened = rows_.section_lines[slot];
  if (opened != 0) {
    add(Severity::kWarning, "section-twice",
        tr("[{}] was opened in line {} already", section_, opened),
        tr("only rows up to the highest one below this header can be found"));
  }
  opened = line_;
}

// --- Entries.

DefinitionCheck::Entry DefinitionCheck::split(const std::string& text) {
  const size_t equals = text.find('=');
  Entry entry{trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))};
  for (std::string* part : {&entry.left, &entry.right}) {
    // A text is taken whole, or not at all.
    const bool is_text = part == &entry.right && kind_ == Kind::kTexts;
    if (part->size() <= kPartLimit || is_text) continue;
    add(Severity::kError, "part-too-long",
        tr("a side of the '=' has {} characters, more than {}", part->size(), kPartLimit),
        tr("the library cuts it there"));
    *part = trimmed(part->substr(0, kPartLimit));
  }
  return entry;
}

void DefinitionCheck::take_entry(const std::string& text) {
  if (!section_seen_ && !entry_before_section_told_) {
    entry_before_section_told_ = true;
    add(Severity::kError, "entry-before-section", tr("an entry in front of the first section"),
        tr("it has no effect"));
  }
  const std::string fault = stopping_fault(section_, text);
  if (!fault.empty()) {
    if (stop_line_ == 0) stop_line_ = line_;
    add(Severity::kError, "stops-reading", fault,
        stop_line_ == line_ ? tr("the library stops reading here and answers 2")
                            : tr("the library would stop here, too"));
    return;
  }
  const Entry entry = split(text);
  switch (kind_) {
    case Kind::kCommands:
      return take_command(entry, text);
    case Kind::kFields:
      return take_field(entry, text);
    case Kind::kSymbols:
    case Kind::kKeys:
      return take_symbol(entry, text);
    case Kind::kTexts:
      return take_text(entry, text);
    case Kind::kDropped:
      return;
  }
}

void DefinitionCheck::check_row_number(const std::string& text) {
  if (is_integer(text)) return;
  add(Severity::kWarning, "not-a-number", tr("the row '{}' is no number", text),
      tr("the library reads {}", text_to_int(text.c_str())));
}

void DefinitionCheck::check_name(const std::string& name, bool is_command) {
  if (name.empty()) {
    add(Severity::kError, "name-missing", tr("the row has no name"), tr("no word finds it"));
    return;
  }
  if (name.size() > MAXSIMBLN) {
    add(Severity::kError, "name-too-long",
        tr("'{}' has {} characters, more than {}", name, name.size(), static_cast<int>(MAXSIMBLN)),
        tr("the library keeps '{}'", name.substr(0, MAXSIMBLN)));
  }
  if (name.find(kQuote) != std::string::npos) {
    add(Severity::kError, "name-never-found", tr("the name {} holds a quote", name),
        is_command ? tr("a line cannot be cleaned of comments behind it")
                   : tr("a line with it answers 262"));
  } else if (name.find(',') != std::string::npos) {
    add(Severity::kError, "name-never-found", tr("the name '{}' begins with a comma", name),
        tr("the comma belongs to the name, and no line can write it"));
  } else if (is_command && name.find(' ') != std::string::npos) {
    add(Severity::kError, "name-never-found", tr("the name '{}' holds a blank", name),
        tr("a command's word ends there"));
  } else if (is_command && name.front() == '@') {
    add(Severity::kError, "name-never-found", tr("the name '{}' begins with '@'", name),
        tr("such a line names a batch file"));
  } else if (name.front() == '#' && all_digits(name.substr(1))) {
    add(Severity::kError, "name-never-found", tr("the name '{}' is a number", name),
        tr("the library takes it for the number itself as far as there is one"));
  }
}

// The common part of command and field rows; whether the row reaches a table.
bool DefinitionCheck::take_row(const Entry& entry, const std::string& text, int slot) {
  const bool is_command = slot == DefinitionRows::kCommandSlot;
  check_row_number(entry.left);
  const int row = text_to_int(entry.left.c_str());
  const int last = is_command ? int{MAXOPCOD} : int{MAXCAMPI};
  if (row < 1 || row > last) {
    add(Severity::kError, "row-out-of-range", tr("row {} is not in 1 to {}", row, last),
        tr("the entry has no effect"));
    return false;
  }
  // A comma in front belongs to the name.
  size_t comma = entry.right.find(',');
  if (comma == 0) comma = std::string::npos;
  const std::string name = trimmed(entry.right.substr(0, comma));
  check_name(name, is_command);
  if (comma != std::string::npos) {
    const std::string behind = trimmed(entry.right.substr(comma + 1));
    const bool mark = entry.right.size() > comma + 1 && entry.right[comma + 1] == 'O';
    const int number = text_to_int(behind.c_str());
    if (mark && is_command) {
      add(Severity::kWarning, "mark-without-effect", tr("a command cannot be mandatory"),
          tr("the ',O' has no effect"));
    } else if (!mark && !behind.empty() && !is_integer(behind)) {
      add(Severity::kWarning, "not-a-number",
          tr("behind the comma '{}' is no number and no 'O'", behind),
          tr("the library reads {}",
             number == 0 ? tr("the row's own number") : std::to_string(number)));
    }
    const int highest = is_command ? MAXOPCOD - 1 : int{MAXCAMPI};
    if (number < 0 || number > highest) {
      add(Severity::kError, "number-out-of-range",
          tr("number {} is not in 1 to {}", number, highest),
          is_command ? tr("a line with it answers 268") : tr("a line with it answers 260"));
    }
  }
  const DefinitionRows::Row* before = rows_.find(slot, row);
  if (before != nullptr) {
    add(before->name == name ? Severity::kWarning : Severity::kError, "row-twice",
        tr("row {} was given in line {} already, as {}", row, before->line,
           before->name.empty() ? tr("nothing") : before->name),
        tr("the library keeps this one"));
  }
  store(slot, row, name, text);
  return true;
}

void DefinitionCheck::store(int slot, int row, const std::string& name, const std::string& text) {
  const auto section = rows_.section_lines.find(slot);
  DefinitionRows::Row& stored = rows_.rows[{slot, row}];
  stored.line = line_;
  stored.section_line = section == rows_.section_lines.end() ? 0 : section->second;
  stored.name = name.substr(0, MAXSIMBLN);
  stored.text = text;
}

void DefinitionCheck::take_command(const Entry& entry, const std::string& text) {
  if (!take_row(entry, text, DefinitionRows::kCommandSlot)) return;
  if (text_to_int(entry.left.c_str()) == MAXOPCOD) {
    add(Severity::kError, "row-out-of-reach",
        tr("row {} is behind the last that is searched", static_cast<int>(MAXOPCOD)),
        tr("the library reads it and never finds it"));
  }
}

void DefinitionCheck::take_field(const Entry& entry, const std::string& text) {
  take_row(entry, text, id_);
}

void DefinitionCheck::take_symbol(const Entry& entry, const std::string& text) {
  const bool is_key = kind_ == Kind::kKeys;
  if (!is_integer(entry.right)) {
    add(Severity::kError, "not-a-number",
        tr("the value '{}' of {} is no number", entry.right, entry.left),
        tr("the library reads {}", text_to_int(entry.right.c_str())));
  }
  const int value = text_to_int(entry.right.c_str());
  if (rows_.symbols.size() >= MAXSIMB - 1) {
    if (symbols_over_++ == 0) {
      add(Severity::kError, "too-many-symbols", tr("more than {} symbols", MAXSIMB - 1),
          tr("this one and those behind it have no effect"));
    }
    return;
  }
  std::string name = entry.left;
  std::string bare = name;
  if (name.size() > kLongestSymbol) {
    add(Severity::kError, "name-too-long",
        tr("'{}' has {} characters, more than {}", name, name.size(), kLongestSymbol),
        tr("the library keeps '{}', which is another word", name.substr(0, kLongestSymbol)));
    name.resize(kLongestSymbol);
  }
  if (lorimatutility::SeNum(bare.data())) {
    add(Severity::kError, "name-never-found", tr("the symbol '{}' is a number", name),
        tr("the library takes it for the number itself"));
  } else if (name.find_first_of(",'") != std::string::npos) {
    add(Severity::kError, "name-never-found", tr("the symbol {} holds a comma or a quote", name),
        tr("no line can write it"));
  } else if (is_key && name.find(' ') != std::string::npos) {
    add(Severity::kWarning, "name-never-found", tr("the key '{}' holds a blank", name),
        tr("a macro takes it for two keys"));
  }
  const bool is_key_code = is_key && value >= 0 && value <= kLastKeyCode;
  if (is_key && !is_key_code) {
    add(Severity::kWarning, "key-out-of-range",
        tr("key code {} is not in 0 to {}", value, kLastKeyCode),
        tr("no command plays it, and a key programmed with it gets the code {}",
           value & kLastKeyCode));
  }
  const auto [before, is_new] = symbol_lines_.emplace(name, line_);
  if (!is_new) {
    add(Severity::kError, "symbol-twice",
        tr("the symbol {} was given in line {} already", name, before->second),
        tr("the library finds the first one"));
  }
  if (is_key_code) {
    const auto [first, is_first] = key_lines_.emplace(value, line_);
    if (!is_first) {
      add(Severity::kWarning, "key-twice",
          tr("key code {} has a word already, in line {}", value, first->second),
          tr("dumps are written with this one"));
      first->second = line_;
    }
  }
  rows_.symbols.push_back({line_, is_key, text});
}

void DefinitionCheck::take_text(const Entry& entry, const std::string& text) {
  check_row_number(entry.left);
  const int row = text_to_int(entry.left.c_str());
  if (row < 0 || row >= texts_->rows) {
    add(Severity::kError, "row-out-of-range",
        tr("row {} of [{}] is not in 0 to {}", row, section_, texts_->rows - 1),
        tr("the entry has no effect"));
    return;
  }
  std::string right = entry.right;
  std::string taken(texts_->longest + 1, '\0');
  const int refused = lorimatutility::EstraeAlfa(right.data(), taken.data(),
                                                 static_cast<int>(texts_->longest), *kQuote);
  if (refused == 9) {
    add(Severity::kError, "text-too-long",
        tr("the text has more than {} characters", texts_->longest), tr("the entry has no effect"));
    return;
  }
  if (refused != 0) {
    add(Severity::kError, "bad-quote",
        tr("a quote is not closed, or stands behind the text's begin"),
        tr("the entry has no effect"));
    return;
  }
  const auto [before, is_new] = text_lines_.emplace(std::make_pair(texts_, row), line_);
  if (!is_new) {
    add(Severity::kWarning, "row-twice",
        tr("row {} was given in line {} already", row, before->second),
        tr("the library keeps this one"));
    before->second = line_;
  }
  if (section_ == "INTMSG") store(DefinitionRows::kMessageSlot, row, "", text);
}

void DefinitionCheck::finish() {
  line_ = 0;
  check_words(rows_, findings_);
}

}  // namespace lorimat::console
