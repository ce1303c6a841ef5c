// Record lines: what every dump of a table consists of. A record line is a command of the
// language with all its fields, so that a dump goes back to a device as a batch:
//
//   PREP REP=1, DES='PANE', LIMITE=0, ...      with words
//   #33 #1=1, #2=22.00                         in list form, with numbers
//
// A value is formatted in szCampi, under its field's number, and so the fields of the line in
// hand are gone when a reader has run.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

// Size of the line buffer that the readers share. The longest line is a header's: forty
// texts of 64 characters, every one a quote and so doubled, with their words. What would not
// fit is cut.
constexpr size_t kRecordLineSize = 8192;

// The longest text of a record. Doubled and quoted it fits a field of szCampi.
constexpr size_t kLongestRecordText = 1000;

class RecordLine {
 public:
  // What the list form shows for a field: its number, or 1 for every one.
  enum Numbering { kByField, kAllOnes };

  // Begins a line with the word of the command, or its number with bList. szLinea takes
  // kRecordLineSize characters.
  RecordLine(EcrCmdInterpreter& tables, char* szLinea, int opcode, bool bList,
             Numbering numbering = kByField);

  void integer(int field, int64_t value);
  // In quotes, with those inside doubled.
  void text(int field, const char* value);
  // An amount in ten-thousandths as 12.34. Its low 32 bits count: larger ones wrap.
  void price(int field, int64_t amount);
  // A percentage in ten-thousandths as 22.00.
  void percentage(int field, int value);
  // 2 and 1 in list form, else the words of the internal messages.
  void Flag(int field, bool value);
  // A value as it stands.
  void Plain(int field, const char* value);

  // Cuts the separator behind the last field and writes the line. A line without any field
  // loses the blank and the last letter of its word: meant. A full disk goes unreported.
  void write(fs_file_t* file);

 private:
  void append(int field);

  EcrCmdInterpreter& tables_;
  char* const line_;
  const int opcode_;
  const bool list_;
  const Numbering numbering_;
};
