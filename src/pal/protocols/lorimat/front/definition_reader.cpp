// The definition file: it binds the words of the language to opcode ids, field numbers and
// symbols, and may replace the message texts.
//
// What stands in a line beyond its table (a row, an id, a section out of range) is refused
// row by row: it is not stored, and the file is read on. What the file's reader cannot go on
// with (a line without "=", a row that is no number) ends the reading.

#include "pal/protocols/lorimat/front/definition_reader.h"

#include <algorithm>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr int kInternalKeys = 40;  // the table has more rows than the section takes keys
constexpr char kBlank = ' ';

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == kBlank) text.remove_prefix(1);
  while (!text.empty() && text.back() == kBlank) text.remove_suffix(1);
  return text;
}

template <size_t Size>
void TakePart(char (&part)[Size], std::string_view text) {
  const std::string_view kept = Trimmed(Trimmed(text).substr(0, Size - 1));
  CopyBytes(part, Size, kept.data(), kept.size());
}

// Whether a text is all of the number that is read of it.
bool IsWholeNumber(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

}  // namespace

DefinitionReader::DefinitionReader(EcrCmdInterpreter& tables, DefinitionSink* sink)
    : tables_(tables), sink_(sink) {
  tables_.iTotOpCodes = 0;
  tables_.iTotSimb = 0;
}

bool DefinitionReader::TakeLine(char* line, uint64_t number) {
  char* const cleaned = tables_.szAux;
  if (lorimatutility::TogliCommento(cleaned, line, tables_.cChQuote) == 0) return true;
  line_ = number;
  row_ = 0;
  if (sink_ != nullptr) indent_ = std::strspn(line, " \t");
  if (cleaned[0] != '[') return TakeEntry(cleaned);
  TakeHeader(cleaned);
  return true;
}

DefinitionSection DefinitionReader::SectionKind(const char* name) {
  if (std::strcmp(name, "OPCOD") == 0) return DefinitionSection::kCommands;
  if (std::strcmp(name, "EQU") == 0) return DefinitionSection::kSymbols;
  if (std::strcmp(name, "EQUTASTI") == 0) return DefinitionSection::kKeys;
  if (std::strcmp(name, "INTMSG") == 0) return DefinitionSection::kInternal;
  if (std::strcmp(name, "TOTG") == 0) return DefinitionSection::kTotals;
  if (std::strncmp(name, "ERRMSG", 6) == 0) return DefinitionSection::kMessages;
  return DefinitionSection::kFields;
}

void DefinitionReader::TakeHeader(const char* line) {
  // The name lies between the first and the last character, whatever the last one is.
  const size_t length = std::strlen(line);
  CopyBytes(section_, sizeof section_, line + 1, length > 1 ? length - 2 : 0);
  kind_ = SectionKind(section_);
  section_id_ = TextToInt(section_);
  highest_ = 0;
  section_seen_ = true;
  if (length < 2 || line[length - 1] != ']') {
    Tell(DefinitionCause::kHeaderNotClosed, {line, length}, 0, 0, section_);
  }
  Tell(DefinitionCause::kSection, {line, length});
}

// --- Entries.

bool DefinitionReader::Split(const char* line) {
  const std::string_view text = line;
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos) {
    Tell(DefinitionCause::kNoEquals, line);
    return false;
  }
  const std::string_view right = text.substr(equals + 1);
  TakePart(entry_.left, text.substr(0, equals));
  TakePart(entry_.right, right);
  if (kind_ >= DefinitionSection::kInternal) {
    TakePart(entry_.message, right);
  }
  if (sink_ != nullptr) FindParts(text, equals);
  if (entry_.left[0] != 0) return true;
  Tell(DefinitionCause::kNothingInFront, line);
  return false;
}

bool DefinitionReader::TakeEntry(const char* line) {
  if (!section_seen_) Tell(DefinitionCause::kNoSection, line);
  if (!Split(line)) return false;
  if (kind_ == DefinitionSection::kSymbols || kind_ == DefinitionSection::kKeys) {
    TellCuts();
    TakeSymbol(kind_ == DefinitionSection::kKeys);
    return true;
  }
  const int key = TextToInt(entry_.left);
  row_ = key;
  const bool is_command = kind_ == DefinitionSection::kCommands;
  if (is_command || kind_ == DefinitionSection::kFields) {
    if (key == 0) {
      Tell(DefinitionCause::kNoRowNumber, left_);
      return false;
    }
    if (is_command && key > MAXOPCOD) {
      Tell(DefinitionCause::kRowAboveLast, left_, key, MAXOPCOD);
      return false;
    }
  }
  TellCuts();
  if (sink_ != nullptr && !IsWholeNumber(left_)) {
    Tell(DefinitionCause::kRowNotANumber, left_, key);
  }
  if (is_command) {
    TakeCommand(key);
  } else if (kind_ == DefinitionSection::kFields) {
    TakeField(key);
  } else {
    TakeMessage(key);
  }
  return true;
}

DefinitionReader::Binding DefinitionReader::TakeBinding(const char* text) {
  Binding binding = {};
  const char* comma = std::strchr(text, ',');
  if (comma == text) comma = nullptr;  // a comma in first position belongs to the name
  const size_t length = comma != nullptr ? static_cast<size_t>(comma - text) : std::strlen(text);
  CopyBytes(binding.name, sizeof binding.name, text, length);
  lorimatutility::TogliSpaziD(binding.name);
  if (comma != nullptr) {
    binding.mandatory = comma[1] == 'O';
    binding.number = TextToInt(comma + 1);
  }
  return binding;
}

void DefinitionReader::TakeCommand(int row) {
  if (row < 0) return Tell(DefinitionCause::kRowOutOfRange, left_, row, MAXOPCOD);
  highest_ = std::max(highest_, row);
  tables_.iTotOpCodes = highest_;
  const Binding binding = TakeBinding(entry_.right);
  // The last row counts and is out of reach of every search.
  if (row < MAXOPCOD) {
    CopyText(tables_.szOpCodes[row], binding.name);
    tables_.iIdOpCodes[row] = binding.number != 0 ? binding.number : row;
  }
  TellBinding(binding);
  if (row == MAXOPCOD) Tell(DefinitionCause::kRowOutOfReach, left_, row, MAXOPCOD);
}

void DefinitionReader::TakeField(int row) {
  const int id = section_id_;
  if (id < 0 || id >= MAXOPCOD) {
    return Tell(DefinitionCause::kSectionOutOfRange, left_, id, MAXOPCOD - 1);
  }
  if (row < 0 || row > MAXCAMPI) {
    return Tell(DefinitionCause::kRowOutOfRange, left_, row, MAXCAMPI);
  }
  highest_ = std::max(highest_, row);
  tables_.iNumOper[id] = highest_;
  const Binding binding = TakeBinding(entry_.right);
  CopyText(tables_.szKeyI[id][row], binding.name);
  tables_.bObl[id][row] = binding.mandatory;
  tables_.iNCI[id][row] = binding.number != 0 ? binding.number : row;
  TellBinding(binding);
}

void DefinitionReader::TakeSymbol(bool is_key) {
  constexpr int kKeyCodes = static_cast<int>(sizeof tables_.iInvTast / sizeof tables_.iInvTast[0]);
  const int value = TextToInt(entry_.right);
  if (sink_ != nullptr && !IsWholeNumber(right_)) {
    Tell(DefinitionCause::kValueNotANumber, right_, value, 0, left_);
  }
  if (tables_.iTotSimb + 1 >= MAXSIMB) {
    return Tell(DefinitionCause::kTableFull, left_, value, MAXSIMB - 1);
  }
  const int row = ++tables_.iTotSimb;
  CopyText(tables_.szSimb[row], entry_.left);
  tables_.iVSimb[row] = value;
  // A code that no key has keeps its name: only the way back, from the key to its name, has no
  // place for it.
  if (is_key && value >= 0 && value < kKeyCodes) tables_.iInvTast[value] = row;
  if (sink_ == nullptr) return;
  row_ = row;
  const std::string_view kept = left_.substr(0, MAXSIMBLN);
  if (kept.size() < left_.size()) Tell(DefinitionCause::kNameCut, left_, 0, MAXSIMBLN, kept);
  Tell(DefinitionCause::kSymbol, left_, value, 0, kept);
}

// --- Messages.

void DefinitionReader::TakeMessage(int key) {
  switch (kind_) {
    case DefinitionSection::kInternal:
      return StoreMessage(tables_.TabIntMsg, key, kInternalKeys);
    case DefinitionSection::kTotals:
      return StoreMessage(tables_.TabDscTotG, key);
    default:
      return StoreErrorMessage(TextToInt(section_ + 6), key);
  }
}

// Stores a text under its key. A bad text, one longer than the table's rows and a key outside the
// table leave it as it is.
template <size_t Rows, size_t Size>
void DefinitionReader::StoreMessage(char (&table)[Rows][Size], int key, int keys) {
  if (key < 0 || key >= keys) {
    return Tell(DefinitionCause::kRowOutOfRange, left_, key, keys - 1);
  }
  char text[Size + 1];
  char message[kLineLimit + 1];
  CopyText(message, entry_.message);
  constexpr int kLongest = static_cast<int>(Size);
  constexpr int kTooLong = 9;
  const int refused = lorimatutility::EstraeAlfa(message, text, kLongest, tables_.cChQuote);
  if (refused != 0) {
    return Tell(
        refused == kTooLong ? DefinitionCause::kTextTooLong : DefinitionCause::kTextBadlyQuoted,
        whole_right_, key, kLongest);
  }
  StoreRow(table[key], text);
  Tell(DefinitionCause::kText, whole_right_, key);
}

void DefinitionReader::StoreErrorMessage(int digit, int key) {
  switch (digit) {
    case 0:
      return StoreMessage(tables_.TabErrTradBase, key);
    case 1:
      return StoreMessage(tables_.TabErrTrad1, key);
    case 2:
      return StoreMessage(tables_.TabErrKey2, key);
    case 3:
      return StoreMessage(tables_.TabErrKey3, key);
    case 4:
      return StoreMessage(tables_.TabErrTrad4, key);
    case 5:
      return StoreMessage(tables_.TabErrTrad5, key);
    case 6:
      return StoreMessage(tables_.TabErrTrad6, key);
    case 7:
      return StoreMessage(tables_.TabErrTrad7, key);
    case 8:
      return StoreMessage(tables_.TabErrTrad8, key);
    case 9:
      return StoreMessage(tables_.TabErrTrad9, key);
    default:
      return Tell(DefinitionCause::kNoSuchTable, left_, digit);
  }
}

// --- What the sink is told.

void DefinitionReader::TellSink(DefinitionCause cause, std::string_view text, int number, int limit,
                                std::string_view kept) {
  // The cleaning takes bytes in front of the line and behind it away, and none within.
  const uint64_t column = indent_ + static_cast<uint64_t>(text.data() - tables_.szAux) + 1;
  const int id = kind_ == DefinitionSection::kFields ? section_id_ : 0;
  sink_->Take({cause, line_, column, kind_, section_, id, row_, text, kept, number, limit});
}

void DefinitionReader::FindParts(std::string_view line, size_t equals) {
  whole_left_ = Trimmed(line.substr(0, equals));
  whole_right_ = Trimmed(line.substr(equals + 1));
  left_ = Trimmed(whole_left_.substr(0, kPartLimit));
  right_ = Trimmed(whole_right_.substr(0, kPartLimit));
}

// A message is taken whole, or not at all.
void DefinitionReader::TellCuts() {
  if (sink_ == nullptr) return;
  constexpr int kLimit = static_cast<int>(kPartLimit);
  if (whole_left_.size() > kPartLimit) {
    Tell(DefinitionCause::kPartCut, whole_left_, 0, kLimit, left_);
  }
  const bool is_text = kind_ == DefinitionSection::kInternal ||
                       kind_ == DefinitionSection::kTotals || kind_ == DefinitionSection::kMessages;
  if (whole_right_.size() > kPartLimit && !is_text) {
    Tell(DefinitionCause::kPartCut, whole_right_, 0, kLimit, right_);
  }
}

// The row of a command or field that was stored.
void DefinitionReader::TellBinding(const Binding& binding) {
  if (sink_ == nullptr) return;
  const bool is_command = kind_ == DefinitionSection::kCommands;
  size_t comma = right_.find(',');
  if (comma == 0) comma = std::string_view::npos;
  const std::string_view name = Trimmed(right_.substr(0, comma));
  if (name.empty()) {
    Tell(DefinitionCause::kNameMissing, right_);
  } else {
    if (name.size() > MAXSIMBLN) {
      Tell(DefinitionCause::kNameCut, name, 0, MAXSIMBLN, name.substr(0, MAXSIMBLN));
    }
    Tell(DefinitionCause::kNameRead, name);
  }
  const std::string_view behind =
      comma < right_.size() ? Trimmed(right_.substr(comma + 1)) : std::string_view();
  if (binding.mandatory && is_command) {
    Tell(DefinitionCause::kMarkIgnored, behind);
  } else if (!binding.mandatory && !behind.empty() && !IsWholeNumber(behind)) {
    Tell(DefinitionCause::kNumberNotANumber, behind, binding.number);
  }
  Tell(is_command ? DefinitionCause::kCommand : DefinitionCause::kField, name, binding.number, 0,
       name.substr(0, MAXSIMBLN));
}
