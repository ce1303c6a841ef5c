// What work costs in instructions, counted by callgrind: the same on every run, so that a list can
// keep it. A program of script/growth calls Measure for each subject; outside of valgrind it does
// the work and counts nothing.
#pragma once

#include <valgrind/callgrind.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace growth {

// Counts the work and tells of it: "subject units". A subject is FAMILY/SIZE; of one family a unit
// (a line, a character, an operation) must not cost more at one size than at another. Set-up
// belongs in front of the call, checks behind it.
template <class Work>
void Measure(const std::string& subject, int64_t units, Work work) {
  CALLGRIND_ZERO_STATS;
  work();
  CALLGRIND_DUMP_STATS_AT(subject.c_str());
  std::printf("%s %lld\n", subject.c_str(), static_cast<long long>(units));
  std::fflush(stdout);
}

}  // namespace growth
