#include "register/desk/setup_desk.h"

#include <algorithm>
#include <utility>

#include "register/desk/clock_check.h"
#include "register/value/device_clock.h"
#include "register/value/device_text.h"
#include "register/value/refusal.h"
#include "register/value/row_encoding.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr size_t kVatNumberSize = 11;
constexpr size_t kTaxCodeSize = 16;
constexpr size_t kCredentialSize = 64;
constexpr int32_t kLastActivity = 999999;
// Years of tm_year that the clock can be set to: 2000 to 2099.
constexpr int kFirstYear = 100;
constexpr int kLastYear = 199;
// What a clock can show at all: to the year 9999.
constexpr int kLastClockYear = 8099;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsAlphanumeric(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The check digit of an Italian VAT number: each second digit is doubled, 9 taken off what has
// become two digits, and the sum has to end in 0.
int CheckVatNumber(std::string_view number) {
  if (number.size() != kVatNumberSize) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kWrongLength, Subject::kVatNumber,
                       {static_cast<int64_t>(number.size()), kVatNumberSize, kVatNumberSize});
  }
  if (!std::all_of(number.begin(), number.end(), IsDigit)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kVatNumber, {}, number);
  }
  int sum = 0;
  for (size_t at = 0; at < number.size(); ++at) {
    int digit = number[at] - '0';
    if (at % 2 == 1) digit = 2 * digit - (digit > 4 ? 9 : 0);
    sum += digit;
  }
  if (sum % 10 == 0) return RTF_SUCCESS;
  const int last = number.back() - '0';
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCheckDigit, Subject::kVatNumber,
                     {last, (last + 10 - sum % 10) % 10});
}

int CheckTaxCode(std::string_view code) {
  if (code.size() != kVatNumberSize && code.size() != kTaxCodeSize) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kEitherLength, Subject::kTaxCode,
                       {static_cast<int64_t>(code.size()), kVatNumberSize, kTaxCodeSize});
  }
  if (std::all_of(code.begin(), code.end(), IsAlphanumeric)) return RTF_SUCCESS;
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kTaxCode, {}, code);
}

int CheckCredential(std::string_view text) {
  if (text.empty()) return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kMissing, Subject::kCredential);
  if (text.size() <= kCredentialSize) return RTF_SUCCESS;
  return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kCredential,
                     {static_cast<int64_t>(text.size()), kCredentialSize});
}

int NotAsFar(Commissioning has, Commissioning needs) {
  return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kSetUpOrder,
                {static_cast<int64_t>(has), static_cast<int64_t>(needs)});
}

}  // namespace

// What stands on fiscal documents or rules their times is left alone while a day is open.
int SetupDesk::CheckFiscal() const {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (!core_.store.day_open()) return RTF_SUCCESS;
  return Refuse(RTF_EFPTR_DAY_END_REQUIRED, RefusalCause::kDayOpen);
}

int SetupDesk::SetTrailerLine(int line, std::string_view text) {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (line < 1 || line > DeviceSetup::kTrailerLines) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kTrailerLine,
                       {line, 1, DeviceSetup::kTrailerLines});
  }
  if (text.size() > DeviceSetup::kTrailerLineSize) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kTrailerText,
                       {static_cast<int64_t>(text.size()), DeviceSetup::kTrailerLineSize});
  }
  core_.setup.trailer_lines[static_cast<size_t>(line) - 1] = DeviceText(text);
  return RTF_SUCCESS;
}

int SetupDesk::SetFiscalId(std::string_view id) {
  if (const int code = CheckFiscal()) return code;
  if (const int code = CheckVatNumber(id)) return code;
  core_.setup.fiscal_id = id;
  return RTF_SUCCESS;
}

int SetupDesk::SetPosId(std::string_view pos_id, std::string_view cashier_id) {
  if (const int code = CheckFiscal()) return code;
  if (pos_id.size() > DeviceSetup::kPosIdSize || cashier_id.size() > DeviceSetup::kPosIdSize) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kPosId,
                       {static_cast<int64_t>(std::max(pos_id.size(), cashier_id.size())),
                        DeviceSetup::kPosIdSize});
  }
  std::string pos = DeviceText(pos_id);
  std::string cashier = DeviceText(cashier_id);
  core_.setup.pos_id = std::move(pos);
  core_.setup.cashier_id = std::move(cashier);
  return RTF_SUCCESS;
}

// A clock that is behind can be set on an open day too: with it nothing is sold, nor the day
// closed.
int SetupDesk::SetDate(std::string_view date) {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (!FindClockBehind(core_)) {
    if (const int code = CheckFiscal()) return code;
  }
  std::tm wanted = {};
  if (!ParseMinute(date, &wanted)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, date);
  }
  if (wanted.tm_year < kFirstYear || wanted.tm_year > kLastYear) {
    return RefuseValue(RTF_EFPTR_BAD_DATE, RefusalCause::kOutOfRange, Subject::kYear,
                       {wanted.tm_year + 1900, kFirstYear + 1900, kLastYear + 1900});
  }
  const std::tm system = core_.SystemTime();
  if (system.tm_year < 0 || system.tm_year > kLastClockYear) {
    return Refuse(RTF_EFPTR_CLOCK_ERROR, RefusalCause::kComputersClock);
  }
  // Back behind what was registered: the operator's word, which the journal's chain keeps. Dates
  // that are given count to the minute.
  const int64_t latest = LatestTime(core_);
  if (latest != 0 && CompareMinutes(wanted, NumberTime(latest)) < 0) {
    core_.setup.clock_set_back = {latest, TimeNumber(wanted), core_.store.document_count(),
                                  core_.store.last_closure()};
  }
  core_.setup.clock_offset = SecondsBetween(system, wanted);
  return RTF_SUCCESS;
}

int SetupDesk::SelectLogo(int number, int position) {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (number < 0 || number > Tables::kMaxLogos) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kLogo,
                       {number, 0, Tables::kMaxLogos});
  }
  if (position < 1 || position > 2) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kLogoPlace,
                       {position, 1, 2});
  }
  if (number != 0 && core_.tables.FindLogo(number) == nullptr) {
    return RefuseValue(RTF_E_NOEXIST, RefusalCause::kNotOneOf, Subject::kLogo, {number});
  }
  (position == 1 ? core_.setup.header_logo : core_.setup.trailer_logo) = number;
  return RTF_SUCCESS;
}

// --- The way into service

int SetupDesk::Register() {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kNew) {
    return NotAsFar(core_.setup.commissioning, Commissioning::kNew);
  }
  core_.setup.commissioning = Commissioning::kRegistered;
  return RTF_SUCCESS;
}

int SetupDesk::Activate(const Activation& activation) {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kRegistered) {
    return NotAsFar(core_.setup.commissioning, Commissioning::kRegistered);
  }
  if (const int code = CheckVatNumber(activation.vat_number)) return code;
  if (const int code = CheckTaxCode(activation.tax_code)) return code;
  if (const int code = CheckCredential(activation.user)) return code;
  if (const int code = CheckCredential(activation.password)) return code;
  if (activation.ateco < 1 || activation.ateco > kLastActivity) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kActivity,
                       {activation.ateco, 1, kLastActivity});
  }
  std::string date(activation.date);
  if (date.size() == 8) date += "0000";
  std::tm time = {};
  if (!ParseMinute(date, &time)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, activation.date);
  }
  core_.setup.fiscal_id = activation.vat_number;
  core_.setup.commissioning = Commissioning::kActivated;
  return RTF_SUCCESS;
}

int SetupDesk::PutIntoService() {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kActivated) {
    return NotAsFar(core_.setup.commissioning, Commissioning::kActivated);
  }
  core_.setup.commissioning = Commissioning::kInService;
  return RTF_SUCCESS;
}

}  // namespace lorimat
