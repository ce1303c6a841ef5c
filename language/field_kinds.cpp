#include "language/field_kinds.h"

#include <algorithm>
#include <iterator>

namespace language {
namespace {

struct Field {
  int opcode;
  int number;
  bool operator==(const Field&) const = default;
};

struct KindRow {
  Field field;
  FieldKind kind;
};

constexpr KindRow kKinds[] = {
    {{3, 3}, FieldKind::kBareFlag},    {{3, 4}, FieldKind::kBareFlag},
    {{3, 5}, FieldKind::kBareFlag},    {{3, 7}, FieldKind::kBareFlag},
    {{10, 1}, FieldKind::kDepartment}, {{10, 3}, FieldKind::kQuantity},
    {{10, 4}, FieldKind::kPrice},      {{10, 5}, FieldKind::kFlag},
    {{10, 6}, FieldKind::kFlag},       {{10, 15}, FieldKind::kPrice},
    {{10, 16}, FieldKind::kFlag},      {{10, 17}, FieldKind::kFlag},
    {{10, 18}, FieldKind::kFlag},      {{10, 19}, FieldKind::kFlag},
    {{11, 2}, FieldKind::kPrice},      {{12, 1}, FieldKind::kPrice},
    {{12, 2}, FieldKind::kFlag},       {{12, 5}, FieldKind::kDepartment},
    {{15, 2}, FieldKind::kBareFlag},   {{15, 3}, FieldKind::kBareFlag},
    {{15, 4}, FieldKind::kBareFlag},   {{15, 5}, FieldKind::kBareFlag},
    {{16, 1}, FieldKind::kPercentage}, {{16, 2}, FieldKind::kFlag},
    {{16, 5}, FieldKind::kDepartment}, {{17, 1}, FieldKind::kPercentage},
    {{17, 2}, FieldKind::kFlag},       {{17, 5}, FieldKind::kDepartment},
    {{21, 1}, FieldKind::kFlag},       {{21, 2}, FieldKind::kFlag},
    {{21, 13}, FieldKind::kWhole},     {{21, 25}, FieldKind::kWhole},
    {{22, 1}, FieldKind::kFlag},       {{22, 2}, FieldKind::kFlag},
    {{22, 6}, FieldKind::kFlag},       {{24, 3}, FieldKind::kWhole},
    {{26, 3}, FieldKind::kWhole},      {{29, 1}, FieldKind::kFlag},
    {{29, 2}, FieldKind::kFlag},       {{30, 4}, FieldKind::kBareFlag},
    {{30, 5}, FieldKind::kBareFlag},   {{30, 6}, FieldKind::kWhole},
    {{30, 7}, FieldKind::kBareFlag},   {{30, 8}, FieldKind::kNoEffect},
    {{30, 9}, FieldKind::kWhole},      {{30, 10}, FieldKind::kWhole},
    {{30, 11}, FieldKind::kWhole},     {{30, 14}, FieldKind::kNoEffect},
    {{30, 16}, FieldKind::kNoEffect},  {{30, 17}, FieldKind::kNoEffect},
    {{31, 1}, FieldKind::kDepartment}, {{31, 3}, FieldKind::kPrice},
    {{31, 4}, FieldKind::kYesNo},      {{31, 6}, FieldKind::kPrice},
    {{31, 16}, FieldKind::kYesNo},     {{31, 17}, FieldKind::kYesNo},
    {{31, 21}, FieldKind::kYesNo},     {{33, 2}, FieldKind::kPercentage},
    {{36, 4}, FieldKind::kYesNo},      {{36, 8}, FieldKind::kYesNo},
    {{36, 14}, FieldKind::kYesNo},     {{36, 19}, FieldKind::kYesNo},
    {{36, 20}, FieldKind::kYesNo},     {{36, 28}, FieldKind::kYesNo},
    {{36, 32}, FieldKind::kYesNo},     {{36, 35}, FieldKind::kYesNo},
    {{36, 37}, FieldKind::kYesNo},     {{41, 4}, FieldKind::kWhole},
    {{48, 7}, FieldKind::kYesNo},      {{48, 8}, FieldKind::kYesNo},
    {{48, 9}, FieldKind::kYesNo},      {{49, 2}, FieldKind::kBareFlag},
    {{55, 3}, FieldKind::kFlag},       {{55, 8}, FieldKind::kWhole},
    {{72, 5}, FieldKind::kYesNo},      {{72, 7}, FieldKind::kYesNo},
    {{72, 8}, FieldKind::kYesNo},      {{72, 9}, FieldKind::kYesNo},
    {{73, 1}, FieldKind::kPrice},      {{80, 1}, FieldKind::kPrice},
    {{80, 2}, FieldKind::kFlag},       {{80, 5}, FieldKind::kDepartment},
    {{121, 5}, FieldKind::kFlag},      {{121, 6}, FieldKind::kFlag},
    {{123, 1}, FieldKind::kWhole},     {{123, 2}, FieldKind::kWhole},
    {{124, 5}, FieldKind::kFlag},      {{127, 5}, FieldKind::kFlag},
};

struct LimitRow {
  Field field;
  size_t limit;
};

constexpr LimitRow kLimits[] = {
    {{10, 2}, 20},   {{10, 7}, 50},  {{11, 1}, 23},   {{12, 3}, 50},  {{16, 3}, 127},
    {{17, 3}, 127},  {{19, 1}, 50},  {{21, 9}, 2},    {{22, 3}, 50},  {{24, 4}, 20},
    {{26, 6}, 7},    {{26, 7}, 7},   {{26, 10}, 127}, {{26, 20}, 12}, {{31, 2}, 127},
    {{34, 1}, 50},   {{34, 2}, 50},  {{34, 3}, 50},   {{34, 4}, 50},  {{34, 5}, 50},
    {{34, 6}, 50},   {{38, 2}, 128}, {{39, 3}, 63},   {{53, 2}, 128}, {{53, 3}, 64},
    {{55, 2}, 50},   {{72, 6}, 127}, {{72, 20}, 4},   {{80, 3}, 50},  {{121, 7}, 127},
    {{123, 3}, 512}, {{125, 1}, 50}, {{127, 7}, 127},
};

constexpr Field kMadeSmall[] = {{3, 2}, {30, 2}, {30, 3}, {71, 4}, {123, 4}};

struct FileRow {
  Field field;
  FileUse use;
};

constexpr FileRow kFiles[] = {
    {{3, 2}, FileUse::kReplaced}, {{26, 10}, FileUse::kWritten}, {{30, 2}, FileUse::kExchanged},
    {{30, 3}, FileUse::kWritten}, {{55, 2}, FileUse::kRead},     {{71, 4}, FileUse::kWritten},
    {{72, 6}, FileUse::kWritten}, {{121, 7}, FileUse::kWritten}, {{123, 4}, FileUse::kWritten},
    {{125, 1}, FileUse::kRead},   {{127, 7}, FileUse::kWritten},
};

}  // namespace

FieldKind field_kind(int opcode, int field) {
  const auto* row = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const KindRow& one) {
    return one.field == Field{opcode, field};
  });
  return row == std::end(kKinds) ? FieldKind::kOther : row->kind;
}

bool is_flag(int opcode, int field) {
  const FieldKind kind = field_kind(opcode, field);
  return kind == FieldKind::kFlag || kind == FieldKind::kBareFlag || kind == FieldKind::kNoEffect;
}

size_t text_limit(int opcode, int field) {
  const auto* row = std::find_if(std::begin(kLimits), std::end(kLimits), [&](const LimitRow& one) {
    return one.field == Field{opcode, field};
  });
  return row == std::end(kLimits) ? 0 : row->limit;
}

bool is_made_small(int opcode, int field) {
  return std::find(std::begin(kMadeSmall), std::end(kMadeSmall), Field{opcode, field}) !=
         std::end(kMadeSmall);
}

FileUse file_use(int opcode, int field) {
  const auto* row = std::find_if(std::begin(kFiles), std::end(kFiles), [&](const FileRow& one) {
    return one.field == Field{opcode, field};
  });
  return row == std::end(kFiles) ? FileUse::kNone : row->use;
}

}  // namespace language
