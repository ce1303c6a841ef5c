// A day of thirty documents of every kind, run by the console. The test writes the batch from a
// list of its own and adds that list up by itself, in whole cents; the papers of the day have to
// come to the same sums.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "program_run.h"

using testing::HasSubstr;

namespace {

constexpr const char* kClock = "2024-03-15 10:30";

using Cents = int64_t;

// a / b, half away from zero; b is above 0.
int64_t Rounded(int64_t a, int64_t b) {
  return (2 * (a < 0 ? -a : a) + b) / (2 * b) * (a < 0 ? -1 : 1);
}

std::string WithSeparator(Cents cents, char separator) {
  const Cents size = cents < 0 ? -cents : cents;
  char text[40];
  std::snprintf(text, sizeof text, "%s%lld%c%02lld", cents < 0 ? "-" : "",
                static_cast<long long>(size / 100), separator, static_cast<long long>(size % 100));
  return text;
}

std::string OnPaper(Cents cents) { return WithSeparator(cents, ','); }
std::string InBatch(Cents cents) { return WithSeparator(cents, '.'); }

std::string Padded(int number, int width) {
  std::string text = std::to_string(number);
  return std::string(text.size() < static_cast<size_t>(width) ? width - text.size() : 0, '0') +
         text;
}

// The VAT entries of the register: departments 1 to 5 have one each, the others the first.
struct VatEntry {
  int rate;
  const char* name;
};
constexpr VatEntry kVat[] = {{0, ""}, {22, "22%"}, {10, "10%"}, {5, "5%"}, {4, "4%"}, {0, "ES*"}};
int VatOf(int department) { return department <= 5 ? department : 1; }

// Words of the language and names on paper.
const std::map<std::string, std::string> kTenders = {
    {"CONTANTI", "Pagamento contante"},
    {"ASSEGNI", "Pagamento assegno"},
    {"CARTA", "Pagamento elettronico"},
    {"BANCOMAT", "Pagamento bancomat"},
    {"TICKET", "Ticket"},
    {"NRFATTURE", "Non riscosso fatture"},
    {"NRSERVIZI", "Non riscosso servizi"},
    {"NRSSN", "Non riscosso SSN"},
    {"SCONTOPAG", "Sconto a pagare"},
    {"CREDITO", "Non riscosso"},
    {"ST01", "Pagamento elettronico 01"},
    {"VOUCHER", "Buono multiuso"},
};
bool IsNotPaid(const std::string& tender) {
  return tender == "CREDITO" || tender.rfind("NR", 0) == 0;
}

enum class Kind { kSale, kInvoice, kCreditNote, kVoid, kAbandoned, kNote };

// A line of a document as the paper has to show it.
struct PaperLine {
  std::string description;
  Cents amount;
};

// A document of the list: its lines in the batch, and what they come to.
class Document {
 public:
  Document(int index, Kind kind) : kind_(kind), index_(index) {}

  Kind kind() const { return kind_; }
  int index() const { return index_; }
  const std::string& batch() const { return batch_; }
  const std::vector<PaperLine>& lines() const { return lines_; }
  const std::map<int, Cents>& by_vat() const { return by_vat_; }
  const std::map<std::string, Cents>& by_tender() const { return by_tender_; }

  Cents total() const {
    Cents sum = 0;
    for (const auto& [vat, gross] : by_vat_) sum += gross;
    return sum;
  }
  std::map<int, Cents> tax_by_vat() const {
    std::map<int, Cents> taxes;
    for (const auto& [vat, gross] : by_vat_) {
      taxes[vat] = Rounded(gross * kVat[vat].rate, 100 + kVat[vat].rate);
    }
    return taxes;
  }
  Cents tax() const {
    Cents sum = 0;
    for (const auto& [vat, tax] : tax_by_vat()) sum += tax;
    return sum;
  }

  Document& Command(const std::string& line) {
    batch_ += line + "\n";
    return *this;
  }

  // A text that no other line of the day has.
  std::string mark() { return "D" + Padded(index_, 2) + "/" + Padded(++marks_, 2); }

  Document& Sell(int department, Cents price) { return Enter(department, price, 0, ""); }
  // A quantity in thousandths.
  Document& Sell(int department, int quantity, Cents price) {
    return Enter(department, price, quantity, "");
  }
  // A line that takes off: RESO, STORNO, ACCONTO, MONOUSO, COUPON.
  Document& TakeOff(const std::string& how, int department, Cents price, int quantity = 0) {
    return Enter(department, price, quantity, how);
  }
  // A line that was adjusted goes back with its adjustments.
  Document& TakeBackAdjusted(int department, Cents price, Cents came_to) {
    const std::string text = mark();
    Command("VEND REP=" + std::to_string(department) + ", PRE=" + InBatch(price) + ", DES='" +
            text + "', STORNO");
    lines_.push_back({text, -came_to});
    Add(department, -came_to);
    last_ = 0;
    return *this;
  }

  Document& Discount(Cents amount) { return AdjustLine("SCONTO IMP=" + InBatch(amount), -amount); }
  Document& Surcharge(Cents amount) {
    return AdjustLine("MAGGIORAZ IMP=" + InBatch(amount), amount);
  }
  // Percentages count hundredths of a percent.
  Document& PercentOff(int percentage) {
    return AdjustLine("PERCA PERC=" + InBatch(percentage), -Rounded(last_ * percentage, 10000));
  }
  Document& PercentOn(int percentage) {
    return AdjustLine("PERCB PERC=" + InBatch(percentage), Rounded(last_ * percentage, 10000));
  }
  // On all that the department sold on this document.
  Document& DepartmentPercentOff(int department, int percentage) {
    const Cents amount = -Rounded(by_department_[department] * percentage, 10000);
    const std::string text = mark();
    Command("PERCA PERC=" + InBatch(percentage) + ", REP=" + std::to_string(department) +
            ", DES='" + text + "'");
    lines_.push_back({text, amount});
    Add(department, amount);
    return *this;
  }
  Document& SubtotalDiscount(Cents amount) {
    return AdjustSubtotal("SCONTO IMP=" + InBatch(amount), -amount);
  }
  Document& SubtotalSurcharge(Cents amount) {
    return AdjustSubtotal("MAGGIORAZ IMP=" + InBatch(amount), amount);
  }
  Document& SubtotalPercentOff(int percentage) {
    return AdjustSubtotal("PERCA PERC=" + InBatch(percentage),
                          -Rounded(total() * percentage, 10000));
  }
  Document& SubtotalPercentOn(int percentage) {
    return AdjustSubtotal("PERCB PERC=" + InBatch(percentage),
                          Rounded(total() * percentage, 10000));
  }

  // By department key: no text of its own.
  Document& Key(const std::string& amount_key, int department, Cents amount) {
    Command(amount_key);
    Add(department, amount);
    last_ = amount;
    return *this;
  }

  // The register compares its subtotal with the one of the list.
  Document& compare() { return Command("CHKSUB IMP=" + InBatch(total())); }

  Document& Pay(const std::string& tender) {
    Command("CHIU TEND=" + tender);
    return Collect(tender, rest());
  }
  // What goes beyond the rest comes back as change.
  Document& Pay(const std::string& tender, Cents given) {
    Command("CHIU TEND=" + tender + ", IMP=" + InBatch(given));
    return Collect(tender, std::min(given, rest()));
  }
  Document& Collect(const std::string& tender, Cents amount) {
    by_tender_[tender] += amount;
    paid_ += amount;
    return *this;
  }
  Cents rest() const { return total() - paid_; }

  // The whole of another document, with its money.
  void TakeOver(const Document& other) {
    by_vat_ = other.by_vat_;
    by_tender_ = other.by_tender_;
    for (const auto& [vat, gross] : by_vat_) paid_ += gross;
  }

 private:
  Document& Enter(int department, Cents price, int quantity, const std::string& how) {
    const std::string text = mark();
    const Cents amount = quantity == 0 ? price : Rounded(price * quantity, 1000);
    std::string line = "VEND REP=" + std::to_string(department);
    if (quantity != 0)
      line += ", QTA=" + std::to_string(quantity / 1000) + "." + Padded(quantity % 1000, 3);
    line += ", PRE=" + InBatch(price) + ", DES='" + text + "'";
    if (!how.empty()) line += ", " + how;
    Command(line);
    const Cents signed_amount = how.empty() ? amount : -amount;
    lines_.push_back({text, signed_amount});
    Add(department, signed_amount);
    last_ = amount;
    return *this;
  }

  Document& AdjustLine(const std::string& line, Cents amount) {
    const std::string text = mark();
    Command(line + ", DES='" + text + "'");
    lines_.push_back({text, amount});
    Add(department_, amount);
    last_ += amount;
    return *this;
  }

  // Spread by the largest remainders; among equal ones the lower VAT entry is the first.
  Document& AdjustSubtotal(const std::string& line, Cents amount) {
    const std::string text = mark();
    Command(line + ", SUBTOT, DES='" + text + "'");
    lines_.push_back({text, amount});
    const Cents whole = total();
    const Cents size = amount < 0 ? -amount : amount;
    std::vector<std::pair<Cents, int>> remainders;
    Cents left = size;
    std::map<int, Cents> shares;
    for (const auto& [vat, gross] : by_vat_) {
      if (gross <= 0) continue;
      shares[vat] = size * gross / whole;
      left -= shares[vat];
      remainders.push_back({-(size * gross % whole), vat});
    }
    std::sort(remainders.begin(), remainders.end());
    for (Cents cent = 0; cent < left; ++cent)
      ++shares[remainders[static_cast<size_t>(cent)].second];
    for (const auto& [vat, share] : shares) by_vat_[vat] += amount < 0 ? -share : share;
    return *this;
  }

  void Add(int department, Cents amount) {
    by_vat_[VatOf(department)] += amount;
    by_department_[department] += amount;
    department_ = department;
  }

  Kind kind_;
  int index_;
  int marks_ = 0;
  std::string batch_;
  std::vector<PaperLine> lines_;
  std::map<int, Cents> by_vat_;
  std::map<int, Cents> by_department_;
  std::map<std::string, Cents> by_tender_;
  int department_ = 0;  // of the last line
  Cents last_ = 0;      // what the last line came to, with its adjustments
  Cents paid_ = 0;
};

class List {
 public:
  List() { Write(); }

  const std::vector<Document>& documents() const { return documents_; }
  std::string batch() const {
    std::string text;
    for (const Document& document : documents_) text += document.batch();
    return text;
  }
  int Count(Kind kind) const {
    return static_cast<int>(std::count_if(documents_.begin(), documents_.end(),
                                          [&](const Document& one) { return one.kind() == kind; }));
  }
  Cents Total(Kind kind) const {
    Cents sum = 0;
    for (const Document& one : documents_) {
      if (one.kind() == kind) sum += one.total();
    }
    return sum;
  }
  // 1 for what adds to the day, -1 for what takes off, 0 for what does not count.
  static int Sign(Kind kind) {
    if (kind == Kind::kSale || kind == Kind::kInvoice) return 1;
    return kind == Kind::kCreditNote || kind == Kind::kVoid ? -1 : 0;
  }
  // The rows of the closing from "Documenti" on, by section.
  std::map<std::string, std::string> day_rows() const {
    const Cents sales = Total(Kind::kSale) + Total(Kind::kInvoice);
    const Cents net = sales - Total(Kind::kCreditNote) - Total(Kind::kVoid);
    Cents not_paid = 0;
    for (const auto& [tender, sum] : by_tender()) not_paid += IsNotPaid(tender) ? sum : 0;
    const int numbered = Count(Kind::kSale) + Count(Kind::kCreditNote) + Count(Kind::kVoid);
    return {{"Documenti", std::to_string(numbered)},
            {"Fatture", std::to_string(Count(Kind::kInvoice))},
            {"Documenti annullati in corso", std::to_string(Count(Kind::kAbandoned))},
            {"Vendite", OnPaper(sales)},
            {"Resi", OnPaper(Total(Kind::kCreditNote))},
            {"Annulli", OnPaper(Total(Kind::kVoid))},
            {"Non riscosso", OnPaper(not_paid)},
            {"TOTALE GIORNALIERO", OnPaper(net)},
            {"GRAN TOTALE", OnPaper(net)}};
  }
  std::map<std::string, std::string> tender_rows() const {
    std::map<std::string, std::string> rows;
    for (const auto& [tender, sum] : by_tender()) rows[kTenders.at(tender)] = OnPaper(sum);
    return rows;
  }
  std::map<std::string, std::string> vat_rows() const {
    std::map<int, Cents> gross;
    std::map<int, Cents> tax;
    for (const Document& one : documents_) {
      for (const auto& [vat, sum] : one.by_vat()) {
        if (Sign(one.kind()) != 0) gross[vat] += Sign(one.kind()) * sum;
      }
      for (const auto& [vat, sum] : one.tax_by_vat()) tax[vat] += Sign(one.kind()) * sum;
    }
    std::map<std::string, std::string> rows;
    for (const auto& [vat, sum] : gross) {
      const std::string name = std::string("Totale ") + kVat[vat].name;
      rows[name] = OnPaper(sum);
      rows[name + ", di cui imposta"] = OnPaper(tax[vat]);
    }
    return rows;
  }

 private:
  std::map<std::string, Cents> by_tender() const {
    std::map<std::string, Cents> sums;
    for (const Document& one : documents_) {
      if (Sign(one.kind()) == 0) continue;
      for (const auto& [tender, sum] : one.by_tender()) sums[tender] += Sign(one.kind()) * sum;
    }
    return sums;
  }

  Document& begin(Kind kind) {
    documents_.push_back(Document(static_cast<int>(documents_.size()) + 1, kind));
    return documents_.back();
  }
  Document& receipt() { return begin(Kind::kSale); }
  Document& Invoice(const std::string& customer) {
    return begin(Kind::kInvoice).Command("FATTURA TIPO=2, RIGA1='" + customer + "'");
  }
  void Write();

  std::vector<Document> documents_;
};

void List::Write() {
  receipt().Sell(2, 120).Pay("CONTANTI");                                                  // 1
  receipt().Sell(1, 1999).Sell(2, 333).Sell(3, 777).Sell(4, 111).Sell(5, 1).Pay("CARTA");  // 2
  receipt().Sell(2, 3000, 115).Sell(4, 750, 390).Sell(1, 333, 999).Pay("CONTANTI", 2000);  // 3
  receipt().Sell(2, 2000, 120).PercentOff(1000).Sell(1, 2000).Discount(250).Pay("CARTA");  // 4
  // Two lines of a department: a percentage falls on the second alone.
  receipt().Sell(1, 1000).Sell(1, 715).PercentOff(1250).Sell(3, 450).PercentOn(333).Pay("ASSEGNI");
  receipt().Sell(1, 500).Surcharge(50).Sell(4, 299).Surcharge(1).Pay("BANCOMAT");  // 6
  receipt().Sell(1, 1001).Sell(2, 1003).Sell(4, 1007).SubtotalDiscount(100).compare().Pay(
      "CONTANTI");
  receipt().Sell(1, 3333).Sell(3, 2222).Sell(5, 1111).SubtotalPercentOff(750).Pay("CARTA");
  receipt().Sell(2, 899).Sell(4, 451).SubtotalSurcharge(77).Pay("CONTANTI", 5000);  // 9
  receipt().Sell(1, 605).Sell(2, 705).SubtotalPercentOn(1500).Pay("TICKET", 700).Pay("CONTANTI");
  receipt().Sell(1, 400).Sell(1, 600).Sell(3, 900).DepartmentPercentOff(1, 1500).Pay("CARTA");
  // Lines that take off
  receipt().Sell(2, 3000, 120).Sell(2, 400).TakeOff("STORNO", 2, 400).Pay("CONTANTI");  // 12
  receipt().Sell(2, 5000, 125).TakeOff("STORNO", 2, 125, 2000).Sell(1, 100).Pay("CONTANTI");
  receipt()
      .Sell(1, 950)
      .Discount(95)
      .TakeBackAdjusted(1, 950, 855)
      .Sell(4, 333)
      .Pay("CONTANTI", 333);  // 14
  receipt().Sell(1, 1500).TakeOff("RESO", 1, 605).Sell(2, 220).TakeOff("RESO", 2, 110).Pay("CARTA");
  receipt().Sell(1, 12000).TakeOff("ACCONTO, RIGASOPRA", 1, 3000).compare().Pay("CARTA");  // 16
  receipt().Sell(3, 4000).TakeOff("MONOUSO", 3, 1550).Pay("BANCOMAT");                     // 17
  receipt().Sell(1, 1490).TakeOff("COUPON", 1, 199).Sell(2, 300).Pay("CONTANTI");          // 18
  // Payments in parts
  receipt().Sell(2, 950).Sell(2, 200).Pay("TICKET", 700).Pay("CARTA");                   // 19
  receipt().Sell(6, 3000).Pay("CARTA", 1000).Pay("VOUCHER", 500).Pay("CONTANTI", 3000);  // 20
  receipt().Sell(3, 1200).Sell(1, 61).Pay("CONTANTI", 261).Pay("CREDITO");               // 21
  receipt().Sell(5, 2500).Pay("NRSSN");                                                  // 22
  receipt().Sell(1, 2440).Pay("SCONTOPAG", 40).Pay("NRSERVIZI", 1000).Pay("CONTANTI");   // 23
  // By keys
  receipt()
      .Command("INP TASTO=APRETRANS")
      .Sell(2, 120)
      .Key("INP NUM=1.50, TASTO=REP02", 2, 150)
      .Key("INP NUM=3, TASTO=MOLTIPLICA\nINP NUM=0.85, TASTO=REP04", 4, 255)
      .Command("INP NUM=1.00, TASTO=ST01")
      .Collect("ST01", 100)
      .Command("INP TASTO=TOTALE")
      .Command("INP TASTO=CHIUDETRAN");  // 24
  documents_.back().Collect("CONTANTI", documents_.back().rest());
  // Invoices
  Invoice("BIANCHI SRL").Sell(1, 2440).Sell(4, 10000, 104).Pay("NRFATTURE");  // 25
  Invoice("VERDI SPA").Sell(1, 10000).Sell(2, 5005).SubtotalPercentOff(333).Pay("BANCOMAT");
  // Credit notes
  begin(Kind::kCreditNote)
      .Command("NOTACRED DOC=00010002, DATA=150324")
      .Sell(1, 1999)
      .Sell(2, 333)
      .Pay("CARTA");  // 27
  begin(Kind::kCreditNote)
      .Command("NOTACRED DOC=01230045, DATA=150124, MATR='99LRM0000002'")
      .Sell(3, 2000, 105)
      .Pay("CONTANTI");  // 28
  // Voids: of the tenth receipt as a whole, of the first line by line
  begin(Kind::kVoid).Command("DOCANNULLO DOC=00010010, DATA=150324, AUTO");  // 29
  documents_.back().TakeOver(documents_[9]);
  begin(Kind::kVoid)
      .Command("DOCANNULLO DOC=00010001, DATA=150324")
      .Sell(2, 120)
      .Pay("CONTANTI");  // 30
  // One that is given up, and a note that is no sale
  begin(Kind::kAbandoned).Sell(1, 9900).Sell(2, 1100).Command("RESPRN");  // 31
  Document& note = begin(Kind::kNote);
  note.Command("NOFIS INIZIO")
      .Command("NOFIS MSG='" + note.mark() + " BUONO'")
      .Command("NOFIS FINE");
  receipt().Sell(1, 4321).Sell(2, 1234).Discount(34).Pay("CARTA", 21).Pay("CONTANTI", 6000);  // 33
}

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
  EXPECT_EQ(Rows(closing, "IVA", false), list.vat_rows());
  EXPECT_EQ(Times(closing, "CHIUSURA N. 0001\n"), 1);
}

TEST_F(ThirtyDocuments, TheReadingsShowTheSumsOfTheClosing) {
  for (const char* title : {"LETTURA GIORNALIERA", "LETTURA GENERALE"}) {
    const std::string reading = PaperWith(all, title);
    EXPECT_EQ(Rows(reading, "Documenti ", true), list.day_rows()) << title;
    EXPECT_EQ(Rows(reading, "PAGAMENTI", false), list.tender_rows()) << title;
    EXPECT_EQ(Rows(reading, "IVA", false), list.vat_rows()) << title;
  }
}

TEST_F(ThirtyDocuments, TheFiscalMemoryHoldsTheClosing) {
  std::map<std::string, std::string> expected = list.vat_rows();
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
      EXPECT_EQ(Times(roll, line.description), 1) << line.description;
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
      EXPECT_EQ(Times(folder.Read("journal.txt"), line.description), 1) << line.description;
    }
  }
  EXPECT_EQ(journal[journal.size() - 2], PaperWith(all, "CHIUSURA GIORNALIERA"));
  EXPECT_THAT(journal.back(), HasSubstr("FINE ESTRATTO"));
}
