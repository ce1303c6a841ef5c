// Where names that differ by case are one, as on file systems of other systems, an output that is
// the input in other letters: the command is refused, says so, and leaves what is there as it is.
// Beside it the same command where case tells names apart, which has to work.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "console_run.h"
#include "loop_options.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOneCase = "0 0 1 0 i";
constexpr rlim_t kLargestFile = 4 << 20;

struct Trial {
  Words words;
  const char* input;
};

const Trial kTrials[] = {
    {{"run", "lines.cmd", "--paper", "LINES.CMD"}, "lines.cmd"},
    {{"run", "lines.cmd", "--trace", "Lines.cmd"}, "lines.cmd"},
    {{"run", "lines.cmd", "--register", "shop.register", "--paper", "Shop.Register"},
     "shop.register"},
    {{"paper", "--register", "shop.register", "--paper", "SHOP.register"}, "shop.register"},
    {{"copy", "shop.register", "SHOP.REGISTER"}, "shop.register"},
    {{"backup", "SHOP.REGISTER", "--register", "shop.register"}, "shop.register"},
    {{"init", "LINES.cmd"}, "lines.cmd"},
};

class Shop {
 public:
  explicit Shop(const std::string& folder) : base_(folder + "/lorimat-case.XXXXXX") {
    if (mkdtemp(base_.data()) == nullptr) std::perror(base_.c_str());
    files_ = base_ + "/files/";
    fs::create_directories(files_ + "scratch");
    std::ofstream(files_ + "lines.cmd") << "VEND REP=1, PRE=2.50\nCHIU\n";
  }
  ~Shop() {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  Ended Run(const Words& words, bool one_case) const {
    return RunConsole(words, files_, base_ + "/", {.strike = one_case ? kOneCase : ""},
                      base_ + "/out.txt");
  }
  std::string Content(const char* name) const { return ReadFile(files_ + name); }

 private:
  std::string base_;
  std::string files_;
};

// What is wrong; empty for nothing.
std::string Try(const Trial& trial, const std::string& folder) {
  const Words sell = {"run", "lines.cmd", "--register", "shop.register"};
  for (const bool one_case : {false, true}) {
    const Shop shop(folder);
    if (shop.Run(sell, false).code != 0) return "the shop cannot be made";
    const std::string before = shop.Content(trial.input);
    const Ended ended = shop.Run(trial.words, one_case);
    if (!one_case && ended.code != 0) return "where case counts: " + ended.errors;
    if (!one_case) continue;
    if (ended.code == 0) return "is taken";
    if (!NamesFileOrCause(ended.errors, trial.words)) return "is refused for: " + ended.errors;
    if (shop.Content(trial.input) != before) return std::string(trial.input) + " is another";
  }
  return {};
}

int Run(const LoopOptions& options) {
  // What is read from where it is written has no end.
  const rlimit limit = {kLargestFile, kLargestFile};
  setrlimit(RLIMIT_FSIZE, &limit);
  int wrong = 0;
  for (const Trial& trial : kTrials) {
    std::string line;
    for (const std::string& word : trial.words) line += " " + word;
    const std::string found = Try(trial, options.folder);
    if (!found.empty()) ++wrong;
    std::printf("lorimat%s: %s\n", line.c_str(), found.empty() ? "refused" : found.c_str());
  }
  return wrong == 0 ? 0 : 1;
}

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) { return lorimat::Run(lorimat::ReadLoopOptions(argc, argv)); }
