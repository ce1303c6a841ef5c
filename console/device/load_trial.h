// A shared object tried in a process of its own, before this one takes it in: a file that is cut
// off or made for another machine, or whose code fails when it is loaded, ends that process and not
// this one.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "console/message/load_failure.h"

namespace lorimat::console {

// What a trial does with what was loaded, in the other process: nothing that it changes comes back
// but the text that it returns. Its standard streams lead nowhere.
using TrialWork = std::function<std::string(void* handle)>;

// What is done behind that, for what can fail once the report is there.
using TrialEnd = std::function<void(void* handle)>;

struct Trial {
  LoadFailure failure = {};
  std::string report = {};  // what the work returned
};

// How long a trial may take, in all.
inline constexpr int kTrialSeconds = 20;

// The path has a '/', or the loader would search the folders of the system. Failures of all kinds
// come back as values; an exception of the work counts as an end at work. A signal that interrupt.h
// notes ends the trial.
Trial TryLoading(const std::string& path, std::span<const char* const> functions,
                 const TrialWork& work, int seconds = kTrialSeconds, const TrialEnd& end = {});

}  // namespace lorimat::console
