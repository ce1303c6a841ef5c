// What the fiscal memory tells of the closed days, on paper and in figures.
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

// Two closed days: 10,00 in department 1 on the 15th, 5,50 in department 2 on the 16th.
class FiscalMemory : public ClockTest {
 protected:
  FiscalMemory() {
    At(15, 1, 10, 30);
    RunReceipt(1, 100000);
    At(15, 1, 20, 0);
    memory.PrintZReport();
    At(16, 1, 9, 0);
    RunReceipt(2, 55000);
    At(16, 1, 20, 0);
    memory.PrintZReport();
    seen = memory.paper_lines().size();
  }
  void RunReceipt(int department, int64_t price) {
    memory.BeginFiscalReceipt(false);
    memory.PrintRecItemEx(0, "", price, 0, -1, 0, "", department, true, "");
    memory.PrintRecTotalEx(0, "0", true);
  }
  int Ask(int source, int criteria, uint32_t from, uint32_t to, const char* from_date,
          const char* to_date) {
    return memory.FiscalReportMessageEx(source, 65535, criteria, 0, 0, from, to, from_date, to_date,
                                        "txt", "", 1);
  }
  std::string Fresh() {
    std::string text;
    for (; seen < memory.paper_lines().size(); ++seen) text += memory.paper_lines()[seen] + "\n";
    return text;
  }

  VirtualRegister memory{Settings()};
  size_t seen = 0;
};

TEST_F(FiscalMemory, ByClosureNumbers) {
  ASSERT_EQ(Ask(0, 3, 1, 9999, "", ""), RTF_SUCCESS);
  EXPECT_EQ(Fresh(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "             MEMORIA FISCALE\n"
            "      dalla chiusura 0001 alla 9999\n"
            "\n"
            "CHIUSURA N. 0001          15/01/2024 20:00\n"
            "Documenti                                1\n"
            "Fatture                                  0\n"
            "Totale 22% n. 1                      10,00\n"
            "Imponibile 22%                        8,20\n"
            "Imposta 22%                           1,80\n"
            "TOTALE GIORNALIERO                   10,00\n"
            "GRAN TOTALE                          10,00\n"
            "\n"
            "CHIUSURA N. 0002          16/01/2024 20:00\n"
            "Documenti                                1\n"
            "Fatture                                  0\n"
            "Totale 10% n. 1                       5,50\n"
            "Imponibile 10%                        5,00\n"
            "Imposta 10%                           0,50\n"
            "TOTALE GIORNALIERO                    5,50\n"
            "GRAN TOTALE                          15,50\n"
            "\n"
            "Chiusure                                 2\n"
            "TOTALE DEL PERIODO                   15,50\n"
            "\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  ASSERT_EQ(Ask(0, 3, 2, 2, "", ""), RTF_SUCCESS);
  const std::string second = Fresh();
  EXPECT_EQ(second.find("CHIUSURA N. 0001"), std::string::npos);
  EXPECT_NE(second.find("CHIUSURA N. 0002"), std::string::npos);
}

TEST_F(FiscalMemory, ByDates) {
  ASSERT_EQ(Ask(0, 2, 0, 0, "150120240000", "150120242359"), RTF_SUCCESS);
  const std::string first = Fresh();
  EXPECT_NE(first.find(" dal 15/01/2024 00:00 al 15/01/2024 23:59\n"), std::string::npos);
  EXPECT_NE(first.find("CHIUSURA N. 0001"), std::string::npos);
  EXPECT_EQ(first.find("CHIUSURA N. 0002"), std::string::npos);
  // To the minute, both ends counted.
  EXPECT_EQ(Ask(0, 2, 0, 0, "150120242000", "150120242000"), RTF_SUCCESS);
  EXPECT_EQ(Ask(0, 2, 0, 0, "150120242001", "160120241959"), RTF_E_NOEXIST);
}

TEST_F(FiscalMemory, SumsOfAPeriod) {
  ASSERT_EQ(Ask(2, 2, 0, 0, "150120240000", "160120242359"), RTF_SUCCESS);
  EXPECT_EQ(Fresh(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "        CORRISPETTIVI DEL PERIODO\n"
            " dal 15/01/2024 00:00 al 16/01/2024 23:59\n"
            "\n"
            "Chiusure                                 2\n"
            "Documenti                                2\n"
            "Fatture                                  0\n"
            "Documenti di vendita                     2\n"
            "Vendite                              15,50\n"
            "Resi                                  0,00\n"
            "Annulli                               0,00\n"
            "Totale non riscosso                   0,00\n"
            "TOTALE DEL PERIODO                   15,50\n"
            "\n"
            "IVA\n"
            "Totale 22% n. 1                      10,00\n"
            "Imponibile 22%                        8,20\n"
            "Imposta 22%                           1,80\n"
            "Totale 10% n. 1                       5,50\n"
            "Imponibile 10%                        5,00\n"
            "Imposta 10%                           0,50\n"
            "\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  ASSERT_EQ(memory.PrintPeriodicTotalsReport("160120240000", "160120242359"), RTF_SUCCESS);
  EXPECT_NE(Fresh().find("TOTALE DEL PERIODO                    5,50\n"), std::string::npos);
}

TEST_F(FiscalMemory, ListOfDocuments) {
  ASSERT_EQ(Ask(4, 4, 0, 0, "150120240000", "160120242359"), RTF_SUCCESS);
  EXPECT_EQ(Fresh(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "             ELENCO DOCUMENTI\n"
            " dal 15/01/2024 00:00 al 16/01/2024 23:59\n"
            "\n"
            "0001-0001 15/01/2024 10:30 VEN       10,00\n"
            "0002-0001 16/01/2024 09:00 VEN        5,50\n"
            "\n"
            "Documenti                                2\n"
            "TOTALE                               15,50\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  // To the minute, both ends counted.
  ASSERT_EQ(Ask(4, 2, 0, 0, "150120241030", "160120240859"), RTF_SUCCESS);
  const std::string first = Fresh();
  EXPECT_NE(first.find("0001-0001 15/01/2024 10:30 VEN       10,00\n"), std::string::npos);
  EXPECT_NE(first.find("Documenti                                1\n"), std::string::npos);
  ASSERT_EQ(Ask(4, 2, 0, 0, "150120241031", "160120240900"), RTF_SUCCESS);
  const std::string second = Fresh();
  EXPECT_NE(second.find("0002-0001 16/01/2024 09:00 VEN        5,50\n"), std::string::npos);
  EXPECT_NE(second.find("Documenti                                1\n"), std::string::npos);
  EXPECT_EQ(Ask(4, 4, 2, 9, "150120240000", "160120242359"), RTF_E_NOEXIST);
  EXPECT_EQ(Ask(4, 4, 9, 2, "150120240000", "160120242359"), RTF_E_ILLEGAL);
}

TEST_F(FiscalMemory, RangesThatCannotBeAreRefused) {
  const size_t before = memory.paper_lines().size();
  EXPECT_EQ(Ask(0, 3, 0, 9999, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Ask(0, 3, 1, 10000, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Ask(0, 3, 2, 1, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Ask(0, 3, 3, 9, "", ""), RTF_E_NOEXIST);
  EXPECT_EQ(Ask(0, 1, 1, 9, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Ask(0, 4, 1, 9, "150120240000", "160120242359"), RTF_E_ILLEGAL);
  for (const char* date : {"", "1501202400", "15012024000", "1501202400000", "310220240000",
                           "000120240000", "150020240000", "151320240000", "150120242400",
                           "150120240060", "15012024 000", "-50120240000"}) {
    for (const int source : {0, 1, 2, 4}) {
      EXPECT_EQ(Ask(source, 2, 1, 9, date, "160120242359"), RTF_EFPTR_BAD_DATE) << date;
      EXPECT_EQ(Ask(source, 2, 1, 9, "150120240000", date), RTF_EFPTR_BAD_DATE) << date;
    }
  }
  EXPECT_EQ(Ask(0, 2, 0, 0, "160120240000", "150120240000"), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(
      memory.FiscalReportMessageEx(0, 65535, 2, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr, 1),
      RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(memory.paper_lines().size(), before);
}

}  // namespace
}  // namespace lorimat
