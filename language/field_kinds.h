// What the fields of the commands take, by opcode and number, as data: the pages of the language
// say it in words, and are held against these tables.
#pragma once

#include <cstddef>
#include <cstdint>

namespace language {

enum class FieldKind : uint8_t {
  kOther,  // a text, a date, a list of bits
  // Numbers
  kPrice,
  kPercentage,
  kQuantity,
  kDepartment,
  kWhole,
  // Flags
  kFlag,      // set by any value
  kBareFlag,  // set by the field's name alone
  kNoEffect,  // written as a bare flag, and never looked at
  kYesNo,     // set by SI, VERO, 2 or the name alone
};

FieldKind field_kind(int opcode, int field);

// Whether naming the field is all there is to it.
bool is_flag(int opcode, int field);

// How many characters of a text the command keeps; 0 where it keeps all or refuses a longer one.
size_t text_limit(int opcode, int field);

// Whether capital letters of the text, a file's name, are made small.
bool is_made_small(int opcode, int field);

// What becomes of the file that a field names.
enum class FileUse : uint8_t {
  kNone,       // it names no file
  kRead,       // by the device
  kWritten,    // by the translator or the device
  kReplaced,   // written; what had the name is removed first
  kExchanged,  // written, or read where field 1 says so: see EMLINK
};

FileUse file_use(int opcode, int field);

}  // namespace language
