// Extracts of the journal into files, and the standard's own forms of the reports.
#include <climits>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

const char kFirstDay[] = "150120240000";
const char kLastDay[] = "160120242359";

class JournalFilesTest : public ClockTest {
 protected:
  // Two days: a receipt of 1,00 and an invoice of 2,00 and the closing on 15 January; receipts of
  // 3,00 and 4,00 on the 16th, not closed.
  void SetUp() override {
    RegisterSettings settings = Settings();
    settings.header_lines.clear();
    shop = std::make_unique<VirtualRegister>(settings);
    At(15, 1, 10, 0);
    Sale(10000);
    shop->BeginDocInvoice("CLIENTE", "", "", "", "");
    Finish(20000);
    ASSERT_EQ(shop->PrintZReport(), RTF_SUCCESS);
    At(16, 1, 10, 0);
    Sale(30000);
    At(16, 1, 11, 0);
    Sale(40000);
    paper_before = shop->paper_text();
  }
  void Finish(int64_t price) {
    ASSERT_EQ(shop->PrintRecItemEx(0, "", price, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(shop->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  void Sale(int64_t price) {
    ASSERT_EQ(shop->BeginFiscalReceipt(false), RTF_SUCCESS);
    Finish(price);
  }
  // The documents that the file has, by their amounts; "Z" for a closing.
  std::string Documents() {
    const std::string text = ReadText("journal.txt");
    std::string found;
    for (const char* amount : {"1,00", "2,00", "3,00", "4,00"}) {
      if (text.find("Importo pagato                        " + std::string(amount)) != text.npos) {
        found += std::string(1, amount[0]);
      }
    }
    if (text.find("CHIUSURA GIORNALIERA") != text.npos) found += "Z";
    return found;
  }
  std::string file() const { return Path("journal.txt"); }

  std::unique_ptr<VirtualRegister> shop;
  std::string paper_before;
};

TEST_F(JournalFilesTest, EverythingGoesToTheFileAndNothingToThePaper) {
  ASSERT_EQ(shop->ProcessEJournalReportGlobal(file().c_str(), "txt"), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "1234Z");
  EXPECT_NE(ReadText("journal.txt").find("ESTRATTO DEL GIORNALE"), std::string::npos);
  EXPECT_NE(ReadText("journal.txt").find("Documenti                                5\n"),
            std::string::npos);
  EXPECT_EQ(shop->paper_text(), paper_before);
}

TEST_F(JournalFilesTest, BothEndsOfTheDatesAreTakenIn) {
  ASSERT_EQ(
      shop->ProcessEJournalReportByDate("160120241000", "160120241000", file().c_str(), "txt"),
      RTF_SUCCESS);
  EXPECT_EQ(Documents(), "3");
  ASSERT_EQ(shop->ProcessEJournalReportByDate(kFirstDay, "160120241059", file().c_str(), "txt"),
            RTF_SUCCESS);
  EXPECT_EQ(Documents(), "123Z");
}

TEST_F(JournalFilesTest, ClosuresTakeInTheDayThatIsOpen) {
  ASSERT_EQ(shop->ProcessEJournalReportByZNumber(1, 1, file().c_str(), ""), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "12Z");
  ASSERT_EQ(shop->ProcessEJournalReportByZNumber(2, 9999, file().c_str(), "txt"), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "34");
}

TEST_F(JournalFilesTest, DatesAndClosuresHoldTogether) {
  ASSERT_EQ(shop->ProcessEJournalReportByDateZNumber(kFirstDay, "160120241030", 2, 2,
                                                     file().c_str(), "txt"),
            RTF_SUCCESS);
  EXPECT_EQ(Documents(), "3");
  EXPECT_EQ(shop->ProcessEJournalReportByDateZNumber(kFirstDay, "150120242359", 2, 2,
                                                     file().c_str(), "txt"),
            RTF_E_NOEXIST);
}

TEST_F(JournalFilesTest, NumbersLeaveOutWhatHasNone) {
  // Receipts 1 of either day, and the invoice, which is the first of its series.
  ASSERT_EQ(
      shop->ProcessEJournalReportByDateNumber(kFirstDay, kLastDay, 1, 1, file().c_str(), "txt"),
      RTF_SUCCESS);
  EXPECT_EQ(Documents(), "123");
  ASSERT_EQ(
      shop->ProcessEJournalReportByDateNumber(kFirstDay, kLastDay, 2, 9999, file().c_str(), "txt"),
      RTF_SUCCESS);
  EXPECT_EQ(Documents(), "4");
}

TEST_F(JournalFilesTest, KindsOfDocumentsAreBits) {
  const auto kinds = [&](int bits) {
    return shop->ProcessEJournalReportByDateNumberDocType(kFirstDay, kLastDay, 1, 9999, bits,
                                                          file().c_str(), "txt");
  };
  ASSERT_EQ(kinds(0x4), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "2");
  ASSERT_EQ(kinds(0x42), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "134Z");
  ASSERT_EQ(kinds(65535), RTF_SUCCESS);
  EXPECT_EQ(Documents(), "1234Z");
  EXPECT_EQ(kinds(0x8), RTF_E_NOEXIST);
  for (const int bits : {0, 1, 0x200, 65536, -1, INT_MIN}) {
    EXPECT_EQ(kinds(bits), RTF_E_ILLEGAL) << bits;
  }
}

TEST_F(JournalFilesTest, ASignedExtractEndsWithItsDigest) {
  ASSERT_EQ(shop->ProcessEJournalReportGlobal(file().c_str(), "stxt"), RTF_SUCCESS);
  const std::string text = ReadText("journal.txt");
  const size_t line = text.rfind("SHA-256 ");
  ASSERT_NE(line, text.npos);
  EXPECT_EQ(text.size() - line, 8u + 64u + 1u);
}

TEST_F(JournalFilesTest, WhatCannotBeIsRefusedWithoutAFile) {
  const std::string name = file();
  const char* const f = name.c_str();
  EXPECT_EQ(shop->ProcessEJournalReportByDate(kLastDay, kFirstDay, f, "txt"), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(shop->ProcessEJournalReportByDate("15012024", kLastDay, f, "txt"), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(shop->ProcessEJournalReportByDate(nullptr, nullptr, f, "txt"), RTF_EFPTR_BAD_DATE);
  for (const auto& [from, to] :
       {std::pair{0, 1}, {2, 1}, {1, 10000}, {-1, 5}, {1, INT_MAX}, {INT_MIN, INT_MAX}}) {
    EXPECT_EQ(shop->ProcessEJournalReportByZNumber(from, to, f, "txt"), RTF_E_ILLEGAL);
    EXPECT_EQ(shop->ProcessEJournalReportByDateZNumber(kFirstDay, kLastDay, from, to, f, "txt"),
              RTF_E_ILLEGAL);
    EXPECT_EQ(shop->ProcessEJournalReportByDateNumber(kFirstDay, kLastDay, from, to, f, "txt"),
              RTF_E_ILLEGAL);
  }
  EXPECT_EQ(shop->ProcessEJournalReportByZNumber(7, 8, f, "txt"), RTF_E_NOEXIST);
  EXPECT_EQ(shop->ProcessEJournalReportGlobal(f, "pdf"), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->ProcessEJournalReportGlobal("", "txt"), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->ProcessEJournalReportGlobal(nullptr, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->ProcessEJournalReportGlobal(Path("no/such/folder").c_str(), "txt"),
            RTF_E_FAILURE);
  shop->BeginFiscalReceipt(true);
  EXPECT_EQ(shop->ProcessEJournalReportGlobal(f, "txt"), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(FileCount(), 0u);
}

// --- A journal is never begun again

TEST_F(JournalFilesTest, AJournalWithEntriesStays) {
  const size_t entries = shop->store().journal().size();
  EXPECT_EQ(shop->InitJournal(), RTF_E_EXISTS);
  EXPECT_EQ(shop->store().journal().size(), entries);
  EXPECT_EQ(device.InitJournal(), RTF_SUCCESS);  // has none yet
  device.BeginNonFiscal();
  EXPECT_EQ(device.InitJournal(), RTF_EFPTR_WRONG_STATE);
}

// --- Reports of the fiscal memory

TEST_F(JournalFilesTest, AReportOfClosuresByNumber) {
  ASSERT_EQ(shop->PrintReport(RTF_FPTR_RT_EOD_ORDINAL, "0001", "0001"), RTF_SUCCESS);
  const std::string report = shop->paper_text().substr(paper_before.size());
  EXPECT_NE(report.find("MEMORIA FISCALE"), std::string::npos);
  EXPECT_NE(report.find("dalla chiusura 0001 alla 0001"), std::string::npos);
  EXPECT_NE(report.find("TOTALE DEL PERIODO                    3,00\n"), std::string::npos);
  EXPECT_EQ(shop->PrintReport(RTF_FPTR_RT_ORDINAL, "1", "0"), RTF_SUCCESS);  // to the last one
}

TEST_F(JournalFilesTest, AReportOfClosuresByDate) {
  EXPECT_EQ(shop->PrintReport(RTF_FPTR_RT_DATE, kFirstDay, "150120242359"), RTF_SUCCESS);
  EXPECT_EQ(shop->PrintReport(RTF_FPTR_RT_DATE, "160120240000", kLastDay), RTF_E_NOEXIST);
  EXPECT_EQ(shop->PrintReport(RTF_FPTR_RT_DATE, "1", "2"), RTF_EFPTR_BAD_DATE);
}

TEST_F(JournalFilesTest, ReportsThatCannotBeAreRefused) {
  for (const int type : {0, 4, -1}) EXPECT_EQ(shop->PrintReport(type, "1", "1"), RTF_E_ILLEGAL);
  for (const char* number : {"", "x", "1x", "-1", " 1", "10000", "99999999999"}) {
    EXPECT_EQ(shop->PrintReport(1, number, "1"), RTF_E_ILLEGAL) << number;
    EXPECT_EQ(shop->PrintReport(1, "1", number), RTF_E_ILLEGAL) << number;
  }
  EXPECT_EQ(shop->PrintReport(1, nullptr, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->PrintReport(1, "0", "1"), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->PrintReport(1, "2", "1"), RTF_E_ILLEGAL);
  EXPECT_EQ(shop->PrintReport(1, "2", "0"), RTF_E_NOEXIST);
  EXPECT_EQ(shop->PrintReport(1, "2", "3"), RTF_E_NOEXIST);
  EXPECT_EQ(shop->paper_text(), paper_before);
}

TEST_F(JournalFilesTest, APowerLossReportOfARegisterThatLostNone) {
  ASSERT_EQ(shop->PrintPowerLossReport(), RTF_SUCCESS);
  EXPECT_EQ(shop->paper_text().substr(paper_before.size()),
            "\n"
            "      INTERRUZIONI DI ALIMENTAZIONE\n"
            "               non fiscale\n"
            "\n"
            "Documenti interrotti                     0\n"
            "\n"
            "             16/01/2024 11:00\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  shop->BeginFiscalReceipt(true);
  EXPECT_EQ(shop->PrintPowerLossReport(), RTF_EFPTR_WRONG_STATE);
}

}  // namespace
}  // namespace lorimat
