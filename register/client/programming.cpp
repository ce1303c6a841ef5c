// The register's programmable side: the records of its tables, as one call reads or writes
// them. Every write wants an idle printer; a refused one changes nothing.
#include <utility>

#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/fault/fault_operations.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

// The sizes of a caller's buffers, with the closing NUL. Reading gives out less: the tables'
// own limits are lower.
constexpr size_t kDepartmentBuffer = 128;
constexpr size_t kGroupBuffer = 129;
constexpr size_t kPasswordBuffer = 65;
constexpr size_t kSubtenderBuffer = 64;
constexpr size_t kHeaderBuffer = 65;
constexpr size_t kRateBuffer = 50;
constexpr size_t kMacroBuffer = Keyboards::kMacroSize + 1;

// Hosts read the rates of the classes 1 to 8 of any register; one that the table lacks is 0.
constexpr int kReadableVatEntries = 8;

template <typename... Pointers>
bool AnyNull(const Pointers*... pointers) {
  return ((pointers == nullptr) || ...);
}

std::string Read(const char* buffer, size_t size) { return std::string(BoundedView(buffer, size)); }

int NotOneOf(Subject subject, int number) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, subject, {number});
}

}  // namespace

// --- Departments

// Reads or writes a department; `is_service` is null where the plain record is meant, which leaves
// that flag as it is.
int VirtualRegister::AccessDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                                      int64_t* max_price, int32_t* quantity, int32_t* vat_id,
                                      uint8_t* group_id, bool* single_shoot, bool* allow_discount,
                                      bool* force_description, bool* is_service) {
  if (AnyNull(description, price, max_price, quantity, vat_id, group_id, single_shoot,
              allow_discount, force_description)) {
    return RTF_E_ILLEGAL;
  }
  const Department* row = core_.tables.FindDepartment(dep_id);
  if (row == nullptr) return NotOneOf(Subject::kDepartment, dep_id);
  if (!write) {
    Give(row->name, description, kDepartmentBuffer);
    *price = row->price;
    *max_price = row->max_price;
    *quantity = row->quantity;
    *vat_id = row->vat;
    *group_id = static_cast<uint8_t>(row->group);
    *single_shoot = row->single_shoot;
    *allow_discount = row->allow_discount;
    *force_description = row->force_description;
    if (is_service != nullptr) *is_service = row->is_service;
    return RTF_SUCCESS;
  }
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  Department changed = *row;
  changed.name = Read(description, kDepartmentBuffer);
  changed.price = *price;
  changed.max_price = *max_price;
  changed.quantity = *quantity;
  changed.vat = *vat_id;
  changed.group = *group_id;
  changed.single_shoot = *single_shoot;
  changed.allow_discount = *allow_discount;
  changed.force_description = *force_description;
  if (is_service != nullptr) changed.is_service = *is_service;
  return core_.tables.SetDepartment(dep_id, std::move(changed));
}

int VirtualRegister::ConfigDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                                      int64_t* max_price, int32_t* quantity, int32_t* vat_id,
                                      uint8_t* group_id, bool* single_shoot, bool* allow_discount,
                                      bool* force_description) {
  return Perform(ClientOperation::kConfigDepartment, EffectsOfRecord(write), [&] {
    return AccessDepartment(write, dep_id, description, price, max_price, quantity, vat_id,
                            group_id, single_shoot, allow_discount, force_description, nullptr);
  });
}

int VirtualRegister::ConfigDepartmentEx(bool write, int32_t dep_id, char* description,
                                        int64_t* price, int64_t* max_price, int32_t* quantity,
                                        int32_t* vat_id, uint8_t* group_id, bool* single_shoot,
                                        bool* allow_discount, bool* force_description,
                                        bool* is_service) {
  return Perform(ClientOperation::kConfigDepartmentEx, EffectsOfRecord(write), [&] {
    if (!core_.tables.settings().extended_departments || is_service == nullptr) {
      return RTF_E_ILLEGAL;
    }
    return AccessDepartment(write, dep_id, description, price, max_price, quantity, vat_id,
                            group_id, single_shoot, allow_discount, force_description, is_service);
  });
}

// --- Groups and operators

int VirtualRegister::ConfigGroup(bool write, int index, char* description, char* operator_password,
                                 int* operator_flags, int* operator_options) {
  return Perform(ClientOperation::kConfigGroup, EffectsOfRecord(write), [&] {
    if (AnyNull(description, operator_password, operator_flags, operator_options)) {
      return RTF_E_ILLEGAL;
    }
    const GroupRow* row = core_.tables.FindGroup(index);
    if (row == nullptr) return NotOneOf(Subject::kGroup, index);
    if (!write) {
      Give(row->description, description, kGroupBuffer);
      Give(row->password, operator_password, kPasswordBuffer);
      *operator_flags = row->flags;
      *operator_options = row->options;
      return RTF_SUCCESS;
    }
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.SetGroup(
        index, {Read(description, kGroupBuffer), Read(operator_password, kPasswordBuffer),
                *operator_flags, *operator_options});
  });
}

// --- Subtenders

int VirtualRegister::ConfigSubtender(bool write, int32_t subtender_id, uint8_t* tender_type,
                                     char* description, uint8_t* flags, uint32_t* preset_value,
                                     uint8_t* max_digits) {
  return Perform(ClientOperation::kConfigSubtender, EffectsOfRecord(write), [&] {
    if (AnyNull(tender_type, description, flags, preset_value, max_digits)) return RTF_E_ILLEGAL;
    const Subtender* row = core_.tables.FindSubtender(subtender_id);
    if (row == nullptr) return NotOneOf(Subject::kSubtender, subtender_id);
    if (!write) {
      *tender_type = static_cast<uint8_t>(row->kind);
      Give(row->description, description, kSubtenderBuffer);
      *flags = row->flags;
      *preset_value = row->preset_value;
      *max_digits = row->max_digits;
      return RTF_SUCCESS;
    }
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.SetSubtender(
        subtender_id, {static_cast<TenderKind>(*tender_type), Read(description, kSubtenderBuffer),
                       *flags, *preset_value, *max_digits});
  });
}

// --- VAT rates

int VirtualRegister::GetVatEntry(int vat_id, int, int* vat_rate) {
  return Perform(ClientOperation::kGetVatEntry, [&] {
    if (vat_rate == nullptr) return RTF_E_ILLEGAL;
    const VatRate* row = core_.tables.FindVat(vat_id);
    if (row == nullptr && (vat_id < 1 || vat_id > kReadableVatEntries)) {
      return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry, {vat_id, kReadableVatEntries});
    }
    *vat_rate = row != nullptr ? row->rate : 0;
    return RTF_SUCCESS;
  });
}

// The rate as SetVatValue takes it.
int VirtualRegister::GetVatEntryExtended(int vat_id, int, char* vat_rate) {
  return Perform(ClientOperation::kGetVatEntryExtended, [&] {
    if (vat_rate == nullptr) return RTF_E_ILLEGAL;
    const VatRate* row = core_.tables.FindVat(vat_id);
    if (row == nullptr && (vat_id < 1 || vat_id > kReadableVatEntries)) {
      return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry, {vat_id, kReadableVatEntries});
    }
    Give(std::to_string(row != nullptr ? row->rate : 0), vat_rate, kRateBuffer);
    return RTF_SUCCESS;
  });
}

int VirtualRegister::SetVatValue(int vat_id, const char* vat_rate) {
  return Perform(ClientOperation::kSetVatValue, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.NoteVatRate(vat_id, View(vat_rate));
  });
}

int VirtualRegister::SetVatTable() {
  return Perform(ClientOperation::kSetVatTable, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.CommitVat(core_.store.day_open());
  });
}

// --- Header lines and logos

int VirtualRegister::GetHeaderLine(int line, char* text) {
  return Perform(ClientOperation::kGetHeaderLine, [&] {
    if (text == nullptr) return RTF_E_ILLEGAL;
    if (line < 1 || line > Tables::kHeaderLines) {
      return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kHeaderLine,
                         {line, 1, Tables::kHeaderLines});
    }
    const std::vector<std::string>& lines = core_.tables.settings().header_lines;
    const size_t index = static_cast<size_t>(line) - 1;
    Give(index < lines.size() ? lines[index] : std::string_view(), text, kHeaderBuffer);
    return RTF_SUCCESS;
  });
}

// Double width is asked for inside the text; hosts set the flag for every line.
int VirtualRegister::SetHeaderLine(int line, const char* text, bool) {
  return Perform(ClientOperation::kSetHeaderLine, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.SetHeaderLine(line, View(text));
  });
}

int VirtualRegister::ProgramGRC(uint8_t ngraex, const char* file, bool) {
  return Perform(ClientOperation::kProgramGRC, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    return core_.tables.SetLogo(ngraex, View(file));
  });
}

int VirtualRegister::EraseLogoArchive() {
  return Perform(ClientOperation::kEraseLogoArchive, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    core_.tables.EraseLogos();
    core_.setup.header_logo = 0;
    core_.setup.trailer_logo = 0;
    return RTF_SUCCESS;
  });
}

// --- Keyboards

int VirtualRegister::ConfigKeyboard(bool write, uint8_t key_pos, uint8_t* key_code,
                                    int8_t* keyboard_type, char* macro, uint16_t* macro_size) {
  return Perform(ClientOperation::kConfigKeyboard, EffectsOfRecord(write), [&] {
    if (AnyNull(key_code, keyboard_type, macro, macro_size)) return RTF_E_ILLEGAL;
    const ProgrammedKey* key = core_.keyboards.Find(*keyboard_type, key_pos);
    if (key == nullptr) return NotOneOf(Subject::kKeyPlace, key_pos);
    if (!write) {
      *key_code = key->code;
      Give(key->macro, macro, kMacroBuffer);
      *macro_size = static_cast<uint16_t>(key->macro.size());
      return RTF_SUCCESS;
    }
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    if (*macro_size > Keyboards::kMacroSize) {
      return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kMacro,
                         {*macro_size, Keyboards::kMacroSize});
    }
    return core_.keyboards.Program(*keyboard_type, key_pos,
                                   {*key_code, std::string(macro, *macro_size)});
  });
}

// --- Articles

int VirtualRegister::DownloadTable(int selector, int index, char* data_row) {
  return Perform(ClientOperation::kDownloadTable, [&] {
    if (data_row == nullptr) return RTF_E_ILLEGAL;
    std::string row;
    if (const int code = articles_.Download(selector, index, &row)) return code;
    Give(row, data_row, ArticleLink::kRowSize + 1);
    return RTF_SUCCESS;
  });
}

int VirtualRegister::UploadTable(int table, int row_type, const char* data_row) {
  return Perform(ClientOperation::kUploadTable,
                 [&] { return articles_.Upload(table, row_type, View(data_row)); });
}

int VirtualRegister::EraseTable(int table) {
  return Perform(ClientOperation::kEraseTable, [&] { return articles_.Erase(table); });
}

}  // namespace lorimat
