#include "runner_words.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace conversation {

std::optional<RunnerWords> ReadRunnerWords(int count, char** arguments,
                                           const std::vector<std::string>& flags, Stage& stage) {
  RunnerWords read;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (read.flag.empty() && std::find(flags.begin(), flags.end(), argument) != flags.end()) {
      read.flag = argument;
    } else if (argument == "--library" && i + 1 < count) {
      stage.library = arguments[++i];
    } else if (argument == "--language" && i + 1 < count) {
      stage.language = arguments[++i];
    } else if (argument.starts_with("--")) {
      std::fprintf(stderr, "unknown option %s\n", argument.c_str());
      return std::nullopt;
    } else {
      read.words.push_back(argument);
    }
  }
  if (read.words.empty()) {
    std::fprintf(stderr, "nothing to play is named\n");
    return std::nullopt;
  }
  stage.library = std::filesystem::absolute(stage.library).string();
  stage.language = std::filesystem::absolute(stage.language).string();
  return read;
}

}  // namespace conversation
