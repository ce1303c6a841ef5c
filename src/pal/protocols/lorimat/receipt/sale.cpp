// The sale: one line of the receipt, and the place where a receipt is opened. No command of
// the language begins a receipt in the normal flow; the first sale does.

#include "managermachine/managerparams.h"
#include "managermachine/pflitemtype.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "utility/locale/locale.h"
#include "utility/log/log.h"

namespace {

enum SaleField {
  kDepartment = 1,
  kArticle = 2,
  kQuantity = 3,
  kPrice = 4,
  kRefund = 5,
  kVoid = 6,
  kDescription = 7,
  kUnitName = 14,
  kUnitPrice = 15,
  kDeposit = 16,
  kVoucher = 17,
  kPreLine = 18,
  kCoupon = 19,
};

// quantity in thousandths times a price. The 64 bits wrap, as they do in the device.
int64_t LineAmount(long quantity, int64_t unit_price) {
  const uint64_t product =
      static_cast<uint64_t>(static_cast<int64_t>(quantity)) * static_cast<uint64_t>(unit_price);
  return static_cast<int64_t>(product) / 1000;
}

}  // namespace

int EcrCmdCommand::Trad_VEND() {
  const int special = Given(*this, kDeposit) + Given(*this, kVoucher) + Given(*this, kCoupon);
  if (special >= 2) return SyntaxError(ILLEGAL_VALUE);
  if (Given(*this, kDepartment) == Given(*this, kArticle)) {
    return SyntaxError(NO_DPT_NUMBER_OR_ARTICLE_CODE);
  }

  char description[MAX_DESCRIPTION + 1];
  CopyText(description, szCampi[kDescription]);
  PflItemType::Enum pfl_item_type = PflItemType::kPrintRecItem;
  if (Given(*this, kRefund)) pfl_item_type = PflItemType::kPrintRecItemRefund;
  bool void_item = false;
  if (Given(*this, kVoid)) {
    pfl_item_type = PflItemType::kPrintRecItemVoid;
    void_item = true;
  }
  const bool preline = Given(*this, kPreLine);

  long quantity = 0;      // thousandths, 0 for none
  int64_t price = -1;     // ten-thousandths, -1 for none
  int64_t unitPrice = 0;  // ten-thousandths
  if (Given(*this, kQuantity)) {
    quantity = lorimatutility::TradQuantity(szCampi[kQuantity], currency_decimal_separator);
  }
  if (Given(*this, kPrice)) price = PriceField(*this, kPrice);
  if (Given(*this, kUnitPrice)) unitPrice = PriceField(*this, kUnitPrice);
  // A quantity with one price means a price for each; without any the device takes the
  // article's.
  if (quantity > 0 && unitPrice == 0) {
    unitPrice = price;
    price = 0;
  }
  int departmentInfo = ManagerParams::kUnsetDepartmentInfo;
  if (Given(*this, kDepartment)) {
    departmentInfo = ClientInt(lorimatutility::TradNumLong(szCampi[kDepartment]));
  }
  constexpr int vatInfo = ManagerParams::kUnsetVatInfo;
  char pluCode[MAX_PLUCODE + 1];
  CopyText(pluCode, szCampi[kArticle]);
  const bool buonoMonouso = Given(*this, kVoucher);

  if (bOnFirstSale) {
    int printer_state = 0;
    const int read = RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_PrinterState, &printer_state);
    if (read == 0 && printer_state == RTF_FPTR_PS_MONITOR) {
      const int opened = RTF_FP_INVOKE(BeginFiscalReceipt, true);
      if (opened != 0) return checkResult(opened);
    }
    // Also when the state could not be read or a document is open: the line then goes into
    // what the device has.
    bOnFirstSale = false;
  }

  if (Given(*this, kDeposit) || Given(*this, kVoucher)) {
    // Behind the quantity rule: a deposit with a quantity and a price has the amount 0,
    // meant.
    return checkResult(PrintRecRedeem(description, static_cast<int32_t>(price), vatInfo,
                                      buonoMonouso, preline, void_item, departmentInfo));
  }
  if (Given(*this, kCoupon)) {
    const int64_t amount = quantity > 0 && price == 0 ? LineAmount(quantity, unitPrice) : price;
    return checkResult(RTF_FP_INVOKE(PrintRecItemAdjustmentEx, RTF_FPTR_AT_COUPON_AMOUNT_DISCOUNT,
                                     description, amount, vatInfo, departmentInfo));
  }
  return checkResult(RTF_FP_INVOKE(PrintRecItemEx, pfl_item_type, description, price,
                                   static_cast<int32_t>(quantity), vatInfo, unitPrice,
                                   szCampi[kUnitName], departmentInfo, true, pluCode));
}

int EcrCmdCommand::PrintRecRedeem(const char* description, long price, int vatInfo,
                                  bool buonoMonouso, bool preline, bool void_item,
                                  int departmentInfo) {
  LOG_INFO("RtfProxy.PrintRecRedeem() enter");
  static constexpr PflItemType::Enum kItemTypes[2][2] = {
      {PflItemType::kPrintRecItemDeposit, PflItemType::kPrintRecItemDepositVoid},
      {PflItemType::kPrintRecItemBuoniMonouso, PflItemType::kPrintRecItemBuoniMonousoVoid},
  };
  const PflItemType::Enum item_type = kItemTypes[buonoMonouso][void_item];
  if (preline) {
    constexpr char kCentred[] = "\x1b|cA";  // escape sequence of a centred line
    char line[50];
    std::snprintf(line, sizeof line, "%s%s", kCentred,
                  loc.getText(buonoMonouso ? TextCode::kBuoniMonouso : TextCode::kSellDeposit));
    const int result = RTF_FP_INVOKE(SetStringProperty, RTF_PIDXFptr_PreLine, line);
    if (result != 0) return result;
  }
  // The article code goes out whole here, and no quantity or unit price with it.
  return RTF_FP_INVOKE(PrintRecItemEx, item_type, description,
                       static_cast<int64_t>(static_cast<int32_t>(price)), 0, vatInfo, 0,
                       szCampi[kUnitName], departmentInfo, true, szCampi[kArticle]);
}
