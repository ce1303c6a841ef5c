// The definition file: it binds the words of the language to opcode ids, field numbers and
// symbols, and may replace the message texts.
//
// What stands in a line beyond its table (a row, an id, a section out of range) is refused
// row by row: it is not stored, and the file is read on. What the file's reader cannot go on
// with (a line without "=", a row that is no number) ends the reading.

#include <algorithm>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr size_t kLineLimit = 254;
constexpr size_t kPartLimit = 79;

enum class Section { kCommands, kFields, kSymbols, kKeys, kInternal, kTotals, kMessages };

Section SectionKind(const char* name) {
  if (std::strcmp(name, "OPCOD") == 0) return Section::kCommands;
  if (std::strcmp(name, "EQU") == 0) return Section::kSymbols;
  if (std::strcmp(name, "EQUTASTI") == 0) return Section::kKeys;
  if (std::strcmp(name, "INTMSG") == 0) return Section::kInternal;
  if (std::strcmp(name, "TOTG") == 0) return Section::kTotals;
  if (std::strncmp(name, "ERRMSG", 6) == 0) return Section::kMessages;
  return Section::kFields;
}

// One entry, "left=right", both parts trimmed and cut. A message has the whole right part.
struct Entry {
  char left[kPartLimit + 1];
  char right[kPartLimit + 1];
  char message[kLineLimit + 1];
};

template <size_t Size>
void TakePart(char (&part)[Size], const char* text, size_t length) {
  while (length > 0 && *text == ' ') {
    ++text;
    --length;
  }
  CopyBytes(part, sizeof part, text, length);
  lorimatutility::TogliSpaziD(part);
}

bool TakeEntry(Entry& entry, const char* line) {
  const char* equals = std::strchr(line, '=');
  if (equals == nullptr) return false;
  TakePart(entry.left, line, static_cast<size_t>(equals - line));
  TakePart(entry.right, equals + 1, std::strlen(equals + 1));
  TakePart(entry.message, equals + 1, std::strlen(equals + 1));
  return entry.left[0] != 0;
}

// The right part of a command or field row: a name, then a number or the mandatory mark.
struct Binding {
  char name[MAXSIMBLN + 1];
  int number;  // 0 for none
  bool mandatory;
};

Binding TakeBinding(const char* text) {
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

// Stores a text under its key. A bad text, one longer than the table's rows and a key outside the
// table leave it as it is.
template <size_t Rows, size_t Size>
void StoreMessage(char (&table)[Rows][Size], int key, const Entry& entry, char quote) {
  char text[Size + 1];
  char message[kLineLimit + 1];
  if (key < 0 || key >= static_cast<int>(Rows)) return;
  CopyText(message, entry.message);
  const int longest = static_cast<int>(Size);
  if (lorimatutility::EstraeAlfa(message, text, longest, quote) == 0) StoreRow(table[key], text);
}

void StoreErrorMessage(EcrCmdInterpreter& tables, int digit, int key, const Entry& entry) {
  const char quote = tables.cChQuote;
  switch (digit) {
    case 0:
      return StoreMessage(tables.TabErrTradBase, key, entry, quote);
    case 1:
      return StoreMessage(tables.TabErrTrad1, key, entry, quote);
    case 2:
      return StoreMessage(tables.TabErrKey2, key, entry, quote);
    case 3:
      return StoreMessage(tables.TabErrKey3, key, entry, quote);
    case 4:
      return StoreMessage(tables.TabErrTrad4, key, entry, quote);
    case 5:
      return StoreMessage(tables.TabErrTrad5, key, entry, quote);
    case 6:
      return StoreMessage(tables.TabErrTrad6, key, entry, quote);
    case 7:
      return StoreMessage(tables.TabErrTrad7, key, entry, quote);
    case 8:
      return StoreMessage(tables.TabErrTrad8, key, entry, quote);
    case 9:
      return StoreMessage(tables.TabErrTrad9, key, entry, quote);
    default:
      return;
  }
}

void StoreSymbol(EcrCmdInterpreter& tables, const Entry& entry, bool is_key) {
  constexpr int kKeyCodes = static_cast<int>(sizeof tables.iInvTast / sizeof tables.iInvTast[0]);
  const int value = TextToInt(entry.right);
  if (tables.iTotSimb + 1 >= MAXSIMB) return;
  const int row = ++tables.iTotSimb;
  CopyText(tables.szSimb[row], entry.left);
  tables.iVSimb[row] = value;
  // A code that no key has keeps its name: only the way back, from the key to its name, has no
  // place for it.
  if (is_key && value >= 0 && value < kKeyCodes) tables.iInvTast[value] = row;
}

// Reads the lines of one file into the tables.
class LanguageReader {
 public:
  explicit LanguageReader(EcrCmdInterpreter& tables) : tables_(tables) {}

  // One cleaned line; false ends the reading.
  bool TakeLine(const char* line) {
    if (line[0] == '[') {
      TakeHeader(line);
      return true;
    }
    Entry entry;
    if (!TakeEntry(entry, line)) return false;
    const Section kind = SectionKind(section_);
    if (kind == Section::kSymbols || kind == Section::kKeys) {
      StoreSymbol(tables_, entry, kind == Section::kKeys);
      return true;
    }
    const int key = TextToInt(entry.left);
    switch (kind) {
      case Section::kInternal:
        // The table has more rows than the section takes keys.
        if (key < kInternalKeys) StoreMessage(tables_.TabIntMsg, key, entry, tables_.cChQuote);
        return true;
      case Section::kTotals:
        StoreMessage(tables_.TabDscTotG, key, entry, tables_.cChQuote);
        return true;
      case Section::kMessages:
        StoreErrorMessage(tables_, TextToInt(section_ + 6), key, entry);
        return true;
      case Section::kCommands:
        return TakeCommand(key, entry);
      default:
        return TakeField(key, entry);
    }
  }

 private:
  static constexpr int kInternalKeys = 40;

  void TakeHeader(const char* line) {
    // The name lies between the first and the last character, whatever the last one is.
    const size_t length = std::strlen(line);
    CopyBytes(section_, sizeof section_, line + 1, length > 1 ? length - 2 : 0);
    highest_ = 0;
  }

  bool TakeCommand(int row, const Entry& entry) {
    if (row == 0 || row > MAXOPCOD) return false;
    if (row < 0) return true;
    highest_ = std::max(highest_, row);
    tables_.iTotOpCodes = highest_;
    // The last row counts and is out of reach of every search.
    if (row == MAXOPCOD) return true;
    const Binding binding = TakeBinding(entry.right);
    CopyText(tables_.szOpCodes[row], binding.name);
    tables_.iIdOpCodes[row] = binding.number != 0 ? binding.number : row;
    return true;
  }

  bool TakeField(int row, const Entry& entry) {
    if (row == 0) return false;
    const int id = TextToInt(section_);
    if (row < 0 || row > MAXCAMPI || id < 0 || id >= MAXOPCOD) return true;
    highest_ = std::max(highest_, row);
    tables_.iNumOper[id] = highest_;
    const Binding binding = TakeBinding(entry.right);
    CopyText(tables_.szKeyI[id][row], binding.name);
    tables_.bObl[id][row] = binding.mandatory;
    tables_.iNCI[id][row] = binding.number != 0 ? binding.number : row;
    return true;
  }

  EcrCmdInterpreter& tables_;
  char section_[kLineLimit + 1] = {};
  int highest_ = 0;  // highest row so far of the section
};

}  // namespace

int EcrCmdInterpreter::LeggiFileIni(char* szNomeFileIni) {
  CopyBytes(filename_, kPartLimit + 1, szNomeFileIni, std::strlen(szNomeFileIni));
  fs_file_t file;
  if (fs_open(&file, filename_, FS_RDONLY) == FS_BADF &&
      fs_open(&file, "merkelin.ini", FS_RDONLY) == FS_BADF) {
    return 0;
  }
  iTotOpCodes = 0;
  iTotSimb = 0;
  LanguageReader reader(*this);
  char line[kLineLimit + 1];
  int read;
  bool good = true;
  while (good && (read = SeqFileRead(&file, line, kLineLimit)) >= 0) {
    if (lorimatutility::TogliCommento(szAux, line, cChQuote) > 0) good = reader.TakeLine(szAux);
  }
  fs_close(&file);
  constexpr int kEndOfFile = -1;
  return good && read == kEndOfFile ? 1 : 0;
}
