// Set-up of the device beside its tables: the shop's own lines, who it is, its clock, and the way
// into service. A call that is refused changes nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "register/core/core.h"

namespace lorimat {

// What TelematicActivate is given.
struct Activation {
  std::string_view vat_number;
  std::string_view tax_code;
  std::string_view user;
  std::string_view password;
  int32_t ateco = 0;      // the shop's activity, a code of at most six digits
  std::string_view date;  // DDMMYYYY, or DDMMYYYYHHMM
};

class SetupDesk {
 public:
  explicit SetupDesk(RegisterCore& core) : core_(core) {}

  int SetTrailerLine(int line, std::string_view text);
  // A VAT number of 11 digits with its check digit.
  int SetFiscalId(std::string_view id);
  int SetPosId(std::string_view pos_id, std::string_view cashier_id);
  // DDMMYYYYHHMM, of the years 2000 to 2099, not ahead of the last closing.
  int SetDate(std::string_view date);
  // A logo that was programmed, or 0, ahead of the header (position 1) or behind the trailer (2).
  int SelectLogo(int number, int position);

  // The three steps into service, in their order. Nothing leaves the computer, and user and
  // password are not kept.
  int Register();
  int Activate(const Activation& activation);
  int PutIntoService();

 private:
  int CheckFiscal() const;

  RegisterCore& core_;
};

}  // namespace lorimat
