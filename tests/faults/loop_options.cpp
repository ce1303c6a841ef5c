#include "loop_options.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace lorimat {
namespace {

[[noreturn]] void Usage(int status) {
  std::fputs(
      "usage: PROGRAM [--places N|all] [--seed N] [--only N] [--jobs N] [--folder FOLDER]\n"
      "               [--failures FILE] [NAME...]\n",
      status == 0 ? stdout : stderr);
  std::exit(status);
}

long Number(const char* text) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  if (end == text || *end != 0 || number < 1) Usage(2);
  return number;
}

}  // namespace

LoopOptions ReadLoopOptions(int argc, char** argv) {
  LoopOptions options;
  options.folder = access("/dev/shm", W_OK) == 0 ? std::string("/dev/shm")
                                                 : std::filesystem::temp_directory_path().string();
  for (int i = 1; i < argc; ++i) {
    const std::string_view name = argv[i];
    if (name == "--help") Usage(0);
    if (name.substr(0, 2) != "--") {
      options.names.emplace_back(name);
      continue;
    }
    if (++i == argc) Usage(2);
    const char* value = argv[i];
    if (name == "--places") {
      options.places = std::string_view(value) == "all" ? 0 : Number(value);
    } else if (name == "--seed") {
      options.seed = Number(value);
    } else if (name == "--only") {
      options.only = Number(value);
    } else if (name == "--jobs") {
      options.jobs = static_cast<int>(std::min(Number(value), 1000L));
    } else if (name == "--folder") {
      options.folder = value;
    } else if (name == "--failures") {
      options.failures = value;
    } else {
      Usage(2);
    }
  }
  return options;
}

}  // namespace lorimat
