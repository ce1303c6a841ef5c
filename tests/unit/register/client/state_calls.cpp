#include "unit/register/client/state_calls.h"

#include "unit/register/register_fixture.h"

namespace lorimat {

const int kPrinterStates[kStates] = {RTF_FPTR_PS_MONITOR,
                                     RTF_FPTR_PS_FISCAL_RECEIPT,
                                     RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL,
                                     RTF_FPTR_PS_FISCAL_RECEIPT_ENDING,
                                     RTF_FPTR_PS_NONFISCAL,
                                     RTF_FPTR_PS_ITEM_LIST};

void Enter(VirtualRegister& device, State state) {
  const auto sell = [&device] {
    return device.PrintRecItemEx(0, "", 100000, 0, -1, 0, "", 1, true, "");
  };
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(sell(), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  if (state == kReceipt || state == kTotal || state == kEnding) {
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(sell(), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemAdjustmentEx(1, "", 100, -1, -2), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecSubtotalAdjustment(2, "", 100), RTF_SUCCESS);
  }
  if (state == kTotal) {
    ASSERT_EQ(device.PrintRecTotalEx(10000, "0", false), RTF_SUCCESS);
  }
  if (state == kEnding) {
    ASSERT_EQ(device.SetDataInternal(148, "0"), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  if (state == kNonFiscal) {
    ASSERT_EQ(device.BeginNonFiscalJournal(true), RTF_SUCCESS);
  }
  if (state == kItemList) {
    ASSERT_EQ(device.BeginItemList(4), RTF_SUCCESS);
  }
  ASSERT_EQ(device.printer_state(), kPrinterStates[state]);
}

const std::vector<StateCall>& StateCalls() {
  using R = VirtualRegister;
  //                      monitor receipt total ending non-fiscal item list
  static const std::vector<StateCall> calls = {
      {"BeginFiscalReceipt",
       [](R& r) { return r.BeginFiscalReceipt(true); },
       {true, false, false, false, false}},
      {"BeginDocInvoice",
       [](R& r) { return r.BeginDocInvoice("A", "", "", "", ""); },
       {true, false, false, false, false}},
      {"BeginDocInvoiceOppositionJurisprudence",
       [](R& r) { return r.BeginDocInvoiceOppositionJurisprudence("", "", "", "", "", true); },
       {true, false, false, false, false}},
      {"BeginDocTelematicRefund",
       [](R& r) { return r.BeginDocTelematicRefund(1, 1, "15012024", ""); },
       {true, false, false, false, false}},
      {"BeginDocTelematicCancel",
       [](R& r) { return r.BeginDocTelematicCancel(1, 1, "15012024", false, ""); },
       {true, false, false, false, false}},
      {"BeginNonFiscal",
       [](R& r) { return r.BeginNonFiscal(); },
       {true, false, false, false, false}},
      {"BeginNonFiscalJournal",
       [](R& r) { return r.BeginNonFiscalJournal(false); },
       {true, false, false, false, false}},
      {"PrintRecItemEx",
       [](R& r) { return r.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""); },
       {false, true, false, false, false}},
      {"PrintRecItemEx void",
       [](R& r) { return r.PrintRecItemEx(1, "", 100000, 0, -1, 0, "", 1, true, ""); },
       {false, true, false, false, false}},
      {"PrintRecItem",
       [](R& r) { return r.PrintRecItem("", 10000, 0, 1, 0, ""); },
       {false, true, false, false, false}},
      {"PrintRecItemRefund",
       [](R& r) { return r.PrintRecItemRefund("", 10000, 0, 1, 0, ""); },
       {false, true, false, false, false}},
      {"PrintRecRefund",
       [](R& r) { return r.PrintRecRefund("", 10000, 1); },
       {false, true, false, false, false}},
      {"PrintRecItemAdjustment",
       [](R& r) { return r.PrintRecItemAdjustment(1, "", 10000, -1); },
       {false, true, false, false, false}},
      {"PrintRecItemAdjustmentVoid",
       [](R& r) { return r.PrintRecItemAdjustmentVoid(1, "", 100, -1); },
       {false, true, false, false, false}},
      {"PrintRecItemAdjustmentEx",
       [](R& r) { return r.PrintRecItemAdjustmentEx(1, "", 10000, -1, -2); },
       {false, true, false, false, false}},
      {"PrintRecItemAdjustmentEx2",
       [](R& r) { return r.PrintRecItemAdjustmentEx2(1, "", 10000, -1, -2, false); },
       {false, true, false, false, false}},
      {"PrintRecSubtotal",
       [](R& r) { return r.PrintRecSubtotal(100000); },
       {false, true, false, false, false}},
      {"PrintRecSubtotalEx",
       [](R& r) { return r.PrintRecSubtotalEx(0, false); },
       {false, true, false, false, false}},
      {"PrintRecSubtotalEx check",
       [](R& r) { return r.PrintRecSubtotalEx(100000, true); },
       {false, true, false, false, false}},
      {"PrintRecSubtotalAdjustment",
       [](R& r) { return r.PrintRecSubtotalAdjustment(1, "", 10000); },
       {false, true, false, false, false}},
      {"PrintRecSubtotalAdjustVoid",
       [](R& r) { return r.PrintRecSubtotalAdjustVoid(2, 100); },
       {false, true, false, false, false}},
      {"PrintRecTaxID",
       [](R& r) { return r.PrintRecTaxID("01234567897"); },
       {false, true, false, false, false}},
      {"PrintRecTotalEx",
       [](R& r) { return r.PrintRecTotalEx(0, "0", true); },
       {false, true, true, false, false}},
      {"PrintRecTotal",
       [](R& r) { return r.PrintRecTotal(100000, 90000, "0"); },
       {false, true, true, false, false}},
      {"PrintRecVoid",
       [](R& r) { return r.PrintRecVoid("basta"); },
       {false, true, true, false, false}},
      {"PrintRecMessage",
       [](R& r) { return r.PrintRecMessage("testo"); },
       {false, true, true, true, false}},
      {"PrintBarcode",
       [](R& r) { return r.PrintBarcode("08", "1", "3", "2", "ABC", 1); },
       {false, true, true, true, true}},
      {"PrintBarcodeEx",
       [](R& r) { return r.PrintBarcodeEx("04", "1", "3", "2", "ABC", 1, true); },
       {false, true, true, true, true}},
      {"PrintBitmap", [](R& r) { return r.PrintBitmap(63, 1); }, {false, true, true, true, true}},
      {"BeginAdditionalTrailer",
       [](R& r) { return r.BeginAdditionalTrailer(); },
       {false, false, false, true, false}},
      {"EndFiscalReceipt",
       [](R& r) { return r.EndFiscalReceipt(true); },
       {false, false, false, true, false}},
      {"PrintNormal",
       [](R& r) { return r.PrintNormal(RTF_FPTR_S_RECEIPT, "testo"); },
       {false, false, false, false, true}},
      {"EndNonFiscal", [](R& r) { return r.EndNonFiscal(); }, {false, false, false, false, true}},
      {"PrintPaperCut", [](R& r) { return r.PrintPaperCut(); }, {true, false, false, true, true}},
      {"PrintZReport", [](R& r) { return r.PrintZReport(); }, {true, false, false, false, false}},
      {"PrintZReportEx",
       [](R& r) { return r.PrintZReportEx(false); },
       {true, false, false, false, false}},
      {"SetIntProperty invoice number",
       [](R& r) { return r.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 9); },
       {true, false, false, false, false}},
      {"SetStringProperty invoice series",
       [](R& r) { return r.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "B"); },
       {true, false, false, false, false}},
      {"SetHeaderLine",
       [](R& r) { return r.SetHeaderLine(1, "TESTATA", true); },
       {true, false, false, false, false}},
      {"SetDataInternal option",
       [](R& r) { return r.SetDataInternal(317, "1"); },
       {true, false, false, false, false}},
      {"BeginDocRefund", [](R& r) { return r.BeginDocRefund(1, 1, "15012024"); }, {true}},
      {"BeginDocRefundEx", [](R& r) { return r.BeginDocRefundEx(1, 1, "", true); }, {true}},
      {"BeginDocCancel", [](R& r) { return r.BeginDocCancel(1, 1, "", true); }, {true}},
      {"PrintRecItemFuel",
       [](R& r) { return r.PrintRecItemFuel("", 10000, 0, 1, 0, "", 100, ""); },
       {false, true}},
      {"PrintRecPackageAdjustment",
       [](R& r) { return r.PrintRecPackageAdjustment(1, "", "1,10000"); },
       {false, true}},
      {"PrintRecNotPaid", [](R& r) { return r.PrintRecNotPaid("", 10000); }, {false, true, true}},
      {"PrintRecCash", [](R& r) { return r.PrintRecCash(10000); }, {}},
      {"BeginItemList", [](R& r) { return r.BeginItemList(1); }, {true}},
      {"VerifyItem",
       [](R& r) { return r.VerifyItem("LATTE", 4); },
       {false, false, false, false, false, true}},
      {"EndItemList",
       [](R& r) { return r.EndItemList(); },
       {false, false, false, false, false, true}},
      {"BeginTraining", [](R& r) { return r.BeginTraining(); }, {true}},
      {"EndTraining", [](R& r) { return r.EndTraining(); }, {}},
      {"PrintPowerLossReport", [](R& r) { return r.PrintPowerLossReport(); }, {true}},
      {"SetTrailerLine", [](R& r) { return r.SetTrailerLine(1, "X", true); }, {true}},
      {"SelectBitmap", [](R& r) { return r.SelectBitmap(0, 1); }, {true}},
      {"CheckHealth external", [](R& r) { return r.CheckHealth(2); }, {true}},
      {"DiagnosticsRequest printer", [](R& r) { return r.DiagnosticsRequest(1, true, 0); }, {true}},
      {"SetIntProperty receipt type",
       [](R& r) { return r.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, RTF_FPTR_RT_REFUND); },
       {true}},
      {"CheckHealth", [](R& r) { return r.CheckHealth(1); }, {true, true, true, true, true, true}},
      {"ClearOutput", [](R& r) { return r.ClearOutput(); }, {true, true, true, true, true, true}},
      {"ClearError", [](R& r) { return r.ClearError(); }, {true, true, true, true, true, true}},
      {"WaitForDrawerClose",
       [](R& r) { return r.WaitForDrawerClose(0, 0, 0, 0); },
       {true, true, true, true, true, true}},
      {"ResetPrn", [](R& r) { return r.ResetPrn(); }, {true, true, true, true, true, true}},
      {"OpenDrawer", [](R& r) { return r.OpenDrawer(); }, {true, true, true, true, true, true}},
      {"DisplayTextAtEx",
       [](R& r) { return r.DisplayTextAtEx(0, 0, "CIAO", 0, 2, 4, true); },
       {true, true, true, true, true, true}},
      {"SetStringProperty",
       [](R& r) { return r.SetStringProperty(RTF_PIDXFptr_PreLine, "riga"); },
       {true, true, true, true, true, true}},
      {"SetDataInternal",
       [](R& r) { return r.SetDataInternal(152, "grazie"); },
       {true, true, true, true, true, true}},
      {"GetState",
       [](R& r) { return r.GetState() == RTF_S_IDLE ? 0 : 1; },
       {true, true, true, true, true, true}},
  };
  return calls;
}

}  // namespace lorimat
