// Registers that were cut off in the middle of a document, and what the next start makes of them.
#include "register/desk/recovery.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "register/desk/layout.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class RecoveryTest : public StoredRegisterTest {
 protected:
  // The power is cut; the register starts again.
  void Cut() {
    CopyAsCut("shop.register", "cut");
    device.reset();
    CopyAsCut("cut", "shop.register");
    // What it looks like from outside, before it is switched on.
    CopyAsCut("cut", "look");
    RegisterFile look(Path("look"));
    seen_ = look.Status().open_document;
    EXPECT_TRUE(look.VerifyJournal({}).good());
    Start();
  }
  JournalEntry LastEntry() const { return device->store().journal().back(); }
  static bool Has(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines) {
      if (line.find(text) != line.npos) return true;
    }
    return false;
  }
  // The journal verifies, and nothing is ended twice.
  void ExpectSound() {
    device.reset();
    const JournalCheck check = RegisterFile(Path("shop.register")).VerifyJournal({});
    for (const std::string& finding : FindingTexts(check)) ADD_FAILURE() << finding;
    Start();
    EXPECT_FALSE(device->cut_off());
  }

  std::optional<CutOffDocument> seen_;
};

TEST_F(RecoveryTest, AnUnpaidReceiptIsVoid) {
  Receipt(1, 10000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000, "VINO"), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 30000), RTF_SUCCESS);
  const std::string day = device->store().day().ToRecord();
  Cut();
  ASSERT_TRUE(seen_);
  EXPECT_EQ(seen_->kind, InterruptedKind::kReceipt);
  EXPECT_EQ(seen_->lines, 2);
  EXPECT_EQ(seen_->subtotal, 50000);
  EXPECT_FALSE(seen_->registered);
  EXPECT_EQ(FormatDateTime(seen_->begun), "15/01/2024 10:30");

  ASSERT_TRUE(device->cut_off());
  EXPECT_EQ(device->cut_off()->subtotal, 50000);
  EXPECT_EQ(device->start_notice(),
            "The register was switched off in the middle of a document (receipt, begun 15/01/2024 "
            "10:30). It was not paid: it has been cancelled, and no total has moved.");
  EXPECT_EQ(device->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device->store().day().ToRecord(), day);
  EXPECT_EQ(device->store().grand_total(), 10000);
  EXPECT_EQ(device->store().counters().abandoned, 1);
  EXPECT_EQ(device->store().documents().size(), 1u);
  const JournalEntry entry = LastEntry();
  EXPECT_EQ(entry.kind, kJournalAbandoned);
  EXPECT_TRUE(Has(entry.lines, "VINO"));
  EXPECT_TRUE(Has(entry.lines, "*** MANCANZA DI ALIMENTAZIONE ***"));
  EXPECT_TRUE(Has(entry.lines, "*** DOCUMENTO ANNULLATO ***"));
  EXPECT_EQ(entry.lines.back(), std::string(42, '-'));
  // The roll ends with the same lines.
  const std::vector<std::string>& roll = device->paper_lines();
  EXPECT_TRUE(std::equal(entry.lines.rbegin(), entry.lines.rend(), roll.rbegin()));
  Receipt(1, 5000);
  EXPECT_EQ(device->store().documents().back().number, 2);
  ExpectSound();
}

TEST_F(RecoveryTest, APartlyPaidReceiptIsVoid) {
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(PayPart(5000, "2"), RTF_SUCCESS);
  Cut();
  EXPECT_EQ(device->store().counters().abandoned, 1);
  EXPECT_TRUE(device->store().documents().empty());
  ExpectSound();
}

TEST_F(RecoveryTest, OtherDocumentsThatWereNotPaid) {
  Receipt(1, 10000);
  const struct {
    const char* kind;
    std::function<int()> begin;
  } rows[] = {
      {"invoice", [this] { return device->BeginDocInvoice("A", "", "", "", ""); }},
      {"credit note", [this] { return device->BeginDocTelematicRefund(1, 1, "15012024", ""); }},
      {"void", [this] { return device->BeginDocTelematicCancel(1, 1, "", false, ""); }},
  };
  int abandoned = 0;
  for (const auto& row : rows) {
    ASSERT_EQ(row.begin(), RTF_SUCCESS) << row.kind;
    Cut();
    ASSERT_TRUE(device->cut_off()) << row.kind;
    EXPECT_EQ(InterruptedKindName(device->cut_off()->kind), row.kind);
    EXPECT_EQ(device->store().counters().abandoned, ++abandoned);
    EXPECT_EQ(LastEntry().kind, kJournalAbandoned);
  }
  EXPECT_EQ(device->store().next_invoice(), 1);
  EXPECT_FALSE(device->store().documents()[0].voided);
  ExpectSound();
}

TEST_F(RecoveryTest, APaidReceiptIsEndedUnderItsNumber) {
  Receipt(1, 10000);
  ASSERT_EQ(device->SetDataInternal(600, "1"), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecMessage("ALLEGATO"), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(seen_);
  EXPECT_TRUE(seen_->registered);
  EXPECT_EQ(seen_->number, 2);
  EXPECT_EQ(device->start_notice(),
            "The register was switched off in the middle of a document (receipt, begun 15/01/2024 "
            "10:30). It was paid: it stands under its number 2 and has been ended.");
  EXPECT_EQ(device->store().grand_total(), 30000);
  EXPECT_EQ(device->store().counters().abandoned, 0);
  ASSERT_EQ(device->store().documents().size(), 2u);
  const JournalEntry entry = LastEntry();
  EXPECT_EQ(entry.kind, kJournalSale);
  EXPECT_EQ(entry.number, 2);
  EXPECT_EQ(entry.document, 2);
  EXPECT_TRUE(Has(entry.lines, "ALLEGATO"));
  EXPECT_TRUE(Has(entry.lines, "DOCUMENTO N. 0001-0002"));
  EXPECT_FALSE(Has(entry.lines, "DOCUMENTO N. 0001-0001"));  // its own lines alone
  EXPECT_FALSE(Has(entry.lines, "MANCANZA"));
  Receipt(1, 1000);
  EXPECT_EQ(device->store().documents().back().number, 3);
  ExpectSound();
}

TEST_F(RecoveryTest, ATrailerIsNotPrintedTwice) {
  ASSERT_EQ(device->SetDataInternal(600, "1"), RTF_SUCCESS);
  ASSERT_EQ(device->SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "B"), RTF_SUCCESS);
  ASSERT_EQ(device->BeginDocInvoice("A", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  ASSERT_EQ(device->BeginAdditionalTrailer(), RTF_SUCCESS);
  Cut();
  int trailers = 0;
  for (const std::string& line : LastEntry().lines) {
    trailers += line.find("FATTURA N. 1/B") != line.npos ? 1 : 0;
  }
  EXPECT_EQ(trailers, 1);
  EXPECT_EQ(LastEntry().kind, kJournalInvoice);
  ExpectSound();
}

TEST_F(RecoveryTest, ANonFiscalDocumentIsEndedAsAResetWould) {
  for (const bool journal : {true, false}) {
    const size_t entries = device->store().journal().size();
    ASSERT_EQ(device->BeginNonFiscalJournal(journal), RTF_SUCCESS);
    ASSERT_EQ(device->PrintNormal(RTF_FPTR_S_RECEIPT, "PROMEMORIA"), RTF_SUCCESS);
    Cut();
    ASSERT_TRUE(device->cut_off());
    EXPECT_EQ(device->cut_off()->kind, InterruptedKind::kNonFiscal);
    EXPECT_EQ(device->store().counters().non_fiscal, 0);
    EXPECT_EQ(device->store().counters().abandoned, 0);
    ASSERT_EQ(device->store().journal().size(), entries + (journal ? 1 : 0));
    if (journal) {
      EXPECT_EQ(LastEntry().kind, kJournalNonFiscal);
      EXPECT_TRUE(Has(LastEntry().lines, "PROMEMORIA"));
      EXPECT_TRUE(Has(LastEntry().lines, "MANCANZA DI ALIMENTAZIONE"));
    }
  }
  ExpectSound();
}

TEST_F(RecoveryTest, ADocumentOfTrainingLeavesNoTrace) {
  ASSERT_EQ(device->BeginTraining(), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(device->cut_off());
  EXPECT_EQ(device->cut_off()->kind, InterruptedKind::kTraining);
  EXPECT_EQ(device->store().counters().abandoned, 0);
  EXPECT_TRUE(device->store().journal().empty());
  EXPECT_EQ(device->printer_state(), RTF_FPTR_PS_MONITOR);
  ExpectSound();
}

TEST_F(RecoveryTest, AnOrderlySwitchingOffInADocumentIsACutToo) {
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  Restart();
  EXPECT_TRUE(device->cut_off());
  EXPECT_EQ(device->store().counters().abandoned, 1);
  ExpectSound();
}

TEST_F(RecoveryTest, ACutWithinTheStartIsMadeGoodByTheNextOne) {
  // Every place where the ending of the document could be cut off.
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  CopyAsCut("shop.register", "cut");
  device.reset();
  // The clock fails while the document is ended: nothing of it is stored.
  CopyAsCut("cut", "shop.register");
  RegisterSettings settings = FileSettings();
  settings.clock = []() -> std::tm { throw std::runtime_error("no clock"); };
  EXPECT_THROW(VirtualRegister{settings}, std::runtime_error);
  Start();
  EXPECT_TRUE(device->cut_off());
  EXPECT_EQ(device->store().counters().abandoned, 1);
  EXPECT_EQ(device->store().journal().size(), 1u);
  ExpectSound();
}

TEST_F(RecoveryTest, WhatWasRegisteredLastIsNamedForItsAnswer) {
  Receipt(1, 10000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 123400), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  Cut();
  EXPECT_FALSE(device->cut_off());
  ASSERT_TRUE(device->unanswered());
  EXPECT_EQ(device->unanswered()->kind, InterruptedKind::kReceipt);
  EXPECT_EQ(device->unanswered()->number, 2);
  EXPECT_EQ(device->unanswered()->total, 123400);
  EXPECT_EQ(device->start_notice(),
            "The register was switched off behind the last document that it stored (receipt "
            "0001-0002, 15/01/2024 10:30, total 12,34). Its answer may not have gone out.");

  ASSERT_EQ(device->BeginDocInvoice("A", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(device->unanswered());
  EXPECT_EQ(device->unanswered()->kind, InterruptedKind::kInvoice);
  EXPECT_EQ(device->unanswered()->number_text(), "1");

  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(device->unanswered());
  EXPECT_EQ(device->unanswered()->kind, InterruptedKind::kClosure);
  EXPECT_EQ(device->unanswered()->number_text(), "0001");
  EXPECT_EQ(device->unanswered()->total, 153400);
  // As long as nothing else is stored.
  Cut();
  EXPECT_TRUE(device->unanswered());
}

// The sending is stored behind the closing, and the answer goes out behind both.
TEST_F(RecoveryTest, AClosingThatSendsIsNamedAsOneThatDoesNot) {
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(device->unanswered());
  EXPECT_EQ(device->unanswered()->kind, InterruptedKind::kClosure);
}

TEST_F(RecoveryTest, ADocumentThatWasHeldIsNamedBehindItsEnd) {
  ASSERT_EQ(device->SetDataInternal(600, "1"), RTF_SUCCESS);
  Receipt(1, 10000);
  ASSERT_EQ(device->EndFiscalReceipt(true), RTF_SUCCESS);
  Cut();
  ASSERT_TRUE(device->unanswered());
  EXPECT_EQ(device->unanswered()->number, 1);
}

TEST_F(RecoveryTest, NothingIsNamedBehindAnAnswerThatWentOut) {
  // An orderly end.
  Receipt(1, 10000);
  Restart();
  EXPECT_EQ(device->start_notice(), "");
  Cut();
  EXPECT_EQ(device->start_notice(), "");
  // The host went on.
  Receipt(1, 10000);
  ASSERT_EQ(device->OpenDrawer(), RTF_SUCCESS);
  Cut();
  EXPECT_EQ(device->start_notice(), "");
  // A document that was cut off tells of itself.
  Receipt(1, 10000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  Cut();
  EXPECT_TRUE(device->cut_off());
  EXPECT_FALSE(device->unanswered());
  // A new register has nothing to tell of.
  EXPECT_EQ(VirtualRegister(FileSettings("new")).start_notice(), "");
}

TEST_F(RecoveryTest, AProgramThatIsNotTheHostLeavesWhatIsUnansweredToIt) {
  Receipt(1, 123400);
  Cut();
  const std::string notice = device->start_notice();
  ASSERT_NE(notice, "");
  device->LeaveUnanswered();
  ShopRefusal refused;
  ASSERT_EQ(device->SetUp({.header_lines = {{"ALTRO"}}}, &refused), RTF_SUCCESS);
  Restart();
  EXPECT_EQ(device->start_notice(), notice);
  device->LeaveUnanswered();
  ASSERT_EQ(device->OpenDrawer(), RTF_SUCCESS);
  Cut();
  EXPECT_EQ(device->start_notice(), notice);
  // It has been told now.
  Restart();
  EXPECT_EQ(device->start_notice(), "");
  // Nothing comes of nothing.
  device->LeaveUnanswered();
  ASSERT_EQ(device->OpenDrawer(), RTF_SUCCESS);
  Restart();
  EXPECT_EQ(device->start_notice(), "");
}

TEST_F(RecoveryTest, PowerLossesAreCounted) {
  for (int loss = 0; loss < 2; ++loss) {
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    Cut();
  }
  Restart();
  const size_t before = device->paper_lines().size();
  ASSERT_EQ(device->PrintPowerLossReport(), RTF_SUCCESS);
  bool two = false;
  for (size_t index = before; index < device->paper_lines().size(); ++index) {
    const std::string& line = device->paper_lines()[index];
    if (line.find(" 2") == line.size() - 2) two = true;
  }
  EXPECT_TRUE(two);
}

}  // namespace
}  // namespace lorimat
