#include "properties/paper_reader.h"

#include <cstddef>
#include <cstdlib>
#include <string>

namespace lorimat {
namespace {

constexpr size_t kWidth = 42;
constexpr size_t kAmountWidth = 11;
constexpr size_t kMarkWidth = 7;  // with the blank behind it

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string Trim(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool StartsWith(const std::string& text, const std::string& begin) {
  return text.compare(0, begin.size(), begin) == 0;
}

// A decimal as a whole number of so many places.
bool ReadPlaces(const std::string& text, int places, int64_t* value) {
  *value = 0;
  int behind = -1;
  for (const char c : text) {
    if (c == ',' && behind < 0) {
      behind = 0;
    } else if (IsDigit(c)) {
      *value = 10 * *value + (c - '0');
      if (behind >= 0) ++behind;
    } else {
      return false;
    }
  }
  for (int place = behind < 0 ? 0 : behind; place < places; ++place) *value *= 10;
  return !text.empty() && behind <= places;
}

// A row of a name and an amount: all of the left is the name.
bool ReadPair(const std::string& line, std::string* name, Cents* amount) {
  const size_t blank = line.find_last_of(' ');
  if (line.size() != kWidth || blank == line.npos) return false;
  *name = line.substr(0, blank);
  while (!name->empty() && name->back() == ' ') name->pop_back();
  return ReadCents(line.substr(blank + 1), amount);
}

Cents Rounded(int64_t value, int64_t divisor) {
  const bool below = value < 0;
  const int64_t size = below ? -value : value;
  const int64_t whole = (2 * size + divisor) / (2 * divisor);
  return below ? -whole : whole;
}

void Complain(ReadPaper* paper, const std::string& what) {
  if (paper->wrong.empty()) paper->wrong = what;
}

struct KindRow {
  const char* line;  // that says what a paper is
  PaperKind kind;
};
// In this order: what is no document says so beside the title of one.
constexpr KindRow kKinds[] = {
    {"*** DOCUMENTO DI PROVA - NON FISCALE ***", PaperKind::kOther},
    {"*** COPIA - NON FISCALE ***", PaperKind::kOther},
    {"*** DOCUMENTO ANNULLATO ***", PaperKind::kAbandoned},
    {"CHIUSURA GIORNALIERA", PaperKind::kClosing},
    {"LETTURA GIORNALIERA", PaperKind::kOther},
    {"DOCUMENTO GESTIONALE", PaperKind::kOther},
    {"FATTURA", PaperKind::kInvoice},
    {"emesso per RESO MERCE", PaperKind::kCreditNote},
    {"emesso per ANNULLAMENTO", PaperKind::kVoid},
    {"di vendita o prestazione", PaperKind::kSale},
};

PaperKind KindOf(ReadPaper* paper) {
  for (const KindRow& row : kKinds) {
    for (const std::string& line : paper->lines) {
      if (Trim(line) == row.line) return row.kind;
    }
  }
  Complain(paper, "nobody can say what this is");
  return PaperKind::kOther;
}

// The lines of the goods, from behind the head of the columns to the total.
class GoodsReader {
 public:
  explicit GoodsReader(ReadPaper* paper) : paper_(*paper) {}

  size_t Read(size_t at) {
    for (; at < paper_.lines.size(); ++at) {
      const std::string& line = paper_.lines[at];
      if (StartsWith(line, "TOTALE COMPLESSIVO ")) break;
      Take(line);
    }
    CloseShares();
    return at;
  }

  Cents sum() const { return sum_; }

 private:
  void Take(const std::string& line) {
    std::string name, mark;
    Cents amount = 0;
    if (!ReadRow(line, &name, &mark, &amount)) {
      ReadQuantity(line);
      return;
    }
    if (name == "Subtotale" && mark.empty()) {
      CloseShares();
      if (amount != sum_) Complain(&paper_, "a subtotal is not the sum of the lines");
      ++paper_.subtotals;
    } else if (name == "  di cui" && sharing_) {
      shares_ += amount;
      paper_.by_mark[mark] += amount;
      if (amount == 0) Complain(&paper_, "a share of nothing");
    } else {
      CloseShares();
      Goods(name, mark, amount);
    }
    has_quantity_ = false;
  }

  void Goods(const std::string& name, const std::string& mark, Cents amount) {
    if (amount == 0) Complain(&paper_, "a line of nothing: " + name);
    sum_ += amount;
    if (has_quantity_ && !StartsWith(name, "STORNO")) {
      ++paper_.quantities;
      const Cents size = amount < 0 ? -amount : amount;
      // Thousandths of a piece times ten-thousandths of the currency.
      if (size != Rounded(quantity_ * price_, 100000)) {
        Complain(&paper_, "quantity and price do not come to the amount: " + name);
      }
    }
    if (mark.empty()) {
      sharing_ = true;
      shared_ = amount;
      shares_ = 0;
      ++paper_.shared_adjustments;
    } else {
      paper_.by_mark[mark] += amount;
    }
    for (const char* word : {"SCONTO", "MAGGIORAZIONE", "COUPON"}) {
      if (name.find(word) != name.npos) ++paper_.adjustments;
    }
  }

  // "  3 x 1,20", "  1,5 KG x 2,3456".
  void ReadQuantity(const std::string& line) {
    const size_t times = line.find(" x ");
    has_quantity_ = false;
    if (!StartsWith(line, "  ") || times == line.npos) return;
    std::string quantity = line.substr(2, times - 2);
    if (const size_t unit = quantity.find(' '); unit != quantity.npos) quantity.resize(unit);
    has_quantity_ =
        ReadPlaces(quantity, 3, &quantity_) && ReadPlaces(line.substr(times + 3), 4, &price_);
  }

  void CloseShares() {
    if (sharing_ && shares_ != shared_) {
      Complain(&paper_, "an adjustment is not the sum of its shares");
    }
    sharing_ = false;
  }

  ReadPaper& paper_;
  Cents sum_ = 0;
  bool sharing_ = false;
  Cents shared_ = 0, shares_ = 0;
  bool has_quantity_ = false;
  int64_t quantity_ = 0, price_ = 0;
};

// The words of a line.
std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  for (size_t at = line.find_first_not_of(' '); at != line.npos;) {
    const size_t end = line.find(' ', at);
    words.push_back(line.substr(at, end == line.npos ? end : end - at));
    at = end == line.npos ? end : line.find_first_not_of(' ', end);
  }
  return words;
}

// Base and tax of each rate, which an invoice has.
size_t ReadVatTable(size_t at, ReadPaper* paper) {
  if (paper->kind != PaperKind::kInvoice) return at;
  while (at < paper->lines.size() && paper->lines[at].empty()) ++at;
  const std::vector<std::string> head = {"IVA", "Imponibile", "Imposta"};
  if (at == paper->lines.size() || Words(paper->lines[at]) != head) {
    Complain(paper, "it has no table of rates");
    return at;
  }
  std::map<std::string, Cents> gross = paper->by_mark;
  for (++at; at < paper->lines.size() && !paper->lines[at].empty(); ++at) {
    const std::vector<std::string> words = Words(paper->lines[at]);
    Cents net = 0, tax = 0;
    if (words.size() != 3 || !ReadCents(words[1], &net) || !ReadCents(words[2], &tax)) {
      Complain(paper, "the table of rates cannot be read");
      return at;
    }
    if (tax != paper->TaxOf(words[0]) || net + tax != gross[words[0]]) {
      Complain(paper, "base and tax of a rate are other ones");
    }
    gross.erase(words[0]);
  }
  for (const auto& [mark, left] : gross) {
    if (left != 0) Complain(paper, "a rate is missing in the table");
  }
  return at;
}

// Date and time in a line of their own; the last one, as a header may have any text.
void ReadDate(ReadPaper* paper) {
  for (const std::string& text : paper->lines) {
    const std::string line = Trim(text);
    if (line.size() == 16 && line[2] == '/' && line[5] == '/' && line[13] == ':') {
      paper->date = line.substr(0, 10);
    }
  }
}

void ReadPayments(size_t at, ReadPaper* paper) {
  for (; at < paper->lines.size(); ++at) {
    std::string name;
    Cents amount = 0;
    const std::string& line = paper->lines[at];
    if (StartsWith(line, "Numero ticket ")) paper->tickets = std::stoi(line.substr(14));
    // "  su 8,00, senza resto": of the ticket above it, which was more than what counts.
    if (StartsWith(line, "  su ")) {
      const size_t end = line.find(", senza resto");
      if (end == line.npos || !ReadCents(line.substr(5, end - 5), &amount) ||
          paper->payments.empty() || amount <= paper->payments.back().amount) {
        Complain(paper, "a ticket is not more than what counts of it");
      }
      ++paper->tickets_above;
      continue;
    }
    if (!ReadPair(line, &name, &amount)) continue;
    if (name == "Resto") {
      paper->change = amount;
    } else if (name == "Importo pagato" || name == "Importo rimborsato") {
      if ((name == "Importo pagato") != (paper->sign() > 0)) {
        Complain(paper, "money goes the other way");
      }
      paper->shows_paid = true;
      paper->paid = amount;
      break;
    } else {
      paper->payments.push_back({name, amount});
    }
  }
  ReadDate(paper);
  // The number stands in a line of its own, behind all of them.
  for (const std::string& text : paper->lines) {
    const std::string line = Trim(text);
    for (const std::string begin : {"DOCUMENTO N. ", "FATTURA N. "}) {
      if (StartsWith(line, begin)) paper->number = line.substr(begin.size());
    }
  }
  if (paper->number.empty()) Complain(paper, "it has no number");
}

void CheckDocument(Cents sum, ReadPaper* paper) {
  if (sum != paper->total) Complain(paper, "the lines do not come to the total");
  Cents tax = 0;
  for (const auto& [mark, gross] : paper->by_mark) {
    if (gross < 0) Complain(paper, "a rate is below zero: " + mark);
    tax += TaxWithin(gross, RateOfMark(mark));
  }
  if (tax != paper->tax) Complain(paper, "the tax is not that of the lines");
  if (!paper->shows_paid) {
    Complain(paper, "it does not say what is paid");
    return;
  }
  int tickets = 0;
  for (const NamedAmount& payment : paper->payments) {
    if (payment.name == "Ticket" || payment.name == "TICKET PRANZO") ++tickets;
  }
  if (tickets != paper->tickets) Complain(paper, "it counts other tickets");
  Cents paid = -paper->change;
  for (const NamedAmount& payment : paper->payments) paid += payment.amount;
  if (paid != paper->total) Complain(paper, "the payments do not come to the total");
  const Cents down = paper->rounded_down(), up = paper->rounded_up();
  if (paper->paid + paper->not_collected() + paper->discount_on_payment() + down !=
      paper->total + up) {
    Complain(paper, "what is paid is another sum");
  }
  if (down == 0 && up == 0) return;
  // 1, 2, 6 and 7 go down by 1 or 2, 3, 4, 8 and 9 up by 2 or 1.
  const Cents last = paper->total % 5;
  if (!paper->wholly_in_cash() || down != (last <= 2 ? last : 0) ||
      up != (last > 2 ? 5 - last : 0)) {
    Complain(paper, "cash is rounded otherwise");
  }
}

void ReadDocument(ReadPaper* paper) {
  for (size_t line = 1; line < paper->lines.size(); ++line) {
    if (paper->lines[line].empty() && paper->lines[line - 1].empty()) {
      Complain(paper, "two lines are blank");
    }
  }
  size_t at = 0;
  for (; at < paper->lines.size() && !StartsWith(paper->lines[at], "DESCRIZIONE "); ++at) {
    const std::string reference = "Documento di riferimento: ";
    if (StartsWith(paper->lines[at], reference)) {
      paper->referred = paper->lines[at].substr(reference.size());
    }
  }
  GoodsReader goods(paper);
  at = goods.Read(at + 1);
  std::string name;
  if (at + 1 >= paper->lines.size() || !ReadPair(paper->lines[at], &name, &paper->total) ||
      !ReadPair(paper->lines[at + 1], &name, &paper->tax) || name != "di cui IVA") {
    Complain(paper, "it has no total with its tax");
    return;
  }
  ReadPayments(ReadVatTable(at + 2, paper), paper);
  for (const std::string& wrong : {ReadNatures(paper), ReadLottery(paper)}) {
    if (!wrong.empty()) Complain(paper, wrong);
  }
  CheckDocument(goods.sum(), paper);
  ReadGoods(paper);
}

// Takes "n. 3" off the end of a name; 0 without one.
int TakeCount(std::string* name) {
  const size_t at = name->rfind(" n. ");
  if (at == name->npos) return 0;
  const int count = std::atoi(name->c_str() + at + 4);
  name->resize(at);
  return count;
}

void ReadClosing(ReadPaper* paper) {
  ReadDate(paper);
  enum { kDay, kTenders, kVat } part = kDay;
  for (const std::string& line : paper->lines) {
    if (line == "PAGAMENTI") part = kTenders;
    if (line == "IVA") part = kVat;
    const std::string told = Trim(line);
    if (StartsWith(told, "CHIUSURA N. ")) paper->number = told.substr(12);
    if (StartsWith(told, "Giornata aperta il ")) paper->opened = told.substr(19, 10);
    if (StartsWith(told, "Inattivo dal ") && told.size() == 37) {
      paper->idle_from = told.substr(13, 10);
      paper->idle_to = told.substr(27);
    }
    std::string name;
    Cents amount = 0;
    const bool pair = ReadPair(line, &name, &amount);
    if (part == kDay && line.size() == kWidth) {
      const size_t blank = line.find_last_of(' ');
      name = Trim(line.substr(0, blank));
      if (!paper->rows.emplace(name, line.substr(blank + 1)).second) {
        Complain(paper, "a name stands twice: " + name);
      }
    } else if (part == kTenders && pair) {
      const int count = TakeCount(&name);
      if (!paper->payment_counts.emplace(name, count).second) {
        Complain(paper, "a name stands twice: " + name);
      }
      paper->tenders.push_back({name, amount});
    } else if (part == kVat && pair) {
      // "Documenti di reso 22% n. 2": the word ahead of the count is the rate.
      const int count = TakeCount(&name);
      const size_t blank = name.find_last_of(' ');
      paper->counts_of[name.substr(0, blank)][name.substr(blank + 1)] = count;
      if (!paper->by_mark_of[name.substr(0, blank)]
               .emplace(name.substr(blank + 1), amount)
               .second) {
        Complain(paper, "a name stands twice: " + name);
      }
    }
  }
}

}  // namespace

bool ReadRow(const std::string& line, std::string* name, std::string* mark, Cents* amount) {
  if (line.size() != kWidth) return false;
  if (!ReadCents(Trim(line.substr(kWidth - kAmountWidth)), amount)) return false;
  const size_t left = kWidth - kAmountWidth;
  *mark = Trim(line.substr(left - kMarkWidth, kMarkWidth));
  *name = line.substr(0, left - kMarkWidth);
  while (!name->empty() && name->back() == ' ') name->pop_back();
  return true;
}

bool ReadCents(const std::string& text, Cents* cents) {
  size_t at = !text.empty() && text[0] == '-' ? 1 : 0;
  const bool below = at == 1;
  Cents value = 0;
  size_t digits = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at, ++digits) value = 10 * value + text[at] - '0';
  if (digits == 0 || at + 3 != text.size() || text[at] != ',') return false;
  if (!IsDigit(text[at + 1]) || !IsDigit(text[at + 2])) return false;
  value = 100 * value + 10 * (text[at + 1] - '0') + text[at + 2] - '0';
  *cents = below ? -value : value;
  return true;
}

int64_t RateOfMark(const std::string& mark) {
  int64_t rate = 0;
  if (mark.empty() || mark.back() != '%') return 0;
  return ReadPlaces(mark.substr(0, mark.size() - 1), 2, &rate) ? rate : 0;
}

Cents TaxWithin(Cents gross, int64_t rate) { return Rounded(gross * rate, 10000 + rate); }

Cents ReadPaper::not_collected() const {
  Cents sum = 0;
  for (const NamedAmount& payment : payments) {
    if (StartsWith(payment.name, "Non riscosso")) sum += payment.amount;
  }
  return sum;
}

namespace {

Cents SumOf(const std::vector<NamedAmount>& payments, const char* name) {
  Cents sum = 0;
  for (const NamedAmount& payment : payments) {
    if (payment.name == name) sum += payment.amount;
  }
  return sum;
}

}  // namespace

Cents ReadPaper::discount_on_payment() const {
  return SumOf(payments, "Sconto a pagare") + SumOf(payments, "Buono multiuso");
}

Cents ReadPaper::rounded_down() const { return SumOf(payments, "Arrotondamento per difetto"); }

Cents ReadPaper::rounded_up() const { return -SumOf(payments, "Arrotondamento per eccesso"); }

bool ReadPaper::wholly_in_cash() const {
  for (const NamedAmount& payment : payments) {
    if (payment.name != "Pagamento contante" && !StartsWith(payment.name, "Arrotondamento")) {
      return false;
    }
  }
  return true;
}

Cents ReadPaper::TaxOf(const std::string& mark) const {
  const auto gross = by_mark.find(mark);
  return gross == by_mark.end() ? 0 : TaxWithin(gross->second, RateOfMark(mark));
}

std::vector<ReadPaper> ReadRoll(const std::vector<std::string>& lines) {
  std::vector<ReadPaper> papers(1);
  for (const std::string& line : lines) {
    if (line == std::string(kWidth, '-')) {
      papers.emplace_back();
    } else {
      papers.back().lines.push_back(line);
    }
  }
  // Behind the last cut.
  const bool ended = papers.back().lines.empty();
  papers.pop_back();
  for (ReadPaper& paper : papers) {
    paper.kind = KindOf(&paper);
    if (paper.fiscal()) ReadDocument(&paper);
    if (paper.kind == PaperKind::kClosing) ReadClosing(&paper);
  }
  if (!ended && !papers.empty()) Complain(&papers.back(), "something follows that has no end");
  return papers;
}

}  // namespace lorimat
