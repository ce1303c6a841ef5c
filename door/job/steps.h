// The steps of a job, for those who want to see what becomes of it when one of them is the last.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace lorimat::door {

enum class Step : uint8_t {
  kBeforeReset,
  kBeforeBaseline,
  kBeforeFirstLine,  // the baseline is on the disk
  kBeforeMark,
  kBeforeLine,
  kBehindLine,  // answered, and nobody was told
  kBeforeVoid,
  kBehindVoid,
  kBeforeOutcome,
  kBehindOutcome,  // on the disk, and nobody was told
  kBeforeAsking,   // of an unknown outcome
  kBehindAsking,
  kLast = kBehindAsking,
};
// "before-line".
std::string_view StepName(Step step);

using StepWatch = std::function<void(Step)>;

}  // namespace lorimat::door
