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
inline bool Given(const EcrCmdInterpreter& line, int field) { return line.szCampi[field][0] != 0; }

// Whether a field's text is what a field named without a value holds.
inline bool IsNamed(const char* field) { return std::strcmp(field, "VERO") == 0; }
inline bool IsNamed(const EcrCmdInterpreter& line, int field) {
  return IsNamed(line.szCampi[field]);
}

// An amount in ten-thousandths; a text that cannot be read is 0.
inline int64_t PriceField(EcrCmdInterpreter& line, int field) {
  return lorimatutility::TradPrice(line.szCampi[field], line.bVirgolaFissa,
                                   line.currency_decimal_separator, line.GetMaxPrecision());
}

// The whole number at the beginning of a field, with its sign.
inline int IntegerField(const EcrCmdInterpreter& line, int field) {
  return TextToInt(line.szCampi[field]);
}

// A whole number without a sign: "-5" reads 0.
inline int64_t NumberField(EcrCmdInterpreter& line, int field) {
  return lorimatutility::TradNumInt64(line.szCampi[field]);
}

// A yes/no field.
inline bool FlagField(EcrCmdInterpreter& line, int field) {
  return lorimatutility::CheckTrue(line.szCampi[field]);
}

// A number that an int argument of the client does not hold goes out as the nearest one,
// never as another number that the device might know.
inline int ClientInt(int64_t number) {
  return static_cast<int>(std::clamp<int64_t>(number, INT32_MIN, INT32_MAX));
}
