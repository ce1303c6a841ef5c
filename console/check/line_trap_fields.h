// Which fields of which commands the traps of a single line lie in: opcodes and numbers of fields,
// as the language has them.
#pragma once

#include <array>

namespace lorimat::console::line_traps {

// Opcodes.
inline constexpr int kKeys = 9;
inline constexpr int kSale = 10;
inline constexpr int kPayment = 11;
inline constexpr int kAttachment = 21;
inline constexpr int kNonFiscal = 22;
inline constexpr int kKey = 43;
inline constexpr int kMacroKey = 54;
inline constexpr int kSubtotalCheck = 73;

// Option bits of attachments and non-fiscal lines.
inline constexpr int kCutBit = 16;
inline constexpr int kLogoBit = 64;

struct FieldOf {
  int opcode;
  int field;
  bool operator==(const FieldOf&) const = default;
};

// A field that a command does not look at beside, or without, one of the others.
struct UnusedField {
  FieldOf field;
  std::array<int, 3> others;  // 0 for none
};

inline constexpr UnusedField kUnusedBeside[] = {
    {{9, 2}, {1}},
    {{9, 3}, {1}},
    // A refund: a void is stronger, a deposit or voucher has none.
    {{10, 5}, {6, 16, 17}},
    {{10, 5}, {19}},
    {{10, 6}, {19}},
    {{10, 14}, {19}},
    {{10, 15}, {16, 17, 19}},
    {{19, 2}, {1}},
    {{21, 2}, {1}},
    {{21, 3}, {1, 2}},
    {{21, 6}, {1, 2}},
    {{21, 25}, {1, 2, 6}},
    {{22, 2}, {1}},
    {{22, 3}, {1, 2}},
    {{22, 8}, {1, 2}},
    {{22, 30}, {1, 2, 8}},
    {{29, 2}, {1}},
    {{72, 21}, {20}},
    {{121, 3}, {5, 6}},
    {{121, 4}, {5, 6}},
    {{121, 5}, {6}},
    {{127, 1}, {5}},
    {{127, 2}, {5}},
    {{127, 3}, {5}},
    {{127, 4}, {5}},
};

inline constexpr UnusedField kUnusedWithout[] = {
    {{10, 18}, {16, 17}}, {{21, 9}, {6}},  {{21, 12}, {6}}, {{21, 13}, {6}},
    {{22, 6}, {1}},       {{22, 11}, {8}}, {{22, 14}, {8}}, {{22, 15}, {8}},
};

// Commands that do nothing, and answer OK, unless these are given: all of them, or one.
struct NeededFields {
  int opcode;
  bool all;
  std::array<int, 2> fields;
};

inline constexpr NeededFields kNeeded[] = {
    {19, false, {1, 2}}, {20, false, {1}},    {29, false, {1, 2}},
    {33, true, {1, 2}},  {49, false, {1, 2}},
};

// Numbers of which the low 8 bits count.
inline constexpr FieldOf kBytes[] = {{kKey, 1}, {kKey, 2}, {kMacroKey, 1}, {kMacroKey, 2}};

// Dates DDMMYY of which the first six characters count, and those that count only with six.
inline constexpr FieldOf kCutDates[] = {{24, 2}, {124, 2}};
inline constexpr FieldOf kWholeDates[] = {{26, 8}, {26, 9}};

inline constexpr FieldOf kDocuments[] = {{24, 1}, {124, 1}};

}  // namespace lorimat::console::line_traps
