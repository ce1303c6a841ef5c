#include "tally.h"

#include <algorithm>
#include <cstdio>

#include "tests/unit/support/count.h"

namespace lorimat {
namespace {

void Print(const Tally& tally) {
  std::printf("%-32s %9ld %9ld %9ld %9ld %9ld\n", tally.name.c_str(), tally.calls, tally.tried,
              tally.missed, tally.unknown, tally.wrong);
}

}  // namespace

bool PrintTallies(const std::vector<const Tally*>& tallies, const char* name, long wanted) {
  std::printf("\n%-32s %9s %9s %9s %9s %9s\n", "fault", "places", "tried", "missed", "unknown",
              "wrong");
  Tally sum;
  for (const Tally* tally : tallies) {
    Print(*tally);
    sum.calls += tally->calls;
    sum.tried += tally->tried;
    sum.missed += tally->missed;
    sum.unknown += tally->unknown;
    sum.wrong += tally->wrong;
  }
  sum.name = "all";
  Print(sum);
  const long asked = wanted > 0 ? std::min(wanted, sum.calls) : sum.calls;
  PrintCount(name, static_cast<unsigned long long>(sum.tried - sum.missed),
             static_cast<unsigned long long>(asked - asked / 50));
  const bool struck = sum.tried > 0 && sum.missed * 50 <= sum.tried;
  if (!struck) std::printf("too many places were not struck\n");
  return sum.wrong == 0 && struck;
}

std::vector<long> SpreadPlaces(long calls, long wanted, long beginning) {
  const bool all = wanted == 0 || wanted >= calls;
  const long count = all ? calls : std::max(1L, wanted);
  const long first = all ? 0 : beginning % calls;
  std::vector<long> places;
  for (long i = 0; i < count; ++i) places.push_back(1 + (i * calls / count + first) % calls);
  return places;
}

}  // namespace lorimat
