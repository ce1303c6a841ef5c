#include "register/totals/rate_sums.h"

#include <algorithm>

#include "register/tables/tables.h"

namespace lorimat {
namespace {

constexpr DocumentKind kKinds[] = {DocumentKind::kSale, DocumentKind::kInvoice,
                                   DocumentKind::kRefund, DocumentKind::kCancel};

template <typename Each>
void ForKinds(const std::array<VatFigures, 4>& kinds, unsigned wanted, Each each) {
  for (const DocumentKind kind : kKinds) {
    const auto index = static_cast<size_t>(kind);
    if ((wanted & (1u << index)) != 0) each(kinds[index], DailySign(kind));
  }
}

RateSums& Named(const std::string& name, const VatRate& rate, std::vector<RateSums>* all) {
  const auto found = std::find_if(all->begin(), all->end(),
                                  [&name](const RateSums& sums) { return sums.name == name; });
  if (found != all->end()) return *found;
  all->push_back({name, rate, {}});
  return all->back();
}

bool IsNothing(const VatFigures& figures) {
  const auto nothing = [](const auto& one) { return one == std::decay_t<decltype(one)>(); };
  return std::all_of(figures.taxed.begin(), figures.taxed.end(), nothing) &&
         std::all_of(figures.entered.begin(), figures.entered.end(), nothing) &&
         std::all_of(figures.counts.begin(), figures.counts.end(), nothing);
}

}  // namespace

TaxedAmount RateSums::Sum(unsigned wanted, TaxedFigure figure) const {
  TaxedAmount sum;
  ForKinds(kinds, wanted,
           [&](const VatFigures& figures, int sign) { AddTo(&sum, figures[figure], sign); });
  return sum;
}

Amount RateSums::Stands(unsigned wanted, EnteredFigure figure) const {
  EnteredAmount sum;
  ForKinds(kinds, wanted,
           [&](const VatFigures& figures, int sign) { AddTo(&sum, figures[figure], sign); });
  AddTo(&sum.amount, sum.taken_back, -1);
  return sum.amount;
}

int64_t RateSums::Count(unsigned wanted, Counted what) const {
  int64_t sum = 0;
  ForKinds(kinds, wanted, [&](const VatFigures& figures, int) { AddTo(&sum, figures[what]); });
  return sum;
}

std::vector<RateSums> SumsByRate(const Totals& totals, const std::vector<VatRate>& rates) {
  std::vector<RateSums> all;
  for (const auto& [vat, gross] : totals.GrossByVat()) {
    const bool known = vat >= 1 && static_cast<size_t>(vat) <= rates.size();
    RateSums& sums =
        Named(VatName(rates, vat), known ? rates[static_cast<size_t>(vat) - 1] : VatRate{}, &all);
    for (const DocumentKind kind : kKinds) {
      const auto figures = totals.of(kind).by_vat.find(vat);
      if (figures == totals.of(kind).by_vat.end()) continue;
      AddTo(&sums.kinds[static_cast<size_t>(kind)], figures->second);
    }
  }
  for (const DocumentKind kind : kKinds) {
    const auto index = static_cast<size_t>(kind);
    for (const auto& [entry, figures] : totals.of(kind).at_other_rates) {
      const std::string now = VatName(rates, entry.vat);
      for (RateSums& sums : all) {
        if (sums.name == now) AddTo(&sums.kinds[index], figures, -1);
      }
      AddTo(&Named(VatName({entry.rate}, 1), entry.rate, &all).kinds[index], figures);
    }
  }
  std::erase_if(all, [](const RateSums& sums) {
    return std::all_of(sums.kinds.begin(), sums.kinds.end(), IsNothing);
  });
  return all;
}

}  // namespace lorimat
