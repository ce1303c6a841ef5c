// A day of known documents: the lines that a host sends for them, and the work state that they come
// to, worked out in cents.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "language/shipped_language.h"
#include "unit/register/register_fixture.h"

namespace lorimat::work_state_day {

// --- The day

struct SoldLine {
  int department;
  int64_t price;            // cents
  int64_t thousandths = 0;  // pieces; 0 leaves the quantity out, for one piece
  int64_t discount = 0;     // cents off the line
  int64_t surcharge = 0;    // cents on the line
  int64_t tenths_off = 0;   // a discount in tenths of a percent
  bool refund = false;
};

struct Paid {
  std::string tender;  // its word
  int64_t cents = 0;   // 0 for the rest
};

enum Kind { kReceipt, kInvoice, kCreditNote, kVoid };

struct Document {
  Kind kind;
  std::string opening;  // the line that opens it; a receipt opens by its first sale
  std::vector<SoldLine> lines;
  int64_t subtotal_tenths_off = 0;
  int64_t subtotal_surcharge = 0;
  std::vector<Paid> payments;
};

struct Shelf {
  std::string name;
  int vat;
  bool service = false;
};

// Department 1 is the first. The last one sells nothing.
inline const std::vector<Shelf> kShelves = {
    {"FERRAMENTA", 1}, {"L'ORTO", 2},      {"PANE, LATTE,", 3},
    {"LIBRI", 4},      {"FRANCOBOLLI", 5}, {"VINO 'ROSSO'", 6},
    {"", 7},           {"FIORI", 8},       {"RIPARAZIONI", 1, true},
    {"POSA", 2, true}, {"VUOTI", 6},       {"'", 8},
};

// Hundredths of a percent, entry 1 first.
inline constexpr std::array<int64_t, 8> kRates = {2200, 1000, 500, 400, 0, 735, 2000, 1250};

inline constexpr int kClosuresBefore = 7;

// Every entry of the VAT table sells. No percentage falls on a department that has another line
// on its document.
inline const std::vector<Document> kDay = {
    {kReceipt,
     "",
     {{1, 1234, 0, 100},
      {2, 333, 1500, 0, 0, 125},
      {3, 999, 2000, 0, 50},
      {4, 1777},
      {5, 646},
      {6, 1111},
      {7, 85, 3000},
      {8, 2003}},
     75,
     0,
     {{"CONTANTI", 20000}}},
    {kReceipt, "", {{1, 415}, {5, 320}, {6, 77}}, 0, 0, {{"CONTANTI"}}},
    {kInvoice,
     "FATTURA TIPO=2, RIGA1='ROSSI SRL'",
     {{2, 2550}, {4, 1219}, {9, 8005, 0, 505}},
     0,
     300,
     {{"NRFATTURE", 4567}, {"CONTANTI"}}},
    {kReceipt,
     "",
     {{9, 1999}, {10, 4501, 0, 0, 0, 100}, {7, 613}, {3, 250}},
     0,
     0,
     {{"NRSERVIZI", 1001},
      {"NRSSN", 703},
      {"CREDITO", 401},
      {"ASSEGNI", 300},
      {"CARTA", 250},
      {"BANCOMAT", 125},
      {"TICKET", 520},
      {"TICKET", 529},
      {"SCONTOPAG", 35},
      {"VOUCHER", 111},
      {"ST01", 71},
      {"ST07", 93},
      {"ST10", 17},
      {"CONTANTI"}}},
    {kReceipt, "", {{6, 999}, {11, 400, 0, 0, 0, 0, true}, {8, 505}}, 0, 0, {{"CARTA"}}},
    {kCreditNote,
     "NOTACRED DOC=00080001, DATA=150124",
     {{1, 500}, {8, 222}, {9, 111}},
     0,
     0,
     {{"CONTANTI"}}},
    // Nobody paid anything of it.
    {kReceipt,
     "",
     {{1, 101}, {2, 103}, {7, 52}, {8, 47}},
     0,
     0,
     {{"NRSERVIZI", 50}, {"NRSSN", 99}, {"CREDITO", 71}, {"NRFATTURE"}}},
    // The second document of the day, taken back as it was.
    {kVoid,
     "DOCANNULLO DOC=00080002, DATA=150124, AUTO",
     {{1, 415}, {5, 320}, {6, 77}},
     0,
     0,
     {{"CONTANTI"}}},
};

// --- What it comes to

// A quotient of positive numbers, rounded half up.
inline int64_t Rounded(int64_t dividend, int64_t divisor) {
  return (2 * dividend + divisor) / (2 * divisor);
}

// Cents by VAT entry.
using ByVat = std::array<int64_t, 9>;

inline int64_t SumOf(const ByVat& cents) {
  int64_t sum = 0;
  for (const int64_t one : cents) sum += one;
  return sum;
}

// Cents in proportion to weights of 0 or more; what the division leaves goes to the largest
// remainders.
inline ByVat Share(int64_t cents, const ByVat& weights) {
  const int64_t whole = SumOf(weights);
  ByVat shares = {};
  ByVat remainders = {};
  int64_t rest = cents;
  for (size_t vat = 1; vat < weights.size(); ++vat) {
    shares[vat] = cents * weights[vat] / whole;
    remainders[vat] = cents * weights[vat] % whole;
    rest -= shares[vat];
  }
  for (; rest > 0; --rest) {
    size_t most = 1;
    for (size_t vat = 2; vat < weights.size(); ++vat) {
      if (remainders[vat] > remainders[most]) most = vat;
    }
    ++shares[most];
    remainders[most] = -1;
  }
  return shares;
}

// A sum by VAT entry, and the tax in it; each document rounds its own.
struct Taxed {
  ByVat gross = {};
  ByVat tax = {};

  void Add(int sign, const ByVat& cents) {
    for (size_t vat = 1; vat < cents.size(); ++vat) {
      const int64_t rate = kRates[vat - 1];
      gross[vat] += sign * cents[vat];
      tax[vat] += sign * Rounded(cents[vat] * rate, 10000 + rate);
    }
  }
};

struct DaySums {
  Taxed day, receipts, credit_notes, invoices, voids, services;
  Taxed unpaid_services, unpaid_ssn, unpaid_invoices, unpaid_others;
  std::map<int, int64_t> sold, total;  // by department
  std::map<std::string, int64_t> tender;
  int tickets = 0;
  int receipt_count = 0;
  int64_t discounts = 0, surcharges = 0, refund_lines = 0;
};

inline DaySums Add(const std::vector<Document>& documents) {
  DaySums sums;
  for (const Document& document : documents) {
    const bool adds = document.kind == kReceipt || document.kind == kInvoice;
    const int sign = adds ? 1 : -1;
    ByVat gross = {};
    ByVat services = {};
    for (const SoldLine& line : document.lines) {
      const Shelf& shelf = kShelves[static_cast<size_t>(line.department) - 1];
      int64_t cents =
          line.thousandths == 0 ? line.price : Rounded(line.price * line.thousandths, 1000);
      const int64_t off = line.discount + Rounded(cents * line.tenths_off, 1000);
      cents += line.surcharge - off;
      sums.discounts += sign * off;
      sums.surcharges += sign * line.surcharge;
      if (line.refund) {
        sums.refund_lines += cents;
        cents = -cents;
      } else if (adds) {
        sums.sold[line.department] += cents;
      }
      gross[static_cast<size_t>(shelf.vat)] += cents;
      if (shelf.service) services[static_cast<size_t>(shelf.vat)] += cents;
      sums.total[line.department] += sign * cents;
    }
    const int64_t off = Rounded(SumOf(gross) * document.subtotal_tenths_off, 1000);
    const ByVat less = Share(off, gross);
    const ByVat more = Share(document.subtotal_surcharge, gross);
    for (size_t vat = 1; vat < gross.size(); ++vat) gross[vat] += more[vat] - less[vat];
    sums.discounts += sign * off;
    sums.surcharges += sign * document.subtotal_surcharge;

    sums.day.Add(sign, gross);
    sums.services.Add(sign, services);
    if (document.kind == kReceipt) {
      sums.receipts.Add(1, gross);
      ++sums.receipt_count;
    }
    if (document.kind == kInvoice) sums.invoices.Add(1, gross);
    if (document.kind == kCreditNote) sums.credit_notes.Add(1, gross);
    if (document.kind == kVoid) sums.voids.Add(1, gross);

    // The last payment covers the rest, and gives change for what is too much.
    int64_t due = SumOf(gross);
    ByVat left = gross;
    for (const Paid& paid : document.payments) {
      const int64_t kept = paid.cents == 0 || paid.cents > due ? due : paid.cents;
      due -= kept;
      sums.tender[paid.tender] += sign * kept;
      if (paid.tender == "TICKET") sums.tickets += sign;
      Taxed* const unpaid = paid.tender == "NRSERVIZI"   ? &sums.unpaid_services
                            : paid.tender == "NRSSN"     ? &sums.unpaid_ssn
                            : paid.tender == "NRFATTURE" ? &sums.unpaid_invoices
                            : paid.tender == "CREDITO"   ? &sums.unpaid_others
                                                         : nullptr;
      if (unpaid == nullptr) continue;
      const ByVat shares = Share(kept, left);
      for (size_t vat = 1; vat < left.size(); ++vat) left[vat] -= shares[vat];
      unpaid->Add(sign, shares);
    }
    EXPECT_EQ(due, 0);
  }
  return sums;
}

// --- The file

inline std::string Padded(int64_t number, size_t width) {
  std::string digits = std::to_string(number < 0 ? -number : number);
  const std::string sign = number < 0 ? "-" : "";
  while (digits.size() + sign.size() < width) digits.insert(0, "0");
  return sign + digits;
}

inline std::string Total(int64_t number) { return Padded(number, 10); }

// The records of a host that asked for these edit options: 1 is the fixed form, without quotes
// and separators.
class Records {
 public:
  explicit Records(int edit) : fixed_(edit == 1) {}

  Records& Value(const std::string& value) {
    record_ += value;
    if (!fixed_) record_ += ',';
    return *this;
  }
  Records& Quoted(const std::string& text) {
    if (fixed_) return Value(text);
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "''" : std::string(1, c);
    return Value(quoted + "'");
  }
  // A record loses one comma at its end, be it a text's own.
  void End() {
    if (!record_.empty() && record_.back() == ',') record_.pop_back();
    file_ += record_ + "\r\n";
    record_.clear();
  }
  const std::string& file() const { return file_; }

 private:
  bool fixed_;
  std::string record_;
  std::string file_;
};

// The entry of the VAT table behind a place of a block: 0 for all, -1 for the classes by nature.
inline int EntryAt(int place) { return place <= 8 ? place : -1; }

inline int64_t CentsAt(const ByVat& cents, int place) {
  const int entry = EntryAt(place);
  if (entry < 0) return 0;
  return entry == 0 ? SumOf(cents) : cents[static_cast<size_t>(entry)];
}

inline std::string ExpectedFile(const DaySums& sums, int edit) {
  Records records(edit);
  // Its quotes stand in the fixed form too.
  records.Value("1").Value("'15/01/24 10:30'").End();
  // Data items are in the register's own unit, a hundredth of a cent.
  const int64_t receipts = SumOf(sums.receipts.gross);
  records.Value("2").Value(Total(receipts * 100)).End();
  records.Value("3").Value(Padded(sums.receipt_count, 6)).End();

  const char* const labels[] = {"AL",    "22.00", "10.00", "5.00", "4.00", "0.00", "7.35", "20.00",
                                "12.50", "ES",    "EE",    "NS",   "NI",   "RM",   "VI"};
  for (int place = 0; place < 15; ++place) {
    records.Value(std::to_string(900 + place)).Value(labels[place]).End();
  }

  const Taxed no_gifts;
  const std::pair<int, const Taxed*> grid[] = {
      {1000, &sums.day},
      {1250, &sums.receipts},
      {1040, &sums.credit_notes},
      {1060, &sums.invoices},
      {1300, &sums.voids},
      {1400, &sums.services},
      {1420, &sums.unpaid_services},
      {1440, &sums.unpaid_ssn},
      {1460, &sums.unpaid_invoices},
      {1480, &sums.unpaid_others},
      {1500, &no_gifts},
  };
  for (const auto& [base, taxed] : grid) {
    for (int place = 0; place < 15; ++place) {
      const int64_t gross = CentsAt(taxed->gross, place);
      records.Value(std::to_string(base + place))
          .Value(Total(gross - CentsAt(taxed->tax, place)))
          .Value(Total(gross))
          .End();
    }
  }
  for (int place = 0; place < 15; ++place) {
    records.Value(std::to_string(1350 + place)).Value(Total(CentsAt(sums.day.tax, place))).End();
  }

  const auto find = [](const auto& map, const auto& key) {
    const auto found = map.find(key);
    return found == map.end() ? int64_t{0} : found->second;
  };
  for (int number = 1; number <= static_cast<int>(kShelves.size()); ++number) {
    records.Value(std::to_string(2000 + number))
        .Value(Total(find(sums.total, number)))
        .Value(Total(find(sums.sold, number)))
        .Quoted(kShelves[static_cast<size_t>(number) - 1].name)
        .End();
  }

  // Counters by number; those that are no amount of a data item are put in as they read.
  const auto paid = [&](const char* tender) {
    return find(sums.tender, std::string(tender)) * 100;
  };
  const int64_t cards = paid("CARTA") + paid("BANCOMAT");
  const int64_t invoices = SumOf(sums.invoices.gross);
  const std::map<int, int64_t> totals = {
      {1, paid("CONTANTI")},
      {2, paid("CREDITO")},
      {3, paid("ASSEGNI")},
      {4, cards},
      {5, paid("TICKET")},
      {10, sums.discounts * 100},
      {11, cards},
      {12, sums.surcharges * 100},
      {22, (receipts + invoices) * 100},
      {24, sums.refund_lines * 100},
      {25, SumOf(sums.voids.gross) * 100},
      {31, receipts * 100},
      {33, SumOf(sums.day.gross) * 100},
      {34, invoices * 100},
      {35, SumOf(sums.credit_notes.gross) * 100},
      {36, 1},  // one non-fiscal document
      {37, kClosuresBefore},
      {41, paid("ST01")},
      {42, 0},
      {43, 0},
      {44, 0},
      {45, 0},
      {46, 0},
      {47, paid("ST07")},
      {48, 0},
      {49, 0},
      {50, paid("ST10")},
      {58, 2},  // the drawer was opened twice
      {64, find(sums.tender, std::string("TICKET"))},
      {65, find(sums.tender, std::string("SCONTOPAG"))},
      {66, find(sums.tender, std::string("VOUCHER"))},
      {67, 0},  // the register does not round
  };
  const std::map<int, int> counts = {{31, sums.receipt_count}, {64, sums.tickets}, {67, 0}};
  std::map<int, std::string> names;
  const auto sections = shipped::Sections();
  for (const auto& [number, name] : sections.at("TOTG")) names[std::stoi(number)] = name;
  for (int number = 1; number <= 67; ++number) {
    const auto total = totals.find(number);
    const auto count = counts.find(number);
    const auto name = names.find(number);
    records.Value(std::to_string(3000 + number))
        .Value(Total(total == totals.end() ? -1 : total->second))
        .Value(Padded(count == counts.end() ? -1 : count->second, 6))
        .Quoted(name == names.end() ? "" : name->second)
        .End();
  }
  return records.file();
}

// --- The lines that a host sends

// A number of this many decimals, with its point.
inline std::string Decimal(int64_t number, size_t decimals) {
  std::string digits = Padded(number, decimals + 1);
  return digits.insert(digits.size() - decimals, ".");
}

inline std::vector<std::string> LinesOf(const Document& document) {
  std::vector<std::string> lines;
  if (!document.opening.empty()) lines.push_back(document.opening);
  if (document.kind == kVoid) return lines;  // the register does the rest
  for (const SoldLine& line : document.lines) {
    lines.push_back("VEND REP=" + std::to_string(line.department) +
                    ", PRE=" + Decimal(line.price, 2));
    if (line.thousandths != 0) lines.back() += ", QTA=" + Decimal(line.thousandths, 3);
    if (line.refund) lines.back() += ", RESO";
    if (line.discount != 0) lines.push_back("SCONTO IMP=" + Decimal(line.discount, 2));
    if (line.surcharge != 0) lines.push_back("MAGGIORAZ IMP=" + Decimal(line.surcharge, 2));
    if (line.tenths_off != 0) lines.push_back("PERCA PERC=" + Decimal(line.tenths_off, 1));
  }
  if (document.subtotal_tenths_off != 0) {
    lines.push_back("PERCA PERC=" + Decimal(document.subtotal_tenths_off, 1) + ", SUBTOT");
  }
  if (document.subtotal_surcharge != 0) {
    lines.push_back("MAGGIORAZ IMP=" + Decimal(document.subtotal_surcharge, 2) + ", SUBTOT");
  }
  for (const Paid& paid : document.payments) {
    lines.push_back("CHIU TEND=" + paid.tender);
    if (paid.cents != 0) lines.back() += ", IMP=" + Decimal(paid.cents, 2);
  }
  return lines;
}

}  // namespace lorimat::work_state_day
