#include "apart.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace lorimat {
namespace {

constexpr unsigned kMostSeconds = 120;  // of a process; one that hangs is ended

[[noreturn]] void Fail(const char* what) {
  std::perror(what);
  std::exit(2);
}

}  // namespace

void* SharedMemory(size_t size) {
  void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) Fail("no shared memory");
  return memory;
}

void Bound(unsigned processes) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  alarm(processes * kMostSeconds);
}

int StartApart(void (*work)(void* argument), void* argument, unsigned processes) {
  std::fflush(nullptr);
  const pid_t process = fork();
  if (process < 0) Fail("no process for it");
  if (process == 0) {
    Bound(processes);
    work(argument);
    std::fflush(nullptr);
    _exit(0);
  }
  return process;
}

int WaitFor(int process) {
  int status = 0;
  waitpid(process, &status, 0);
  return status;
}

}  // namespace lorimat
