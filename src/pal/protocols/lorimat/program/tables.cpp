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

void EcrCmdCommand::turn_key(const char* position) {
  char number[2] = {position[0], 0};
  char key[2];
  lorimatutility::TradNum(key, number);
  // What the device says to it does not matter: a batch must not stop here.
  static_cast<void>(RTF_FP_INVOKE(KeyCodeInput, key, "", "", FunctionCode::kKey));
}

int EcrCmdCommand::Trad_PROG() {
  static_cast<void>(RTF_FP_INVOKE(KeyCodeInput, "", "", "", FunctionCode::kClear));
  turn_key(kProgramming);
  return 0;
}

int EcrCmdCommand::Trad_ENDPROG() {
  turn_key(kRegistering);
  return 0;
}

int EcrCmdCommand::Trad_PREP() {
  const int dep_id = integer_field(*this, 1);
  DepartmentRecord record;
  int res = checkResult(config_department_ex(false, dep_id, record));
  // A device that refuses the extended record may know the plain one.
  const bool extended = res == 0;
  if (!extended) res = checkResult(config_department(false, dep_id, record));
  if (res == 0) {
    if (given(*this, 2)) {
      copy_text(record.description.buffer, DepartmentRecord::kDescriptionSize, szCampi[2]);
    }
    if (given(*this, 3)) record.max_price = price_field(*this, 3);
    if (given(*this, 4)) record.single_shoot = flag_field(*this, 4);
    if (given(*this, 5)) record.vat_id = client_int(number_field(*this, 5));
    if (given(*this, 6)) record.price = price_field(*this, 6);
    if (given(*this, 7)) record.group_id = static_cast<uint8_t>(number_field(*this, 7));
    if (given(*this, 16)) record.allow_discount = flag_field(*this, 16);
    if (given(*this, 17)) record.force_description = flag_field(*this, 17);
    if (given(*this, 21)) record.is_service = flag_field(*this, 21);
    res = checkResult(extended ? config_department_ex(true, dep_id, record)
                               : config_department(true, dep_id, record));
  }
  // The code gets its class a second time: meant.
  return checkResult(res);
}

int EcrCmdCommand::Trad_PGRU() {
  const int group_id = integer_field(*this, 1);
  const int group_capacity = read_capacity(kGroupCapacity);
  if (group_id < 1 || group_id > group_capacity) return syntax_error(ILLEGAL_VALUE);
  GroupRecord record;
  // A failed read does not stop the write, unlike that of a department: meant.
  static_cast<void>(config_group(false, group_id, record));
  if (given(*this, 2)) {
    copy_text(record.description.buffer, GroupRecord::kDescriptionSize, szCampi[2]);
  }
  // The code gets its class twice: meant.
  return checkResult(checkResult(config_group(true, group_id, record)));
}

int EcrCmdCommand::Trad_POPER() {
  const int operator_id = integer_field(*this, 1);
  int64_t group_capacity = 0;
  // Without it the operator's record would be a group's.
  const bool groups_known = read_data_item(kGroupCapacity, &group_capacity) == 0;
  const int operator_capacity = read_capacity(kOperatorCapacity);
  if (!groups_known || operator_id < 1 || operator_id > operator_capacity) {
    return syntax_error(ILLEGAL_VALUE);
  }
  const int index = client_int(int64_t{client_int(group_capacity)} + operator_id);
  GroupRecord record;
  static_cast<void>(config_group(false, index, record));  // as in Trad_PGRU
  if (given(*this, 2)) {
    copy_text(record.description.buffer, GroupRecord::kDescriptionSize, szCampi[2]);
  }
  if (given(*this, 3)) {
    copy_text(record.operator_password.buffer, GroupRecord::kPasswordSize, szCampi[3]);
  }
  if (given(*this, 4)) record.operator_flags = integer_field(*this, 4);
  if (given(*this, 5)) record.operator_options = integer_field(*this, 5);
  return checkResult(checkResult(config_group(true, index, record)));
}

int EcrCmdCommand::Trad_PSTEN() {
  const int subtender_id = integer_field(*this, 1);
  SubtenderRecord record;
  int res = checkResult(config_subtender(false, subtender_id, record));
  if (res == 0) {
    if (given(*this, 2)) record.tender_type = static_cast<uint8_t>(number_field(*this, 2));
    if (given(*this, 3)) {
      copy_text(record.description.buffer, SubtenderRecord::kDescriptionSize, szCampi[3]);
    }
    if (given(*this, 4)) record.flags = static_cast<uint8_t>(number_field(*this, 4));
    if (given(*this, 5)) record.preset_value = static_cast<uint32_t>(number_field(*this, 5));
    if (given(*this, 6)) record.max_digits = static_cast<uint8_t>(number_field(*this, 6));
    res = checkResult(config_subtender(true, subtender_id, record));
  }
  // The code gets its class a second time: meant.
  return checkResult(res);
}

int EcrCmdCommand::Trad_PIVA() {
  if (!given(*this, 1) || !given(*this, 2)) return 0;
  const int entry = client_int(number_field(*this, 1));
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
    if (!given(*this, line)) continue;
    char text[kLongestLine + 1];
    copy_text(text, szCampi[line]);
    const int res = checkResult(RTF_FP_INVOKE(SetHeaderLine, line, text, true));
    if (res != 0) return res;
  }
  return 0;
}

int EcrCmdCommand::Trad_PPFATT() {
  constexpr size_t kSeriesSize = 10;  // with the closing NUL
  // A series is part of the number of every invoice: one that does not fit is refused, not
  // cut, and before the number is touched.
  if (std::strlen(szCampi[5]) >= kSeriesSize) return syntax_error(ILLEGAL_VALUE);
  if (given(*this, 4)) {
    const int number = client_int(number_field(*this, 4));
    const int res = checkResult(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_InvoiceNumber, number));
    if (res != 0) return res;
  }
  if (!given(*this, 5)) return 0;
  return checkResult(RTF_FP_INVOKE(SetStringProperty, RTF_PIDXFptr_InvoiceSeries, szCampi[5]));
}
