// The faults that are tried, as rows of a table: in which part of a register's life, which kind of
// call, in what manner it fails, and at which places.
#pragma once

#include <string>
#include <vector>

#include "life.h"
#include "tally.h"

namespace lorimat {

struct Row : Tally {         // named "day/write/half"
  Trouble trouble;           // without its place
  std::vector<long> places;  // those that are tried
};

inline constexpr Part kParts[] = {Part::kDay, Part::kLines, Part::kNew, Part::kCut};
const char* NameOf(Part part);

// The rows of a part; the report is of one without faults.
std::vector<Row> RowsOf(Part part, const Report& report);

// Whether a name, "day" or "write/half", takes the row.
bool Takes(const std::string& name, const Row& row);

// Gives each row its places, `all` together, 0 for all that there are. Rows with few are tried
// whole; the others share what is left, each with places at equal distances and a beginning of its
// own.
void ChoosePlaces(long all, std::vector<Row>* rows);

}  // namespace lorimat
