// What came out of the faults of a kind, as a row of the table that a program of loops ends with.
#pragma once

#include <string>
#include <vector>

namespace lorimat {

struct Tally {
  std::string name;
  long calls = 0;  // places that there are
  long tried = 0;
  long missed = 0;   // nothing was struck there
  long unknown = 0;  // the host was told that an outcome is unknown
  long wrong = 0;
};

// Prints the rows and their sum, and counts the places that were struck by this name, of so many
// that were wanted (0: all). Whether none is wrong and enough was struck to say so: a place that
// was not struck shows nothing.
bool PrintTallies(const std::vector<const Tally*>& tallies, const char* name, long wanted);

// So many of the places from 1 to `calls`, at equal distances from a beginning; 0 takes all.
std::vector<long> SpreadPlaces(long calls, long wanted, long beginning);

}  // namespace lorimat
