// The lines of a definition file, read into the translator's tables. Whoever wants to know what
// became of a line gives a sink: it is told what the reader stores, skips, cuts, ignores and
// refuses, and changes nothing about the reading. The library reads without one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

enum class DefinitionSection { kCommands, kFields, kSymbols, kKeys, kInternal, kTotals, kMessages };

// What became of a line, or of a part of it. Each entry that does not end the reading has one cause
// of "stored" or "skipped".
enum class DefinitionCause {
  // A header was read; text is the section's name, number the id that it has as a number.
  kSection,
  // Refused: the library reads no further. Text is the line, or its left part.
  kNoEquals,
  kNothingInFront,
  kNoRowNumber,
  kRowAboveLast,  // limit: the last row of commands
  // Skipped.
  kRowOutOfRange,  // limit: the highest row
  kSectionOutOfRange,
  kNoSuchTable,
  kTableFull,    // limit: the symbols that there may be
  kTextTooLong,  // limit: characters
  kTextBadlyQuoted,
  // Cut: text is all of it, kept is what is left.
  kHeaderNotClosed,
  kPartCut,  // limit: characters
  kNameCut,
  // Ignored, or read as something else.
  kNoSection,         // an entry in front of the first header
  kRowNotANumber,     // number: what it was read as
  kNumberNotANumber,  // behind the comma; number as above
  kValueNotANumber,   // of a symbol; the same
  kMarkIgnored,       // a command that is to be mandatory
  kNameMissing,
  kRowOutOfReach,  // stored, and behind the last row that is searched
  // A name as it was written, ahead of what stands behind its comma.
  kNameRead,
  // Stored: text is the name, number what stands behind its comma (0 for nothing), the value or the
  // key's code. What was stored for the same row before is lost.
  kCommand,
  kField,
  kSymbol,
  kText
};

struct DefinitionNote {
  DefinitionCause cause;
  uint64_t line;    // in the file
  uint64_t column;  // from 1, in bytes, where the part stands in its line
  DefinitionSection section;
  std::string_view section_name;
  int id;   // of a section of fields
  int row;  // of an entry that has one
  // These stay until the next line is taken.
  std::string_view text;
  std::string_view kept;
  int number;
  int limit;
};

class DefinitionSink {
 public:
  virtual void Take(const DefinitionNote& note) = 0;

 protected:
  ~DefinitionSink() = default;
};

class DefinitionReader {
 public:
  // The characters that the library takes of a line.
  static constexpr size_t kLineLimit = 254;

  // Both have to outlive this object; the sink may be null. Commands and symbols are counted anew.
  DefinitionReader(EcrCmdInterpreter& tables, DefinitionSink* sink);

  // A line of at most kLineLimit characters, without its end. Returns false where the library reads
  // no further; a caller that goes on all the same learns what it would have read.
  bool TakeLine(char* line, uint64_t number);

 private:
  static constexpr size_t kPartLimit = 79;

  // "left=right", both parts trimmed and cut. A message, in sections of messages, has the whole
  // right part.
  struct Entry {
    char left[kPartLimit + 1];
    char right[kPartLimit + 1];
    char message[kLineLimit + 1];
  };
  // The right part of a command or field row: a name, then a number or the mandatory mark.
  struct Binding {
    char name[MAXSIMBLN + 1];
    int number;  // 0 for none
    bool mandatory;
  };

  static DefinitionSection SectionKind(const char* name);
  static Binding TakeBinding(const char* text);
  void TakeHeader(const char* line);
  bool TakeEntry(const char* line);
  bool Split(const char* line);
  void TakeCommand(int row);
  void TakeField(int row);
  void TakeSymbol(bool is_key);
  void TakeMessage(int key);
  template <size_t Rows, size_t Size>
  void StoreMessage(char (&table)[Rows][Size], int key, int keys = static_cast<int>(Rows));
  void StoreErrorMessage(int digit, int key);

  // What the sink is told; nothing without one. The text is a part of the line at work.
  void Tell(DefinitionCause cause, std::string_view text, int number = 0, int limit = 0,
            std::string_view kept = {}) {
    if (sink_ != nullptr) TellSink(cause, text, number, limit, kept);
  }
  void TellSink(DefinitionCause cause, std::string_view text, int number, int limit,
                std::string_view kept);
  void FindParts(std::string_view line, size_t equals);
  void TellCuts();
  void TellBinding(const Binding& binding);

  EcrCmdInterpreter& tables_;
  DefinitionSink* sink_;
  char section_[kLineLimit + 1] = {};
  DefinitionSection kind_ = DefinitionSection::kFields;
  int section_id_ = 0;  // its name as a number
  int highest_ = 0;     // highest row so far of the section
  Entry entry_ = {};
  // For the sink alone.
  uint64_t line_ = 0;
  size_t indent_ = 0;  // blanks in front of the line
  bool section_seen_ = false;
  int row_ = 0;
  // The parts of the entry in the line: trimmed, and then cut as the tables have them.
  std::string_view whole_left_, whole_right_;
  std::string_view left_, right_;
};
