// Numbers as texts, and back: what was printed is read as the same number, what was read is printed
// in one form, and a result that does not fit is never taken for a number. Money, quantities,
// percentages and times of the register, and the numbers and local texts of the foundation.
//
// It is said of prices and quantities in lines of the language only that what the register prints
// is read: their digits beyond the range are cut by the language's rules.
#include <array>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console/device/clock_text.h"
#include "pal/protocols/lorimat/lorimatutility.h"
#include "properties/property.h"
#include "register/totals/journal.h"
#include "register/value/money.h"
#include "utility/locale/locale.h"
#include "utility/number.h"

namespace lorimat {
namespace {

namespace gen = rc::gen;

__extension__ using Wide = __int128;

constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();

// Of all lengths, and at the ends of the ranges; the same at every size of a case.
rc::Gen<int64_t> Integers() {
  return gen::resize(
      rc::kNominalSize, gen::exec([] {
        if (*gen::inRange(0, 8) == 0) {
          const auto end = *gen::elementOf(std::vector<int64_t>{
              kMost, kLeast, INT32_MAX, INT32_MIN, 0, 9999999999999999, -9999999999999999});
          const int64_t off = *gen::inRange<int64_t>(-2, 3);
          return static_cast<int64_t>(static_cast<uint64_t>(end) + static_cast<uint64_t>(off));
        }
        uint64_t all = 0;
        for (int byte = 0; byte < 8; ++byte)
          all = all << 8 | static_cast<uint64_t>(*gen::inRange(0, 256));
        const int cut = *gen::inRange(0, 64);
        const auto size = static_cast<int64_t>(all >> cut);
        return *gen::arbitrary<bool>() && size != kLeast ? -size : size;
      }));
}

rc::Gen<std::string> DigitTexts() {
  return gen::resize(rc::kNominalSize, gen::exec([] {
                       std::string text;
                       const int whole = *gen::inRange(0, 22);
                       for (int i = 0; i < whole; ++i)
                         text += static_cast<char>('0' + *gen::inRange(0, 10));
                       if (*gen::inRange(0, 3) != 0) {
                         text += '.';
                         const int decimals = *gen::inRange(0, 6);
                         for (int i = 0; i < decimals; ++i)
                           text += static_cast<char>('0' + *gen::inRange(0, 10));
                       }
                       if (*gen::inRange(0, 20) == 0) text += *gen::element('x', '.', '-', ' ');
                       return text;
                     }));
}

// With a point in place of the comma, and without its sign.
std::string Plain(std::string text) {
  if (!text.empty() && text[0] == '-') text.erase(0, 1);
  for (char& c : text) {
    if (c == ',') c = '.';
  }
  if (!text.empty() && text.back() == '%') text.pop_back();
  return text;
}

// The exact value of a text of digits with a point, in units of that many decimals; nothing for
// what is none, or has more decimals.
std::optional<Wide> ExactValue(const std::string& text, int decimals) {
  Wide value = 0;
  int places = -1;
  bool digits = false;
  for (const char c : text) {
    if (c == '.') {
      if (places >= 0) return std::nullopt;
      places = 0;
    } else if (c >= '0' && c <= '9') {
      digits = true;
      value = value * 10 + (c - '0');
      if (places >= 0 && ++places > decimals) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  if (!digits) return std::nullopt;
  for (int place = places < 0 ? 0 : places; place < decimals; ++place) value *= 10;
  return value;
}

TEST(NumbersProperty, WhatThePaperShowsIsReadAsItWas) {
  const PropertyRun run = RunOf(5000);
  Seen seen("paper numbers");
  Holds(run, [&] {
    const int64_t number = *Integers();
    const auto quantity = static_cast<int32_t>(number);
    // The largest sizes have no room for ParseDecimal's last digit.
    const Amount amount = number / 10 / kCent * kCent;
    const Amount price = number / 10;
    RC_ASSERT(ParseDecimal(Plain(FormatAmount(amount)), 4, 0) == std::abs(amount));
    RC_ASSERT(ParseDecimal(Plain(FormatUnitPrice(price)), 4, 0) == std::abs(price));
    RC_ASSERT(ParseDecimal(Plain(FormatRate(price)), 4, 0) == std::abs(price));
    RC_ASSERT(ParseDecimal(Plain(FormatQuantity(quantity)), 3, 0) ==
              std::abs(static_cast<int64_t>(quantity)));
    RC_ASSERT((FormatUnitPrice(price)[0] == '-') == (price < 0));
    if (amount < 0) seen.Add("below zero");
    if (std::abs(number / 2) > int64_t{1} << 61) seen.Add("at the end of the range");
    if (price % 100 != 0) seen.Add("more than two decimals");
  });
  seen.Require(
      run, {{"below zero", 500}, {"at the end of the range", 50}, {"more than two decimals", 500}});
}

TEST(NumbersProperty, AReadNumberIsExactAndPrintedInOneForm) {
  const PropertyRun run = RunOf(5000);
  Seen seen("texts of digits");
  Holds(run, [&] {
    const std::string text = *DigitTexts();
    const int decimals = *gen::inRange(0, 5);
    const std::optional<int64_t> read = ParseDecimal(text, decimals, 0);
    const std::optional<Wide> exact = ExactValue(text, decimals);
    seen.Add(!exact ? "no number" : read ? "read" : "too large");
    if (read) {
      RC_ASSERT(exact && *exact == *read);
      if (decimals == 4) {
        const std::string printed = Plain(FormatUnitPrice(*read));
        RC_ASSERT(ParseDecimal(printed, 4, 0) == read);
        RC_ASSERT(Plain(FormatUnitPrice(*ParseDecimal(printed, 4, 0))) == printed);
      }
    } else {
      // What fits is read, but for the last ten, and what they come to with zeros behind them.
      Wide unit = 20;
      for (int place = 0; place < decimals; ++place) unit *= 10;
      RC_ASSERT(!exact || *exact > kMost - unit);
    }
  });
  seen.Require(run, {{"no number", 100}, {"read", 1000}, {"too large", 100}});
}

TEST(NumbersProperty, ProductsAndSharesAreExactOrNone) {
  const PropertyRun run = RunOf(5000);
  Seen seen("products");
  Holds(run, [&] {
    const int64_t a = *Integers();
    const int64_t b = *Integers();
    const int64_t divisor = *gen::element<int64_t>(1, kOnePiece, kWholePercentage, 1220000);
    const std::optional<int64_t> got = MultiplyDivide(a, b, divisor, kCent);
    // Twice the distance from the exact value is at most a step.
    const Wide product = static_cast<Wide>(a) * b;
    if (got) {
      seen.Add("fits");
      RC_ASSERT(*got % kCent == 0);
      Wide off = static_cast<Wide>(*got) * divisor - product;
      if (off < 0) off = -off;
      const Wide step = static_cast<Wide>(divisor) * kCent;
      RC_ASSERT(off * 2 <= step);
      // Half goes away from zero.
      if (off * 2 == step) {
        seen.Add("half of a cent");
        RC_ASSERT((product > 0) == (static_cast<Wide>(*got) * divisor > product));
      }
    } else {
      seen.Add("does not fit");
      RC_ASSERT(product / divisor > kMost - kCent || product / divisor < -(kMost - kCent));
    }
    // Shares of a document's size.
    const Amount amount = a % kMaxAmount / kCent * kCent;
    std::map<int, Amount> weights;
    const int count = *gen::inRange(0, 6);
    for (int key = 0; key < count; ++key) weights[key] = *Integers() % kMaxAmount;
    Wide all = 0;
    for (const auto& [key, weight] : weights) all += weight > 0 ? weight : 0;
    Wide sum = 0;
    // What is left of each beyond whole cents; the largest get a cent more, the first of equal
    // ones.
    std::vector<std::pair<Wide, bool>> left;
    for (const auto& [key, share] : Spread(amount, weights)) {
      sum += share;
      const Wide cents = static_cast<Wide>(std::abs(amount) / kCent) * weights[key];
      const Wide more = std::abs(share) / kCent - cents / all;
      RC_ASSERT(more == 0 || more == 1);
      left.emplace_back(cents % all, more == 1);
    }
    for (size_t i = 0; i < left.size(); ++i) {
      for (size_t j = 0; j < left.size(); ++j) {
        if (!left[i].second || left[j].second) continue;
        const bool is_first = i < j;
        RC_ASSERT(left[i].first > left[j].first || (is_first && left[i].first == left[j].first));
      }
    }
    RC_ASSERT(sum == (all > 0 ? amount : 0));
    if (all > 0) seen.Add("spread");
  });
  seen.Require(run, {{"fits", 500}, {"does not fit", 500}, {"spread", 500}, {"half of a cent", 5}});
}

std::string Printed(const Number& number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

// The value in ten-thousandths, whatever its decimals.
Wide Exact(const Number& number) {
  Wide value = number.isNegative() ? -static_cast<Wide>(number.absValue())
                                   : static_cast<Wide>(number.absValue());
  for (unsigned place = number.precision; place < Number::maxPrecision; ++place) value *= 10;
  return value;
}

TEST(NumbersProperty, ANumberIsReadAsItIsPrinted) {
  const PropertyRun run = RunOf(5000);
  Seen seen("numbers of the foundation");
  Holds(run, [&] {
    const int64_t units = *Integers();
    const auto decimals = static_cast<unsigned>(*gen::inRange(0, 5));
    const Number number(units, decimals);
    const bool fits = Number::magnitudeOf(units) <= Number::MAX_VALUE;
    RC_ASSERT(number.isOverflow() == !fits);
    seen.Add(fits ? "fits" : "overflow");
    if (!fits) return;
    const std::string text = Printed(number);
    const Number read(text);
    RC_ASSERT(read.toInt64() == number.toInt64());
    RC_ASSERT(read.precision == number.precision);
    RC_ASSERT(Printed(read) == text);
    const Number back = Number::unmarshal(Number::marshal(number));
    RC_ASSERT(back.toInt64() == number.toInt64());
    RC_ASSERT(back.precision == number.precision);
    // Local texts have no more decimals than are there.
    char local[64];
    RC_ASSERT(loc.toLocalNumber(local, sizeof local, ',', number, 4, false));
    Number local_read;
    RC_ASSERT(Locale::fromLocalNumber(local, sizeof local, ',', local_read, false, 0, 0));
    RC_ASSERT(Exact(local_read) == Exact(number));
    if (decimals == 2) {
      RC_ASSERT(loc.toLocalCurrency(local, sizeof local, number, false));
      Number money;
      RC_ASSERT(loc.fromLocalCurrency(local, sizeof local, money));
      // Its sign is passed over, and what passes the range in between is none.
      if (!money.isOverflow()) {
        seen.Add("currency");
        RC_ASSERT(Exact(money) == Exact(number.Abs()));
      }
    }
  });
  seen.Require(run, {{"fits", 1000}, {"overflow", 100}, {"currency", 100}});
}

TEST(NumbersProperty, SumsAndProductsAreRightOrOverflow) {
  const PropertyRun run = RunOf(5000);
  Seen seen("arithmetic of the foundation");
  const Wide limit = static_cast<Wide>(Number::MAX_VALUE);
  Holds(run, [&] {
    const auto make = [] {
      return Number(*Integers() % static_cast<int64_t>(Number::MAX_VALUE),
                    static_cast<unsigned>(*gen::inRange(0, 5)));
    };
    const Number a = make();
    const Number b = make();
    const Number sum = a + b;
    const Number difference = a - b;
    for (const auto& [got, exact] :
         {std::pair(sum, Exact(a) + Exact(b)), std::pair(difference, Exact(a) - Exact(b))}) {
      if (got.isOverflow()) {
        seen.Add("sum overflows");
      } else {
        seen.Add("sum");
        RC_ASSERT(Exact(got) == exact);
        RC_ASSERT(static_cast<Wide>(got.absValue()) <= limit);
      }
    }
    // One that is long with one that is short, or every product overflows.
    const Number c(*Integers() % 100000, static_cast<unsigned>(*gen::inRange(0, 5)));
    const Number product = a * c;
    if (product.isOverflow()) {
      seen.Add("product overflows");
    } else {
      seen.Add("product");
      // Cut to four decimals, towards zero.
      const Wide exact = Exact(a) * Exact(c);
      RC_ASSERT(Exact(product) == exact / 10000);
    }
  });
  seen.Require(
      run, {{"sum", 1000}, {"sum overflows", 100}, {"product", 500}, {"product overflows", 100}});
}

TEST(NumbersProperty, PricesOfAnAmountAreReadByTheLanguage) {
  const PropertyRun run = RunOf(3000);
  Holds(run, [] {
    const int64_t number = *Integers() % 1000000000000;
    const auto small = static_cast<int32_t>(number);
    std::string text = (number < 0 ? "-" : "") + Plain(FormatUnitPrice(number));
    RC_ASSERT(lorimatutility::TradPrice(text.data(), false, '.', 4) == number);
    text = (small < 0 ? "-" : "") + Plain(FormatRate(small));
    RC_ASSERT(lorimatutility::TradPercentage(text.data(), '.', 4) == small);
    text = (small < 0 ? "-" : "") + Plain(FormatQuantity(small));
    RC_ASSERT(lorimatutility::TradQuantity(text.data(), '.') == small);
  });
}

// A time zone without summer time while it stands: an hour that comes twice is not told apart.
class PlainZone {
 public:
  PlainZone() {
    if (const char* zone = std::getenv("TZ")) before_ = zone;
    setenv("TZ", "UTC0", 1);
    tzset();
  }
  ~PlainZone() {
    if (before_) {
      setenv("TZ", before_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  PlainZone(const PlainZone&) = delete;
  PlainZone& operator=(const PlainZone&) = delete;

 private:
  std::optional<std::string> before_;
};

bool SameMinute(const std::tm& a, const std::tm& b) {
  return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday &&
         a.tm_hour == b.tm_hour && a.tm_min == b.tm_min;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void Print(char* text, size_t size, const char* form, const std::tm& time) {
  std::strftime(text, size, form, &time);
}
#pragma GCC diagnostic pop

TEST(NumbersProperty, TimesAreReadAsTheyArePrinted) {
  const PlainZone zone;
  const PropertyRun run = RunOf(3000);
  Seen seen("times");
  Holds(run, [&] {
    // From 1971 to 2068, as two digits of a year are read.
    const std::time_t moment = *gen::resize(1000, gen::inRange<int64_t>(31536000, 3124137600));
    std::tm time = {};
    gmtime_r(&moment, &time);
    if (time.tm_mon == 1 && time.tm_mday == 29) seen.Add("29 February");
    for (const char* form :
         {Locale::localDateTimeFormat(), Locale::localXMLDateTimeFormat(),
          Locale::localShortDateTimeFormat(), Locale::localUPOSLongTimeFormat(),
          Locale::localCompactLongDateTimeFormat(), Locale::localCompactShortDateTimeFormat()}) {
      char text[64];
      RC_ASSERT(loc.toLocalDateTime(text, sizeof text, form, &time, false));
      std::tm read = {};
      // The check of dates refuses that month.
      const bool good = time.tm_year != 100 || time.tm_mon != 1;
      RC_ASSERT(loc.fromLocalDateTime(text, sizeof text, form, &read) == good);
      RC_ASSERT(!good || SameMinute(read, time));
    }
    char minute[64];
    std::strftime(minute, sizeof minute, "%d%m%Y%H%M", &time);
    std::tm read = {};
    RC_ASSERT(ParseMinute(minute, &read));
    RC_ASSERT(SameMinute(read, time));
    for (const char* form :
         {"%Y-%m-%d %H:%M:%S", "%Y-%m-%dT%H:%M", "%d/%m/%Y %H:%M", "%d%m%Y%H%M", "%d%m%Y%H%M%S"}) {
      char text[64];
      Print(text, sizeof text, form, time);
      const auto given = console::ParseDate(text);
      RC_ASSERT(given && SameMinute(given->time, time) && given->time.tm_wday == time.tm_wday &&
                given->time.tm_yday == time.tm_yday);
    }
    // A text that is read is one that the calendar prints.
    std::string digits;
    const int days = *gen::inRange(0, 34), months = *gen::inRange(0, 15);
    const int hours = *gen::inRange(0, 26), minutes = *gen::inRange(0, 63);
    char any[64];
    std::snprintf(any, sizeof any, "%02d%02d%04d%02d%02d", days, months, 1900 + time.tm_year, hours,
                  minutes);
    const bool taken = ParseMinute(any, &read);
    seen.Add(taken ? "read" : "no such time");
    const auto given = console::ParseDate(any);
    RC_ASSERT(taken == given.has_value());
    if (taken) {
      char again[64];
      std::strftime(again, sizeof again, "%d%m%Y%H%M", &read);
      RC_ASSERT(std::string(again) == any);
    }
  });
  seen.Require(run, {{"read", 100}, {"no such time", 100}, {"29 February", 1}});
}

TEST(NumbersProperty, IntegersAndAddressesPassNoRange) {
  const PropertyRun run = RunOf(3000);
  Seen seen("integers");
  Holds(run, [&] {
    const int64_t number = *Integers();
    char text[64];
    RC_ASSERT(Locale::toLocalInteger(text, sizeof text, number));
    int64_t wide = 0;
    int32_t narrow = 0;
    const bool fits = number >= INT32_MIN && number <= INT32_MAX;
    seen.Add(fits ? "fits" : "does not fit");
    RC_ASSERT(Locale::fromLocalInteger(text, sizeof text, wide) == fits);
    RC_ASSERT(Locale::fromLocalInteger(text, sizeof text, narrow) == fits);
    if (fits) RC_ASSERT(wide == number && narrow == number);
    const auto address = static_cast<uint32_t>(number);
    uint32_t read = 0;
    RC_ASSERT(Locale::toLocalIPAddress(text, sizeof text, address));
    RC_ASSERT(Locale::fromLocalIPAddress(text, sizeof text, read) && read == address);
    const auto closure = static_cast<int32_t>(1 + (address >> 8) % 9999);
    const auto progressive = static_cast<int32_t>(1 + address % 9999);
    int32_t z = 0, p = 0;
    RC_ASSERT(Locale::toLocalTelematicReceiptNumber(text, sizeof text, closure, progressive));
    RC_ASSERT(Locale::fromLocalTelematicReceiptNumber(text, sizeof text, z, p));
    RC_ASSERT(z == closure && p == progressive);
  });
  seen.Require(run, {{"fits", 300}, {"does not fit", 300}});
}

}  // namespace
}  // namespace lorimat
