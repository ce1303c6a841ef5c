#include "register/totals/rate_sums.h"

#include <algorithm>
#include <utility>

#include "register/tables/tables.h"
#include "register/value/nature.h"

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

RateSums& Of(const VatRate& rate, std::vector<RateSums>* all) {
  const auto found = std::find_if(all->begin(), all->end(),
                                  [&](const RateSums& sums) { return SameRate(sums.rate, rate); });
  if (found != all->end()) return *found;
  // A mark of a host's own may stand for several rates.
  const bool marked = rate.rate == 0 && !rate.mark.empty();
  all->push_back({marked ? rate.mark : FormatRate(rate.rate), rate, {}});
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

void AddByRate(const Totals& totals, const std::vector<VatRate>& rates,
               std::vector<RateSums>* all) {
  // An entry that the table does not have is of no rate.
  const auto now = [&rates](int vat) {
    const VatRate* rate = VatEntry(rates, vat);
    return rate != nullptr ? *rate : VatRate{};
  };
  for (const auto& [vat, gross] : totals.GrossByVat()) {
    RateSums& sums = Of(now(vat), all);
    for (const DocumentKind kind : kKinds) {
      const auto figures = totals.of(kind).by_vat.find(vat);
      if (figures == totals.of(kind).by_vat.end()) continue;
      AddTo(&sums.kinds[static_cast<size_t>(kind)], figures->second);
    }
  }
  for (const DocumentKind kind : kKinds) {
    const auto index = static_cast<size_t>(kind);
    for (const auto& [entry, figures] : totals.of(kind).at_other_rates) {
      AddTo(&Of(now(entry.vat), all).kinds[index], figures, -1);
      AddTo(&Of(entry.rate, all).kinds[index], figures);
    }
  }
}

std::vector<RateSums> Something(std::vector<RateSums> all) {
  std::erase_if(all, [](const RateSums& sums) {
    return std::all_of(sums.kinds.begin(), sums.kinds.end(), IsNothing);
  });
  return all;
}

std::vector<RateSums> SumsByRate(const Totals& totals, const std::vector<VatRate>& rates) {
  std::vector<RateSums> all;
  AddByRate(totals, rates, &all);
  return Something(std::move(all));
}

}  // namespace lorimat
