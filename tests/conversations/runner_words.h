// The command line that the runners share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "player.h"

namespace conversation {

struct RunnerWords {
  std::string flag;  // the one that was given, or empty
  std::vector<std::string> words;
};

// Reads "--library FILE" and "--language FILE" into the stage, whose paths become absolute, and
// one of the runner's own flags. Nothing, with a line on standard error, for another option or no
// word.
std::optional<RunnerWords> ReadRunnerWords(int count, char** arguments,
                                           const std::vector<std::string>& flags, Stage& stage);

}  // namespace conversation
