#include "console/conform/refusal_calls.h"

#include <array>

#include "language/message_text.h"
#include "managermachine/pflitemtype.h"
#include "rpccommon/client/rtfclientbuffers.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

using C = RtfClientInterface;

// No device has as many.
constexpr int kNoItem = 32'000;
constexpr int kNoDepartment = 99;
constexpr char kLongText[] = "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX";
static_assert(sizeof kLongText == 51 + 1);  // a header line has 50 characters

int SellOne(C& device, int type, int64_t price, int department) {
  return device.PrintRecItemEx(type, "", price, 0, -1, 0, "", department, true, "");
}

int ReadNoItem(C& device) {
  std::array<char, LargestClientBuffer() + 1> text{};
  return device.GetDataInternal(kNoItem, text.data());
}

constexpr RefusalCall kRefusalCalls[] = {
    {RTF_E_ILLEGAL, "RTF_E_ILLEGAL", TR_TEXT("a data item that there is not"), kMonitor,
     &ReadNoItem},
    {RTF_E_NOEXIST, "RTF_E_NOEXIST", TR_TEXT("a tender that there is not"), kReceipt,
     [](C& r) { return r.PrintRecTotalEx(0, "BONUS", true); }},
    {RTF_EFPTR_FISCAL_TOTALS_ERROR, "RTF_EFPTR_FISCAL_TOTALS_ERROR",
     TR_TEXT("a subtotal that is another"), kReceipt,
     [](C& r) { return r.PrintRecSubtotalEx(300, true); }},
    {RTF_EFPTR_BAD_ITEM_QUANTITY, "RTF_EFPTR_BAD_ITEM_QUANTITY", TR_TEXT("a quantity below 0"),
     kReceipt, [](C& r) { return r.PrintRecItemEx(0, "", 0, -1000, -1, 10000, "", 1, true, ""); }},
    {RTF_EFPTR_BAD_ITEM_AMOUNT, "RTF_EFPTR_BAD_ITEM_AMOUNT",
     TR_TEXT("the taking back of a line that is not there"), kReceipt,
     [](C& r) { return SellOne(r, PflItemType::kPrintRecItemVoid, 5000, 2); }},
    {RTF_EFPTR_BAD_ITEM_AMOUNT, "RTF_EFPTR_BAD_ITEM_AMOUNT", TR_TEXT("a payment of 0"), kReceipt,
     [](C& r) { return r.PrintRecTotalEx(0, "0", false); }},
    {RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, "RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW",
     TR_TEXT("a total that is too large"), kReceipt,
     [](C& r) { return SellOne(r, PflItemType::kPrintRecItem, 99'999'999'900, 1); }},
    {RTF_EFPTR_BAD_VAT, "RTF_EFPTR_BAD_VAT", TR_TEXT("a department that there is not"), kReceipt,
     [](C& r) { return SellOne(r, PflItemType::kPrintRecItem, 10000, kNoDepartment); }},
    {RTF_EFPTR_BAD_PRICE, "RTF_EFPTR_BAD_PRICE", TR_TEXT("a price below 0"), kReceipt,
     [](C& r) { return SellOne(r, PflItemType::kPrintRecItem, -1, 1); }},
    {RTF_EFPTR_BAD_DATE, "RTF_EFPTR_BAD_DATE", TR_TEXT("a day that there is not"), kMonitor,
     [](C& r) { return r.BeginDocTelematicRefund(1, 1, "31022024", ""); }},
    {RTF_EFPTR_NEGATIVE_TOTAL, "RTF_EFPTR_NEGATIVE_TOTAL", TR_TEXT("a total below 0"), kReceipt,
     [](C& r) { return SellOne(r, PflItemType::kPrintRecItemRefund, 100100, 1); }},
    {RTF_EFPTR_NEGATIVE_VAT, "RTF_EFPTR_NEGATIVE_VAT", TR_TEXT("the sum of a VAT entry below 0"),
     kReceipt, [](C& r) { return SellOne(r, PflItemType::kPrintRecItemRefund, 50000, 2); }},
    {RTF_EFPTR_BAD_LENGTH, "RTF_EFPTR_BAD_LENGTH", TR_TEXT("a header line that is too long"),
     kMonitor, [](C& r) { return r.SetHeaderLine(1, kLongText, true); }, kNotInTraining},
};

}  // namespace

std::span<const RefusalCall> RefusalCalls() { return kRefusalCalls; }

}  // namespace lorimat::console
