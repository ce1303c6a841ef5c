// Day closings as the fiscal memory keeps them, and the starts of the periods whose totals run
// across closings.
#pragma once

#include <cstdint>
#include <ctime>
#include <vector>

#include "register/totals/totals.h"

namespace lorimat {

struct DailyCounters {
  int documents = 0;  // number of the last receipt, credit note or void
  int sales = 0;
  int invoices = 0;
  int refunds = 0;
  int cancels = 0;
  int abandoned = 0;
  int non_fiscal = 0;

  bool operator==(const DailyCounters&) const = default;
};

// One day, closed. Nothing in it changes but whether it has been sent.
struct Closure {
  int number = 0;
  std::tm time = {};
  Totals totals;
  DailyCounters counters;
  Amount grand_total = 0;          // after this day
  std::vector<VatRate> vat_rates;  // that were in force, entry 1 first
  bool sent = false;               // the telematic summary
};

// Where the totals of a period begin: at a document, by its place among all registered ones.
struct PeriodStart {
  int64_t first_document = 1;
  std::tm time = {};
  bool cleared = false;  // false: since the register began
};

// Orders times by year, month, day, hour and minute: below 0, 0 or above 0.
int CompareMinutes(const std::tm& a, const std::tm& b);

}  // namespace lorimat
