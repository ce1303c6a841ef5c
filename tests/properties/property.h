// Properties: promises that hold for whatever chance brings. A property runs so many cases, of a
// seed; the first that fails is made smaller, for so many tries, and shown, with the seed.
//
// LORIMAT_PROPERTY_COUNT is the number of cases of each property, LORIMAT_PROPERTY_SEED where
// chance begins; without them a number that fits a quick run, and 1. LORIMAT_PROPERTY_SHARE divides
// that number, for programs that are slow.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace lorimat {

struct PropertyRun {
  int count = 0;  // cases
  uint64_t seed = 1;
  bool has_enough = true;  // as many cases as the quick run has at least
};
PropertyRun RunOf(int quick_count);

// What chance has brought, by names. Rare things that no case had prove nothing.
class Seen {
 public:
  explicit Seen(std::string property) : property_(std::move(property)) {}

  void Add(const std::string& what, int64_t count = 1) { counts_[what] += count; }
  int64_t Of(const std::string& what) const;
  // Shows all counts; fails for each that is below its least, of a run that has enough cases.
  void Require(const PropertyRun& run, const std::map<std::string, int64_t>& least) const;

 private:
  std::string property_;
  std::map<std::string, int64_t> counts_;
};

// Counts the cases of a run that held, shows and fails what did not; for Holds.
void TellResult(const PropertyRun& run, const rc::detail::TestResult& result);

// How often a property that has failed is run again to make its case smaller. Of a case with files
// and troubles of the disk RapidCheck finds smaller ones for hours.
inline constexpr int kMostSmaller = 200;

// Runs a property: what it takes is generated, and RC_ASSERT and its like say what has to hold.
template <typename Property>
void Holds(const PropertyRun& run, Property&& property) {
  bool has_failed = false;
  int left = kMostSmaller;
  // What is not run any more has not failed, so that the smallest that did stays what is shown.
  const auto bounded = [&] {
    if (has_failed && left-- <= 0) return;
    try {
      property();
    } catch (const rc::detail::CaseResult& result) {
      has_failed = has_failed || result.type == rc::detail::CaseResult::Type::Failure;
      throw;
    } catch (...) {
      has_failed = true;
      throw;
    }
  };
  rc::detail::TestParams params;
  params.seed = run.seed;
  params.maxSuccess = run.count;
  rc::detail::TestMetadata metadata;
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  metadata.id = std::string(test->test_suite_name()) + "." + test->name();
  metadata.description = metadata.id;
  TellResult(run, rc::detail::checkTestable(bounded, metadata, params));
}

}  // namespace lorimat
