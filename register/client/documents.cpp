// The register's operations on documents: receipts with their lines and payments, and non-fiscal
// printing.
#include <string>

#include "managermachine/pflitemtype.h"
#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/fault/fault_operations.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

// --- Documents and receipts

int VirtualRegister::BeginFiscalReceipt(bool print_header) {
  return Perform(ClientOperation::kBeginFiscalReceipt,
                 [&] { return desk_.BeginChosen(print_header); });
}

int VirtualRegister::EndFiscalReceipt(bool) {
  return Perform(ClientOperation::kEndFiscalReceipt, [&] { return desk_.EndReceipt(); });
}

int VirtualRegister::BeginAdditionalTrailer() {
  return Perform(ClientOperation::kBeginAdditionalTrailer,
                 [&] { return desk_.AdditionalTrailer(); });
}

int VirtualRegister::BeginDocInvoice(const char* head1, const char* head2, const char* head3,
                                     const char* head4, const char* head5) {
  return Perform(ClientOperation::kBeginDocInvoice, [&] {
    const std::string_view customer[5] = {View(head1), View(head2), View(head3), View(head4),
                                          View(head5)};
    return desk_.BeginInvoice(customer, false);
  });
}

int VirtualRegister::BeginDocInvoiceOppositionJurisprudence(const char* head1, const char* head2,
                                                            const char* head3, const char* head4,
                                                            const char* head5, bool opposition) {
  return Perform(ClientOperation::kBeginDocInvoiceOppositionJurisprudence, [&] {
    const std::string_view customer[5] = {View(head1), View(head2), View(head3), View(head4),
                                          View(head5)};
    return desk_.BeginInvoice(customer, opposition);
  });
}

int VirtualRegister::BeginDocTelematicRefund(int number, int zNumber, const char* date,
                                             const char* matricola) {
  return Perform(ClientOperation::kBeginDocTelematicRefund, [&] {
    return desk_.BeginRefund(
        {zNumber, number, std::string(View(date)), std::string(View(matricola))});
  });
}

int VirtualRegister::BeginDocTelematicCancel(int number, int zNumber, const char* date,
                                             bool automatic, const char* text) {
  return Perform(ClientOperation::kBeginDocTelematicCancel, [&] {
    return desk_.BeginCancel({zNumber, number, std::string(View(date)), {}}, automatic, View(text));
  });
}

int VirtualRegister::PrintRecItemEx(int pfl_item_type, const char* description, int64_t price,
                                    int quantity, int vatInfo, int64_t unitPrice,
                                    const char* unitName, int departmentInfo, bool,
                                    const char* pluCode) {
  return Perform(ClientOperation::kPrintRecItemEx, [&] {
    return desk_.Line({pfl_item_type, View(description), price, quantity, vatInfo, unitPrice,
                       View(unitName), departmentInfo, View(pluCode)});
  });
}

// The older line operations name a VAT entry and no department. Without a unit price, `price`
// is that of the whole line.
int VirtualRegister::LegacyLine(ClientOperation operation, int pfl_item_type,
                                const char* description, long price, int quantity, int vat_info,
                                long unit_price, const char* unit_name) {
  return Perform(operation, [&] {
    LineArguments line;
    line.pfl_item_type = pfl_item_type;
    line.description = View(description);
    line.price = price;
    line.quantity = unit_price > 0 || quantity < 0 ? quantity : 0;
    line.vat = vat_info;
    line.unit_price = unit_price;
    line.unit_name = View(unit_name);
    return desk_.Line(line);
  });
}

int VirtualRegister::PrintRecItem(const char* description, long price, int quantity, int vatInfo,
                                  long unitPrice, const char* unitName) {
  return LegacyLine(ClientOperation::kPrintRecItem, PflItemType::kPrintRecItem, description, price,
                    quantity, vatInfo, unitPrice, unitName);
}

int VirtualRegister::PrintRecItemVoid(const char* description, long price, int quantity,
                                      int vatInfo, long unitPrice, const char* unitName) {
  return LegacyLine(ClientOperation::kPrintRecItemVoid, PflItemType::kPrintRecItemVoid, description,
                    price, quantity, vatInfo, unitPrice, unitName);
}

int VirtualRegister::PrintRecItemRefund(const char* description, long price, int quantity,
                                        int vatInfo, long unitPrice, const char* unitName) {
  return LegacyLine(ClientOperation::kPrintRecItemRefund, PflItemType::kPrintRecItemRefund,
                    description, price, quantity, vatInfo, unitPrice, unitName);
}

int VirtualRegister::PrintRecItemRefundVoid(const char* description, long price, int quantity,
                                            int vatInfo, long unitPrice, const char* unitName) {
  return LegacyLine(ClientOperation::kPrintRecItemRefundVoid, PflItemType::kPrintRecItemRefundVoid,
                    description, price, quantity, vatInfo, unitPrice, unitName);
}

int VirtualRegister::PrintRecRefund(const char* description, long amount, int vatInfo) {
  return LegacyLine(ClientOperation::kPrintRecRefund, PflItemType::kPrintRecItemRefund, description,
                    amount, 0, vatInfo, 0, "");
}

int VirtualRegister::PrintRecRefundVoid(const char* description, long amount, int vatInfo) {
  return LegacyLine(ClientOperation::kPrintRecRefundVoid, PflItemType::kPrintRecItemRefundVoid,
                    description, amount, 0, vatInfo, 0, "");
}

int VirtualRegister::PrintRecItemAdjustment(int adjustment_type, const char* description,
                                            int64_t amount, int vatInfo) {
  return Perform(ClientOperation::kPrintRecItemAdjustment, [&] {
    return desk_.Adjust(adjustment_type, View(description), amount, vatInfo, -2, false);
  });
}

int VirtualRegister::PrintRecItemAdjustmentVoid(int adjustment_type, const char* description,
                                                int64_t amount, int vatInfo) {
  return Perform(ClientOperation::kPrintRecItemAdjustmentVoid, [&] {
    return desk_.Adjust(adjustment_type, View(description), amount, vatInfo, -2, true);
  });
}

int VirtualRegister::PrintRecItemAdjustmentEx(int adjustment_type, const char* description,
                                              int64_t amount, int vatInfo, int departmentInfo) {
  return Perform(ClientOperation::kPrintRecItemAdjustmentEx, [&] {
    return desk_.Adjust(adjustment_type, View(description), amount, vatInfo, departmentInfo, false);
  });
}

int VirtualRegister::PrintRecItemAdjustmentEx2(int adjustment_type, const char* description,
                                               int64_t amount, int vatInfo, int departmentInfo,
                                               bool is_void) {
  return Perform(ClientOperation::kPrintRecItemAdjustmentEx2, [&] {
    return desk_.Adjust(adjustment_type, View(description), amount, vatInfo, departmentInfo,
                        is_void);
  });
}

int VirtualRegister::PrintRecSubtotal(int64_t amount) {
  return Perform(ClientOperation::kPrintRecSubtotal, [&] {
    if (const int code = desk_.CheckSubtotal(amount)) return code;
    return desk_.PrintSubtotal();
  });
}

int VirtualRegister::PrintRecSubtotalEx(int64_t iSubTotal, bool check) {
  return Perform(ClientOperation::kPrintRecSubtotalEx, check ? kEffectActs | kEffectTotals : 0,
                 [&] { return check ? desk_.CheckSubtotal(iSubTotal) : desk_.PrintSubtotal(); });
}

int VirtualRegister::PrintRecSubtotalAdjustment(int adjustment_type, const char* description,
                                                int64_t amount) {
  return Perform(ClientOperation::kPrintRecSubtotalAdjustment, [&] {
    return desk_.AdjustSubtotal(adjustment_type, View(description), amount, false);
  });
}

int VirtualRegister::PrintRecSubtotalAdjustVoid(int adjustment_type, int64_t amount) {
  return Perform(ClientOperation::kPrintRecSubtotalAdjustVoid,
                 [&] { return desk_.AdjustSubtotal(adjustment_type, {}, amount, true); });
}

int VirtualRegister::PrintRecMessage(const char* message) {
  return Perform(ClientOperation::kPrintRecMessage, [&] { return desk_.Message(View(message)); });
}

int VirtualRegister::PrintRecTaxID(const char* tax_id) {
  return Perform(ClientOperation::kPrintRecTaxID, [&] { return desk_.TaxId(View(tax_id)); });
}

int VirtualRegister::PrintRecTotal(int64_t total, int64_t payment, const char* description) {
  return Perform(ClientOperation::kPrintRecTotal, [&] {
    if (!core_.Allows(Operation::kTotal)) return RTF_EFPTR_WRONG_STATE;
    const OpenDocument& document = core_.document;
    const bool cash = document.cash != CashMove::kNone;
    const Amount wanted = cash ? document.cash_total : document.receipt.total();
    if (total != wanted) {
      return Refuse(RTF_EFPTR_FISCAL_TOTALS_ERROR, RefusalCause::kSubtotalDiffers, {total, wanted});
    }
    return desk_.Total(payment, View(description), false);
  });
}

int VirtualRegister::PrintRecTotalEx(int64_t payment, const char* description, bool auto_payment) {
  return Perform(ClientOperation::kPrintRecTotalEx,
                 [&] { return desk_.Total(payment, View(description), auto_payment); });
}

int VirtualRegister::PrintRecVoid(const char* description) {
  return Perform(ClientOperation::kPrintRecVoid,
                 [&] { return desk_.VoidReceipt(View(description)); });
}

// --- Non-fiscal printing

int VirtualRegister::BeginNonFiscal() {
  return Perform(ClientOperation::kBeginNonFiscal, [&] { return desk_.BeginNonFiscal(true); });
}

int VirtualRegister::BeginNonFiscalJournal(bool saveOnJournal) {
  return Perform(ClientOperation::kBeginNonFiscalJournal,
                 [&] { return desk_.BeginNonFiscal(saveOnJournal); });
}

int VirtualRegister::EndNonFiscal() {
  return Perform(ClientOperation::kEndNonFiscal, [&] { return desk_.EndNonFiscal(); });
}

int VirtualRegister::PrintNormal(int station, const char* data) {
  return Perform(ClientOperation::kPrintNormal,
                 [&] { return desk_.PrintNormal(station, View(data)); });
}

int VirtualRegister::PrintBarcode(const char* tipo, const char* scale, const char* align,
                                  const char* textPosition, const char* data, uint8_t cutMode) {
  return Perform(ClientOperation::kPrintBarcode, [&] {
    return desk_.Barcode({View(tipo), View(align), View(textPosition), View(data),
                          cutMode == 2 || cutMode == 3, View(scale), false});
  });
}

int VirtualRegister::PrintBarcodeEx(const char* tipo, const char* scale, const char* align,
                                    const char* textPosition, const char* data, uint8_t cutMode,
                                    bool code39checksum) {
  return Perform(ClientOperation::kPrintBarcodeEx, [&] {
    return desk_.Barcode({View(tipo), View(align), View(textPosition), View(data),
                          cutMode == 2 || cutMode == 3, View(scale), code39checksum});
  });
}

// The cut behind a logo is an operation of its own, which the caller makes.
int VirtualRegister::PrintBitmap(int ngraex, int) {
  return Perform(ClientOperation::kPrintBitmap, [&] { return desk_.Bitmap(ngraex); });
}

int VirtualRegister::PrintPaperCut() {
  return Perform(ClientOperation::kPrintPaperCut, [&] { return desk_.Cut(); });
}

int VirtualRegister::ResetPrn() {
  return Perform(ClientOperation::kResetPrn, [&] {
    desk_.Reset();
    keyboard_.Clear();
    return RTF_SUCCESS;
  });
}

}  // namespace lorimat
