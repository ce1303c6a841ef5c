// The causes that go with refusals: which, with what numbers and texts, and for how long.
#include "register/value/refusal.h"

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/refused_calls.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

using R = VirtualRegister;

int Sale(R& r, int department, int64_t price, int type = PflItemType::kPrintRecItem) {
  return r.PrintRecItemEx(type, "", price, 0, -1, 0, "", department, true, "");
}

int Barcode(R& r, const char* type, const char* data) {
  return r.PrintBarcode(type, "1", "3", "0", data, 0);
}

int Key(R& r, const char* digits, int key) {
  return r.KeyCodeInput(digits, "", "", static_cast<uint8_t>(key));
}

class RefusalTest : public RegisterTest {};
class RefusalStoreTest : public StoreTest {};

}  // namespace

TEST_F(RefusalTest, TheStateTellsWhatIsOpen) {
  using C = RefusalCause;
  constexpr int kWrong = RTF_EFPTR_WRONG_STATE;
  Check(device, {{"line, nothing open",
                  [](R& r) { return Sale(r, 1, 10000); },
                  kWrong,
                  C::kState,
                  {Of(PrinterState::kMonitor), Of(Operation::kLine)}}});
  device.BeginFiscalReceipt(true);
  Check(device, {{"nothing to pay", [](R& r) { return r.PrintRecTotalEx(0, "0", true); }, kWrong,
                  C::kNothingSold}});
  Sell(1, 30000);
  Sell(2, 15000);
  Check(device, {{"report",
                  [](R& r) { return r.PrintXReport(); },
                  kWrong,
                  C::kState,
                  {Of(PrinterState::kReceipt), Of(Operation::kReport), 0, 2, 45000}}});
  PayCash(10000);
  Check(device, {{"line behind a payment",
                  [](R& r) { return Sale(r, 1, 10000); },
                  kWrong,
                  C::kState,
                  {Of(PrinterState::kTotal), Of(Operation::kLine), 0, 2, 35000}}});
}

TEST_F(RefusalTest, TheKeyAndTrainingAreNamed) {
  using C = RefusalCause;
  constexpr int kWrong = RTF_EFPTR_WRONG_STATE;
  Key(device, "", FunctionCode::kKeyReading);
  Check(
      device,
      {{"key", [](R& r) { return r.BeginFiscalReceipt(true); }, kWrong, C::kKeyForDocument, {2}}});
  Key(device, "", FunctionCode::kKeyRegistering);
  Check(device, {{"no training", [](R& r) { return r.EndTraining(); }, kWrong, C::kNotTraining}});
  device.BeginTraining();
  Check(device, {{"report", [](R& r) { return r.PrintXReport(); }, kWrong, C::kTraining}});
}

TEST_F(RefusalTest, ProgrammingThatWantsItsKeySaysSo) {
  RegisterSettings settings = TestSettings();
  settings.programming_needs_key = true;
  VirtualRegister locked(settings);
  Check(locked, {{"header",
                  [](R& r) { return r.SetHeaderLine(1, "BAR", false); },
                  RTF_EFPTR_WRONG_STATE,
                  RefusalCause::kKeyForProgramming,
                  {1}}});
}

TEST_F(RefusalTest, LinesNameWhatIsWrongWithThem) {
  using C = RefusalCause;
  device.BeginFiscalReceipt(true);
  const auto vats = static_cast<int64_t>(device.tables().settings().vat_rates.size());
  const auto departments = static_cast<int64_t>(device.tables().settings().departments.size());
  Check(device,
        {{"department",
          [](R& r) { return Sale(r, 99, 10000); },
          RTF_EFPTR_BAD_VAT,
          C::kNoDepartment,
          {99, departments}},
         {"VAT",
          [](R& r) { return r.PrintRecItem("", 10000, 0, 77, 0, ""); },
          RTF_EFPTR_BAD_VAT,
          C::kNoVatEntry,
          {77, vats}},
         {"kind", [](R& r) { return Sale(r, 1, 10000, 99); }, RTF_E_ILLEGAL, C::kLineKind, {99}},
         {"article",
          [](R& r) { return r.PrintRecItemEx(0, "", -1, 0, -1, 0, "", -1, true, "4711"); },
          RTF_E_NOEXIST,
          C::kNoArticle,
          {},
          "4711"},
         {"price", [](R& r) { return Sale(r, 1, 0); }, RTF_EFPTR_BAD_PRICE, C::kNoPrice, {0}},
         {"less than a cent",
          [](R& r) { return Sale(r, 1, 49); },
          RTF_EFPTR_BAD_PRICE,
          C::kComesToNothing,
          {1000, 49}},
         {"void",
          [](R& r) { return Sale(r, 1, 10000, PflItemType::kPrintRecItemVoid); },
          RTF_EFPTR_BAD_ITEM_AMOUNT,
          C::kNoLineToVoid,
          {1000, 10000}},
         {"refund",
          [](R& r) { return Sale(r, 1, 10000, PflItemType::kPrintRecItemRefund); },
          RTF_EFPTR_NEGATIVE_TOTAL,
          C::kTotalBelowZero,
          {0, -10000}}});
  Sell(1, kMaxAmount);
  Check(device, {{"total",
                  [](R& r) { return Sale(r, 1, 10000); },
                  RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW,
                  C::kTotalTooHigh,
                  {kMaxAmount, kMaxAmount}}});
}

TEST_F(RefusalTest, DiscountsAndPaymentsNameTheirAmounts) {
  using C = RefusalCause;
  device.BeginFiscalReceipt(true);
  Sell(1, 30000);
  Check(device, {{"discount",
                  [](R& r) { return r.PrintRecItemAdjustmentEx(1, "", 40000, -1, -2); },
                  RTF_EFPTR_NEGATIVE_TOTAL,
                  C::kTotalBelowZero,
                  {30000, -40000}},
                 {"subtotal",
                  [](R& r) { return r.PrintRecSubtotalEx(50000, true); },
                  RTF_EFPTR_FISCAL_TOTALS_ERROR,
                  C::kSubtotalDiffers,
                  {50000, 30000}},
                 {"tender",
                  [](R& r) { return r.PrintRecTotalEx(10000, "77", false); },
                  RTF_E_NOEXIST,
                  C::kNoTender,
                  {},
                  "77"},
                 {"no change",
                  [](R& r) { return r.PrintRecTotalEx(50000, "2", false); },
                  RTF_EFPTR_BAD_ITEM_AMOUNT,
                  C::kNoChange,
                  {50000, 30000}},
                 {"nothing",
                  [](R& r) { return r.PrintRecTotalEx(0, "0", false); },
                  RTF_EFPTR_BAD_ITEM_AMOUNT,
                  C::kNothingPaid,
                  {30000}},
                 {"tax code",
                  [](R& r) { return r.PrintRecTaxID("123"); },
                  RTF_EFPTR_BAD_LENGTH,
                  C::kEitherLength,
                  {Of(Subject::kTaxCode), 3, 11, 16}}});
  Sell(2, 20000);
  Check(device, {{"discount of a line",
                  [](R& r) { return r.PrintRecItemAdjustmentEx(1, "", 30000, -1, -2); },
                  RTF_EFPTR_NEGATIVE_VAT,
                  C::kVatBelowZero,
                  {2, -30000}}});
}

// The digits 8 0 0 1 2 3 4 5 6 7 8 9, weighted 1 and 3 from the left, come to 8 + 0 + 0 + 3 + 2 + 9
// + 4 + 15 + 6 + 21 + 8 + 27 = 103, which 7 makes a multiple of ten.
TEST_F(RefusalTest, BarcodesNameTheirFault) {
  using C = RefusalCause;
  device.BeginNonFiscal();
  Check(device, {{"check digit",
                  [](R& r) { return Barcode(r, "02", "8001234567890"); },
                  RTF_E_ILLEGAL,
                  C::kCheckDigit,
                  {Of(Subject::kBarcode), 0, 7}},
                 {"length",
                  [](R& r) { return Barcode(r, "02", "80012"); },
                  RTF_EFPTR_BAD_LENGTH,
                  C::kWrongLength,
                  {Of(Subject::kBarcode), 5, 12, 13}},
                 {"letters",
                  [](R& r) { return Barcode(r, "03", "ABCDEFGH"); },
                  RTF_E_ILLEGAL,
                  C::kCharacters,
                  {Of(Subject::kBarcode)},
                  "ABCDEFGH"},
                 {"pairs",
                  [](R& r) { return Barcode(r, "05", "123"); },
                  RTF_EFPTR_BAD_LENGTH,
                  C::kOddDigits,
                  {3}},
                 {"type",
                  [](R& r) { return Barcode(r, "99", "1"); },
                  RTF_E_ILLEGAL,
                  C::kUnknownName,
                  {Of(Subject::kBarcodeType)},
                  "99"}});
  EXPECT_EQ(Barcode(device, "02", "8001234567897"), RTF_SUCCESS);
}

// 1 + 3 + 5 + 7 + 9 = 25, and 2, 4, 6, 8 and 0 doubled, less 9 from 10 on, 4 + 8 + 3 + 7 + 0 = 22:
// 47, which 3 makes a multiple of ten.
TEST_F(RefusalTest, AVatNumberIsToldItsCheckDigit) {
  using C = RefusalCause;
  Check(device, {{"below",
                  [](R& r) { return r.SetStoreFiscalID("12345678901"); },
                  RTF_E_ILLEGAL,
                  C::kCheckDigit,
                  {Of(Subject::kVatNumber), 1, 3}},
                 {"above",
                  [](R& r) { return r.SetStoreFiscalID("12345678909"); },
                  RTF_E_ILLEGAL,
                  C::kCheckDigit,
                  {Of(Subject::kVatNumber), 9, 3}}});
  EXPECT_EQ(device.SetStoreFiscalID("12345678903"), RTF_SUCCESS);
}

TEST_F(RefusalTest, DocumentsThatReferToAnotherNameIt) {
  using C = RefusalCause;
  device.BeginFiscalReceipt(true);
  Sell(1, 30000);
  PayRest();
  Check(device, {{"none",
                  [](R& r) { return r.BeginDocTelematicCancel(7, 1, "", true, ""); },
                  RTF_E_NOEXIST,
                  C::kNoSuchDocument,
                  {1, 7}},
                 {"no date",
                  [](R& r) { return r.BeginDocTelematicCancel(1, 1, "32012024", true, ""); },
                  RTF_EFPTR_BAD_DATE,
                  C::kDate,
                  {},
                  "32012024"},
                 {"other day",
                  [](R& r) { return r.BeginDocTelematicCancel(1, 1, "14012024", true, ""); },
                  RTF_EFPTR_BAD_DATE,
                  C::kOfAnotherDay,
                  {1, 1},
                  "14012024"}});
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  Check(device, {{"voided",
                  [](R& r) { return r.BeginDocTelematicCancel(1, 1, "", true, ""); },
                  RTF_E_EXISTS,
                  C::kVoidedAlready,
                  {1, 1}}});
}

TEST_F(RefusalTest, TablesNameTheFieldAndItsLimits) {
  using C = RefusalCause;
  Check(device, {{"header line",
                  [](R& r) { return r.SetHeaderLine(7, "X", false); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kHeaderLine), 7, 1, 6}},
                 {"rate",
                  [](R& r) { return r.SetVatValue(1, "x"); },
                  RTF_E_ILLEGAL,
                  C::kNotANumber,
                  {Of(Subject::kVatRate)},
                  "x"},
                 {"no logo",
                  [](R& r) { return r.ProgramGRC(1, "/nonexistent.png", false); },
                  RTF_E_NOEXIST,
                  C::kNoFile,
                  {},
                  "/nonexistent.png"},
                 {"logo",
                  [](R& r) { return r.ProgramGRC(65, "x", false); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kLogo), 65, 1, 64}},
                 {"invoice number",
                  [](R& r) { return r.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 0); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kInvoiceNumber), 0, 1, 999999}},
                 {"data item",
                  [](R& r) { return r.SetDataInternal(9999, "1"); },
                  RTF_E_ILLEGAL,
                  C::kNotOneOf,
                  {Of(Subject::kDataItem), 9999}},
                 {"flag",
                  [](R& r) { return r.SetDataInternal(148, "x"); },
                  RTF_E_ILLEGAL,
                  C::kNotAFlag,
                  {Of(Subject::kDataItem)},
                  "x"},
                 {"article row",
                  [](R& r) {
                    r.UploadTable(ArticleLink::kArticleTable, 0, "");
                    return r.UploadTable(ArticleLink::kArticleTable, 1, "no row");
                  },
                  RTF_E_ILLEGAL,
                  C::kArticleRow,
                  {},
                  "no row"}});
}

TEST_F(RefusalTest, AKeyThatIsRefusedLeavesItsCauseThoughTheCallSucceeds) {
  const uint64_t before = device.refusal_count();
  const char position[] = {9, 0};
  EXPECT_EQ(Key(device, position, FunctionCode::kKey), RTF_SUCCESS);
  EXPECT_EQ(Item(368), std::to_string(RTF_E_ILLEGAL));
  EXPECT_EQ(device.refusal_count(), before + 1);
  const Refusal& refusal = device.last_refusal();
  EXPECT_TRUE(refusal.by_key);
  EXPECT_EQ(refusal.code, RTF_E_ILLEGAL);
  EXPECT_EQ(static_cast<int>(refusal.cause), static_cast<int>(RefusalCause::kOutOfRange));
  EXPECT_EQ(refusal.numbers[0], Of(Subject::kKeyLock));
  EXPECT_EQ(refusal.numbers[1], 9);
}

TEST_F(RefusalTest, ReportsAndClockNameTheirCause) {
  using C = RefusalCause;
  Check(device, {{"kind",
                  [](R& r) { return r.PrintXReportEx(9, false, "txt", "", 1); },
                  RTF_E_ILLEGAL,
                  C::kNotOneOf,
                  {Of(Subject::kReading), 9}},
                 {"format",
                  [](R& r) { return r.PrintXReportEx(1, false, "pdf", "x", 2); },
                  RTF_E_ILLEGAL,
                  C::kUnknownName,
                  {Of(Subject::kFormat)},
                  "pdf"},
                 {"no file",
                  [](R& r) { return r.PrintXReportEx(1, false, "txt", "", 2); },
                  RTF_E_ILLEGAL,
                  C::kMissing,
                  {Of(Subject::kReportFile)}},
                 {"full disk",
                  [](R& r) { return r.PrintXReportEx(1, false, "txt", "/dev/full", 2); },
                  RTF_E_FAILURE,
                  C::kFileNotWritten,
                  {ENOSPC},
                  "/dev/full"},
                 {"no folder",
                  [](R& r) { return r.PrintXReportEx(1, false, "txt", "/nonexistent/x", 2); },
                  RTF_E_FAILURE,
                  C::kFileNotWritten,
                  {ENOENT},
                  "/nonexistent/x"},
                 {"journal",
                  [](R& r) { return r.ProcessEJournalReportByZNumber(2, 1, "x", "txt"); },
                  RTF_E_ILLEGAL,
                  C::kRangeReversed,
                  {2, 1}},
                 {"closing",
                  [](R& r) { return r.ProcessEJournalReportByZNumber(0, 1, "x", "txt"); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kClosure), 0, 1, 9999}},
                 {"last closing",
                  [](R& r) { return r.ProcessEJournalReportByZNumber(1, 10000, "x", "txt"); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kClosure), 10000, 1, 9999}},
                 {"first summary",
                  [](R& r) { return r.SaveTelematicSummary(0, 10000, "x"); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kClosure), 0, 1, 9999}},
                 {"last summary",
                  [](R& r) { return r.SaveTelematicSummary(1, 10000, "x"); },
                  RTF_E_ILLEGAL,
                  C::kOutOfRange,
                  {Of(Subject::kClosure), 10000, 1, 9999}},
                 {"clock",
                  [](R& r) { return r.SetDate("150119991030"); },
                  RTF_EFPTR_BAD_DATE,
                  C::kOutOfRange,
                  {Of(Subject::kYear), 1999, 2000, 2099}},
                 {"no date",
                  [](R& r) { return r.SetDate("tomorrow"); },
                  RTF_EFPTR_BAD_DATE,
                  C::kDate,
                  {},
                  "tomorrow"}});
}

TEST_F(RefusalTest, WhatIsNotModelledSaysSo) {
  Check(device, {{"slip", [](R& r) { return r.BeginInsertion(0); }, RTF_E_ILLEGAL,
                  RefusalCause::kNotModelled}});
}

TEST_F(RefusalTest, ItStaysUntilAnotherOperationIsRefused) {
  EXPECT_EQ(device.last_refusal().code, 0);
  EXPECT_EQ(device.refusal_count(), 0u);
  EXPECT_NE(Sell(1, 10000), RTF_SUCCESS);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 10000), RTF_SUCCESS);
  EXPECT_EQ(device.refusal_count(), 1u);
  EXPECT_EQ(device.last_refusal().code, RTF_EFPTR_WRONG_STATE);
}

// The day closing goes on behind a sending that is refused, and is a success.
TEST_F(RefusalStoreTest, WhatAnOperationOvercomesIsNoRefusal) {
  RegisterSettings settings = TestSettings();
  settings.outbox = "/nonexistent";
  VirtualRegister closing(settings);
  EXPECT_EQ(closing.PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_EQ(closing.refusal_count(), 0u);
}

TEST_F(RefusalTest, ALongTextIsCutAndSaysSo) {
  device.BeginFiscalReceipt(true);
  const std::string code(300, 'x');
  device.PrintRecItemEx(0, "", -1, 0, -1, 0, "", -1, true, code.c_str());
  EXPECT_EQ(device.last_refusal().text(), code.substr(0, Refusal::kTextSize));
  EXPECT_TRUE(device.last_refusal().cut);
}

TEST_F(RefusalTest, AFaultThatWasPlannedIsOne) {
  Fault fault;
  fault.name = "paper-end";
  device.AddFault(fault);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_EFPTR_REC_EMPTY);
  EXPECT_EQ(static_cast<int>(device.last_refusal().cause), static_cast<int>(RefusalCause::kFault));
}

TEST_F(RefusalTest, NothingIsNotedOutsideOfAnOperation) {
  EXPECT_EQ(Refuse(RTF_E_ILLEGAL, RefusalCause::kNoPrice, {1}), RTF_E_ILLEGAL);
  EXPECT_EQ(device.refusal_count(), 0u);
}

TEST_F(RefusalStoreTest, WhatCannotBeStoredIsOne) {
  VirtualRegister device(FileSettings());
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_FAILURE);
  EXPECT_EQ(static_cast<int>(device.last_refusal().cause),
            static_cast<int>(RefusalCause::kNotKept));
  EXPECT_FALSE(device.last_failure().empty());
  disk.Heal();
}

}  // namespace lorimat
