// What the lines of a document say of its discounts, surcharges and refund lines: a second reading
// of the goods, which follows each line and what is taken back of it. The paper does not say
// whether an adjustment belongs to a line or to its department, nor which of several lines a
// correction means: where that makes a difference the document is marked.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <optional>

#include "properties/paper_reader.h"

namespace lorimat {
namespace {

constexpr size_t kNameWidth = 24;

bool StartsWith(const std::string& text, const std::string& begin) {
  return text.compare(0, begin.size(), begin) == 0;
}

struct Given {
  bool surcharge = false;
  Cents amount = 0;  // as it stands on paper
};

struct Line {
  std::string name, mark;
  int sign = 1;
  bool refund = false;
  Cents goods = 0;  // that stand, without a sign
  Cents price = 0;  // of a piece; 0 where it is none of whole cents
  std::vector<Given> given;
};

// What a correction may have meant.
struct Meaning {
  size_t line = 0;
  Cents goods = 0;
  std::vector<Given> gone;

  bool Same(const Meaning& other, const std::vector<Line>& lines) const {
    const auto sums = [](const Meaning& one) {
      std::vector<std::pair<bool, Cents>> all;
      for (const Given& given : one.gone) all.emplace_back(given.surcharge, given.amount);
      std::sort(all.begin(), all.end());
      return all;
    };
    const bool one_ends = lines[line].goods == goods;
    const bool other_ends = lines[other.line].goods == other.goods;
    return goods == other.goods && sums(*this) == sums(other) && one_ends == other_ends;
  }
};

class Reader {
 public:
  explicit Reader(ReadPaper* paper) : paper_(*paper) {}

  void Read() {
    bool goods = false;
    for (const std::string& line : paper_.lines) {
      if (StartsWith(line, "TOTALE COMPLESSIVO ")) break;
      if (goods) Take(line);
      goods = goods || StartsWith(line, "DESCRIZIONE ");
    }
    CloseShared();
  }

 private:
  void Take(const std::string& text) {
    std::string name, mark;
    Cents amount = 0;
    if (!ReadRow(text, &name, &mark, &amount)) {
      // A long name begins in lines of its own, and is cut where they are full.
      if (StartsWith(text, "  ")) {
        ReadPieces(text);
      } else if (text.size() + 1 >= kNameWidth && text.size() <= kNameWidth) {
        begun_ += text + std::string(kNameWidth - text.size(), ' ');
      } else {
        begun_.clear();
      }
      return;
    }
    if (name == "  di cui" && shared_) {
      Share(mark, amount);
    } else {
      CloseShared();
      if (name != "Subtotale" || !mark.empty()) Row(begun_ + name, mark, amount);
    }
    begun_.clear();
    pieces_ = price_ = 0;
  }

  // "  3 x 1,20" in thousandths and ten-thousandths; a price of whole cents is enough here.
  void ReadPieces(const std::string& text) {
    const size_t times = text.find(" x ");
    if (times == text.npos) return;
    double quantity = 0;
    std::string number = text.substr(2, times - 2);
    std::replace(number.begin(), number.end(), ',', '.');
    quantity = std::strtod(number.c_str(), nullptr);
    std::string price = text.substr(times + 3);
    std::replace(price.begin(), price.end(), ',', '.');
    const double each = std::strtod(price.c_str(), nullptr) * 100;
    price_ = static_cast<Cents>(each + 0.5);
    pieces_ = static_cast<Cents>(quantity * each + 0.5);
  }

  void Row(const std::string& name, const std::string& mark, Cents amount) {
    const bool back = StartsWith(name, "STORNO ");
    const std::string rest = back ? name.substr(7) : name;
    if (rest == "SCONTO" || rest == "COUPON" || rest == "MAGGIORAZIONE") {
      Adjustment(rest == "MAGGIORAZIONE", back, mark, amount);
    } else if (back) {
      Correction(rest, mark, amount);
    } else {
      Sold(rest, mark, amount);
    }
  }

  void Count(bool surcharge, const std::string& mark, Cents amount, int sign) {
    ReadSum& sum = (surcharge ? paper_.surcharges : paper_.discounts)[mark];
    sum.amount += sign * std::abs(amount);
    sum.count += sign;
  }

  void Adjustment(bool surcharge, bool back, const std::string& mark, Cents amount) {
    if (mark.empty()) {
      shared_ = true;
      shared_surcharge_ = surcharge;
      shared_back_ = back;
      return;
    }
    Count(surcharge, mark, amount, back ? -1 : 1);
    if (lines_.empty() || lines_.back().mark != mark) return;
    if (!back) {
      lines_.back().given.push_back({surcharge, amount});
      return;
    }
    for (auto line = lines_.rbegin(); line != lines_.rend(); ++line) {
      for (size_t at = line->given.size(); at-- > 0;) {
        if (line->mark != mark || line->given[at].surcharge != surcharge ||
            line->given[at].amount != -amount) {
          continue;
        }
        line->given.erase(line->given.begin() + static_cast<std::ptrdiff_t>(at));
        return;
      }
    }
  }

  void Share(const std::string& mark, Cents amount) {
    Count(shared_surcharge_, mark, amount, shared_back_ ? -1 : 1);
  }
  void CloseShared() { shared_ = false; }

  void Sold(const std::string& name, const std::string& mark, Cents amount) {
    Line line;
    line.refund = StartsWith(name, "RESO ");
    line.name = line.refund ? name.substr(5) : name;
    line.mark = mark;
    line.sign = amount < 0 ? -1 : 1;
    line.goods = std::abs(amount);
    line.price = pieces_ != 0 ? price_ : line.goods;
    // A line that was taken back may have come again, as the line that it was.
    for (const Line& gone : gone_) {
      if (gone.name == line.name && gone.mark == mark && line.sign > 0) paper_.unsure = true;
    }
    if (line.refund) {
      ReadSum& sum = paper_.refund_lines[mark];
      sum.amount += line.goods;
      ++sum.count;
    }
    lines_.push_back(std::move(line));
  }

  // All that a line and a choice of its adjustments make of an amount.
  void AddMeanings(size_t index, Cents amount, std::vector<Meaning>* all) const {
    const Line& line = lines_[index];
    const size_t choices = size_t{1} << std::min<size_t>(line.given.size(), 10);
    for (size_t choice = 0; choice < choices; ++choice) {
      Meaning meaning = {index, line.goods, {}};
      Cents net = line.sign * line.goods;
      for (size_t at = 0; at < line.given.size(); ++at) {
        if ((choice >> at & 1) == 0) continue;
        meaning.gone.push_back(line.given[at]);
        net += line.given[at].amount;
      }
      if (net == -amount) all->push_back(meaning);
    }
    const Cents size = std::abs(amount);
    const bool of_pieces = size == pieces_ || (pieces_ == 0 && size == line.price);
    if (of_pieces && size < line.goods) all->push_back({index, size, {}});
  }

  void Correction(std::string name, const std::string& mark, Cents amount) {
    const bool refund = StartsWith(name, "RESO ");
    if (refund) name = name.substr(5);
    const int sign = amount < 0 ? 1 : -1;
    std::vector<Meaning> all;
    for (size_t index = lines_.size(); index-- > 0;) {
      const Line& line = lines_[index];
      const bool fits = line.refund == refund && line.name == name && line.mark == mark &&
                        line.goods > 0 && (amount == 0 || line.sign == sign);
      if (fits) AddMeanings(index, amount, &all);
    }
    if (all.empty()) {
      paper_.unsure = true;
      return;
    }
    for (const Meaning& other : all) {
      if (!all.front().Same(other, lines_)) paper_.unsure = true;
    }
    const Meaning meant = all.front();
    Line& line = lines_[meant.line];
    gone_.push_back(line);
    for (const Given& given : meant.gone) Count(given.surcharge, mark, given.amount, -1);
    line.goods -= meant.goods;
    if (line.goods == 0) line.given.clear();
    if (!refund) return;
    ReadSum& sum = paper_.refund_lines[mark];
    sum.amount -= meant.goods;
    if (line.goods == 0) --sum.count;
  }

  ReadPaper& paper_;
  std::vector<Line> lines_, gone_;
  std::string begun_;  // of a name
  Cents pieces_ = 0, price_ = 0;
  bool shared_ = false, shared_surcharge_ = false, shared_back_ = false;
};

}  // namespace

void ReadGoods(ReadPaper* paper) { Reader(paper).Read(); }

}  // namespace lorimat
