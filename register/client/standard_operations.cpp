// The operations of the fiscal printer's standard that the family has newer forms of, or that only
// some countries use.
#include "managermachine/pflitemtype.h"
#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/report/item_list.h"
#include "register/tables/tenders.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
// --- Documents

int VirtualRegister::BeginDocRefund(int number, int zNumber, const char* date) {
  return Perform(ClientOperation::kBeginDocRefund, [&] {
    return desk_.BeginRefund({zNumber, number, std::string(View(date)), {}});
  });
}

int VirtualRegister::BeginDocRefundEx(int number, int zNumber, const char* date, bool automatic) {
  return Perform(ClientOperation::kBeginDocRefundEx, [&] {
    const Reference reference = {zNumber, number, std::string(View(date)), {}};
    return automatic ? desk_.RefundWhole(reference) : desk_.BeginRefund(reference);
  });
}

int VirtualRegister::BeginDocCancel(int number, int zNumber, const char* date, bool automatic) {
  return Perform(ClientOperation::kBeginDocCancel, [&] {
    return desk_.BeginCancel({zNumber, number, std::string(View(date)), {}}, automatic, {});
  });
}

int VirtualRegister::PrintDuplicateReceipt() {
  return Perform(ClientOperation::kPrintDuplicateReceipt, [&] { return desk_.PrintDuplicate(); });
}

// --- Lines and payments

int VirtualRegister::PrintRecCash(long amount) {
  return Perform(ClientOperation::kPrintRecCash, [&] { return desk_.Cash(amount); });
}

int VirtualRegister::PrintRecNotPaid(const char* description, long amount) {
  return Perform(ClientOperation::kPrintRecNotPaid,
                 [&] { return desk_.Total(amount, kNotPaidTender, false, View(description)); });
}

int VirtualRegister::PrintRecItemFuel(const char* description, long price, int quantity,
                                      int vatInfo, long unitPrice, const char* unitName,
                                      long special_tax, const char* special_tax_name) {
  return Perform(ClientOperation::kPrintRecItemFuel, [&] {
    LineArguments line;
    line.description = View(description);
    line.price = price;
    line.quantity = unitPrice > 0 || quantity < 0 ? quantity : 0;
    line.vat = vatInfo;
    line.unit_price = unitPrice;
    line.unit_name = View(unitName);
    line.special_tax = special_tax;
    line.special_tax_name = View(special_tax_name);
    return desk_.Line(line);
  });
}

int VirtualRegister::PrintRecItemFuelVoid(const char* description, long price, int vatInfo,
                                          long special_tax) {
  return Perform(ClientOperation::kPrintRecItemFuelVoid, [&] {
    LineArguments line;
    line.pfl_item_type = PflItemType::kPrintRecItemVoid;
    line.description = View(description);
    line.price = price;
    line.vat = vatInfo;
    line.special_tax = special_tax;
    VoidTerms terms;
    terms.by_amount = true;
    return desk_.Line(line, terms);
  });
}

// Without a quantity the amount is that of the whole line, with one that of a piece.
int VirtualRegister::PrintRecVoidItem(const char* description, long amount, int quantity,
                                      int adjustment_type, long adjustment, int vatInfo) {
  return Perform(ClientOperation::kPrintRecVoidItem, [&] {
    LineArguments line;
    line.pfl_item_type = PflItemType::kPrintRecItemVoid;
    line.description = View(description);
    line.vat = vatInfo;
    line.quantity = quantity;
    (quantity > 0 ? line.unit_price : line.price) = amount;
    return desk_.VoidItem(line, adjustment_type, adjustment);
  });
}

int VirtualRegister::PrintRecPackageAdjustment(int adjustment_type, const char* description,
                                               const char* vat_adjustment) {
  return Perform(ClientOperation::kPrintRecPackageAdjustment, [&] {
    return desk_.AdjustPackage(adjustment_type, View(description), View(vat_adjustment), false);
  });
}

int VirtualRegister::PrintRecPackageAdjustVoid(int adjustment_type, const char* vat_adjustment) {
  return Perform(ClientOperation::kPrintRecPackageAdjustVoid, [&] {
    return desk_.AdjustPackage(adjustment_type, {}, View(vat_adjustment), true);
  });
}

// --- Item lists

int VirtualRegister::BeginItemList(int vat_id) {
  return Perform(ClientOperation::kBeginItemList, [&] { return ItemList(core_).Begin(vat_id); });
}

int VirtualRegister::VerifyItem(const char* item_name, int vat_id) {
  return Perform(ClientOperation::kVerifyItem,
                 [&] { return ItemList(core_).Verify(View(item_name), vat_id); });
}

int VirtualRegister::EndItemList() {
  return Perform(ClientOperation::kEndItemList, [&] { return ItemList(core_).End(); });
}

}  // namespace lorimat
