// Papers and files of the reports, written by hand, and every way in which one is refused.
#include <new>

#include "register/value/digest.h"
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

// A day with a document of each kind:
//   10,00 in department 1 (22 %), in cash;   2 pieces of 5,50 in department 2 (10 %), by card;
//   a credit note of 3,00 in department 1;   an invoice of 4,00 in department 4 (4 %), not paid;
//   a receipt that is abandoned.
// Tax: 10,00 x 22/122 = 1,80; 3,00 x 22/122 = 0,54; 11,00 x 10/110 = 1,00; 4,00 x 4/104 = 0,15.
class Reports : public ReportTest {
 protected:
  void SellADay() {
    Receipt(1, 100000);
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(SellPieces(2, 2000, 55000), RTF_SUCCESS);
    ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
    ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 30000), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(4, 40000), RTF_SUCCESS);
    ASSERT_EQ(PayRest("5"), RTF_SUCCESS);
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 990000), RTF_SUCCESS);
    ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
    NewPaper();
  }
};

TEST_F(Reports, ReadingOfTheDay) {
  SellADay();
  ASSERT_EQ(device.PrintXReportEx(1, false, "txt", "", 1), RTF_SUCCESS);
  const std::string paper =
      "             NEGOZIO DI PROVA\n"
      "        Via Esempio 1 - 00100 ROMA\n"
      "            P.IVA 01234567897\n"
      "\n"
      "           LETTURA GIORNALIERA\n"
      "               non fiscale\n"
      "\n"
      "Documenti                                3\n"
      "Fatture                                  1\n"
      "Documenti annullati in corso             1\n"
      "Documenti di vendita                     2\n"
      "Documenti di reso                        1\n"
      "Vendite                              25,00\n"
      "Resi                                  3,00\n"
      "Annulli                               0,00\n"
      "Totale non riscosso                   4,00\n"
      "  di cui con fattura a seguire        4,00\n"
      "TOTALE GIORNALIERO                   22,00\n"
      "GRAN TOTALE                          22,00\n"
      "Progressivo vendite                  25,00\n"
      "Progressivo resi                      3,00\n"
      "Progressivo annulli                   0,00\n"
      "\n"
      "PAGAMENTI\n"
      "Pagamento contante n. 2               7,00\n"
      "Pagamento elettronico n. 1           11,00\n"
      "Non riscosso fatture n. 1             4,00\n"
      "\n"
      "IVA\n"
      "Totale 22% n. 2                       7,00\n"
      "Imponibile 22%                        5,74\n"
      "Imposta 22%                           1,26\n"
      "Documenti di reso 22% n. 1            3,00\n"
      "Totale 10% n. 1                      11,00\n"
      "Imponibile 10%                       10,00\n"
      "Imposta 10%                           1,00\n"
      "Totale 4% n. 1                        4,00\n"
      "Imponibile 4%                         3,85\n"
      "Imposta 4%                            0,15\n"
      "\n"
      "             15/01/2024 10:30\n"
      "            RT 99LRM0000001VR\n"
      "------------------------------------------\n";
  EXPECT_EQ(NewPaper(), paper);
  // A reading changes nothing: it may be made again.
  ASSERT_EQ(device.PrintXReport(), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(), paper);
}

TEST_F(Reports, ReadingOfTheDepartments) {
  SellADay();
  ASSERT_EQ(device.PrintXReportEx(0, false, "txt", "", 1), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "             LETTURA REPARTI\n"
            "               non fiscale\n"
            "\n"
            "REPARTI\n"
            "01 REPARTO 1                          7,00\n"
            "  venduto pezzi 1,000                10,00\n"
            "02 REPARTO 2                         11,00\n"
            "  venduto pezzi 2,000                11,00\n"
            "04 REPARTO 4                          4,00\n"
            "  venduto pezzi 1,000                 4,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

TEST_F(Reports, ReadingOfEverything) {
  SellADay();
  ASSERT_EQ(device.PrintXReportEx(2, false, "txt", "", 1), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "             LETTURA GENERALE\n"
            "               non fiscale\n"
            "\n"
            "Documenti                                3\n"
            "Fatture                                  1\n"
            "Documenti annullati in corso             1\n"
            "Documenti di vendita                     2\n"
            "Documenti di reso                        1\n"
            "Vendite                              25,00\n"
            "Resi                                  3,00\n"
            "Annulli                               0,00\n"
            "Totale non riscosso                   4,00\n"
            "  di cui con fattura a seguire        4,00\n"
            "TOTALE GIORNALIERO                   22,00\n"
            "GRAN TOTALE                          22,00\n"
            "Progressivo vendite                  25,00\n"
            "Progressivo resi                      3,00\n"
            "Progressivo annulli                   0,00\n"
            "\n"
            "PAGAMENTI\n"
            "Pagamento contante n. 2               7,00\n"
            "Pagamento elettronico n. 1           11,00\n"
            "Non riscosso fatture n. 1             4,00\n"
            "\n"
            "IVA\n"
            "Totale 22% n. 2                       7,00\n"
            "Imponibile 22%                        5,74\n"
            "Imposta 22%                           1,26\n"
            "Documenti di reso 22% n. 1            3,00\n"
            "Totale 10% n. 1                      11,00\n"
            "Imponibile 10%                       10,00\n"
            "Imposta 10%                           1,00\n"
            "Totale 4% n. 1                        4,00\n"
            "Imponibile 4%                         3,85\n"
            "Imposta 4%                            0,15\n"
            "\n"
            "REPARTI\n"
            "01 REPARTO 1                          7,00\n"
            "  venduto pezzi 1,000                10,00\n"
            "02 REPARTO 2                         11,00\n"
            "  venduto pezzi 2,000                11,00\n"
            "04 REPARTO 4                          4,00\n"
            "  venduto pezzi 1,000                 4,00\n"
            "\n"
            "OPERATORI\n"
            "01 documenti 4                       22,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

TEST_F(Reports, TheClosingStoresTheDayAndStartsTheNext) {
  SellADay();
  ASSERT_EQ(device.PrintZReportEx(false), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "           CHIUSURA GIORNALIERA\n"
            "\n"
            "Documenti                                3\n"
            "Fatture                                  1\n"
            "Documenti annullati in corso             1\n"
            "Documenti di vendita                     2\n"
            "Documenti di reso                        1\n"
            "Vendite                              25,00\n"
            "Resi                                  3,00\n"
            "Annulli                               0,00\n"
            "Totale non riscosso                   4,00\n"
            "  di cui con fattura a seguire        4,00\n"
            "TOTALE GIORNALIERO                   22,00\n"
            "GRAN TOTALE                          22,00\n"
            "Progressivo vendite                  25,00\n"
            "Progressivo resi                      3,00\n"
            "Progressivo annulli                   0,00\n"
            "\n"
            "PAGAMENTI\n"
            "Pagamento contante n. 2               7,00\n"
            "Pagamento elettronico n. 1           11,00\n"
            "Non riscosso fatture n. 1             4,00\n"
            "\n"
            "IVA\n"
            "Totale 22% n. 2                       7,00\n"
            "Imponibile 22%                        5,74\n"
            "Imposta 22%                           1,26\n"
            "Documenti di reso 22% n. 1            3,00\n"
            "Totale 10% n. 1                      11,00\n"
            "Imponibile 10%                       10,00\n"
            "Imposta 10%                           1,00\n"
            "Totale 4% n. 1                        4,00\n"
            "Imponibile 4%                         3,85\n"
            "Imposta 4%                            0,15\n"
            "\n"
            "             15/01/2024 10:30\n"
            "             CHIUSURA N. 0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  ASSERT_EQ(device.store().closures().size(), 1u);
  const Closure closure = device.store().closures()[0];
  EXPECT_EQ(closure.number, 1);
  EXPECT_EQ(closure.totals.Summary().net(), 220000);
  EXPECT_EQ(closure.counters.documents, 3);
  EXPECT_EQ(closure.counters.abandoned, 1);
  EXPECT_EQ(closure.grand_total, 220000);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), "220000");
  EXPECT_EQ(Data(RTF_FPTR_GD_Z_REPORT), "0001");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0000");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS), "0");
  EXPECT_EQ(Property(RTF_PIDXFptr_DayOpened), 0);
  Receipt(1, 10000);
  EXPECT_NE(NewPaper().find("DOCUMENTO N. 0002-0001"), std::string::npos);
  ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("FATTURA N. 2\n"), std::string::npos);  // invoices go on
}

TEST_F(Reports, ADayWithoutSalesCloses) {
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Data(RTF_FPTR_GD_Z_REPORT), "0002");
  EXPECT_EQ(device.store().closures()[1].totals.documents(), 0);
}

TEST_F(Reports, EveryReportIsRefusedWhileADocumentIsOpen) {
  Receipt(1, 10000);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  const std::string before = Snapshot();
  const std::string file = Path("report.txt");
  EXPECT_EQ(device.PrintXReport(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintXReportEx(1, false, "txt", file.c_str(), 3), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintZReport(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintZReportEx(true), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PeriodicReportMessageEx(1, 0, "txt", file.c_str(), 3, true),
            RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Extract(0, 3, 1, 9999, "", "", 65535, "txt", file, 3), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Extract(1, 3, 10001, 19999, "", "", 65535, "txt", file, 3), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.SendTelematicSummary(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.ExportTelematicSummary(file.c_str()), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.SaveTelematicSummary(1, 1, file.c_str()), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.ProgramFirmware(file.c_str()), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(FileCount(), 0u);
  EXPECT_EQ(device.store().closures().size(), 1u);
}

TEST_F(Reports, AReportGoesToPaperToAFileOrToBoth) {
  SellADay();
  const std::string file = Path("x.txt");
  ASSERT_EQ(device.PrintXReportEx(1, false, "txt", file.c_str(), 1), RTF_SUCCESS);
  const std::string paper = NewPaper();
  EXPECT_FALSE(HasFile("x.txt"));
  ASSERT_EQ(device.PrintXReportEx(1, false, "txt", file.c_str(), 2), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(), "");
  EXPECT_EQ(ReadText("x.txt"), paper);
  WriteText("x.txt", std::string(100000, 'x'));  // an older and longer one is replaced whole
  ASSERT_EQ(device.PrintXReportEx(1, false, "", file.c_str(), 3), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(), paper);
  EXPECT_EQ(ReadText("x.txt"), paper);
  EXPECT_EQ(FileCount(), 1u);
}

TEST_F(Reports, ASignedFileEndsWithTheDigestOfItsText) {
  SellADay();
  ASSERT_EQ(device.PrintXReportEx(1, false, "txt", Path("x.txt").c_str(), 2), RTF_SUCCESS);
  ASSERT_EQ(device.PrintXReportEx(1, false, "stxt", Path("x.stxt").c_str(), 2), RTF_SUCCESS);
  const std::string text = ReadText("x.txt");
  EXPECT_EQ(ReadText("x.stxt"), text + "SHA-256 " + Sha256(text) + "\n");
}

TEST_F(Reports, WrongKindsPlacesAndFormatsAreRefused) {
  SellADay();
  const std::string before = Snapshot();
  const std::string name = Path("x.txt");
  const char* file = name.c_str();
  for (const int kind : {-1, 3, 100}) {
    EXPECT_EQ(device.PrintXReportEx(kind, false, "txt", file, 3), RTF_E_ILLEGAL) << kind;
  }
  EXPECT_EQ(device.PrintXReportEx(1, true, "txt", file, 3), RTF_E_ILLEGAL);
  for (const int kind : {-1, 0, 6}) {
    EXPECT_EQ(device.PeriodicReportMessageEx(kind, 0, "txt", file, 3, true), RTF_E_ILLEGAL);
  }
  for (const int outputs : {0, 4, 7, -1}) {
    EXPECT_EQ(device.PrintXReportEx(1, false, "txt", file, outputs), RTF_E_ILLEGAL) << outputs;
  }
  EXPECT_EQ(device.PrintXReportEx(1, false, "pdf", file, 3), RTF_E_ILLEGAL);
  EXPECT_EQ(device.PrintXReportEx(1, false, "txt", "", 3), RTF_E_ILLEGAL);
  EXPECT_EQ(device.PrintXReportEx(1, false, nullptr, nullptr, 2), RTF_E_ILLEGAL);
  for (const int source : {-1, 3, 5}) {
    EXPECT_EQ(Extract(source, 3, 1, 9999, "", "", 65535, "txt", name, 3), RTF_E_ILLEGAL) << source;
  }
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(FileCount(), 0u);
}

TEST_F(Reports, AFileThatCannotBeWrittenLeavesEverythingAsItWas) {
  SellADay();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  SellADay();
  const std::string before = Snapshot();
  for (const std::string& file : {Path("missing/report.txt"), std::string("/dev/full")}) {
    EXPECT_EQ(device.PrintXReportEx(1, false, "txt", file.c_str(), 3), RTF_E_FAILURE) << file;
    EXPECT_EQ(device.PeriodicReportMessageEx(1, 0, "txt", file.c_str(), 3, true), RTF_E_FAILURE);
    EXPECT_EQ(Extract(0, 3, 1, 9999, "", "", 65535, "stxt", file, 3), RTF_E_FAILURE);
    EXPECT_EQ(Extract(1, 3, 10001, 19999, "", "", 65535, "txt", file, 3), RTF_E_FAILURE);
    EXPECT_EQ(device.ExportTelematicSummary(file.c_str()), RTF_E_FAILURE);
    EXPECT_EQ(device.SaveTelematicSummary(1, 1, file.c_str()), RTF_E_FAILURE);
  }
  EXPECT_EQ(Snapshot(), before);
  EXPECT_FALSE(device.store().period_start(1).cleared);
  EXPECT_EQ(Item(155), "1");
  EXPECT_EQ(FileCount(), 0u);
}

TEST_F(Reports, AClosingThatBreaksOffLeavesTheDayOpen) {
  bool broken = false;
  RegisterSettings settings = TestSettings();
  settings.clock = [&] {
    if (broken) throw std::bad_alloc();
    return FixedTime();
  };
  VirtualRegister shop(settings);
  shop.BeginFiscalReceipt(false);
  shop.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "");
  shop.PrintRecTotalEx(0, "0", true);
  const size_t lines = shop.paper_lines().size();
  const size_t entries = shop.store().journal().size();
  broken = true;
  EXPECT_EQ(shop.PrintZReport(), RTF_E_FAILURE);
  EXPECT_EQ(shop.PrintXReport(), RTF_E_FAILURE);
  EXPECT_EQ(shop.paper_lines().size(), lines);
  EXPECT_EQ(shop.store().journal().size(), entries);
  EXPECT_EQ(shop.store().last_closure(), 0);
  EXPECT_EQ(shop.store().daily().net(), 10000);
  broken = false;
  EXPECT_EQ(shop.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(shop.store().last_closure(), 1);
  EXPECT_EQ(shop.store().closures()[0].totals.Summary().net(), 10000);
}

TEST_F(Reports, TheStateShowsAReportForAsManyReadsAsSet) {
  RegisterSettings settings = TestSettings();
  settings.report_polls = 2;
  VirtualRegister slow(settings);
  int state = 0;
  ASSERT_EQ(slow.GetIntProperty(RTF_PIDXFptr_PrinterState, &state), RTF_SUCCESS);
  EXPECT_EQ(state, RTF_FPTR_PS_MONITOR);
  ASSERT_EQ(slow.PrintXReport(), RTF_SUCCESS);
  ASSERT_EQ(slow.PrintZReport(), RTF_SUCCESS);  // a register that nobody asks takes the next one
  for (const int expected :
       {RTF_FPTR_PS_REPORT, RTF_FPTR_PS_REPORT, RTF_FPTR_PS_MONITOR, RTF_FPTR_PS_MONITOR}) {
    ASSERT_EQ(slow.GetIntProperty(RTF_PIDXFptr_PrinterState, &state), RTF_SUCCESS);
    EXPECT_EQ(state, expected);
  }
  EXPECT_EQ(slow.PrintXReportEx(9, false, "txt", "", 1), RTF_E_ILLEGAL);
  ASSERT_EQ(slow.GetIntProperty(RTF_PIDXFptr_PrinterState, &state), RTF_SUCCESS);
  EXPECT_EQ(state, RTF_FPTR_PS_MONITOR);  // one that was refused takes no time
}

TEST_F(Reports, PeriodsGoOnAcrossClosingsUntilTheyAreCleared) {
  SellADay();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  NewPaper();
  ASSERT_EQ(device.PeriodicReportMessageEx(1, 0, "txt", "", 1, false), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "            RAPPORTO PERIODICO\n"
            "\n"
            "Documenti                                3\n"
            "Fatture                                  1\n"
            "Documenti di vendita                     2\n"
            "Documenti di reso                        1\n"
            "Vendite                              25,00\n"
            "Resi                                  3,00\n"
            "Annulli                               0,00\n"
            "Totale non riscosso                   4,00\n"
            "  di cui con fattura a seguire        4,00\n"
            "TOTALE DEL PERIODO                   22,00\n"
            "\n"
            "PAGAMENTI\n"
            "Pagamento contante n. 2               7,00\n"
            "Pagamento elettronico n. 1           11,00\n"
            "Non riscosso fatture n. 1             4,00\n"
            "\n"
            "IVA\n"
            "Totale 22% n. 2                       7,00\n"
            "Imponibile 22%                        5,74\n"
            "Imposta 22%                           1,26\n"
            "Documenti di reso 22% n. 1            3,00\n"
            "Totale 10% n. 1                      11,00\n"
            "Imponibile 10%                       10,00\n"
            "Imposta 10%                           1,00\n"
            "Totale 4% n. 1                        4,00\n"
            "Imponibile 4%                         3,85\n"
            "Imposta 4%                            0,15\n"
            "\n"
            "REPARTI\n"
            "01 REPARTO 1                          7,00\n"
            "  venduto pezzi 1,000                10,00\n"
            "02 REPARTO 2                         11,00\n"
            "  venduto pezzi 2,000                11,00\n"
            "04 REPARTO 4                          4,00\n"
            "  venduto pezzi 1,000                 4,00\n"
            "\n"
            "OPERATORI\n"
            "01 documenti 4                       22,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  ASSERT_EQ(device.PeriodicReportMessageEx(5, 0, "txt", "", 1, true), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "           PERIODICO PAGAMENTI\n"
            "\n"
            "PAGAMENTI\n"
            "Pagamento contante n. 2               7,00\n"
            "Pagamento elettronico n. 1           11,00\n"
            "Non riscosso fatture n. 1             4,00\n"
            "\n"
            "             TOTALI AZZERATI\n"
            "             15/01/2024 10:30\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  // Cleared for itself alone.
  Receipt(1, 10000);
  NewPaper();
  ASSERT_EQ(device.PeriodicReportMessageEx(5, 0, "txt", "", 1, false), RTF_SUCCESS);
  const std::string tenders = NewPaper();
  EXPECT_NE(tenders.find("Pagamento contante n. 1               1,00\n"), std::string::npos);
  EXPECT_NE(tenders.find("           dal 15/01/2024 10:30\n"), std::string::npos);
  ASSERT_EQ(device.PeriodicReportMessageEx(1, 0, "txt", "", 1, false), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("Pagamento contante n. 3               8,00\n"), std::string::npos);
}

TEST_F(Reports, EachPeriodicKindShowsItsSection) {
  SellADay();
  const struct {
    int kind;
    const char* title;
    const char* section;
  } rows[] = {{2, "PERIODICO REPARTI", "REPARTI"},
              {3, "PERIODICO IVA", "IVA"},
              {4, "PERIODICO OPERATORI", "OPERATORI"},
              {5, "PERIODICO PAGAMENTI", "PAGAMENTI"}};
  for (const auto& row : rows) {
    ASSERT_EQ(device.PeriodicReportMessageEx(row.kind, 0, "txt", "", 1, false), RTF_SUCCESS);
    const std::string paper = NewPaper();
    EXPECT_NE(paper.find(row.title), std::string::npos);
    for (const auto& other : rows) {
      EXPECT_EQ(paper.find("\n" + std::string(other.section) + "\n") != std::string::npos,
                other.kind == row.kind)
          << row.title << " " << other.section;
    }
  }
}

}  // namespace
}  // namespace lorimat
