// The master tables of the device: a line names the members it wants changed, so a handler
// reads the record, lays the given fields over it and writes it back. The translator keeps
// no copy. The readers in read/ print the same records under the same field numbers.

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/data_items.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/program/device_records.h"

namespace {

// Key positions.
constexpr char kRegistering[] = "1";
constexpr char kProgramming[] = "4";

}  // namespace

void EcrCmdCommand::TurnKey(const char* position) {
  char number[2] = {position[0], 0};
  char key[2];
  lorimatutility::TradNum(key, number);
  // What the device says to it does not matter: a batch must not stop here.
  static_cast<void>(RTF_FP_INVOKE(KeyCodeInput, key, "", "", FunctionCode::kKey));
}

int EcrCmdCommand::Trad_PROG() {
  static_cast<void>(RTF_FP_INVOKE(KeyCodeInput, "", "", "", FunctionCode::kClear));
  TurnKey(kProgramming);
  return 0;
}

int EcrCmdCommand::Trad_ENDPROG() {
  TurnKey(kRegistering);
  return 0;
}

int EcrCmdCommand::Trad_PREP() {
  const int dep_id = IntegerField(*this, 1);
  DepartmentRecord record;
  int res = checkResult(ConfigDepartmentEx(false, dep_id, record));
  // A device that refuses the extended record may know the plain one.
  const bool extended = res == 0;
  if (!extended) res = checkResult(ConfigDepartment(false, dep_id, record));
  if (res == 0) {
    if (Given(*this, 2)) {
      CopyText(record.description.buffer, DepartmentRecord::kDescriptionSize, szCampi[2]);
    }
    if (Given(*this, 3)) record.max_price = PriceField(*this, 3);
    if (Given(*this, 4)) record.single_shoot = FlagField(*this, 4);
    if (Given(*this, 5)) record.vat_id = ClientInt(NumberField(*this, 5));
    if (Given(*this, 6)) record.price = PriceField(*this, 6);
    if (Given(*this, 7)) record.group_id = static_cast<uint8_t>(NumberField(*this, 7));
    if (Given(*this, 16)) record.allow_discount = FlagField(*this, 16);
    if (Given(*this, 17)) record.force_description = FlagField(*this, 17);
    if (Given(*this, 21)) record.is_service = FlagField(*this, 21);
    res = checkResult(extended ? ConfigDepartmentEx(true, dep_id, record)
                               : ConfigDepartment(true, dep_id, record));
  }
  // The code gets its class a second time: meant.
  return checkResult(res);
}

int EcrCmdCommand::Trad_PGRU() {
  const int group_id = IntegerField(*this, 1);
  const int group_capacity = ReadCapacity(kGroupCapacity);
  if (group_id < 1 || group_id > group_capacity) return SyntaxError(ILLEGAL_VALUE);
  GroupRecord record;
  // A failed read does not stop the write, unlike that of a department: meant.
  static_cast<void>(ConfigGroup(false, group_id, record));
  if (Given(*this, 2)) {
    CopyText(record.description.buffer, GroupRecord::kDescriptionSize, szCampi[2]);
  }
  // The code gets its class twice: meant.
  return checkResult(checkResult(ConfigGroup(true, group_id, record)));
}

int EcrCmdCommand::Trad_POPER() {
  const int operator_id = IntegerField(*this, 1);
  int64_t group_capacity = 0;
  // Without it the operator's record would be a group's.
  const bool groups_known = ReadDataItem(kGroupCapacity, &group_capacity) == 0;
  const int operator_capacity = ReadCapacity(kOperatorCapacity);
  if (!groups_known || operator_id < 1 || operator_id > operator_capacity) {
    return SyntaxError(ILLEGAL_VALUE);
  }
  const int index = ClientInt(int64_t{ClientInt(group_capacity)} + operator_id);
  GroupRecord record;
  static_cast<void>(ConfigGroup(false, index, record));  // as in Trad_PGRU
  if (Given(*this, 2)) {
    CopyText(record.description.buffer, GroupRecord::kDescriptionSize, szCampi[2]);
  }
  if (Given(*this, 3)) {
    CopyText(record.operator_password.buffer, GroupRecord::kPasswordSize, szCampi[3]);
  }
  if (Given(*this, 4)) record.operator_flags = IntegerField(*this, 4);
  if (Given(*this, 5)) record.operator_options = IntegerField(*this, 5);
  return checkResult(checkResult(ConfigGroup(true, index, record)));
}

int EcrCmdCommand::Trad_PSTEN() {
  const int subtender_id = IntegerField(*this, 1);
  SubtenderRecord record;
  int res = checkResult(ConfigSubtender(false, subtender_id, record));
  if (res == 0) {
    if (Given(*this, 2)) record.tender_type = static_cast<uint8_t>(NumberField(*this, 2));
    if (Given(*this, 3)) {
      CopyText(record.description.buffer, SubtenderRecord::kDescriptionSize, szCampi[3]);
    }
    if (Given(*this, 4)) record.flags = static_cast<uint8_t>(NumberField(*this, 4));
    if (Given(*this, 5)) record.preset_value = static_cast<uint32_t>(NumberField(*this, 5));
    if (Given(*this, 6)) record.max_digits = static_cast<uint8_t>(NumberField(*this, 6));
    res = checkResult(ConfigSubtender(true, subtender_id, record));
  }
  // The code gets its class a second time: meant.
  return checkResult(res);
}

int EcrCmdCommand::Trad_PIVA() {
  if (!Given(*this, 1) || !Given(*this, 2)) return 0;
  const int entry = ClientInt(NumberField(*this, 1));
  char digits[24];  // ten-thousandths of a percent
  std::snprintf(
      digits, sizeof digits, "%ld",
      lorimatutility::TradPercentage(szCampi[2], currency_decimal_separator, GetMaxPrecision()));
  const int res = checkResult(RTF_FP_INVOKE(SetVatValue, entry, digits));
  if (res != 0) return res;
  return checkResult(RTF_FP_INVOKE_NP(SetVatTable));
}

int EcrCmdCommand::Trad_PINT() {
  constexpr int kHeaderLines = 6;
  constexpr size_t kLongestLine = 50;
  for (int line = 1; line <= kHeaderLines; ++line) {
    if (!Given(*this, line)) continue;
    char text[kLongestLine + 1];
    CopyText(text, szCampi[line]);
    const int res = checkResult(RTF_FP_INVOKE(SetHeaderLine, line, text, true));
    if (res != 0) return res;
  }
  return 0;
}

int EcrCmdCommand::Trad_PPFATT() {
  constexpr size_t kSeriesSize = 10;  // with the closing NUL
  // A series is part of the number of every invoice: one that does not fit is refused, not
  // cut, and before the number is touched.
  if (std::strlen(szCampi[5]) >= kSeriesSize) return SyntaxError(ILLEGAL_VALUE);
  if (Given(*this, 4)) {
    const int number = ClientInt(NumberField(*this, 4));
    const int res = checkResult(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_InvoiceNumber, number));
    if (res != 0) return res;
  }
  if (!Given(*this, 5)) return 0;
  return checkResult(RTF_FP_INVOKE(SetStringProperty, RTF_PIDXFptr_InvoiceSeries, szCampi[5]));
}
