// Goes into a program ahead of its libraries, with strike.cpp, and has one of its calls of the
// system fail. LORIMAT_TEST_STRIKE holds, with blanks between: the kind, the first place, how many
// in a row (0 for all from there on), errno (0 for what is likely), and letters: h for half, c for
// cut, and of the file system r for read-only, f for full, l for no locks, i for names in one case.
// LORIMAT_TEST_FOLDER holds the test's files, with its '/' at the end. What was counted goes to the
// file LORIMAT_TEST_COUNTS when the program ends: the struck calls, and those of each kind.
//
// LORIMAT_TEST_CLOCK, "5 -86400", has the clock of the day jump by so many seconds behind its fifth
// reading; the clock that only measures goes on.
#include <dlfcn.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "strike.h"

namespace {

using lorimat::strike::Kind;
using lorimat::strike::Nature;
using lorimat::strike::Place;

using Main = int (*)(int, char**, char**);

Main program = nullptr;
bool armed = false;
const char* counts_file = nullptr;
long jump_behind = -1;
long jump = 0;
long readings = 0;

long Moved() { return ++readings > jump_behind && jump_behind >= 0 ? jump : 0; }

void ReadClock() {
  const char* text = getenv("LORIMAT_TEST_CLOCK");
  if (text != nullptr) std::sscanf(text, "%ld %ld", &jump_behind, &jump);
}

int RunProgram(int count, char** arguments, char** environment) {
  if (armed) lorimat::strike::Resume();
  return program(count, arguments, environment);
}

__attribute__((constructor)) void Begin() {
  ReadClock();
  const char* text = getenv("LORIMAT_TEST_STRIKE");
  const char* folder = getenv("LORIMAT_TEST_FOLDER");
  counts_file = getenv("LORIMAT_TEST_COUNTS");
  int kind = 0;
  char letters[16] = "";
  Place place;
  if (text == nullptr || folder == nullptr ||
      std::sscanf(text, "%d %ld %ld %d %15s", &kind, &place.first, &place.run, &place.error,
                  letters) < 4) {
    return;
  }
  const auto has = [&letters](char letter) { return strchr(letters, letter) != nullptr; };
  place.kind = static_cast<Kind>(kind);
  if (place.run == 0) place.run = lorimat::strike::kForGood;
  place.cut = has('c');
  place.behind_open = has('o');
  place.half = has('h') || place.cut;
  lorimat::strike::SetNature(
      {.read_only = has('r'), .full = has('f'), .no_locks = has('l'), .one_case = has('i')});
  lorimat::strike::Arm(place, folder);
  armed = true;
}

__attribute__((destructor)) void End() {
  lorimat::strike::Pause();
  if (counts_file == nullptr) return;
  std::FILE* file = std::fopen(counts_file, "w");
  if (file == nullptr) return;
  std::fprintf(file, "%ld", lorimat::strike::Failed());
  for (int kind = 0; kind < lorimat::strike::kKinds; ++kind) {
    std::fprintf(file, " %ld", lorimat::strike::Count(static_cast<Kind>(kind)));
  }
  std::fprintf(file, " %ld\n", readings);
  std::fclose(file);
}

}  // namespace

extern "C" {

// What comes ahead of main is the loader's, and the program cannot answer for it.
int __libc_start_main(Main main, int count, char** arguments, void (*init)(), void (*fini)(),
                      void (*loader_end)(), void* stack) {
  program = main;
  void* const own = dlsym(RTLD_NEXT, "__libc_start_main");
  return reinterpret_cast<decltype(&__libc_start_main)>(own)(RunProgram, count, arguments, init,
                                                             fini, loader_end, stack);
}

int clock_gettime(clockid_t clock, timespec* now) noexcept {
  const int answer = static_cast<int>(syscall(SYS_clock_gettime, clock, now));
  if (answer == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
    now->tv_sec += Moved();
  }
  return answer;
}
time_t time(time_t* now) noexcept {
  timespec found = {};
  clock_gettime(CLOCK_REALTIME, &found);
  if (now != nullptr) *now = found.tv_sec;
  return found.tv_sec;
}
int gettimeofday(timeval* now, void*) noexcept {
  timespec found = {};
  clock_gettime(CLOCK_REALTIME, &found);
  now->tv_sec = found.tv_sec;
  now->tv_usec = found.tv_nsec / 1000;
  return 0;
}

}  // extern "C"
