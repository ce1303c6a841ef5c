#include "day/operations.h"

#include "managermachine/pflitemtype.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

// Values are taken one by one: the order of a call's arguments is the compiler's.
int Line(VirtualRegister& device, InputNumbers& input, const char* text, int type) {
  const int department = input.Small(45);
  const int64_t price = input.Amount();
  const int quantity = input.Small(3) == 0 ? static_cast<int>(input.Amount()) : 0;
  const int vat = input.Small(9) - 1;
  const char* article = input.Small(6) == 0 ? "8001" : "";
  return device.PrintRecItemEx(type, text, price, quantity, vat, quantity == 0 ? 0 : price, "",
                               department, true, article);
}

int BeginReference(VirtualRegister& device, InputNumbers& input, const char* text, bool telematic,
                   bool refund, bool whole) {
  const int number = input.Small(12);
  const int closure = input.Small(4);
  const char* date = input.Small(4) == 0 ? "01012024" : "";
  const char* serial = input.Small(3) == 0 ? "99LRM0000001VR" : "";
  if (telematic && refund) return device.BeginDocTelematicRefund(number, closure, date, serial);
  if (telematic) return device.BeginDocTelematicCancel(number, closure, date, whole, text);
  if (refund) return device.BeginDocRefundEx(number, closure, date, whole);
  return device.BeginDocCancel(number, closure, date, whole);
}

int Adjust(VirtualRegister& device, InputNumbers& input, const char* text) {
  const int type = input.Small(8);
  const int64_t value = input.Amount();
  const int department = input.Small(7) - 1;
  const int vat = input.Small(5) - 2;
  return device.PrintRecItemAdjustmentEx2(type, text, value, department, vat, input.Small(2) == 0);
}

}  // namespace

int OperateDay(VirtualRegister& device, int operation, InputNumbers& input) {
  static constexpr const char* kTexts[] = {"", "CAFFE", "\x80\xE0 'x'",
                                           "1234567890123456789012345"};
  static constexpr const char* kDayTenders[] = {"0", "1", "2", "5", "30", "6", "x", ""};
  const char* text = kTexts[input.Small(4)];
  int number = 0;
  int64_t amount = 0;
  switch (operation) {
    case kDayBegin:
    case kDayBegin + 1:
      return device.BeginFiscalReceipt(true);
    case kDaySell:
    case kDaySell + 1:
    case kDaySell + 2:
    case kDaySell + 3:
    case kDaySell + 4:
      return Line(device, input, text, PflItemType::kPrintRecItem);
    case kDayAnyLine:
      return Line(device, input, text, input.Small(16));
    case kDayTakeBack:
      return Line(device, input, text, PflItemType::kPrintRecItemVoid);
    case kDayDiscount:
      return device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, text, input.Amount(), -1,
                                             -2);
    case kDayAdjust:
      return Adjust(device, input, text);
    case kDayAdjustSubtotal:
      number = input.Small(8);
      return device.PrintRecSubtotalAdjustment(number, text, input.Amount());
    case kDayTakeAdjustmentBack:
      number = input.Small(8);
      return device.PrintRecSubtotalAdjustVoid(number, input.Amount());
    case kDaySubtotal:
      amount = input.Amount();
      return device.PrintRecSubtotalEx(amount, input.Small(2) == 0);
    case kDayPayRest:
    case kDayPayRest + 1:
    case kDayPayRest + 2:
    case kDayPayRest + 3:
      return device.PrintRecTotalEx(0, kDayTenders[input.Small(8)], true);
    case kDayPay:
    case kDayPay + 1:
      amount = input.Amount();
      return device.PrintRecTotalEx(amount, kDayTenders[input.Small(8)], false);
    case kDayNotPaid:
      return device.PrintRecNotPaid(text, static_cast<long>(input.Amount()));
    case kDayEnd:
      return device.EndFiscalReceipt(true);
    case kDayVoidDocument:
      return device.PrintRecVoid(text);
    case kDayReset:
      return device.ResetPrn();
    case kDayTelematicRefund:
    case kDayTelematicRefund + 1:
      return BeginReference(device, input, text, true, true, false);
    case kDayTelematicCancel:
      return BeginReference(device, input, text, true, false, input.Small(2) == 0);
    case kDayRefund:
      return BeginReference(device, input, text, false, true, input.Small(2) == 0);
    case kDayCancel:
      return BeginReference(device, input, text, false, false, input.Small(2) == 0);
    case kDayInvoice:
      return device.BeginDocInvoice(text, "", "", "", text);
    case kDayBeginNonFiscal:
      return device.BeginNonFiscalJournal(input.Small(2) == 0);
    case kDayPrint:
      return device.PrintNormal(2, text);
    case kDayEndNonFiscal:
      return device.EndNonFiscal();
    case kDayClose:
      return device.PrintZReportEx(false);
    case kDayReport:
      return device.PrintXReport();
    case kDayMessage:
      return device.PrintRecMessage(text);
    case kDayTaxId:
      return device.PrintRecTaxID("RSSMRA80A01H501U");
    case kDayBarcode:
      return device.PrintBarcode("05", "2", "1", "0", "800123456789", 0);
    case kDayTrailer:
      return device.BeginAdditionalTrailer();
    case kDayDuplicate:
      return device.PrintDuplicateReceipt();
    case kDayTakeItemBack:
      amount = input.Amount();
      number = input.Small(6);
      return device.PrintRecItemVoid(text, static_cast<long>(amount), 1000, number,
                                     static_cast<long>(input.Amount()), "");
    case kDayPackage:
      return device.PrintRecPackageAdjustment(input.Small(4), text, "1,100;2,200");
    case kDayRefundLine:
      amount = input.Amount();
      return device.PrintRecRefund(text, static_cast<long>(amount), input.Small(6));
    case kDaySetItem:
      return device.SetDataInternal(input.Byte() * 3, text);
    case kDayBeginTraining:
      return device.BeginTraining();
    case kDayEndTraining:
      return device.EndTraining();
    case kDaySetVat:
      return device.SetVatValue(input.Small(8), "1000");
    default: {
      char value[50];
      return device.GetDataInternal(input.Byte() * 3, value);
    }
  }
}

}  // namespace lorimat
