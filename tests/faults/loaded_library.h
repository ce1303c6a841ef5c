// What hosts that live long share: the library loaded for a part of their life, and what their
// process holds.
#pragma once

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "lorimatrt/lorimatrt.h"

namespace lorimat {

struct Holding {
  size_t memory = 0;  // bytes from the allocator
  long descriptors = 0;
  long threads = 0;

  bool operator==(const Holding&) const = default;
};

inline long EntriesOf(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder),
                       std::filesystem::directory_iterator());
}

inline Holding HoldingNow() {
  Holding holding;
  holding.descriptors = EntriesOf("/proc/self/fd");
  holding.threads = EntriesOf("/proc/self/task");
  const struct mallinfo2 memory = mallinfo2();
  holding.memory = memory.uordblks + memory.hblkhd;
  return holding;
}

// Blocks that the allocator holds ready for a thread count as in use: the program begins anew
// without.
inline void HoldNothingReady(char** arguments) {
  if (getenv("GLIBC_TUNABLES") != nullptr) return;
  setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
  execv("/proc/self/exe", arguments);
}

// The library's own lines are none of the test: the standard output and error lead to nowhere.
// Answers a descriptor of the output as it was, and -1 when that is not to be had.
inline int SilenceStreams() {
  const int output = dup(STDOUT_FILENO);
  if (std::freopen("/dev/null", "w", stdout) == nullptr ||
      std::freopen("/dev/null", "w", stderr) == nullptr) {
    return -1;
  }
  return output;
}

// The library, as long as it stands; not loaded where it could not be (dlerror).
class LoadedLibrary {
 public:
  LoadedLibrary() : library_(dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) return;
    Find("TradInit", &start);
    Find("EcrCmd", &send);
    Find("TradClose", &close);
  }
  ~LoadedLibrary() {
    if (library_ != nullptr) dlclose(library_);
  }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  bool loaded() const { return library_ != nullptr; }

  decltype(&TradInit) start = nullptr;
  decltype(&EcrCmd) send = nullptr;
  decltype(&TradClose) close = nullptr;

 private:
  template <typename Function>
  void Find(const char* name, Function* function) {
    void* const found = dlsym(library_, name);
    if (found == nullptr) {
      std::printf("%s\n", dlerror());
      std::exit(2);
    }
    *function = reinterpret_cast<Function>(found);
  }

  void* const library_;
};

}  // namespace lorimat
