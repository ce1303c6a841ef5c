// What a register in a file holds is there again when it is switched on, whatever was done with it.
#include <functional>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class StoreReopenTest : public StoredRegisterTest {
 protected:
  // Switched off and on, and cut off: nothing differs.
  void ExpectKept(const char* what) {
    const std::string before = Image(*device);
    CopyAsCut("shop.register", "cut.register");
    {
      VirtualRegister cut(FileSettings("cut.register"));
      EXPECT_EQ(Image(cut), before) << what << ", cut off";
      EXPECT_FALSE(cut.cut_off()) << what;
    }
    Restart();
    EXPECT_EQ(Image(*device), before) << what << ", switched off";
    EXPECT_EQ(device->start_notice(), "");
  }
};

TEST_F(StoreReopenTest, ANewRegisterIsKeptAsItWasMade) {
  ExpectKept("new");
  EXPECT_TRUE(device->paper_lines().empty());
}

TEST_F(StoreReopenTest, TheFileGoesBeforeTheSettings) {
  device.reset();
  RegisterSettings other = FileSettings();
  other.serial_number = "99OTHER";
  other.header_lines = {"ALTRO"};
  other.vat_rates = {{100000}};
  other.departments = {{"SOLO"}};
  other.articles.clear();
  other.operators = 1;
  other.groups = 1;
  other.last_closure = 77;
  other.firmware_version = "9.9";
  other.commissioned = false;
  device = std::make_unique<VirtualRegister>(other);
  const RegisterSettings& kept = device->tables().settings();
  EXPECT_EQ(kept.serial_number, "99LRM0000001VR");
  EXPECT_EQ(kept.header_lines.size(), 3u);
  EXPECT_EQ(kept.vat_rates.size(), 5u);
  EXPECT_EQ(kept.departments.size(), 40u);
  EXPECT_EQ(kept.articles.size(), 2u);
  EXPECT_EQ(device->tables().groups().size(), 20u);
  EXPECT_EQ(device->store().last_closure(), 0);
}

TEST_F(StoreReopenTest, DocumentsOfEveryKind) {
  Receipt(1, 100000);
  ExpectKept("receipt");

  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 50000, "PANE"), RTF_SUCCESS);
  ASSERT_EQ(SellPieces(2, 2500, 12000), RTF_SUCCESS);
  ASSERT_EQ(Sell(3, 20000), RTF_SUCCESS);
  ASSERT_EQ(Sell(3, 20000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  ASSERT_EQ(Sell(-1, -1, "", 0, "8001"), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecItemAdjustmentEx(1, "OFFERTA", 1000, -1, -2), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecSubtotalAdjustment(2, "", 500), RTF_SUCCESS);
  ASSERT_EQ(PayPart(30000, "2"), RTF_SUCCESS);
  ASSERT_EQ(PayPart(10000, "7"), RTF_SUCCESS);
  ASSERT_EQ(PayPart(900000, "0"), RTF_SUCCESS);
  ExpectKept("receipt of many lines");

  ASSERT_EQ(device->SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "A"), RTF_SUCCESS);
  ASSERT_EQ(device->BeginDocInvoice("CLIENTE", "VIA", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 70000), RTF_SUCCESS);
  ASSERT_EQ(Pay("5"), RTF_SUCCESS);
  ExpectKept("invoice");

  ASSERT_EQ(device->BeginDocTelematicRefund(1, 1, "15012024", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  ExpectKept("credit note");

  ASSERT_EQ(device->BeginDocTelematicCancel(2, 1, "", true, "ERRORE"), RTF_SUCCESS);
  ExpectKept("void");
  EXPECT_TRUE(device->store().documents()[1].voided);

  ASSERT_EQ(device->BeginNonFiscalJournal(true), RTF_SUCCESS);
  ASSERT_EQ(device->PrintNormal(RTF_FPTR_S_RECEIPT, "\x1b|2Cgrande \xff"), RTF_SUCCESS);
  ASSERT_EQ(device->PrintBarcode("02", "2", "1", "0", "8001234567897", 0), RTF_SUCCESS);
  ASSERT_EQ(device->PrintBitmap(7, 0), RTF_SUCCESS);
  ASSERT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
  ExpectKept("non-fiscal document");

  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
  ExpectKept("abandoned document");
  EXPECT_EQ(device->store().counters().abandoned, 1);
}

TEST_F(StoreReopenTest, ClosingsPeriodsAndWhatWaits) {
  Receipt(1, 100000);
  ASSERT_EQ(device->PeriodicReportMessageEx(1, 0, "txt", "", 1, true), RTF_SUCCESS);
  Receipt(2, 30000);
  ExpectKept("a period that begins within the day");
  EXPECT_EQ(device->store().PeriodTotals(1).Summary().net(), 30000);
  EXPECT_EQ(device->store().PeriodTotals(2).Summary().net(), 130000);
  ASSERT_EQ(device->PrintZReportEx(false), RTF_SUCCESS);
  ExpectKept("closing");
  Receipt(1, 5000);
  ASSERT_EQ(device->PeriodicReportMessageEx(2, 0, "txt", "", 1, true), RTF_SUCCESS);
  ASSERT_EQ(device->PrintZReportEx(false), RTF_SUCCESS);
  ExpectKept("second closing");
  EXPECT_EQ(device->store().PeriodTotals(1).Summary().net(), 35000);
  EXPECT_EQ(device->store().PeriodTotals(2).Summary().net(), 0);
  EXPECT_EQ(device->store().PeriodTotals(3).Summary().net(), 135000);
  EXPECT_EQ(device->store().pending_closures(), 2);
  ASSERT_EQ(device->SendTelematicSummary(), RTF_SUCCESS);
  ExpectKept("sent");
  EXPECT_EQ(device->store().pending_closures(), 0);
}

TEST_F(StoreReopenTest, APeriodLeavesOutWhatWasTakenBackWhollyOutsideOfIt) {
  // Department 2 comes to nothing in the period: it shows, as its documents were of the period.
  Receipt(1, 10000);
  ASSERT_EQ(device->PeriodicReportMessageEx(2, 0, "txt", "", 1, true), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 20000), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 20000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  ASSERT_EQ(Sell(3, 20000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  const std::map<int, DepartmentSum> sums = device->store().PeriodTotals(2).Summary().by_department;
  EXPECT_EQ(sums.count(1), 0u);
  EXPECT_EQ(sums.count(2), 1u);
  EXPECT_EQ(sums.count(3), 1u);
}

TEST_F(StoreReopenTest, LotteryDocumentsWaitUntilTheyAreSent) {
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("", "", "", FunctionCode::kLotteryCode), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("", "", "AB12CD34", FunctionCode::kConfirm), RTF_SUCCESS);
  ASSERT_EQ(Pay("2"), RTF_SUCCESS);
  ASSERT_EQ(device->store().PendingLottery().size(), 1u);
  ExpectKept("lottery");
  EXPECT_EQ(device->store().PendingLottery().at(0).lottery_code, "AB12CD34");
  ASSERT_EQ(device->TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
  EXPECT_TRUE(device->store().PendingLottery().empty());
  ExpectKept("sent lottery");
}

TEST_F(StoreReopenTest, EverythingThatIsProgrammed) {
  char name[128] = "FRUTTA \xe8";
  int64_t price = 12300, max_price = 99900;
  int32_t quantity = 3, vat = 2;
  uint8_t group = 4;
  bool yes = true, no = false;
  ASSERT_EQ(device->ConfigDepartmentEx(true, 7, name, &price, &max_price, &quantity, &vat, &group,
                                       &yes, &no, &yes, &yes),
            RTF_SUCCESS);
  ExpectKept("department");

  char description[129] = "MARIA";
  char password[65] = "1234";
  int flags = 5, options = -6;
  ASSERT_EQ(device->ConfigGroup(true, 12, description, password, &flags, &options), RTF_SUCCESS);
  ExpectKept("operator");

  uint8_t kind = 2, gives_change = 1, digits = 6;
  uint32_t preset = 5000;
  char tender[64] = "BUONO PASTO";
  ASSERT_EQ(device->ConfigSubtender(true, 3, &kind, tender, &gives_change, &preset, &digits),
            RTF_SUCCESS);
  ExpectKept("subtender");

  ASSERT_EQ(device->SetHeaderLine(6, "SESTA", false), RTF_SUCCESS);
  ASSERT_EQ(device->SetHeaderLine(1, "", false), RTF_SUCCESS);
  ExpectKept("header");

  ASSERT_EQ(device->SetVatValue(3, "60000"), RTF_SUCCESS);
  ExpectKept("a rate that is noted and not in force");
  ASSERT_EQ(device->SetVatValue(3, "60000"), RTF_SUCCESS);
  ASSERT_EQ(device->SetVatValue(1, "0"), RTF_SUCCESS);
  ASSERT_EQ(device->SetVatTable(), RTF_SUCCESS);
  ExpectKept("VAT");
  EXPECT_EQ(device->tables().FindVat(3)->rate, 60000);
  EXPECT_EQ(device->tables().FindVat(1)->mark, "ES*");

  ASSERT_EQ(device->UploadTable(1, 0, ""), RTF_SUCCESS);
  ASSERT_EQ(device->UploadTable(1, 1, "'9','L''OLIO',3,4.50"), RTF_SUCCESS);
  ASSERT_EQ(device->UploadTable(1, 1, "'8001','LATTE NUOVO',4,1.60"), RTF_SUCCESS);
  ExpectKept("articles");
  ASSERT_EQ(device->EraseTable(1), RTF_SUCCESS);
  ExpectKept("no articles");
  ASSERT_EQ(device->UploadTable(1, 0, ""), RTF_SUCCESS);
  ASSERT_EQ(device->UploadTable(1, 1, "'10','PANE',1,1.00"), RTF_SUCCESS);
  ExpectKept("articles again");

  Write("logo.png", "no image, and nobody looks at it yet");
  ASSERT_EQ(device->ProgramGRC(63, Path("logo.png").c_str(), true), RTF_SUCCESS);
  ExpectKept("logo");
  ASSERT_EQ(device->EraseLogoArchive(), RTF_SUCCESS);
  ExpectKept("no logo");

  uint8_t code = FunctionCode::kMacro01;
  int8_t keyboard = 0;
  char macro[40] = "\x01\x02";
  uint16_t size = 2;
  ASSERT_EQ(device->ConfigKeyboard(true, 41, &code, &keyboard, macro, &size), RTF_SUCCESS);
  ExpectKept("key");

  for (const DataItem& item : DataItems()) {
    if (item.write == nullptr || item.number == 148 || item.number == 600) continue;
    const char* value = item.unit == "text"     ? "testo"
                        : item.unit == "flag"   ? "1"
                        : item.unit == "number" ? "4711"
                        : item.number == 204    ? "120"
                                                : nullptr;
    if (value == nullptr) continue;
    EXPECT_EQ(device->SetDataInternal(item.number, value), RTF_SUCCESS) << item.number;
  }
  ExpectKept("options");

  for (const int property :
       {RTF_PIDXFptr_SendLotteriaAEOnClosure, RTF_PIDXFptr_AutoCloseOnInactivity}) {
    ASSERT_EQ(device->SetIntProperty(property, 1), RTF_SUCCESS);
  }
  ASSERT_EQ(device->SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 4711), RTF_SUCCESS);
  ASSERT_EQ(device->SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "B/2"), RTF_SUCCESS);
  ExpectKept("properties");

  ASSERT_EQ(device->OpenDrawer(), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("\x03", "", "", FunctionCode::kOperator), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("\x04", "", "", FunctionCode::kKey), RTF_SUCCESS);
  ExpectKept("drawer, operator, key");
  char status[50] = "";
  ASSERT_EQ(device->GetDataInternal(371, status), RTF_SUCCESS);
  EXPECT_EQ(std::string(status).substr(std::string(status).size() - 4), ";3;4");
}

TEST_F(StoreReopenTest, TheSetUpOfTheDevice) {
  ASSERT_EQ(device->SetTrailerLine(1, "ARRIVEDERCI", false), RTF_SUCCESS);
  ASSERT_EQ(device->SetTrailerLine(6, "ULTIMA", false), RTF_SUCCESS);
  ASSERT_EQ(device->SetPOSID("CASSA 3", "ANNA"), RTF_SUCCESS);
  Receipt(1, 10000);
  const size_t first = device->paper_lines().size();
  Restart();
  Receipt(1, 10000);
  // The same receipt but its number: the trailer is set up as it was.
  const std::vector<std::string>& lines = device->paper_lines();
  ASSERT_EQ(lines.size(), 2 * first);
  size_t different = 0;
  for (size_t index = 0; index < first; ++index) {
    different += lines[index] != lines[first + index] ? 1 : 0;
  }
  EXPECT_EQ(different, 1u);
}

TEST_F(StoreReopenTest, TheWayIntoServiceTheClockAndTraining) {
  device.reset();
  std::filesystem::remove(Path("shop.register"));
  RegisterSettings settings = FileSettings();
  settings.commissioned = false;
  device = std::make_unique<VirtualRegister>(settings);
  ASSERT_EQ(device->SetDate("160120241200"), RTF_SUCCESS);
  ExpectKept("clock");
  char date[14] = "";
  ASSERT_EQ(device->GetDate(date), RTF_SUCCESS);
  EXPECT_STREQ(date, "160120241200");
  ASSERT_EQ(device->TelematicCensus(), RTF_SUCCESS);
  ExpectKept("known to the agency");
  ASSERT_EQ(device->BeginTraining(), RTF_SUCCESS);
  ExpectKept("training");
  int training = 0;
  ASSERT_EQ(device->GetIntProperty(RTF_PIDXFptr_TrainingModeActive, &training), RTF_SUCCESS);
  EXPECT_EQ(training, 1);
}

TEST_F(StoreReopenTest, FaultsThatWait) {
  device->AddFault({.name = "paper-end", .when = FaultWhen::kNth, .count = 3});
  device->AddFault({.name = "code", .code = 207, .operation = ClientOperation::kPrintZReport});
  ExpectKept("faults");
  EXPECT_EQ(device->faults().faults().size(), 2u);
  EXPECT_EQ(device->PrintZReport(), 207);
  ExpectKept("a fault less");
  ASSERT_EQ(device->faults().faults().size(), 1u);
  device->ClearFaults();
  ExpectKept("no faults");
  EXPECT_TRUE(device->faults().faults().empty());
}

TEST_F(StoreReopenTest, TheRollKeepsItsLastTwentyThousandLines) {
  ASSERT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
  for (int line = 0; line < 23000; ++line) {
    ASSERT_EQ(device->PrintNormal(RTF_FPTR_S_RECEIPT, std::to_string(line).c_str()), RTF_SUCCESS);
  }
  // Within a document nothing is cut off: all of it goes to the journal.
  EXPECT_EQ(device->paper().dropped(), 0u);
  ASSERT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device->paper_lines().size(), 20000u);
  EXPECT_GT(device->paper().dropped(), 3000u);
  EXPECT_EQ(device->paper().rows().size(), 1u);  // the cut
  EXPECT_EQ(device->paper().rows()[0].line, 19999u);
  ASSERT_EQ(device->store().journal().size(), 1u);
  EXPECT_GT(device->store().journal()[0].lines.size(), 23000u);
  ExpectKept("a long roll");
  Receipt(1, 10000);
  ExpectKept("a receipt behind it");
  EXPECT_EQ(device->store().journal().back().lines.back(), std::string(42, '-'));
}

TEST_F(StoreReopenTest, WhatAHostSetsForOneDocumentOrOneSessionIsForgotten) {
  ASSERT_EQ(device->SetDataInternal(148, "0"), RTF_SUCCESS);
  ASSERT_EQ(device->SetDataInternal(600, "1"), RTF_SUCCESS);
  ASSERT_EQ(device->SetStringProperty(RTF_PIDXFptr_PreLine, "PRIMA"), RTF_SUCCESS);
  ASSERT_EQ(device->SetIntProperty(RTF_PIDXFptr_TotalizerType, RTF_FPTR_TT_GRAND), RTF_SUCCESS);
  ASSERT_EQ(device->DisplayText("CIAO", 0), RTF_SUCCESS);
  Restart();
  char text[128] = "unset";
  ASSERT_EQ(device->GetDataInternal(148, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "1");
  ASSERT_EQ(device->GetDataInternal(600, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "0");
  ASSERT_EQ(device->GetStringProperty(RTF_PIDXFptr_PreLine, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "");
  int scope = 0;
  ASSERT_EQ(device->GetIntProperty(RTF_PIDXFptr_TotalizerType, &scope), RTF_SUCCESS);
  EXPECT_EQ(scope, RTF_FPTR_TT_DAY);
  EXPECT_EQ(device->display_text(2, 0), "");
}

TEST_F(StoreReopenTest, NumbersGoOnWhereTheyStood) {
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  Receipt(1, 20000);
  Restart();
  Receipt(1, 30000);
  const std::vector<StoredDocument> documents = device->store().documents();
  ASSERT_EQ(documents.size(), 3u);
  EXPECT_EQ(documents[2].closure, 2);
  EXPECT_EQ(documents[2].number, 2);
  EXPECT_EQ(documents[2].id, 3);
  EXPECT_EQ(device->store().grand_total(), 60000);
  // A void finds the sale of the day before.
  EXPECT_EQ(device->BeginDocTelematicCancel(1, 1, "15012024", true, ""), RTF_SUCCESS);
  EXPECT_EQ(device->store().grand_total(), 50000);
}

}  // namespace
}  // namespace lorimat
