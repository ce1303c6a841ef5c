#include "properties/property.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "tests/unit/support/count.h"

namespace lorimat {
namespace {

// A number of the environment; 0 for none.
uint64_t Number(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

}  // namespace

PropertyRun RunOf(int quick_count) {
  PropertyRun run;
  run.count = static_cast<int>(Number("LORIMAT_PROPERTY_COUNT"));
  if (run.count <= 0) {
    const auto share = static_cast<int>(std::max<uint64_t>(Number("LORIMAT_PROPERTY_SHARE"), 1));
    run.count = (quick_count + share - 1) / share;
  }
  run.has_enough = run.count >= quick_count;
  const uint64_t seed = Number("LORIMAT_PROPERTY_SEED");
  if (seed != 0) run.seed = seed;
  // What RapidCheck tells of itself is the same.
  setenv("RC_PARAMS", ("seed=" + std::to_string(run.seed)).c_str(), 0);
  return run;
}

int64_t Seen::Of(const std::string& what) const {
  const auto found = counts_.find(what);
  return found == counts_.end() ? 0 : found->second;
}

void Seen::Require(const PropertyRun& run, const std::map<std::string, int64_t>& least) const {
  std::printf("%s, %d cases of seed %llu:\n", property_.c_str(), run.count,
              static_cast<unsigned long long>(run.seed));
  for (const auto& [what, count] : counts_) {
    std::printf("  %10lld %s\n", static_cast<long long>(count), what.c_str());
  }
  // A run that has failed ends before it has all.
  if (!run.has_enough || testing::Test::HasFailure()) return;
  for (const auto& [what, count] : least) {
    EXPECT_GE(Of(what), count) << "chance has hardly brought: " << what;
  }
}

void TellResult(const PropertyRun& run, const rc::detail::TestResult& result) {
  rc::detail::SuccessResult success;
  if (result.match(success)) {
    PrintCount("properties", static_cast<unsigned long long>(success.numSuccess),
               static_cast<unsigned long long>(run.count));
    return;
  }
  std::ostringstream text;
  rc::detail::printResultMessage(result, text);
  ADD_FAILURE() << text.str();
}

}  // namespace lorimat
