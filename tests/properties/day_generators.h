// Days that chance makes: scenes of a shop, right and wrong ones, with troubles if they are wanted.
#pragma once

#include <rapidcheck.h>

#include <string>
#include <vector>

#include "day/troubled_day.h"
#include "properties/property.h"

namespace lorimat {

using Day = std::vector<DayStep>;

// So many scenes at most, each of some steps: sales of all kinds, credit notes, voids, invoices,
// non-fiscal documents, training, closings, restarts, and operations and bytes by chance. Of a
// hundred operations so many have trouble.
rc::Gen<Day> Days(int most_scenes, int troubles_in_a_hundred);

// For what is shown of a day that fails.
std::ostream& operator<<(std::ostream& out, const DayStep& step);

// The counts of troubled days, by names.
void AddCounts(const TroubledDay::Counts& counts, Seen* seen);

}  // namespace lorimat
