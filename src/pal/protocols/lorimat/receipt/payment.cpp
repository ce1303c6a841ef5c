// Payment and closing, the subtotal check, and key input, by which the host reaches what has
// no command of its own.

#include "pal/fiscalcode.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/receipt/tender_numbers.h"

namespace {

// Data items of the device.
constexpr int kItemAutoCut = 148;
constexpr int kItemManagerError = 368;  // the last key was refused
constexpr int kItemDrawerAtEnd = 459;   // open the drawer when a receipt ends
constexpr int kItemOpenedByKey = 600;

}  // namespace

int EcrCmdCommand::Trad_CHIU() {
  // First: whatever becomes of the payment, the next sale looks at the printer again.
  bOnFirstSale = true;

  int64_t payment = 0;
  bool auto_payment = true;
  if (Given(*this, 2)) {
    payment = PriceField(*this, 2);
    auto_payment = false;
  }
  long iNumTend = 1;
  if (Given(*this, 1)) iNumTend = lorimatutility::TradNumLong(szCampi[1]);
  char description[kTenderSize];
  TenderIdentifier(description, iNumTend, szCampi[1]);

  const int result = RTF_FP_INVOKE(PrintRecTotalEx, payment, description, auto_payment);
  if (result == 0) OpenDrawerAtEnd();
  return checkResult(result);
}

void EcrCmdCommand::OpenDrawerAtEnd() {
  int printer_state = 0;
  if (RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_PrinterState, &printer_state) != 0) return;
  if (printer_state == RTF_FPTR_PS_MONITOR || printer_state == RTF_FPTR_PS_FISCAL_RECEIPT_ENDING) {
    WaitIdle();
  } else if (printer_state == RTF_FPTR_PS_LOCKED) {
    int training = 0;
    if (RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_TrainingModeActive, &training) != 0 ||
        training == 0) {
      return;
    }
  } else {
    return;
  }
  long open = 0;
  if (getDataInternal(kItemDrawerAtEnd, &open) == 0 && open != 0) {
    static_cast<void>(RTF_FP_INVOKE_NP(OpenDrawer));
  }
}

int EcrCmdCommand::Trad_CHKSUB() {
  if (!Given(*this, 1) || !lorimatutility::SeNum(szCampi[1])) {
    return SyntaxError(CAMPO_OBBLIGATORIO);
  }
  const int64_t iSubTotal = PriceField(*this, 1);
  const int result = RTF_FP_INVOKE(PrintRecSubtotalEx, iSubTotal, true);
  if (result == RTF_EFPTR_FISCAL_TOTALS_ERROR) static_cast<void>(RTF_FP_INVOKE_NP(ResetPrn));
  return checkResult(result);
}

int EcrCmdCommand::Trad_INP() {
  const int key_code_terminator = TextToInt(szCampi[4]);
  if (key_code_terminator < 0 || key_code_terminator > 255) {
    return checkResult(RTF_EFPTR_WRONG_STATE);
  }
  const bool lottery_code_due = LotteryCodeDetect_;
  LotteryCodeDetect_ = false;
  if (lottery_code_due &&
      (key_code_terminator == FunctionCode::kConfirm ||
       key_code_terminator == FunctionCode::kTotal) &&
      !FiscalCode::CheckClientID(szCampi[3])) {
    return SyntaxError(ILLEGAL_VALUE);
  }
  if (key_code_terminator == FunctionCode::kOpenTransaction) return OpenByKey();
  if (key_code_terminator == FunctionCode::kCloseTransaction) return CloseByKey();
  if (key_code_terminator >= FunctionCode::kSubTender01 &&
      key_code_terminator <= FunctionCode::kLastSubTender) {
    // A payment: the digits are the amount, the key is the tender.
    CopyText(szCampi[2], szCampi[1]);
    CopyText(szCampi[1], szCampi[4]);
    // The code gets its class a second time: meant.
    return checkResult(Trad_CHIU());
  }
  return PlayKey(static_cast<uint8_t>(key_code_terminator));
}

int EcrCmdCommand::OpenByKey() {
  const int status = UpdateStatus();
  if (status != 0) return checkResult(status);
  const int result = checkResult(RTF_FP_INVOKE(BeginFiscalReceipt, true));
  bOnFirstSale = false;
  if (result == 0) static_cast<void>(RTF_FP_INVOKE(SetDataInternal, kItemOpenedByKey, "1"));
  return result;
}

int EcrCmdCommand::CloseByKey() {
  const int status = UpdateStatus();
  if (status != 0) return checkResult(status);
  // Nothing is open.
  if (fiscal_functional_state_ == 0) return 0;
  bool auto_cut = true;
  long option = 0;
  if (getDataInternal(kItemAutoCut, &option) == 0) auto_cut = option != 0;
  const int result = checkResult(auto_cut ? RTF_FP_INVOKE(EndFiscalReceipt, true)
                                          : RTF_FP_INVOKE_NP(BeginAdditionalTrailer));
  bOnFirstSale = true;
  return result;
}

int EcrCmdCommand::PlayKey(uint8_t key_code_terminator) {
  constexpr size_t kInputSize = 129;
  char keys_code_numerics[kInputSize] = {};
  char keys_code_alfa_fp[kInputSize] = {};
  char key_code_alfa_lcd[kInputSize] = {};
  if (key_code_terminator == FunctionCode::kLotteryCode) {
    LotteryCodeDetect_ = true;
  } else if (Given(*this, 1)) {
    char digits[kInputSize];
    CopyText(digits, szCampi[1]);
    lorimatutility::TradNumToECR(keys_code_numerics, digits);
  } else {
    CopyText(keys_code_alfa_fp, szCampi[2]);
    CopyText(key_code_alfa_lcd, szCampi[3]);
  }

  // Ahead of the key: a refused key leaves the flag changed.
  switch (key_code_terminator) {
    case FunctionCode::kOpenRefundDoc:
    case FunctionCode::kOpenCancelDoc:
    case FunctionCode::kInvoice:
      bOnFirstSale = false;
      break;
    case FunctionCode::kClear:
      bOnFirstSale = true;
      break;
    default:
      break;
  }

  int result = RTF_FP_INVOKE(KeyCodeInput, keys_code_numerics, keys_code_alfa_fp, key_code_alfa_lcd,
                             key_code_terminator);
  if (result == 0) {
    long is_manager_error = 0;
    result = getDataInternal(kItemManagerError, &is_manager_error);
    if (result == 0 && is_manager_error != 0) return checkResult(RTF_EFPTR_WRONG_STATE);
  }
  return checkResult(result);
}
