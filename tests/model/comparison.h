// What the parts of the comparison share: the count, what is told of a difference, texts one after
// the other, and chance that is the same in every run of a seed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <string_view>

class Comparison {
 public:
  explicit Comparison(uint64_t seed) : chance_(seed) {}

  // One comparison. What differs is told by difference, which is asked for then.
  void Check(bool same, const std::function<std::string()>& difference) {
    ++count_;
    if (same) return;
    ++differences_;
    if (differences_ <= kShown) std::printf("DIFFERENT: %s\n", difference().c_str());
  }

  uint64_t count() const { return count_; }
  uint64_t differences() const { return differences_; }

  // A number from 0 to below limit.
  size_t Below(size_t limit) { return static_cast<size_t>(chance_() % limit); }
  bool Once(size_t in) { return Below(in) == 0; }
  template <typename List>
  const auto& Any(const List& list) {
    return list[Below(list.size())];
  }

 private:
  static constexpr uint64_t kShown = 40;

  std::mt19937_64 chance_;
  uint64_t count_ = 0;
  uint64_t differences_ = 0;
};

// Gives f each text over the alphabet, the short ones first, until most were given. The result is
// the length up to which f had every one.
size_t EveryText(std::string_view alphabet, uint64_t most,
                 const std::function<void(const std::string&)>& f);

// A text as it can be read on a terminal, in double quotes.
std::string Shown(std::string_view text);

// The parts, each with about so many comparisons. They print what they compared.
void CompareCleaning(Comparison& comparison, uint64_t most);
void CompareEveryLine(Comparison& comparison, uint64_t most);
void CompareChanceLines(Comparison& comparison, uint64_t most);
void CompareDefinitions(Comparison& comparison, uint64_t most);
void CompareResultTexts(Comparison& comparison);
void CompareNumbers(Comparison& comparison, uint64_t most);
