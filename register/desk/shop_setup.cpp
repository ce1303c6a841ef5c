#include "register/desk/shop_setup.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "register/core/core.h"
#include "register/desk/setup_desk.h"
#include "register/value/nature.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr char kEscape = 27;

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != kEscape) || byte == 0x7F;
}

// A document that was begun and given up, or that was not fiscal, bears the numbers, too.
int CheckNoDocuments(const RegisterCore& core, Subject subject) {
  const RegisterStore& store = core.store;
  if (store.document_count() == 0 && store.journal_count() == 0 && !store.day_open()) {
    return RTF_SUCCESS;
  }
  return RefuseValue(RTF_EFPTR_WRONG_STATE, RefusalCause::kFixedByDocuments, subject);
}

int CheckHeaderLine(std::string_view line) {
  if (std::any_of(line.begin(), line.end(), IsControl)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kHeaderText, {}, line);
  }
  const size_t columns = ReadHostText(line).text.size();
  if (columns <= Paper::kColumns) return RTF_SUCCESS;
  return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kHeaderText,
                     {static_cast<int64_t>(columns), static_cast<int64_t>(Paper::kColumns)});
}

// A name stands beside its price: no sequence lays it out, and ESC is as strange as the others.
int CheckDepartmentName(std::string_view name) {
  const auto strange = [](char c) { return IsControl(c) || c == kEscape; };
  if (std::none_of(name.begin(), name.end(), strange)) return RTF_SUCCESS;
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kDepartmentName, {}, name);
}

int CheckFolder(const std::string& folder) {
  std::error_code none;
  const bool good = folder.find('\0') == folder.npos &&
                    std::filesystem::is_directory(folder, none) &&
                    access(folder.c_str(), W_OK | X_OK) == 0;
  if (good) return RTF_SUCCESS;
  return Refuse(RTF_E_NOEXIST, RefusalCause::kNoFolder, {}, folder);
}

class ShopDesk {
 public:
  ShopDesk(RegisterCore& core, const ShopSetup& setup) : core_(core), setup_(setup) {}

  int SetUp(ShopRefusal* refused) {
    if (setup_.training == false && core_.setup.training) {
      if (const int code = SetTraining(false)) return Tell(code, ShopValue::kTraining, 0, refused);
    }
    constexpr std::pair<ShopValue, int (ShopDesk::*)(int*)> kSteps[] = {
        {ShopValue::kSerialNumber, &ShopDesk::SetSerialNumber},
        {ShopValue::kVatNumber, &ShopDesk::SetVatNumber},
        {ShopValue::kHeaderLines, &ShopDesk::SetHeader},
        {ShopValue::kVatRates, &ShopDesk::SetRates},
        {ShopValue::kDepartments, &ShopDesk::SetDepartments},
        {ShopValue::kOutbox, &ShopDesk::SetOutbox},
        {ShopValue::kRoundCash, &ShopDesk::SetRoundCash},
        {ShopValue::kInService, &ShopDesk::SetInService},
    };
    for (const auto& [value, set] : kSteps) {
      int number = 0;
      if (const int code = (this->*set)(&number)) return Tell(code, value, number, refused);
    }
    // Last, as nothing is programmed in training.
    if (setup_.training == true && !core_.setup.training) {
      if (const int code = SetTraining(true)) return Tell(code, ShopValue::kTraining, 0, refused);
    }
    return RTF_SUCCESS;
  }

 private:
  static int Tell(int code, ShopValue value, int number, ShopRefusal* refused) {
    *refused = {value, number};
    return code;
  }

  int SetTraining(bool on) {
    if (!core_.Allows(Operation::kTraining)) return RTF_EFPTR_WRONG_STATE;
    core_.setup.training = on;
    return RTF_SUCCESS;
  }

  int SetSerialNumber(int*) {
    const std::optional<std::string>& number = setup_.serial_number;
    if (!number || *number == core_.tables.settings().serial_number) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    if (const int code = CheckNoDocuments(core_, Subject::kSerialNumber)) return code;
    return core_.tables.SetSerialNumber(*number);
  }

  int SetVatNumber(int*) {
    const std::optional<std::string>& number = setup_.vat_number;
    if (!number || *number == core_.setup.fiscal_id) return RTF_SUCCESS;
    if (const int code = CheckNoDocuments(core_, Subject::kVatNumber)) return code;
    const std::string old_line = VatNumberLine(core_.setup.fiscal_id);
    if (const int code = SetupDesk(core_).SetFiscalId(*number)) return code;
    return setup_.header_lines ? RTF_SUCCESS : ReplaceHeaderLine(old_line, VatNumberLine(*number));
  }

  // No document bears another number than its header names.
  int ReplaceHeaderLine(const std::string& old_line, const std::string& new_line) {
    const std::vector<std::string> lines = core_.tables.settings().header_lines;
    for (size_t index = 0; index < lines.size(); ++index) {
      if (lines[index] != old_line) continue;
      const int code = core_.tables.SetHeaderLine(static_cast<int>(index) + 1, new_line);
      if (code != RTF_SUCCESS) return code;
    }
    return RTF_SUCCESS;
  }

  int SetHeader(int* number) {
    if (!setup_.header_lines) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    for (const std::string& line : *setup_.header_lines) {
      ++*number;
      if (const int code = CheckHeaderLine(line)) return code;
    }
    return core_.tables.SetHeaderLines(*setup_.header_lines);
  }

  int SetRates(int* number) {
    if (setup_.vat_rates.empty() && setup_.vat_natures.empty()) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    for (const auto& [entry, rate] : setup_.vat_rates) {
      *number = entry;
      if (const int code = core_.tables.NoteVatRate(entry, std::to_string(rate))) return code;
    }
    *number = 0;
    const bool day_open = core_.store.day_open();
    if (!setup_.vat_rates.empty()) {
      if (const int code = core_.tables.CommitVat(day_open)) return code;
    }
    for (const auto& [entry, nature] : setup_.vat_natures) {
      *number = entry;
      const Nature* const found = FindNature(nature);
      if (found == nullptr) {
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kUnknownName, Subject::kVatRate, {},
                           nature);
      }
      if (const int code = core_.tables.SetVatNature(entry, *found, day_open)) return code;
    }
    *number = 0;
    return RTF_SUCCESS;
  }

  int SetDepartments(int* number) {
    if (setup_.departments.empty()) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    for (const auto& [place, change] : setup_.departments) {
      *number = place;
      const Department* const found = core_.tables.FindDepartment(place);
      Department department = found != nullptr ? *found : Department();
      if (change.name) {
        if (const int code = CheckDepartmentName(*change.name)) return code;
        department.name = *change.name;
      }
      if (change.vat) department.vat = *change.vat;
      if (change.price) department.price = *change.price;
      if (const int code = core_.tables.SetDepartment(place, std::move(department))) return code;
    }
    return RTF_SUCCESS;
  }

  int SetOutbox(int*) {
    if (!setup_.outbox || *setup_.outbox == core_.setup.outbox) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    if (!setup_.outbox->empty()) {
      if (const int code = CheckFolder(*setup_.outbox)) return code;
    }
    core_.setup.outbox = *setup_.outbox;
    return RTF_SUCCESS;
  }

  int SetRoundCash(int*) {
    if (!setup_.round_cash || *setup_.round_cash == core_.setup.round_cash) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    core_.setup.round_cash = *setup_.round_cash;
    return RTF_SUCCESS;
  }

  int SetInService(int*) {
    if (!setup_.in_service || *setup_.in_service == core_.in_service()) return RTF_SUCCESS;
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    if (core_.store.day_open()) return Refuse(RTF_EFPTR_DAY_END_REQUIRED, RefusalCause::kDayOpen);
    core_.setup.commissioning =
        *setup_.in_service ? Commissioning::kInService : Commissioning::kNew;
    return RTF_SUCCESS;
  }

  RegisterCore& core_;
  const ShopSetup& setup_;
};

}  // namespace

std::string VatNumberLine(std::string_view number) { return "P.IVA " + std::string(number); }

int SetUpShop(RegisterCore& core, const ShopSetup& setup, ShopRefusal* refused) {
  DeviceSetup before = core.setup;
  const KeyPosition key = std::exchange(core.key, KeyPosition::kProgram);
  const int code = ShopDesk(core, setup).SetUp(refused);
  core.key = key;
  if (code == RTF_SUCCESS) return code;
  // Some of it may have been done before.
  core.tables.TakeBack();
  core.setup = std::move(before);
  return code;
}

}  // namespace lorimat
