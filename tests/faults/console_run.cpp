#include "console_run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "apart.h"

namespace lorimat {
namespace {

// Beside those of the command line.
constexpr const char* kNames[] = {"standard output", "standard error", "liblorimatrt",
                                  "merkelin.ini",    "at.cmd",         "errors.cmd",
                                  "log.cmd"};
constexpr const char* kCauses[] = {"not enough memory"};
constexpr int kHighestError = 133;

// A value of these is no name.
bool TakesText(const std::string& option) { return option == "--clock" || option == "--header"; }

}  // namespace

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Ended RunConsole(const Words& words, const std::string& folder, const std::string& beside,
                 const Disturbance& disturbance, const std::string& out) {
  const std::string errors = beside + "errors.txt";
  std::filesystem::remove(errors);
  auto work = [&] {
    if (chdir(folder.c_str()) != 0) _exit(99);
    const int input = open("/dev/null", O_RDONLY);
    int printed = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (printed < 0) printed = open((beside + "out.txt").c_str(), O_WRONLY | O_CREAT, 0600);
    const int told = open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(input, 0);
    dup2(printed, 1);
    dup2(told, 2);
    close_range(3, 1000, 0);
    if (!disturbance.strike.empty()) setenv("LORIMAT_TEST_STRIKE", disturbance.strike.c_str(), 1);
    if (!disturbance.clock.empty()) setenv("LORIMAT_TEST_CLOCK", disturbance.clock.c_str(), 1);
    setenv("LORIMAT_TEST_FOLDER", folder.c_str(), 1);
    setenv("LORIMAT_TEST_COUNTS", (beside + "counts.txt").c_str(), 1);
    setenv("LORIMATRT_REGISTRY", (beside + "no-registry").c_str(), 1);
    setenv("TMPDIR", (folder + "scratch").c_str(), 1);
    setenv("LC_ALL", "C", 1);
    unsetenv("LORIMAT_REGISTER");
    setenv("LD_PRELOAD", STRIKE_PRELOAD, 1);
    std::vector<char*> arguments = {const_cast<char*>("lorimat")};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    if (disturbance.descriptors != 0) {
      const rlimit limit = {disturbance.descriptors, disturbance.descriptors};
      setrlimit(RLIMIT_NOFILE, &limit);
    }
    execv(LORIMAT, arguments.data());
    _exit(98);
  };
  const int status = RunApart(work);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), ReadFile(errors)};
}

bool NamesFileOrCause(const std::string& message, const std::vector<std::string>& words) {
  const auto has = [&](const std::string& text) { return message.find(text) != message.npos; };
  for (const char* name : kNames) {
    if (has(name)) return true;
  }
  for (const char* cause : kCauses) {
    if (has(cause)) return true;
  }
  // The first word is the subcommand, which sentences on its use have as well.
  for (size_t i = 1; i < words.size(); ++i) {
    if (words[i][0] != '-' && !TakesText(words[i - 1]) && has(words[i])) return true;
  }
  for (int error = 1; error <= kHighestError; ++error) {
    if (has(std::strerror(error))) return true;
  }
  return false;
}

}  // namespace lorimat
