// Work on the receipt in progress: discounts and surcharges of a line or of the subtotal,
// the subtotal itself, a text for the device, and the clear key.

#include "managermachine/managerparams.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "utility/locale/locale.h"

struct Adjustment {
  int type;             // RTF_FPTR_AT_*
  bool is_percentage;   // field 1 is a percentage, and stands in the description
  TextCode::Enum text;  // description when field 3 is absent
  TextCode::Enum greek_text;
  size_t longest_description;
};

namespace {

constexpr int kItemText = 152;  // data item of the text of Trad_CORT

constexpr size_t kDescriptionSize = 128;

constexpr Adjustment kPercentageDiscount = {RTF_FPTR_AT_PERCENTAGE_DISCOUNT, true,
                                            TextCode::kDiscount, TextCode::kDiscountPercentage,
                                            kDescriptionSize - 1};
constexpr Adjustment kPercentageSurcharge = {RTF_FPTR_AT_PERCENTAGE_SURCHARGE, true,
                                             TextCode::kSurcharge, TextCode::kSurchargePercentage,
                                             kDescriptionSize - 1};
constexpr Adjustment kAmountDiscount = {RTF_FPTR_AT_AMOUNT_DISCOUNT, false, TextCode::kDiscount,
                                        TextCode::kDiscount, MAX_DESCRIPTION};
constexpr Adjustment kAmountSurcharge = {RTF_FPTR_AT_AMOUNT_SURCHARGE, false, TextCode::kSurcharge,
                                         TextCode::kSurcharge, MAX_DESCRIPTION};

// Value of fiscal_operation_state_: the receipt stands at its subtotal.
constexpr int kAtSubtotal = 4;

}  // namespace

int EcrCmdCommand::Adjust(const Adjustment& adjustment) {
  int64_t amount = 0;  // ten-thousandths of the currency, or of a percent
  if (Given(*this, 1)) {
    amount = adjustment.is_percentage
                 ? lorimatutility::TradPercentage(szCampi[1], currency_decimal_separator,
                                                  GetMaxPrecision())
                 : PriceField(*this, 1);
  }
  if (Given(*this, 2) && Given(*this, 5)) return SyntaxError(ILLEGAL_VALUE);
  int departmentInfo = ManagerParams::kLastDepartmentInfoUsed;
  if (Given(*this, 5)) departmentInfo = ClientInt(lorimatutility::TradNumLong(szCampi[5]));

  char description[kDescriptionSize];
  if (Given(*this, 3)) {
    CopyText(description, adjustment.longest_description + 1, szCampi[3]);
  } else {
    const bool greek = loc.getCurrentLanguageCode() == Locale::kGreek;
    CopyText(description, loc.getText(greek ? adjustment.greek_text : adjustment.text));
    if (adjustment.is_percentage) {
      char text[kDescriptionSize / 2];
      CopyText(text, description);
      lorimatutility::NumToStringDescription(description, text, static_cast<long>(amount),
                                             percentage_factor, true);
      AppendText(description, "%");
    }
  }

  const auto adjust_subtotal = [&] {
    return checkResult(
        RTF_FP_INVOKE(PrintRecSubtotalAdjustment, adjustment.type, description, amount));
  };
  if (Given(*this, 2)) {
    static_cast<void>(RTF_FP_INVOKE(PrintRecSubtotalEx, 0, false));
    return adjust_subtotal();
  }
  UpdateStatus();  // a failure leaves the last state in force
  if (fiscal_operation_state_ == kAtSubtotal) return adjust_subtotal();
  return checkResult(RTF_FP_INVOKE(PrintRecItemAdjustmentEx, adjustment.type, description, amount,
                                   ManagerParams::kUnsetVatInfo, departmentInfo));
}

int EcrCmdCommand::Trad_PERCA() { return Adjust(kPercentageDiscount); }

int EcrCmdCommand::Trad_PERCB() { return Adjust(kPercentageSurcharge); }

int EcrCmdCommand::Trad_SCONTO() { return Adjust(kAmountDiscount); }

int EcrCmdCommand::Trad_MAGGIORAZIONE() { return Adjust(kAmountSurcharge); }

int EcrCmdCommand::Trad_SUBT() { return checkResult(RTF_FP_INVOKE(PrintRecSubtotalEx, 0, false)); }

int EcrCmdCommand::Trad_CORT() {
  const int field = Given(*this, 1) ? 1 : 2;
  if (!Given(*this, field)) return 0;
  char text[MAX_DESCRIPTION + 1];
  CopyText(text, szCampi[field]);
  return checkResult(RTF_FP_INVOKE(SetDataInternal, kItemText, text));
}

int EcrCmdCommand::Trad_CLEAR() {
  bOnFirstSale = true;
  static_cast<void>(RTF_FP_INVOKE(KeyCodeInput, "", "", "", FunctionCode::kClear));
  return 0;
}
