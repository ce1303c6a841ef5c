// The records of the device's tables, as one call reads or writes them. The texts have
// their length in the contract of the client; there is room for more, since a client that
// forgets it must not damage the translator, and a text is cut to its length after a read.
#pragma once

#include <cstdint>

#include "pal/protocols/lorimat/client_call.h"

// A dump asks for no more records of a table: a device that answers nonsense when it is asked how
// many there are must not keep a line running for hours.
constexpr int kMostRecords = 65535;

// The rows that are taken of one keyboard and of one download of articles, for the same reason,
// and since each of them goes to the disk. A keyboard has 256 places, as its position travels in
// one byte. Article tables of these devices have some thousands of rows, and no shop sells a
// million goods. The file of a million rows stays below half a gigabyte.
constexpr int kMostRows = 1000000;

struct DepartmentRecord {
  static constexpr size_t kDescriptionSize = 128;  // with the closing NUL

  ClientText description;
  int64_t price = 0;      // ten-thousandths of the currency
  int64_t max_price = 0;  // the same
  int32_t quantity = 0;
  int32_t vat_id = 0;
  uint8_t group_id = 0;
  bool single_shoot = false;
  bool allow_discount = false;
  bool force_description = false;
  bool is_service = false;  // of the extended record alone
};

// Groups and operators share one table of the device: group g is record g, operator n is
// the record behind the groups by n. A group has the operator's members too.
struct GroupRecord {
  static constexpr size_t kDescriptionSize = 129;
  static constexpr size_t kPasswordSize = 65;

  ClientText description;
  ClientText operator_password;
  int operator_flags = 0;
  int operator_options = 0;
};

struct SubtenderRecord {
  static constexpr size_t kDescriptionSize = 64;

  uint8_t tender_type = 0;
  ClientText description;
  uint8_t flags = 0;
  uint32_t preset_value = 0;
  uint8_t max_digits = 0;
};

// A key of the keyboard and the macro it plays.
struct KeyRecord {
  static constexpr uint16_t kMacroSize = 40;  // codes with a NUL behind them

  uint8_t key_code = 0;
  int8_t keyboard_type = 0;
  ClientText macro;
  uint16_t macro_size = 0;
};

// Key codes from here to kLastMacroKey play a macro.
constexpr int kFirstMacroKey = 200;
constexpr int kLastMacroKey = 239;
