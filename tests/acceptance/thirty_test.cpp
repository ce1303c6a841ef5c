// A day of thirty documents of every kind, run by the console. The test writes the batch from a
// list of its own and adds that list up by itself, in whole cents; the papers of the day have to
// come to the same sums.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"
#include "thirty_documents.h"

using testing::HasSubstr;

namespace {

using namespace thirty;

constexpr const char* kClock = "2024-03-15 10:30";

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The papers of a roll, by its cuts.
std::vector<std::string> Papers(const std::string& roll) {
  std::vector<std::string> found(1);
  for (const std::string& line : SplitLines(roll)) {
    if (line == std::string(42, '-')) {
      found.emplace_back();
    } else {
      found.back() += line + "\n";
    }
  }
  if (found.back().empty()) found.pop_back();
  return found;
}

int Times(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

// The one paper that holds a text; a test that finds none or two fails.
std::string PaperWith(const std::vector<std::string>& all, const std::string& what) {
  std::string found;
  int count = 0;
  for (const std::string& paper : all) {
    if (paper.find(what) == paper.npos) continue;
    found = paper;
    ++count;
  }
  EXPECT_EQ(count, 1) << "papers with " << what;
  return found;
}

// Rows of a name and a figure, by name, from the one behind `begin` to the next blank line. A row
// "  di cui ..." belongs to the one above it.
std::map<std::string, std::string> Rows(const std::string& paper, const std::string& begin,
                                        bool with_begin) {
  std::map<std::string, std::string> found;
  bool inside = false;
  std::string above;
  for (const std::string& line : SplitLines(paper)) {
    if (!inside) {
      inside = line.rfind(begin, 0) == 0;
      if (!inside || !with_begin) continue;
    }
    if (line.empty()) break;
    const size_t end = line.find("  ", 2);
    const size_t figure = line.find_last_of(' ');
    if (end == line.npos) {
      ADD_FAILURE() << "no row: " << line;
      continue;
    }
    std::string name = line.substr(0, end);
    if (name.rfind("  ", 0) == 0) {
      name = above + ", " + name.substr(2);
    } else {
      above = name;
    }
    EXPECT_EQ(found.count(name), 0u) << name << " stands twice";
    found[name] = line.substr(figure + 1);
  }
  return found;
}

std::string NumberText(int number) { return "DOCUMENTO N. 0001-" + Padded(number, 4) + "\n"; }

class ThirtyDocuments : public testing::Test {
 protected:
  void SetUp() override {
    const std::string lines = list.batch() +
                              // receipts, credit notes, voids and non-fiscal documents so far
                              "INFO TIPO=1001\nINFO TIPO=1118\nINFO TIPO=1115\nINFO TIPO=1112\n"
                              "REPORT TIPO=XGIORNO\n"
                              "AZZGIO\n"
                              "DGFE DAZETA=1, FILE='" +
                              folder.Path("journal.txt") +
                              "'\n"
                              "REPORT TIPO=MEMNUM, DANUM=1, ANUM=1\n";
    const ProgramRun run = RunConsole({"run", folder.Write("day.cmd", lines), "--clock", kClock});
    ASSERT_EQ(run.exit_code, 0) << run.errors;
    // Standard error holds the answers and nothing else.
    for (const std::string& line : SplitLines(run.errors)) {
      const std::string before = ": answer: ";
      const size_t at = line.find(before);
      ASSERT_NE(at, line.npos) << line;
      answers.push_back(line.substr(at + before.size()));
    }
    roll = run.output;
    all = Papers(roll);
  }

  // The paper of a document, by the number that its place in the list gives it.
  std::string PaperOf(const Document& document) const {
    int numbered = 0;
    int invoices = 0;
    for (const Document& one : list.documents()) {
      if (one.kind() == Kind::kInvoice) ++invoices;
      if (one.kind() == Kind::kSale || List::Sign(one.kind()) < 0) ++numbered;
      if (one.index() == document.index()) break;
    }
    if (document.kind() == Kind::kAbandoned) return PaperWith(all, "*** DOCUMENTO ANNULLATO ***");
    if (document.kind() == Kind::kNote) return PaperWith(all, "DOCUMENTO GESTIONALE");
    if (document.kind() == Kind::kInvoice) {
      return PaperWith(all, "FATTURA N. " + std::to_string(invoices) + "\n");
    }
    return PaperWith(all, NumberText(numbered));
  }

  TestFolder folder;
  const List list;
  std::string roll;
  std::vector<std::string> all;
  std::vector<std::string> answers;  // to the queries
};

}  // namespace

TEST_F(ThirtyDocuments, TheClosingAddsUpToTheList) {
  ASSERT_GE(list.documents().size(), 30u);
  const std::string closing = PaperWith(all, "CHIUSURA GIORNALIERA");
  EXPECT_EQ(Rows(closing, "Documenti ", true), list.day_rows());
  EXPECT_EQ(Rows(closing, "PAGAMENTI", false), list.tender_rows());
  EXPECT_EQ(Rows(closing, "IVA", false), list.vat_rows(true));
  EXPECT_EQ(Times(closing, "CHIUSURA N. 0001\n"), 1);
}

TEST_F(ThirtyDocuments, TheReadingsShowTheSumsOfTheClosing) {
  for (const char* title : {"LETTURA GIORNALIERA", "LETTURA GENERALE"}) {
    const std::string reading = PaperWith(all, title);
    EXPECT_EQ(Rows(reading, "Documenti ", true), list.day_rows()) << title;
    EXPECT_EQ(Rows(reading, "PAGAMENTI", false), list.tender_rows()) << title;
    EXPECT_EQ(Rows(reading, "IVA", false), list.vat_rows(true)) << title;
  }
}

TEST_F(ThirtyDocuments, TheFiscalMemoryHoldsTheClosing) {
  std::map<std::string, std::string> expected = list.vat_rows(false);
  const std::map<std::string, std::string> day = list.day_rows();
  for (const char* name : {"Documenti", "Fatture", "TOTALE GIORNALIERO", "GRAN TOTALE"}) {
    expected[name] = day.at(name);
  }
  const std::string memory = PaperWith(all, "MEMORIA FISCALE");
  EXPECT_EQ(Rows(memory, "CHIUSURA N. 0001", false), expected);
  EXPECT_EQ(Rows(memory, "Chiusure", true),
            (std::map<std::string, std::string>{
                {"Chiusure", "1"}, {"TOTALE DEL PERIODO", day.at("TOTALE GIORNALIERO")}}));
}

TEST_F(ThirtyDocuments, EveryKindIsCounted) {
  std::vector<std::string> counts;
  for (const Kind kind : {Kind::kSale, Kind::kCreditNote, Kind::kVoid, Kind::kNote}) {
    counts.push_back(std::to_string(list.Count(kind)));
  }
  EXPECT_EQ(answers, counts);
}

TEST_F(ThirtyDocuments, EveryPaperShowsItsLinesAndSums) {
  for (const Document& document : list.documents()) {
    SCOPED_TRACE(document.batch());
    const std::string paper = "\n" + PaperOf(document);
    for (const PaperLine& line : document.lines()) {
      EXPECT_EQ(Times(roll, line.description), list.LinesWith(line.description))
          << line.description;
      const size_t at = paper.find(line.description);
      ASSERT_NE(at, paper.npos) << line.description;
      const std::string row = paper.substr(at, paper.find('\n', at) - at);
      EXPECT_EQ(row.substr(row.find_last_of(' ') + 1), OnPaper(line.amount)) << row;
    }
    if (List::Sign(document.kind()) == 0) {
      EXPECT_THAT(paper, testing::Not(HasSubstr("TOTALE COMPLESSIVO")));
      continue;
    }
    const std::map<std::string, std::string> sums = Rows(paper, "TOTALE COMPLESSIVO", true);
    EXPECT_EQ(sums,
              (std::map<std::string, std::string>{{"TOTALE COMPLESSIVO", OnPaper(document.total())},
                                                  {"di cui IVA", OnPaper(document.tax())}}));
  }
}

// Numbers run from the first on, each on one paper, in the order of the list.
TEST_F(ThirtyDocuments, NumbersHaveNeitherGapNorDouble) {
  const int numbered =
      list.Count(Kind::kSale) + list.Count(Kind::kCreditNote) + list.Count(Kind::kVoid);
  size_t behind = 0;
  for (int number = 1; number <= numbered; ++number) {
    EXPECT_EQ(Times(roll, NumberText(number)), 1) << number;
    const size_t at = roll.find(NumberText(number));
    EXPECT_GT(at, behind) << number;
    behind = at;
  }
  EXPECT_EQ(Times(roll, "DOCUMENTO N. "), numbered);
  EXPECT_EQ(Times(roll, "FATTURA N. "), list.Count(Kind::kInvoice));
  for (int number = 1; number <= list.Count(Kind::kInvoice); ++number) {
    EXPECT_EQ(Times(roll, "FATTURA N. " + std::to_string(number) + "\n"), 1) << number;
  }
  // Nothing else came out: two readings, the closing and the report of the fiscal memory.
  EXPECT_EQ(all.size(), list.documents().size() + 4);
}

TEST_F(ThirtyDocuments, TheJournalHoldsEveryDocumentOnceAsItWasPrinted) {
  const std::vector<std::string> journal = Papers(folder.Read("journal.txt"));
  // The head, the documents in the order of the list, the closing, the foot.
  ASSERT_EQ(journal.size(), list.documents().size() + 3);
  EXPECT_EQ(Rows(journal.front(), "Documenti ", true),
            (std::map<std::string, std::string>{
                {"Documenti", std::to_string(list.documents().size() + 1)}}));
  for (const Document& document : list.documents()) {
    SCOPED_TRACE(document.batch());
    EXPECT_EQ(journal[static_cast<size_t>(document.index())], PaperOf(document));
    for (const PaperLine& line : document.lines()) {
      EXPECT_EQ(Times(folder.Read("journal.txt"), line.description),
                list.LinesWith(line.description))
          << line.description;
    }
  }
  EXPECT_EQ(journal[journal.size() - 2], PaperWith(all, "CHIUSURA GIORNALIERA"));
  EXPECT_THAT(journal.back(), HasSubstr("FINE ESTRATTO"));
}
