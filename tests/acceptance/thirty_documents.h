// Thirty documents of every kind: the batch that enters them, and what they come to, added up in
// whole cents.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "thirty_words.h"

namespace thirty {

enum class Kind { kSale, kInvoice, kCreditNote, kVoid, kAbandoned, kNote };

// A line of a document as the paper has to show it.
struct PaperLine {
  std::string description;
  Cents amount;
  bool article = false;  // an automatic void of the document shows it too
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
  const std::map<std::string, int>& payments() const { return payments_; }

  const std::map<int, Cents>& discounts() const { return discounts_; }
  const std::map<int, Cents>& surcharges() const { return surcharges_; }
  // Of refund lines.
  const std::map<int, Cents>& refunds() const { return refunds_; }
  const std::map<int, int>& discount_counts() const { return discount_counts_; }
  const std::map<int, int>& surcharge_counts() const { return surcharge_counts_; }
  const std::map<int, int>& refund_counts() const { return refund_counts_; }

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
    Command("VEND REP=" + std::to_string(department) + ", PRE=" + InBatch(price) + ", DES='" +
            sold_ + "', STORNO");
    lines_.push_back({"STORNO " + sold_, -came_to});
    Add(department, -came_to);
    discounts_[VatOf(department)] -= price - came_to;
    --discount_counts_[VatOf(department)];
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
    Adjusted(VatOf(department), amount);
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
    ++payments_[tender];
    paid_ += amount;
    return *this;
  }
  Cents rest() const { return total() - paid_; }

  // The whole of another document, with its money.
  void TakeOver(const Document& other) {
    by_vat_ = other.by_vat_;
    by_tender_ = other.by_tender_;
    payments_ = other.payments_;
    discounts_ = other.discounts_;
    surcharges_ = other.surcharges_;
    for (const PaperLine& line : other.lines_) {
      if (line.article) lines_.push_back(line);
    }
    for (const auto& [vat, gross] : by_vat_) paid_ += gross;
  }

 private:
  Document& Enter(int department, Cents price, int quantity, const std::string& how) {
    // What is taken back has the text of the line that was sold last.
    const bool back = how == "STORNO";
    const std::string text = back ? sold_ : mark();
    const Cents amount = quantity == 0 ? price : Rounded(price * quantity, 1000);
    std::string line = "VEND REP=" + std::to_string(department);
    if (quantity != 0)
      line += ", QTA=" + std::to_string(quantity / 1000) + "." + Padded(quantity % 1000, 3);
    line += ", PRE=" + InBatch(price) + ", DES='" + text + "'";
    if (!how.empty()) line += ", " + how;
    Command(line);
    const Cents signed_amount = how.empty() ? amount : -amount;
    lines_.push_back({back ? "STORNO " + text : text, signed_amount, how.empty()});
    Add(department, signed_amount);
    if (how.empty()) sold_ = text;
    if (how == "COUPON") Adjusted(VatOf(department), signed_amount);
    if (how == "RESO") {
      refunds_[VatOf(department)] += amount;
      ++refund_counts_[VatOf(department)];
    }
    last_ = amount;
    return *this;
  }

  Document& AdjustLine(const std::string& line, Cents amount) {
    const std::string text = mark();
    Command(line + ", DES='" + text + "'");
    lines_.push_back({text, amount});
    Add(department_, amount);
    Adjusted(VatOf(department_), amount);
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
    for (const auto& [vat, share] : shares) {
      by_vat_[vat] += amount < 0 ? -share : share;
      Adjusted(vat, amount < 0 ? -share : share);
    }
    return *this;
  }

  void Adjusted(int vat, Cents amount) {
    (amount < 0 ? discounts_ : surcharges_)[vat] += amount < 0 ? -amount : amount;
    if (amount != 0) ++(amount < 0 ? discount_counts_ : surcharge_counts_)[vat];
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
  std::map<int, Cents> discounts_, surcharges_, refunds_;  // by VAT entry, without a sign
  std::map<int, int> discount_counts_, surcharge_counts_, refund_counts_;
  std::string sold_;  // the text of the last line that sold
  std::map<std::string, Cents> by_tender_;
  std::map<std::string, int> payments_;
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
    std::map<std::string, Cents> unpaid;
    for (const auto& [tender, sum] : by_tender()) {
      if (IsNotPaid(tender)) unpaid[tender] += sum;
    }
    return {{"Documenti", std::to_string(numbered)},
            {"Documenti di vendita", std::to_string(Count(Kind::kSale))},
            {"Documenti di reso", std::to_string(Count(Kind::kCreditNote))},
            {"Documenti di annullo", std::to_string(Count(Kind::kVoid))},
            {"Fatture", std::to_string(Count(Kind::kInvoice))},
            {"Documenti annullati in corso", std::to_string(Count(Kind::kAbandoned))},
            {"Vendite", OnPaper(sales)},
            {"Resi", OnPaper(Total(Kind::kCreditNote))},
            {"Annulli", OnPaper(Total(Kind::kVoid))},
            {"Totale non riscosso", OnPaper(not_paid)},
            {"Totale non riscosso, di cui con fattura a seguire", OnPaper(unpaid["NRFATTURE"])},
            {"Totale non riscosso, di cui servizi", OnPaper(unpaid["NRSERVIZI"])},
            {"Totale non riscosso, di cui SSN", OnPaper(unpaid["NRSSN"])},
            {"Totale non riscosso, di cui altro", OnPaper(unpaid["CREDITO"])},
            {"TOTALE GIORNALIERO", OnPaper(net)},
            {"GRAN TOTALE", OnPaper(net)},
            {"Progressivo vendite", OnPaper(sales)},
            {"Progressivo resi", OnPaper(Total(Kind::kCreditNote))},
            {"Progressivo annulli", OnPaper(Total(Kind::kVoid))}};
  }
  std::map<std::string, std::string> tender_rows() const {
    std::map<std::string, std::string> rows;
    std::map<std::string, int> counts;
    for (const Document& one : documents_) {
      if (Sign(one.kind()) == 0) continue;
      for (const auto& [tender, count] : one.payments()) counts[tender] += count;
    }
    for (const auto& [tender, sum] : by_tender()) {
      rows[kTenders.at(tender) + " n. " + std::to_string(counts[tender])] = OnPaper(sum);
    }
    return rows;
  }
  // With `all` discounts and what went back too, as a closing has them; the memory has no such.
  std::map<std::string, std::string> vat_rows(bool all) const {
    std::map<std::string, std::map<int, Cents>> sums;
    std::map<std::string, std::map<int, int>> counts;
    for (const Document& one : documents_) {
      const int sign = Sign(one.kind());
      if (sign == 0) continue;
      const auto count = [&](const std::string& name, const std::map<int, int>& by_vat) {
        for (const auto& [vat, number] : by_vat) counts[name][vat] += number;
      };
      std::map<int, int> itself;
      for (const auto& [vat, sum] : one.by_vat()) itself[vat] = sum != 0 ? 1 : 0;
      count("Totale ", itself);
      const auto add = [&](const std::string& name, const std::map<int, Cents>& by_vat, int times) {
        for (const auto& [vat, sum] : by_vat) sums[name][vat] += times * sum;
      };
      add("Totale ", one.by_vat(), sign);
      add("Imponibile ", one.by_vat(), sign);
      add("Imponibile ", one.tax_by_vat(), -sign);
      add("Imposta ", one.tax_by_vat(), sign);
      if (!all) continue;
      if (sign < 0) {
        const char* const name = one.kind() == Kind::kVoid ? "Annulli " : "Documenti di reso ";
        add(name, one.by_vat(), 1);
        count(name, itself);
        continue;
      }
      add("Sconti ", one.discounts(), 1);
      count("Sconti ", one.discount_counts());
      add("Maggiorazioni ", one.surcharges(), 1);
      count("Maggiorazioni ", one.surcharge_counts());
      add("Resi di riga ", one.refunds(), 1);
      count("Resi di riga ", one.refund_counts());
    }
    std::map<std::string, std::string> rows;
    for (const auto& [name, by_vat] : sums) {
      for (const auto& [vat, sum] : by_vat) {
        const int count = counts[name][vat];
        if (sum == 0 && count == 0) continue;
        rows[name + kVat[vat].name + (count == 0 ? "" : " n. " + std::to_string(count))] =
            OnPaper(sum);
      }
    }
    return rows;
  }
  // How many lines of all papers have this text.
  int LinesWith(const std::string& text) const {
    int count = 0;
    for (const Document& one : documents_) {
      for (const PaperLine& line : one.lines()) {
        if (line.description.find(text) != std::string::npos) ++count;
      }
    }
    return count;
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

inline void List::Write() {
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

}  // namespace thirty
