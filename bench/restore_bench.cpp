// "lorimat restore" of a backup with articles into a new register: all of the program from its
// start to its end. The rows that it stores are those of article_upload, which has the same by bare
// means.
//
// The processor's time of another process is not known to Google Benchmark: it stands in the
// counter "cpu", in seconds.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register_work.h"

namespace {

using lorimat::VirtualRegister;

struct Times {
  double wall = 0;
  double processor = 0;
};

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Seconds that the program took, which has to end well.
Times RunConsole(const std::vector<std::string>& arguments) {
  std::vector<char*> words = {const_cast<char*>(LORIMAT_CONSOLE)};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  const auto begin = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int code = posix_spawn(&child, LORIMAT_CONSOLE, &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  Require(code == 0, "the console does not start");
  int status = 0;
  rusage usage = {};
  Require(
      wait4(child, &status, 0, &usage) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0,
      "the console fails");
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
  return {wall.count(), Seconds(usage.ru_utime) + Seconds(usage.ru_stime)};
}

void Restore(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto articles = static_cast<int>(state.range(0));
  const std::string backup = folder.File("backup");
  {
    VirtualRegister device(WorkSettings(folder.File("from")));
    UploadArticles(device, ArticleRows(articles));
  }
  RunConsole({"backup", backup, "--register", folder.File("from")});
  double processor = 0;
  int number = 0;
  for (auto _ : state) {
    const std::string to = folder.File("to" + std::to_string(++number));
    std::make_unique<VirtualRegister>(WorkSettings(to)).reset();
    const Times times = RunConsole({"restore", backup, "--register", to});
    state.SetIterationTime(times.wall);
    processor += times.processor;
    Require(VirtualRegister(WorkSettings(to)).tables().settings().articles.size() ==
                static_cast<size_t>(articles),
            "articles are missing");
  }
  state.counters["cpu"] = benchmark::Counter(processor, benchmark::Counter::kAvgIterations);
  state.SetItemsProcessed(state.iterations() * articles);
}
BENCHMARK(Restore)
    ->Name("restore/ours")
    ->Arg(6000)
    ->Arg(60000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
