// How the handlers read their fields.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatutility.h"

// A field is given when it holds any text.
inline bool given(const EcrCmdInterpreter& line, int field) { return line.szCampi[field][0] != 0; }

// Whether a field's text is what a field named without a value holds.
inline bool is_named(const char* field) { return std::strcmp(field, "VERO") == 0; }
inline bool is_named(const EcrCmdInterpreter& line, int field) {
  return is_named(line.szCampi[field]);
}

// An amount in ten-thousandths; a text that cannot be read is 0.
inline int64_t price_field(EcrCmdInterpreter& line, int field) {
  return lorimatutility::TradPrice(line.szCampi[field], line.bVirgolaFissa,
                                   line.currency_decimal_separator, line.GetMaxPrecision());
}

// The whole number at the beginning of a field, with its sign.
inline int integer_field(const EcrCmdInterpreter& line, int field) {
  return text_to_int(line.szCampi[field]);
}

// A whole number without a sign: "-5" reads 0.
inline int64_t number_field(EcrCmdInterpreter& line, int field) {
  return lorimatutility::TradNumInt64(line.szCampi[field]);
}

// A yes/no field.
inline bool flag_field(EcrCmdInterpreter& line, int field) {
  return lorimatutility::CheckTrue(line.szCampi[field]);
}

// A number that an int argument of the client does not hold goes out as the nearest one,
// never as another number that the device might know.
inline int client_int(int64_t number) {
  return static_cast<int>(std::clamp<int64_t>(number, INT32_MIN, INT32_MAX));
}
