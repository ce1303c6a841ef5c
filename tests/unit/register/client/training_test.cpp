// Training: what prints is marked, and nothing is registered, numbered or counted.
#include <functional>
#include <vector>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

const char kMark[] = " *** DOCUMENTO DI PROVA - NON FISCALE ***\n";

class TrainingTest : public ReportTest {
 protected:
  // Everything that the register has counted or kept.
  std::string Facts() {
    std::string facts;
    for (const int item : {1,   2,   9,   12,  15,  28,  29,  32,  57,  89,  98,  112, 113, 114,
                           115, 118, 121, 154, 155, 372, 374, 375, 377, 378, 379, 380, 394}) {
      facts += Item(item) + ";";
    }
    facts += Data(RTF_FPTR_GD_FISCAL_REC) + ";" + Data(RTF_FPTR_GD_SIMP_INVOICE) + ";";
    facts += Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS) + ";";
    facts += Totalizer(1, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE) + ";";
    facts += std::to_string(device.store().documents().size()) + ";";
    return facts + std::to_string(device.store().journal().size());
  }
  // A receipt with all that a receipt can have.
  void RichReceipt() {
    EXPECT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    EXPECT_EQ(Sell(1, 100000, "PANE"), RTF_SUCCESS);
    EXPECT_EQ(SellPieces(2, 2000, 15000, "LATTE"), RTF_SUCCESS);
    EXPECT_EQ(device.PrintRecItemAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1),
              RTF_SUCCESS);
    EXPECT_EQ(device.PrintRecSubtotalEx(0, false), RTF_SUCCESS);
    EXPECT_EQ(device.PrintRecTaxID("01234567897"), RTF_SUCCESS);
    EXPECT_EQ(PayCash(200000), RTF_SUCCESS);
  }
};

TEST_F(TrainingTest, TheDeviceShowsIt) {
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 0);
  ASSERT_EQ(device.BeginTraining(), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 1);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  ASSERT_EQ(device.EndTraining(), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 0);
  EXPECT_TRUE(device.paper_lines().empty());
}

TEST_F(TrainingTest, ItBeginsAndEndsOnceBetweenDocuments) {
  EXPECT_EQ(device.EndTraining(), RTF_EFPTR_WRONG_STATE);
  device.BeginTraining();
  EXPECT_EQ(device.BeginTraining(), RTF_EFPTR_WRONG_STATE);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.EndTraining(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 1);
  device.ResetPrn();
  device.EndTraining();
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.BeginTraining(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 0);
}

TEST_F(TrainingTest, AReceiptPrintsAsARealOneWithItsMarks) {
  RichReceipt();
  std::string paper = NewPaper();
  const std::string number = "          DOCUMENTO N. 0001-0001\n";
  ASSERT_NE(paper.find(number), std::string::npos);
  paper.replace(paper.find(number), number.size(), kMark);
  device.BeginTraining();
  RichReceipt();
  EXPECT_EQ(NewPaper(), kMark + paper);
}

TEST_F(TrainingTest, NothingIsRegisteredOrCounted) {
  RichReceipt();
  const std::string before = Facts();
  device.BeginTraining();
  RichReceipt();
  ASSERT_EQ(device.BeginDocInvoice("CLIENTE", "", "", "", ""), RTF_SUCCESS);
  Sell(1, 10000);
  EXPECT_EQ(PayRest("5"), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "15012024", ""), RTF_SUCCESS);
  Sell(1, 10000);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_SUCCESS);
  ASSERT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  Sell(1, 10000);
  EXPECT_EQ(device.PrintRecVoid("basta"), RTF_SUCCESS);
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(device.ResetPrn(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(Facts(), before);
  device.EndTraining();
  EXPECT_EQ(Facts(), before);
  // The sale is not void, and the next number is free.
  NewPaper();
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", true, ""), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("DOCUMENTO N. 0001-0002"), std::string::npos);
}

TEST_F(TrainingTest, EveryDocumentIsMarkedAtBothEnds) {
  using Step = std::function<int()>;
  RichReceipt();
  device.BeginTraining();
  const std::vector<std::vector<Step>> documents = {
      {[&] { return device.BeginFiscalReceipt(true); }, [&] { return Sell(1, 10000); },
       [&] { return PayRest(); }},
      {[&] { return device.BeginFiscalReceipt(true); }, [&] { return device.ResetPrn(); }},
      {[&] { return device.BeginDocInvoice("A", "", "", "", ""); }, [&] { return Sell(1, 10000); },
       [&] { return PayRest(); }},
      {[&] { return device.BeginDocCancel(1, 1, "", true); }},
      {[&] { return device.BeginNonFiscal(); }, [&] { return device.EndNonFiscal(); }},
      {[&] { return device.BeginNonFiscal(); }, [&] { return device.ResetPrn(); }},
  };
  for (size_t number = 0; number < documents.size(); ++number) {
    SCOPED_TRACE(number);
    NewPaper();
    for (const Step& step : documents[number]) ASSERT_EQ(step(), RTF_SUCCESS);
    const std::string paper = NewPaper();
    EXPECT_EQ(paper.find(kMark), 0u);
    EXPECT_NE(paper.rfind(kMark), 0u);
    EXPECT_EQ(paper.find("DOCUMENTO N."), std::string::npos);
    EXPECT_EQ(paper.find("FATTURA N."), std::string::npos);
  }
}

TEST_F(TrainingTest, ASettledReceiptTakesAttachments) {
  device.BeginTraining();
  device.SetDataInternal(148, "0");
  device.BeginFiscalReceipt(false);
  Sell(1, 10000);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_ENDING);
  EXPECT_EQ(device.BeginAdditionalTrailer(), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecMessage("SCONTO"), RTF_SUCCESS);
  EXPECT_EQ(device.EndFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Facts().back(), '0');
}

TEST_F(TrainingTest, NothingIsReportedOrProgrammed) {
  device.BeginTraining();
  const std::string before = Snapshot();
  const int results[] = {
      device.PrintXReport(),
      device.PrintZReport(),
      device.PrintZReportEx(true),
      device.PrintXReportEx(1, false, "txt", Path("x.txt").c_str(), 3),
      device.PeriodicReportMessageEx(1, 0, "txt", "", 1, true),
      Extract(1, 2, 0, 0, "010120240000", "311220242359"),
      device.PrintPowerLossReport(),
      device.PrintReport(RTF_FPTR_RT_ORDINAL, "1", "0"),
      device.ProcessEJournalReportGlobal(Path("journal.txt").c_str(), "txt"),
      device.BeginItemList(1),
      device.SetHeaderLine(1, "ALTRO", false),
      device.SetVatTable(),
      device.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 9),
      device.SetDate("160120240000"),
      device.UploadTable(1, 0, ""),
      device.TelematicCensus(),
  };
  for (const int result : results) EXPECT_EQ(result, RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(FileCount(), 0u);
}

TEST_F(TrainingTest, KeysSellInTrainingToo) {
  device.BeginTraining();
  const std::string before = Facts();
  ASSERT_EQ(device.KeyCodeInput("\x05", "", "", 75), RTF_SUCCESS);  // 5 on department 1
  ASSERT_EQ(device.KeyCodeInput("", "", "", 49), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "0");
  EXPECT_EQ(Facts(), before);
  EXPECT_EQ(NewPaper().find(kMark), 0u);
}

}  // namespace
}  // namespace lorimat
