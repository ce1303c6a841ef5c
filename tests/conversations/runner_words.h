// The command line that the runners share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "player.h"

namespace conversation {

struct RunnerWords {
  bool flag = false;
  std::vector<std::string> words;
};

// Reads "--library FILE" and "--language FILE" into the stage, whose paths become absolute, and
// the runner's own flag. Nothing, with a line on standard error, for another option or no word.
std::optional<RunnerWords> ReadRunnerWords(int count, char** arguments, const std::string& flag,
                                           Stage& stage);

}  // namespace conversation
