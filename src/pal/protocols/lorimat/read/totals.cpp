// Totalizers and counters of the device: the single numbers, and the readers that dump
// them. Their lines are read by hosts; no command takes them back.

#include <algorithm>

#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/data_items.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/program/device_records.h"
#include "pal/protocols/lorimat/read/record_line.h"

namespace {

constexpr int kTotg = 61;  // opcode ids, for the words of the lines
constexpr int kTotrep = 63;

constexpr int kTotalDigits = 10;
constexpr int kCountDigits = 6;

// Where a counter's numbers come from: data items, or daily totalizers. 0 for none.
struct CounterSource {
  int counter;
  int total_item;
  int count_item;
  int total_kind;
  int count_kind;
};

constexpr CounterSource kCounters[] = {
    {1, 372, 0, 0, 0},
    {2, 373, 0, 0, 0},
    {3, 374, 0, 0, 0},
    {4, 375, 0, 0, 0},
    {5, 376, 0, 0, 0},
    {10, 377, 0, 0, 0},
    {11, 375, 0, 0, 0},
    {12, 378, 0, 0, 0},
    {22, 32, 0, 0, 0},
    {24, 379, 0, 0, 0},
    {25, 380, 0, 0, 0},
    {31, 121, 154, 0, 0},
    {33, 9, 0, 0, 0},
    {34, 29, 0, 0, 0},
    {35, 28, 0, 0, 0},
    {36, 112, 0, 0, 0},
    {37, 12, 0, 0, 0},
    {41, 381, 0, 0, 0},
    {42, 382, 0, 0, 0},
    {43, 383, 0, 0, 0},
    {44, 384, 0, 0, 0},
    {45, 385, 0, 0, 0},
    {46, 386, 0, 0, 0},
    {47, 387, 0, 0, 0},
    {48, 388, 0, 0, 0},
    {49, 389, 0, 0, 0},
    {50, 390, 0, 0, 0},
    {58, 58, 0, 0, 0},
    {64, 0, 0, RTF_FPTR_GT_TICKET_PAYED_GROSS, RTF_FPTR_GT_TICKET_PAYED_COUNT},
    {65, 0, 0, RTF_FPTR_GT_DISCOUNT_ON_PAYMENT, 0},
    {66, 0, 0, RTF_FPTR_GT_GENERIC_VOUCHER_GROSS, 0},
    {67, 0, 0, RTF_FPTR_GT_ROUNDING_GROSS, RTF_FPTR_GT_ROUNDING_COUNT},
};

// A counter that the device does not have shows -1 in both numbers.
constexpr CounterSource kNoSource = {};

// Counters above this one pass over a count that the device refuses.
constexpr int kLastStrictCount = 63;

CounterSource FindCounter(int counter) {
  for (const CounterSource& source : kCounters) {
    if (source.counter == counter) return source;
  }
  return kNoSource;
}

// The room that the callers of the two below have for a text. Twenty characters are the longest.
constexpr size_t kTotalSize = 32;

void WritePadded(char* text, int64_t value, int digits) {
  char number[24];
  std::snprintf(number, sizeof number, "%lld", static_cast<long long>(value));
  lorimatutility::FnLPAD(text, kTotalSize, number, digits, '0');
}

}  // namespace

int EcrCmdCommand::GetTotalizerExtendInternal(int vatID, int totalizerType, int totalizer,
                                              char* data, bool counter) {
  ClientText text;
  const int result =
      RTF_FP_INVOKE(GetTotalizerExtend, vatID, totalizerType, totalizer, text.buffer);
  if (result != 0) return result;
  const int64_t value = std::strtoll(text.close(), nullptr, 10);
  WritePadded(data, counter ? value : value / currency_decimal_place_factor, kTotalDigits);
  return 0;
}

int EcrCmdCommand::getCounter(int counter, char* szTOT, char* szCNT) {
  const CounterSource source = FindCounter(counter);
  int64_t value = -1;
  int64_t count = -1;
  if (source.total_item != 0) {
    const int code = ReadDataItem(source.total_item, &value);
    // The code gets its class a second time: meant.
    if (code != 0) return checkResult(code);
  }
  if (source.count_item != 0) {
    count = 0;
    const int code = ReadDataItem(source.count_item, &count);
    if (code != 0 && counter <= kLastStrictCount) return checkResult(code);
  }
  const auto read_daily = [&](int kind, bool is_count) {
    char text[32];
    if (GetTotalizerExtendInternal(0, RTF_FPTR_TT_DAY, kind, text, is_count) != 0) {
      CopyText(text, "0");
    }
    return static_cast<int64_t>(std::strtoll(text, nullptr, 10));
  };
  if (source.total_kind != 0) value = read_daily(source.total_kind, false);
  if (source.count_kind != 0) count = read_daily(source.count_kind, true);
  WritePadded(szTOT, value, kTotalDigits);
  WritePadded(szCNT, count, kCountDigits);
  return 0;
}

int EcrCmdCommand::LeggiTOTG(fs_file_t* hFileOut, char* szLinea, bool /*bList*/) {
  for (int64_t number = 1; number <= pCurConf->iNumTOTG; ++number) {
    const int i = static_cast<int>(number);
    char szTOT[32];
    char szCNT[32];
    const int code = getCounter(i, szTOT, szCNT);
    // The code has its class twice already: meant.
    if (code != 0) return checkResult(code);
    // In words in list form too, as the totals of the departments: meant.
    RecordLine line(*this, szLinea, kTotg, false);
    line.integer(1, i);
    line.Plain(2, szCNT);
    line.Plain(3, szTOT);
    line.write(hFileOut);
  }
  return 0;
}

int EcrCmdCommand::LeggiTOTREP(fs_file_t* hFileOut, char* szLinea, bool /*bList*/) {
  // The quantity passes the division of an amount, too: meant.
  static constexpr int kKinds[] = {
      RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_QUANTITY,
      RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE,
      RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE,
  };
  pCurConf->iNumDPT = ReadCapacity(kDepartmentCapacity);
  const int departments = std::min<int>(pCurConf->iNumDPT, kMostRecords);
  for (int department = 1; department <= departments; ++department) {
    RecordLine line(*this, szLinea, kTotrep, false);
    line.integer(1, department);
    int field = 2;
    for (const int kind : kKinds) {
      char value[32];
      if (GetTotalizerExtendInternal(department, RTF_FPTR_TT_DAY, kind, value, false) != 0) {
        return 0;
      }
      line.Plain(field++, value);
    }
    line.write(hFileOut);
  }
  return 0;
}

// There are no totals of articles and operators on these devices: the files stay empty.
int EcrCmdCommand::LeggiTOTPLU(fs_file_t*, char*, bool) { return 0; }
int EcrCmdCommand::LeggiTOTOPE(fs_file_t*, char*, bool) { return 0; }
