#include "pal/protocols/lorimat/program/device_records.h"

#include <algorithm>

#include "pal/protocols/lorimat/fields.h"

int EcrCmdCommand::ConfigDepartment(bool write, int dep_id, DepartmentRecord& record) {
  const int result =
      RTF_FP_INVOKE(ConfigDepartment, write, dep_id, record.description.buffer, &record.price,
                    &record.max_price, &record.quantity, &record.vat_id, &record.group_id,
                    &record.single_shoot, &record.allow_discount, &record.force_description);
  record.description.buffer[DepartmentRecord::kDescriptionSize - 1] = 0;
  return result;
}

int EcrCmdCommand::ConfigDepartmentEx(bool write, int dep_id, DepartmentRecord& record) {
  const int result = RTF_FP_INVOKE(
      ConfigDepartmentEx, write, dep_id, record.description.buffer, &record.price,
      &record.max_price, &record.quantity, &record.vat_id, &record.group_id, &record.single_shoot,
      &record.allow_discount, &record.force_description, &record.is_service);
  record.description.buffer[DepartmentRecord::kDescriptionSize - 1] = 0;
  return result;
}

int EcrCmdCommand::ConfigGroup(bool write, int index, GroupRecord& record) {
  const int result = RTF_FP_INVOKE(ConfigGroup, write, index, record.description.buffer,
                                   record.operator_password.buffer, &record.operator_flags,
                                   &record.operator_options);
  record.description.buffer[GroupRecord::kDescriptionSize - 1] = 0;
  record.operator_password.buffer[GroupRecord::kPasswordSize - 1] = 0;
  return result;
}

int EcrCmdCommand::ConfigSubtender(bool write, int subtender_id, SubtenderRecord& record) {
  const int result = RTF_FP_INVOKE(ConfigSubtender, write, subtender_id, &record.tender_type,
                                   record.description.buffer, &record.flags, &record.preset_value,
                                   &record.max_digits);
  record.description.buffer[SubtenderRecord::kDescriptionSize - 1] = 0;
  return result;
}

int EcrCmdCommand::ConfigKeyboard(bool write, int key_pos, KeyRecord& record) {
  // One byte of the position travels.
  const uint8_t position = static_cast<uint8_t>(key_pos & 255);
  const int result = RTF_FP_INVOKE(ConfigKeyboard, write, position, &record.key_code,
                                   &record.keyboard_type, record.macro.buffer, &record.macro_size);
  if (record.macro_size > KeyRecord::kMacroSize) record.macro_size = KeyRecord::kMacroSize;
  return result;
}

int EcrCmdCommand::ReadCapacity(int dataitem) {
  int64_t capacity = 0;
  ReadDataItem(dataitem, &capacity);
  return ClientInt(capacity);
}

int EcrCmdCommand::ReadRecordCount(int dataitem) {
  return std::min(ReadCapacity(dataitem), kMostRecords);
}
