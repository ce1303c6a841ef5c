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
int64_t rounded(int64_t a, int64_t b) {
  return (2 * (a < 0 ? -a : a) + b) / (2 * b) * (a < 0 ? -1 : 1);
}

std::string with_separator(Cents cents, char separator) {
  const Cents size = cents < 0 ? -cents : cents;
  char text[40];
  std::snprintf(text, sizeof text, "%s%lld%c%02lld", cents < 0 ? "-" : "",
                static_cast<long long>(size / 100), separator, static_cast<long long>(size % 100));
  return text;
}

std::string on_paper(Cents cents) { return with_separator(cents, ','); }
std::string in_batch(Cents cents) { return with_separator(cents, '.'); }

std::string padded(int number, int width) {
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
int vat_of(int department) { return department <= 5 ? department : 1; }

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
bool is_not_paid(const std::string& tender) {
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
      taxes[vat] = rounded(gross * kVat[vat].rate, 100 + kVat[vat].rate);
    }
    return taxes;
  }
  Cents tax() const {
    Cents sum = 0;
    for (const auto& [vat, tax] : tax_by_vat()) sum += tax;
    return sum;
  }

  Document& command(const std::string& line) {
    batch_ += line + "\n";
    return *this;
  }

  // A text that no other line of the day has.
  std::string mark() { return "D" + padded(index_, 2) + "/" + padded(++marks_, 2); }

  Document& sell(int department, Cents price) { return enter(department, price, 0, ""); }
  // A quantity in thousandths.
  Document& sell(int department, int quantity, Cents price) {
    return enter(department, price, quantity, "");
  }
  // A line that takes off: RESO, STORNO, ACCONTO, MONOUSO, COUPON.
  Document& take_off(const std::string& how, int department, Cents price, int quantity = 0) {
    return enter(department, price, quantity, how);
  }
  // A line that was adjusted goes back with its adjustments.
  Document& take_back_adjusted(int department, Cents price, Cents came_to) {
    const std::string text = mark();
    command("VEND REP=" + std::to_string(department) + ", PRE=" + in_batch(price) + ", DES='" +
            text + "', STORNO");
    lines_.push_back({text, -came_to});
    add(department, -came_to);
    last_ = 0;
    return *this;
  }

  Document& discount(Cents amount) {
    return adjust_line("SCONTO IMP=" + in_batch(amount), -amount);
  }
  Document& surcharge(Cents amount) {
    return adjust_line("MAGGIORAZ IMP=" + in_batch(amount), amount);
  }
  // Percentages count hundredths of a percent.
  Document& percent_off(int percentage) {
    return adjust_line("PERCA PERC=" + in_batch(percentage), -rounded(last_ * percentage, 10000));
  }
  Document& percent_on(int percentage) {
    return adjust_line("PERCB PERC=" + in_batch(percentage), rounded(last_ * percentage, 10000));
  }
  // On all that the department sold on this document.
  Document& department_percent_off(int department, int percentage) {
    const Cents amount = -rounded(by_department_[department] * percentage, 10000);
    const std::string text = mark();
    command("PERCA PERC=" + in_batch(percentage) + ", REP=" + std::to_string(department) +
            ", DES='" + text + "'");
    lines_.push_back({text, amount});
    add(department, amount);
    return *this;
  }
  Document& subtotal_discount(Cents amount) {
    return adjust_subtotal("SCONTO IMP=" + in_batch(amount), -amount);
  }
  Document& subtotal_surcharge(Cents amount) {
    return adjust_subtotal("MAGGIORAZ IMP=" + in_batch(amount), amount);
  }
  Document& subtotal_percent_off(int percentage) {
    return adjust_subtotal("PERCA PERC=" + in_batch(percentage),
                           -rounded(total() * percentage, 10000));
  }
  Document& subtotal_percent_on(int percentage) {
    return adjust_subtotal("PERCB PERC=" + in_batch(percentage),
                           rounded(total() * percentage, 10000));
  }

  // By department key: no text of its own.
  Document& key(const std::string& amount_key, int department, Cents amount) {
    command(amount_key);
    add(department, amount);
    last_ = amount;
    return *this;
  }

  // The register compares its subtotal with the one of the list.
  Document& compare() { return command("CHKSUB IMP=" + in_batch(total())); }

  Document& pay(const std::string& tender) {
    command("CHIU TEND=" + tender);
    return collect(tender, rest());
  }
  // What goes beyond the rest comes back as change.
  Document& pay(const std::string& tender, Cents given) {
    command("CHIU TEND=" + tender + ", IMP=" + in_batch(given));
    return collect(tender, std::min(given, rest()));
  }
  Document& collect(const std::string& tender, Cents amount) {
    by_tender_[tender] += amount;
    paid_ += amount;
    return *this;
  }
  Cents rest() const { return total() - paid_; }

  // The whole of another document, with its money.
  void take_over(const Document& other) {
    by_vat_ = other.by_vat_;
    by_tender_ = other.by_tender_;
    for (const auto& [vat, gross] : by_vat_) paid_ += gross;
  }

 private:
  Document& enter(int department, Cents price, int quantity, const std::string& how) {
    const std::string text = mark();
    const Cents amount = quantity == 0 ? price : rounded(price * quantity, 1000);
    std::string line = "VEND REP=" + std::to_string(department);
    if (quantity != 0)
      line += ", QTA=" + std::to_string(quantity / 1000) + "." + padded(quantity % 1000, 3);
    line += ", PRE=" + in_batch(price) + ", DES='" + text + "'";
    if (!how.empty()) line += ", " + how;
    command(line);
    const Cents signed_amount = how.empty() ? amount : -amount;
    lines_.push_back({text, signed_amount});
    add(department, signed_amount);
    last_ = amount;
    return *this;
  }

  Document& adjust_line(const std::string& line, Cents amount) {
    const std::string text = mark();
    command(line + ", DES='" + text + "'");
    lines_.push_back({text, amount});
    add(department_, amount);
    last_ += amount;
    return *this;
  }

  // Spread by the largest remainders; among equal ones the lower VAT entry is the first.
  Document& adjust_subtotal(const std::string& line, Cents amount) {
    const std::string text = mark();
    command(line + ", SUBTOT, DES='" + text + "'");
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

  void add(int department, Cents amount) {
    by_vat_[vat_of(department)] += amount;
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
  List() { write(); }

  const std::vector<Document>& documents() const { return documents_; }
  std::string batch() const {
    std::string text;
    for (const Document& document : documents_) text += document.batch();
    return text;
  }
  int count(Kind kind) const {
    return static_cast<int>(std::count_if(documents_.begin(), documents_.end(),
                                          [&](const Document& one) { return one.kind() == kind; }));
  }
  Cents total(Kind kind) const {
    Cents sum = 0;
    for (const Document& one : documents_) {
      if (one.kind() == kind) sum += one.total();
    }
    return sum;
  }
  // 1 for what adds to the day, -1 for what takes off, 0 for what does not count.
  static int sign(Kind kind) {
    if (kind == Kind::kSale || kind == Kind::kInvoice) return 1;
    return kind == Kind::kCreditNote || kind == Kind::kVoid ? -1 : 0;
  }
  // The rows of the closing from "Documenti" on, by section.
  std::map<std::string, std::string> day_rows() const {
    const Cents sales = total(Kind::kSale) + total(Kind::kInvoice);
    const Cents net = sales - total(Kind::kCreditNote) - total(Kind::kVoid);
    Cents not_paid = 0;
    for (const auto& [tender, sum] : by_tender()) not_paid += is_not_paid(tender) ? sum : 0;
    const int numbered = count(Kind::kSale) + count(Kind::kCreditNote) + count(Kind::kVoid);
    return {{"Documenti", std::to_string(numbered)},
            {"Fatture", std::to_string(count(Kind::kInvoice))},
            {"Documenti annullati in corso", std::to_string(count(Kind::kAbandoned))},
            {"Vendite", on_paper(sales)},
            {"Resi", on_paper(total(Kind::kCreditNote))},
            {"Annulli", on_paper(total(Kind::kVoid))},
            {"Non riscosso", on_paper(not_paid)},
            {"TOTALE GIORNALIERO", on_paper(net)},
            {"GRAN TOTALE", on_paper(net)}};
  }
  std::map<std::string, std::string> tender_rows() const {
    std::map<std::string, std::string> rows;
    for (const auto& [tender, sum] : by_tender()) rows[kTenders.at(tender)] = on_paper(sum);
    return rows;
  }
  std::map<std::string, std::string> vat_rows() const {
    std::map<int, Cents> gross;
    std::map<int, Cents> tax;
    for (const Document& one : documents_) {
      for (const auto& [vat, sum] : one.by_vat()) {
        if (sign(one.kind()) != 0) gross[vat] += sign(one.kind()) * sum;
      }
      for (const auto& [vat, sum] : one.tax_by_vat()) tax[vat] += sign(one.kind()) * sum;
    }
    std::map<std::string, std::string> rows;
    for (const auto& [vat, sum] : gross) {
      const std::string name = std::string("Totale ") + kVat[vat].name;
      rows[name] = on_paper(sum);
      rows[name + ", di cui imposta"] = on_paper(tax[vat]);
    }
    return rows;
  }

 private:
  std::map<std::string, Cents> by_tender() const {
    std::map<std::string, Cents> sums;
    for (const Document& one : documents_) {
      if (sign(one.kind()) == 0) continue;
      for (const auto& [tender, sum] : one.by_tender()) sums[tender] += sign(one.kind()) * sum;
    }
    return sums;
  }

  Document& begin(Kind kind) {
    documents_.push_back(Document(static_cast<int>(documents_.size()) + 1, kind));
    return documents_.back();
  }
  Document& receipt() { return begin(Kind::kSale); }
  Document& invoice(const std::string& customer) {
    return begin(Kind::kInvoice).command("FATTURA TIPO=2, RIGA1='" + customer + "'");
  }
  void write();

  std::vector<Document> documents_;
};

void List::write() {
  receipt().sell(2, 120).pay("CONTANTI");                                                   // 1
  receipt().sell(1, 1999).sell(2, 333).sell(3, 777).sell(4, 111).sell(5, 1).pay("CARTA");   // 2
  receipt().sell(2, 3000, 115).sell(4, 750, 390).sell(1, 333, 999).pay("CONTANTI", 2000);   // 3
  receipt().sell(2, 2000, 120).percent_off(1000).sell(1, 2000).discount(250).pay("CARTA");  // 4
  // Two lines of a department: a percentage falls on the second alone.
  receipt().sell(1, 1000).sell(1, 715).percent_off(1250).sell(3, 450).percent_on(333).pay(
      "ASSEGNI");
  receipt().sell(1, 500).surcharge(50).sell(4, 299).surcharge(1).pay("BANCOMAT");  // 6
  receipt().sell(1, 1001).sell(2, 1003).sell(4, 1007).subtotal_discount(100).compare().pay(
      "CONTANTI");
  receipt().sell(1, 3333).sell(3, 2222).sell(5, 1111).subtotal_percent_off(750).pay("CARTA");
  receipt().sell(2, 899).sell(4, 451).subtotal_surcharge(77).pay("CONTANTI", 5000);  // 9
  receipt().sell(1, 605).sell(2, 705).subtotal_percent_on(1500).pay("TICKET", 700).pay("CONTANTI");
  receipt().sell(1, 400).sell(1, 600).sell(3, 900).department_percent_off(1, 1500).pay("CARTA");
  // Lines that take off
  receipt().sell(2, 3000, 120).sell(2, 400).take_off("STORNO", 2, 400).pay("CONTANTI");  // 12
  receipt().sell(2, 5000, 125).take_off("STORNO", 2, 125, 2000).sell(1, 100).pay("CONTANTI");
  receipt()
      .sell(1, 950)
      .discount(95)
      .take_back_adjusted(1, 950, 855)
      .sell(4, 333)
      .pay("CONTANTI", 333);  // 14
  receipt()
      .sell(1, 1500)
      .take_off("RESO", 1, 605)
      .sell(2, 220)
      .take_off("RESO", 2, 110)
      .pay("CARTA");
  receipt().sell(1, 12000).take_off("ACCONTO, RIGASOPRA", 1, 3000).compare().pay("CARTA");  // 16
  receipt().sell(3, 4000).take_off("MONOUSO", 3, 1550).pay("BANCOMAT");                     // 17
  receipt().sell(1, 1490).take_off("COUPON", 1, 199).sell(2, 300).pay("CONTANTI");          // 18
  // Payments in parts
  receipt().sell(2, 950).sell(2, 200).pay("TICKET", 700).pay("CARTA");                   // 19
  receipt().sell(6, 3000).pay("CARTA", 1000).pay("VOUCHER", 500).pay("CONTANTI", 3000);  // 20
  receipt().sell(3, 1200).sell(1, 61).pay("CONTANTI", 261).pay("CREDITO");               // 21
  receipt().sell(5, 2500).pay("NRSSN");                                                  // 22
  receipt().sell(1, 2440).pay("SCONTOPAG", 40).pay("NRSERVIZI", 1000).pay("CONTANTI");   // 23
  // By keys
  receipt()
      .command("INP TASTO=APRETRANS")
      .sell(2, 120)
      .key("INP NUM=1.50, TASTO=REP02", 2, 150)
      .key("INP NUM=3, TASTO=MOLTIPLICA\nINP NUM=0.85, TASTO=REP04", 4, 255)
      .command("INP NUM=1.00, TASTO=ST01")
      .collect("ST01", 100)
      .command("INP TASTO=TOTALE")
      .command("INP TASTO=CHIUDETRAN");  // 24
  documents_.back().collect("CONTANTI", documents_.back().rest());
  // Invoices
  invoice("BIANCHI SRL").sell(1, 2440).sell(4, 10000, 104).pay("NRFATTURE");  // 25
  invoice("VERDI SPA").sell(1, 10000).sell(2, 5005).subtotal_percent_off(333).pay("BANCOMAT");
  // Credit notes
  begin(Kind::kCreditNote)
      .command("NOTACRED DOC=00010002, DATA=150324")
      .sell(1, 1999)
      .sell(2, 333)
      .pay("CARTA");  // 27
  begin(Kind::kCreditNote)
      .command("NOTACRED DOC=01230045, DATA=150124, MATR='99LRM0000002'")
      .sell(3, 2000, 105)
      .pay("CONTANTI");  // 28
  // Voids: of the tenth receipt as a whole, of the first line by line
  begin(Kind::kVoid).command("DOCANNULLO DOC=00010010, DATA=150324, AUTO");  // 29
  documents_.back().take_over(documents_[9]);
  begin(Kind::kVoid)
      .command("DOCANNULLO DOC=00010001, DATA=150324")
      .sell(2, 120)
      .pay("CONTANTI");  // 30
  // One that is given up, and a note that is no sale
  begin(Kind::kAbandoned).sell(1, 9900).sell(2, 1100).command("RESPRN");  // 31
  Document& note = begin(Kind::kNote);
  note.command("NOFIS INIZIO")
      .command("NOFIS MSG='" + note.mark() + " BUONO'")
      .command("NOFIS FINE");
  receipt().sell(1, 4321).sell(2, 1234).discount(34).pay("CARTA", 21).pay("CONTANTI", 6000);  // 33
}

std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The papers of a roll, by its cuts.
std::vector<std::string> papers(const std::string& roll) {
  std::vector<std::string> found(1);
  for (const std::string& line : split_lines(roll)) {
    if (line == std::string(42, '-')) {
      found.emplace_back();
    } else {
      found.back() += line + "\n";
    }
  }
  if (found.back().empty()) found.pop_back();
  return found;
}

int times(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

// The one paper that holds a text; a test that finds none or two fails.
std::string paper_with(const std::vector<std::string>& all, const std::string& what) {
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
std::map<std::string, std::string> rows(const std::string& paper, const std::string& begin,
                                        bool with_begin) {
  std::map<std::string, std::string> found;
  bool inside = false;
  std::string above;
  for (const std::string& line : split_lines(paper)) {
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

std::string number_text(int number) { return "DOCUMENTO N. 0001-" + padded(number, 4) + "\n"; }

class ThirtyDocuments : public testing::Test {
 protected:
  void SetUp() override {
    const std::string lines = list.batch() +
                              // receipts, credit notes, voids and non-fiscal documents so far
                              "INFO TIPO=1001\nINFO TIPO=1118\nINFO TIPO=1115\nINFO TIPO=1112\n"
                              "REPORT TIPO=XGIORNO\n"
                              "AZZGIO\n"
                              "DGFE DAZETA=1, FILE='" +
                              folder.path("journal.txt") +
                              "'\n"
                              "REPORT TIPO=MEMNUM, DANUM=1, ANUM=1\n";
    const ProgramRun run = run_console({"run", folder.write("day.cmd", lines), "--clock", kClock});
    ASSERT_EQ(run.exit_code, 0) << run.errors;
    // Standard error holds the answers and nothing else.
    for (const std::string& line : split_lines(run.errors)) {
      const std::string before = ": answer: ";
      const size_t at = line.find(before);
      ASSERT_NE(at, line.npos) << line;
      answers.push_back(line.substr(at + before.size()));
    }
    roll = run.output;
    all = papers(roll);
  }

  // The paper of a document, by the number that its place in the list gives it.
  std::string paper_of(const Document& document) const {
    int numbered = 0;
    int invoices = 0;
    for (const Document& one : list.documents()) {
      if (one.kind() == Kind::kInvoice) ++invoices;
      if (one.kind() == Kind::kSale || List::sign(one.kind()) < 0) ++numbered;
      if (one.index() == document.index()) break;
    }
    if (document.kind() == Kind::kAbandoned) return paper_with(all, "*** DOCUMENTO ANNULLATO ***");
    if (document.kind() == Kind::kNote) return paper_with(all, "DOCUMENTO GESTIONALE");
    if (document.kind() == Kind::kInvoice) {
      return paper_with(all, "FATTURA N. " + std::to_string(invoices) + "\n");
    }
    return paper_with(all, number_text(numbered));
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
  const std::string closing = paper_with(all, "CHIUSURA GIORNALIERA");
  EXPECT_EQ(rows(closing, "Documenti ", true), list.day_rows());
  EXPECT_EQ(rows(closing, "PAGAMENTI", false), list.tender_rows());
  EXPECT_EQ(rows(closing, "IVA", false), list.vat_rows());
  EXPECT_EQ(times(closing, "CHIUSURA N. 0001\n"), 1);
}

TEST_F(ThirtyDocuments, TheReadingsShowTheSumsOfTheClosing) {
  for (const char* title : {"LETTURA GIORNALIERA", "LETTURA GENERALE"}) {
    const std::string reading = paper_with(all, title);
    EXPECT_EQ(rows(reading, "Documenti ", true), list.day_rows()) << title;
    EXPECT_EQ(rows(reading, "PAGAMENTI", false), list.tender_rows()) << title;
    EXPECT_EQ(rows(reading, "IVA", false), list.vat_rows()) << title;
  }
}

TEST_F(ThirtyDocuments, TheFiscalMemoryHoldsTheClosing) {
  std::map<std::string, std::string> expected = list.vat_rows();
  const std::map<std::string, std::string> day = list.day_rows();
  for (const char* name : {"Documenti", "Fatture", "TOTALE GIORNALIERO", "GRAN TOTALE"}) {
    expected[name] = day.at(name);
  }
  const std::string memory = paper_with(all, "MEMORIA FISCALE");
  EXPECT_EQ(rows(memory, "CHIUSURA N. 0001", false), expected);
  EXPECT_EQ(rows(memory, "Chiusure", true),
            (std::map<std::string, std::string>{
                {"Chiusure", "1"}, {"TOTALE DEL PERIODO", day.at("TOTALE GIORNALIERO")}}));
}

TEST_F(ThirtyDocuments, EveryKindIsCounted) {
  std::vector<std::string> counts;
  for (const Kind kind : {Kind::kSale, Kind::kCreditNote, Kind::kVoid, Kind::kNote}) {
    counts.push_back(std::to_string(list.count(kind)));
  }
  EXPECT_EQ(answers, counts);
}

TEST_F(ThirtyDocuments, EveryPaperShowsItsLinesAndSums) {
  for (const Document& document : list.documents()) {
    SCOPED_TRACE(document.batch());
    const std::string paper = "\n" + paper_of(document);
    for (const PaperLine& line : document.lines()) {
      EXPECT_EQ(times(roll, line.description), 1) << line.description;
      const size_t at = paper.find(line.description);
      ASSERT_NE(at, paper.npos) << line.description;
      const std::string row = paper.substr(at, paper.find('\n', at) - at);
      EXPECT_EQ(row.substr(row.find_last_of(' ') + 1), on_paper(line.amount)) << row;
    }
    if (List::sign(document.kind()) == 0) {
      EXPECT_THAT(paper, testing::Not(HasSubstr("TOTALE COMPLESSIVO")));
      continue;
    }
    const std::map<std::string, std::string> sums = rows(paper, "TOTALE COMPLESSIVO", true);
    EXPECT_EQ(sums, (std::map<std::string, std::string>{
                        {"TOTALE COMPLESSIVO", on_paper(document.total())},
                        {"di cui IVA", on_paper(document.tax())}}));
  }
}

// Numbers run from the first on, each on one paper, in the order of the list.
TEST_F(ThirtyDocuments, NumbersHaveNeitherGapNorDouble) {
  const int numbered =
      list.count(Kind::kSale) + list.count(Kind::kCreditNote) + list.count(Kind::kVoid);
  size_t behind = 0;
  for (int number = 1; number <= numbered; ++number) {
    EXPECT_EQ(times(roll, number_text(number)), 1) << number;
    const size_t at = roll.find(number_text(number));
    EXPECT_GT(at, behind) << number;
    behind = at;
  }
  EXPECT_EQ(times(roll, "DOCUMENTO N. "), numbered);
  EXPECT_EQ(times(roll, "FATTURA N. "), list.count(Kind::kInvoice));
  for (int number = 1; number <= list.count(Kind::kInvoice); ++number) {
    EXPECT_EQ(times(roll, "FATTURA N. " + std::to_string(number) + "\n"), 1) << number;
  }
  // Nothing else came out: two readings, the closing and the report of the fiscal memory.
  EXPECT_EQ(all.size(), list.documents().size() + 4);
}

TEST_F(ThirtyDocuments, TheJournalHoldsEveryDocumentOnceAsItWasPrinted) {
  const std::vector<std::string> journal = papers(folder.read("journal.txt"));
  // The head, the documents in the order of the list, the closing, the foot.
  ASSERT_EQ(journal.size(), list.documents().size() + 3);
  EXPECT_EQ(rows(journal.front(), "Documenti ", true),
            (std::map<std::string, std::string>{
                {"Documenti", std::to_string(list.documents().size() + 1)}}));
  for (const Document& document : list.documents()) {
    SCOPED_TRACE(document.batch());
    EXPECT_EQ(journal[static_cast<size_t>(document.index())], paper_of(document));
    for (const PaperLine& line : document.lines()) {
      EXPECT_EQ(times(folder.read("journal.txt"), line.description), 1) << line.description;
    }
  }
  EXPECT_EQ(journal[journal.size() - 2], paper_with(all, "CHIUSURA GIORNALIERA"));
  EXPECT_THAT(journal.back(), HasSubstr("FINE ESTRATTO"));
}
