// The sums of a day or a period by rate, as papers and summaries tell them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "register/totals/totals.h"
#include "register/value/settings.h"

namespace lorimat {

// What one rate, or one nature of sales without tax, comes to.
struct RateSums {
  std::string name;  // "22%", or the mark; no two have the same
  VatRate rate;
  std::array<VatFigures, 4> kinds;  // by DocumentKind

  // Over kinds (bits of Totals), with the sign that each has in the day.
  TaxedAmount Sum(unsigned wanted, TaxedFigure figure) const;
  // Lines or adjustments of such kinds as they stand.
  Amount Stands(unsigned wanted, EnteredFigure figure) const;
  // How many there are, of all such kinds.
  int64_t Count(unsigned wanted, Counted what) const;
};

// In the order of the VAT table; entries with the same rate, or of the same nature, are one. What
// went back at the rate of its day stands at that; a rate at which nothing is left is none.
std::vector<RateSums> SumsByRate(const Totals& totals, const std::vector<VatRate>& rates);

// The same over days of different tables: each is added with the rates that it had, and what is
// left of all of them is something.
void AddByRate(const Totals& totals, const std::vector<VatRate>& rates, std::vector<RateSums>* all);
std::vector<RateSums> Something(std::vector<RateSums> all);

}  // namespace lorimat
