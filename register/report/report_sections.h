// The parts that reports are put together from, each on a paper of its own until the report is
// whole.
#pragma once

#include <string_view>
#include <vector>

#include "register/core/core.h"
#include "register/paper/paper.h"
#include "register/totals/closures.h"
#include "register/totals/rate_sums.h"

namespace lorimat {

// What a report shows, as bits.
enum ReportSection : unsigned {
  kDaySection = 1u << 0,  // documents and sums at a glance
  kTenderSection = 1u << 1,
  kVatSection = 1u << 2,
  kDepartmentSection = 1u << 3,
  kOperatorSection = 1u << 4,
};

// The figures of a day or of a period. Counters are those of the day; null for a period, which
// counts its documents.
struct ReportFigures {
  const Totals& totals;
  std::vector<RateSums> rates = {};  // each day at the rates that it had
  const DailyCounters* counters = nullptr;
  Amount grand_total = 0;
};

void PrintSections(const RegisterCore& core, const ReportFigures& figures, unsigned sections,
                   Paper* paper);
// One closing of the fiscal memory.
void PrintClosure(const Closure& closure, Paper* paper);

}  // namespace lorimat
