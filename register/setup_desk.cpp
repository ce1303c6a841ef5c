#include "register/setup_desk.h"

#include <algorithm>
#include <utility>

#include "register/device_clock.h"
#include "register/device_text.h"
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
  if (number.size() != kVatNumberSize) return RTF_EFPTR_BAD_LENGTH;
  if (!std::all_of(number.begin(), number.end(), IsDigit)) return RTF_E_ILLEGAL;
  int sum = 0;
  for (size_t at = 0; at < number.size(); ++at) {
    int digit = number[at] - '0';
    if (at % 2 == 1) digit = 2 * digit - (digit > 4 ? 9 : 0);
    sum += digit;
  }
  return sum % 10 == 0 ? RTF_SUCCESS : RTF_E_ILLEGAL;
}

int CheckTaxCode(std::string_view code) {
  if (code.size() != kVatNumberSize && code.size() != kTaxCodeSize) return RTF_EFPTR_BAD_LENGTH;
  return std::all_of(code.begin(), code.end(), IsAlphanumeric) ? RTF_SUCCESS : RTF_E_ILLEGAL;
}

int CheckCredential(std::string_view text) {
  if (text.empty()) return RTF_E_ILLEGAL;
  return text.size() <= kCredentialSize ? RTF_SUCCESS : RTF_EFPTR_BAD_LENGTH;
}

}  // namespace

// What stands on fiscal documents or rules their times is left alone while a day is open.
int SetupDesk::CheckFiscal() const {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  return core_.store.day_open() ? RTF_EFPTR_DAY_END_REQUIRED : RTF_SUCCESS;
}

int SetupDesk::SetTrailerLine(int line, std::string_view text) {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (line < 1 || line > DeviceSetup::kTrailerLines) return RTF_E_ILLEGAL;
  if (text.size() > DeviceSetup::kTrailerLineSize) return RTF_EFPTR_BAD_LENGTH;
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
    return RTF_EFPTR_BAD_LENGTH;
  }
  std::string pos = DeviceText(pos_id);
  std::string cashier = DeviceText(cashier_id);
  core_.setup.pos_id = std::move(pos);
  core_.setup.cashier_id = std::move(cashier);
  return RTF_SUCCESS;
}

int SetupDesk::SetDate(std::string_view date) {
  if (const int code = CheckFiscal()) return code;
  std::tm wanted = {};
  if (!ParseMinute(date, &wanted)) return RTF_EFPTR_BAD_DATE;
  if (wanted.tm_year < kFirstYear || wanted.tm_year > kLastYear) return RTF_EFPTR_BAD_DATE;
  const std::optional<Closure> last = core_.store.LastClosure();
  if (last && CompareMinutes(wanted, last->time) < 0) return RTF_EFPTR_BAD_DATE;
  const std::tm system = core_.SystemTime();
  if (system.tm_year < 0 || system.tm_year > kLastClockYear) return RTF_EFPTR_CLOCK_ERROR;
  core_.setup.clock_offset = SecondsBetween(system, wanted);
  return RTF_SUCCESS;
}

int SetupDesk::SelectLogo(int number, int position) {
  if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (number < 0 || number > Tables::kMaxLogos || position < 1 || position > 2) {
    return RTF_E_ILLEGAL;
  }
  if (number != 0 && core_.tables.FindLogo(number) == nullptr) return RTF_E_NOEXIST;
  (position == 1 ? core_.setup.header_logo : core_.setup.trailer_logo) = number;
  return RTF_SUCCESS;
}

// --- The way into service

int SetupDesk::Register() {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kNew) return RTF_EFPTR_WRONG_STATE;
  core_.setup.commissioning = Commissioning::kRegistered;
  return RTF_SUCCESS;
}

int SetupDesk::Activate(const Activation& activation) {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kRegistered) return RTF_EFPTR_WRONG_STATE;
  if (const int code = CheckVatNumber(activation.vat_number)) return code;
  if (const int code = CheckTaxCode(activation.tax_code)) return code;
  if (const int code = CheckCredential(activation.user)) return code;
  if (const int code = CheckCredential(activation.password)) return code;
  if (activation.ateco < 1 || activation.ateco > kLastActivity) return RTF_E_ILLEGAL;
  std::string date(activation.date);
  if (date.size() == 8) date += "0000";
  std::tm time = {};
  if (!ParseMinute(date, &time)) return RTF_EFPTR_BAD_DATE;
  core_.setup.fiscal_id = activation.vat_number;
  core_.setup.commissioning = Commissioning::kActivated;
  return RTF_SUCCESS;
}

int SetupDesk::PutIntoService() {
  if (const int code = CheckFiscal()) return code;
  if (core_.setup.commissioning != Commissioning::kActivated) return RTF_EFPTR_WRONG_STATE;
  core_.setup.commissioning = Commissioning::kInService;
  return RTF_SUCCESS;
}

}  // namespace lorimat
