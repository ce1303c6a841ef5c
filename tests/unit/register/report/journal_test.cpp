// The journal: what gets into it, and every way of selecting from it.
#include <algorithm>
#include <tuple>
#include <utility>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

// What is in the journal behind the fixture, with closure, number and time:
//   15/01 09:00 sale 1-1      10:00 invoice 1      11:00 credit note 1-2   12:00 abandoned
//   13:00 non-fiscal          14:00 sale 1-3       15:00 void 1-4          20:00 closing 1
//   16/01 09:00 sale 2-1      10:00 sale 2-2
class Journal : public ClockTest {
 protected:
  Journal() {
    At(15, 1, 9, 0);
    Simple("UNO");
    At(15, 1, 10, 0);
    shop.BeginDocInvoice("ROSSI", "", "", "", "");
    Line("FATTURATO");
    shop.PrintRecTotalEx(0, "0", true);
    At(15, 1, 11, 0);
    shop.BeginDocTelematicRefund(1, 1, "", "");
    Line("RESO");
    shop.PrintRecTotalEx(0, "0", true);
    At(15, 1, 12, 0);
    shop.BeginFiscalReceipt(false);
    Line("SMESSO");
    shop.ResetPrn();
    At(15, 1, 13, 0);
    shop.BeginNonFiscalJournal(true);
    shop.PrintNormal(RTF_FPTR_S_RECEIPT, "BUONGIORNO");
    shop.EndNonFiscal();
    shop.BeginNonFiscalJournal(false);
    shop.PrintNormal(RTF_FPTR_S_RECEIPT, "IN SEGRETO");
    shop.EndNonFiscal();
    At(15, 1, 14, 0);
    Simple("TRE");
    At(15, 1, 15, 0);
    shop.BeginDocTelematicCancel(0, 0, "", true, "VUOTO");
    At(15, 1, 20, 0);
    shop.PrintZReport();
    At(16, 1, 9, 0);
    Simple("QUATTRO");
    At(16, 1, 10, 0);
    Simple("CINQUE");
  }
  void Line(const char* description) {
    shop.PrintRecItemEx(0, description, 10000, 0, -1, 0, "", 1, true, "");
  }
  void Simple(const char* description) {
    shop.BeginFiscalReceipt(false);
    Line(description);
    shop.PrintRecTotalEx(0, "0", true);
  }

  // The void shows the line of what it takes back: "V3".
  // The marks of the entries that an extract holds, in its order; the code when it is refused.
  std::string Ask(int criteria, uint32_t from, uint32_t to, const char* from_date,
                  const char* to_date, int filter = 65535) {
    const size_t before = shop.paper_lines().size();
    const int code = shop.FiscalReportMessageEx(1, filter, criteria, 0, 0, from, to, from_date,
                                                to_date, "txt", "", 1);
    if (code != RTF_SUCCESS) {
      EXPECT_EQ(shop.paper_lines().size(), before);
      return std::to_string(code);
    }
    std::string found;
    for (size_t at = before; at < shop.paper_lines().size(); ++at) {
      for (const auto& [text, mark] : kMarks) {
        if (shop.paper_lines()[at].find(text) != std::string::npos) found += mark;
      }
    }
    return found;
  }
  std::string AskDates(const char* from, const char* to, int filter = 65535) {
    return Ask(2, 1, 9999, from, to, filter);
  }

  struct Mark {
    const char* text;
    char mark;
  };
  static constexpr Mark kMarks[] = {{"UNO  ", '1'},   {"FATTURATO", 'F'},  {"RESO  ", 'R'},
                                    {"SMESSO", 'A'},  {"BUONGIORNO", 'N'}, {"IN SEGRETO", '?'},
                                    {"TRE  ", '3'},   {"VUOTO", 'V'},      {"CHIUSURA N.", 'Z'},
                                    {"QUATTRO", '4'}, {"CINQUE", '5'}};

  VirtualRegister shop{Settings()};
};

TEST_F(Journal, HoldsEveryDocumentInItsOrder) {
  EXPECT_EQ(AskDates("010120240000", "311220242359"), "1FRAN3V3Z45");
}

TEST_F(Journal, ByDateAndTime) {
  EXPECT_EQ(AskDates("160120240000", "160120242359"), "45");
  EXPECT_EQ(AskDates("150120241000", "150120241200"), "FRA");
  EXPECT_EQ(AskDates("150120241001", "150120241100"), "R");
  EXPECT_EQ(AskDates("150120242001", "160120240859"), std::to_string(RTF_E_NOEXIST));
}

TEST_F(Journal, ByClosure) {
  EXPECT_EQ(Ask(3, 10001, 19999, "", ""), "1FRAN3V3Z");
  EXPECT_EQ(Ask(3, 20001, 29999, "", ""), "45");  // the day that is not closed yet
  EXPECT_EQ(Ask(3, 10001, 29999, "", ""), "1FRAN3V3Z45");
  EXPECT_EQ(Ask(3, 30001, 39999, "", ""), std::to_string(RTF_E_NOEXIST));
}

TEST_F(Journal, ByDocumentNumbers) {
  // Without the whole range, what has no number is left out; an invoice has its own.
  EXPECT_EQ(Ask(3, 10002, 10003, "", ""), "R3");
  EXPECT_EQ(Ask(3, 10001, 10001, "", ""), "1F");
  EXPECT_EQ(Ask(3, 10004, 20001, "", ""), "V34");
  EXPECT_EQ(Ask(4, 1, 2, "150120240000", "150120242359"), "1FR");
  EXPECT_EQ(Ask(4, 2, 2, "160120240000", "160120242359"), "5");
  EXPECT_EQ(Ask(4, 7, 9, "160120240000", "160120242359"), std::to_string(RTF_E_NOEXIST));
  EXPECT_EQ(Ask(3, 10000, 10002, "", ""), "1FR");
  EXPECT_EQ(Ask(4, 0, 2, "150120240000", "150120242359"), "1FR");
  // Dates alone do not look at the numbers.
  EXPECT_EQ(Ask(2, 2, 2, "160120240000", "160120242359"), "45");
}

TEST_F(Journal, ByKindOfDocument) {
  const char* from = "010120240000";
  const char* to = "311220242359";
  EXPECT_EQ(AskDates(from, to, 0x2), "1345");
  EXPECT_EQ(AskDates(from, to, 0x4), "F");
  EXPECT_EQ(AskDates(from, to, 0x8), "R");
  EXPECT_EQ(AskDates(from, to, 0x10), "V3");
  EXPECT_EQ(AskDates(from, to, 0x20), "A");
  EXPECT_EQ(AskDates(from, to, 0x40), "Z");
  EXPECT_EQ(AskDates(from, to, 0x100), "N");
  EXPECT_EQ(AskDates(from, to, 0x102), "1N345");
  EXPECT_EQ(AskDates(from, to, 0x80), std::to_string(RTF_E_NOEXIST));
  EXPECT_EQ(AskDates(from, to, 0), std::to_string(RTF_E_NOEXIST));
}

TEST_F(Journal, RangesThatCannotBeAreRefused) {
  const std::string illegal = std::to_string(RTF_E_ILLEGAL);
  EXPECT_EQ(Ask(1, 1, 9999, "", ""), illegal);
  EXPECT_EQ(Ask(0, 1, 9999, "", ""), illegal);
  EXPECT_EQ(Ask(3, 1, 9999, "", ""), illegal);       // no closure 0
  EXPECT_EQ(Ask(3, 20001, 19999, "", ""), illegal);  // backwards
  EXPECT_EQ(Ask(3, 10003, 10002, "", ""), illegal);
  EXPECT_EQ(Ask(3, 100000001, 100009999, "", ""), illegal);
  EXPECT_EQ(Ask(3, 4294967295u, 4294967295u, "", ""), illegal);
  EXPECT_EQ(Ask(4, 3, 2, "150120240000", "150120242359"), illegal);
  EXPECT_EQ(Ask(4, 1, 10000, "150120240000", "150120242359"), illegal);
  EXPECT_EQ(Ask(2, 1, 9999, "160120240000", "150120240000"), std::to_string(RTF_EFPTR_BAD_DATE));
}

TEST_F(Journal, AnExtractHoldsTheDocumentAsItWasPrinted) {
  ASSERT_EQ(shop.FiscalReportMessageEx(1, 0x8, 2, 0, 0, 1, 9999, "150120240000", "150120242359",
                                       "stxt", Path("journal.txt").c_str(), 2),
            RTF_SUCCESS);
  const std::string text = ReadText("journal.txt");
  const std::string expected =
      "             NEGOZIO DI PROVA\n"
      "        Via Esempio 1 - 00100 ROMA\n"
      "            P.IVA 01234567897\n"
      "\n"
      "          ESTRATTO DEL GIORNALE\n"
      " dal 15/01/2024 00:00 al 15/01/2024 23:59\n"
      "Documenti                                1\n"
      "------------------------------------------\n"
      "             NEGOZIO DI PROVA\n"
      "        Via Esempio 1 - 00100 ROMA\n"
      "            P.IVA 01234567897\n"
      "\n"
      "          DOCUMENTO COMMERCIALE\n"
      "          emesso per RESO MERCE\n"
      "\n"
      "Documento di riferimento: 0001-0001\n"
      "\n"
      "DESCRIZIONE                IVA Prezzo(EUR)\n"
      "RESO                       22%        1,00\n"
      "\n"
      "TOTALE COMPLESSIVO                    1,00\n"
      "di cui IVA                            0,18\n"
      "\n"
      "Pagamento contante                    1,00\n"
      "Importo rimborsato                    1,00\n"
      "\n"
      "             15/01/2024 11:00\n"
      "          DOCUMENTO N. 0001-0002\n"
      "            RT 99LRM0000001VR\n"
      "------------------------------------------\n"
      "              FINE ESTRATTO\n"
      "------------------------------------------\n";
  EXPECT_EQ(text.substr(0, expected.size()), expected);
  EXPECT_EQ(text.substr(expected.size(), 8), "SHA-256 ");
  EXPECT_EQ(text.size(), expected.size() + 8 + 64 + 1);
}

TEST_F(Journal, AnExtractIsNoPartOfTheJournal) {
  const size_t entries = shop.store().journal().size();
  EXPECT_EQ(AskDates("160120240000", "160120242359"), "45");
  EXPECT_EQ(shop.PrintXReport(), RTF_SUCCESS);
  EXPECT_EQ(shop.store().journal().size(), entries);
  EXPECT_EQ(AskDates("160120240000", "160120242359"), "45");
}

TEST_F(Journal, ADocumentThatIsHeldOpenGetsInWithItsAttachments) {
  const size_t entries = shop.store().journal().size();
  shop.SetDataInternal(148, "0");
  Simple("TENUTO");
  EXPECT_EQ(shop.store().journal().size(), entries);
  shop.PrintRecMessage("ALLEGATO");
  shop.EndFiscalReceipt(true);
  ASSERT_EQ(shop.store().journal().size(), entries + 1);
  const std::vector<std::string> lines = shop.store().journal().back().lines;
  EXPECT_NE(std::find(lines.begin(), lines.end(), "ALLEGATO"), lines.end());
  EXPECT_EQ(shop.store().journal().back().number, 3);
}

// A store leaves out by itself what lies outside of the dates; a selection does not rest on it.
TEST(JournalSelectionTest, TakesTheMinutesOfItsDatesAndNoOthers) {
  JournalSelection selection;
  selection.by_date = true;
  ASSERT_TRUE(ParseMinute("150120240900", &selection.from));
  ASSERT_TRUE(ParseMinute("150120241000", &selection.to));
  const struct {
    const char* time;
    bool selected;
  } rows[] = {{"150120240859", false}, {"150120240900", true},  {"150120240930", true},
              {"150120241000", true},  {"150120241001", false}, {"160120240930", false}};
  for (const auto& row : rows) {
    JournalEntry entry;
    ASSERT_TRUE(ParseMinute(row.time, &entry.time));
    EXPECT_EQ(Selects(selection, entry), row.selected) << row.time;
  }
}

// Of closures with numbers from one document on and up to another; what has no number, a closing,
// is part of whole ones alone.
TEST(JournalSelectionTest, TakesWhatLiesBetweenTwoDocuments) {
  using Place = std::pair<int, int>;  // closure and number
  constexpr int kAll = JournalSelection::kLastNumber;
  for (const Place& from : {Place{2, 0}, Place{2, 1}, Place{2, 2}, Place{3, 4}, Place{0, 1}}) {
    for (const Place& to :
         {Place{2, 2}, Place{2, 3}, Place{4, 1}, Place{4, kAll}, Place{9, kAll}}) {
      JournalSelection selection;
      std::tie(selection.from_closure, selection.from_number) = from;
      std::tie(selection.to_closure, selection.to_number) = to;
      for (int closure = 0; closure <= 5; ++closure) {
        for (const int number : {0, 1, 2, 3, 4, 5, kAll}) {
          JournalEntry entry;
          entry.closure = closure;
          entry.number = number;
          const bool whole = from.second <= 1 && to.second == kAll;
          const bool wanted =
              whole ? closure >= from.first && closure <= to.first
                    : number != 0 && Place{closure, number} >= from && Place{closure, number} <= to;
          EXPECT_EQ(Selects(selection, entry), wanted)
              << from.first << '.' << from.second << " to " << to.first << '.' << to.second << ": "
              << closure << '.' << number;
        }
      }
    }
  }
}

// The numbers of a day begin anew with each: within dates they are those of any closing, or of
// some.
TEST(JournalSelectionTest, TakesTheNumbersOfItsDates) {
  JournalSelection selection;
  selection.by_date = true;
  for (const bool in_closures : {false, true}) {
    selection.in_closures = in_closures;
    selection.from_closure = 2;
    selection.to_closure = 3;
    for (const auto& [from, to] : {std::pair{1, 3}, std::pair{2, 3}, std::pair{2, 9999}}) {
      selection.from_number = from;
      selection.to_number = to;
      for (int closure = 1; closure <= 4; ++closure) {
        for (int number = 0; number <= 4; ++number) {
          JournalEntry entry;
          entry.closure = closure;
          entry.number = number;
          const bool wanted =
              number >= from && number <= to && (!in_closures || closure == 2 || closure == 3);
          EXPECT_EQ(Selects(selection, entry), wanted) << closure << '.' << number;
        }
      }
    }
  }
}

}  // namespace
}  // namespace lorimat
