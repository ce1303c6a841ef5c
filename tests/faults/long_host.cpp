// A host that lives long: it loads the library, starts it, sends lines and ends it, again and
// again, on a device that fails now and then. What the process holds has to stay as it is: the
// memory from the allocator to the byte, the descriptors and the threads. script/faults --help
// tells of the arguments; a place is a line here.
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "loop_options.h"
#include "lorimatrt/lorimatrt.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr int kReadyState = 2;
constexpr int kStarts = 10;         // of a library that is loaded
constexpr int kLinesOfStart = 500;  // and lines of each
constexpr long kRefusesEach = 97;   // calls
constexpr long kThrowsEach = 991;

// Answers all with success, but for the calls that fail.
class Device : public RtfClientInterface {
 public:
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return static_cast<Result>(Answer Arguments); }
#include "rpccommon/client/rtfclientoperations.inc"

  long failed() const { return failed_; }
  void BeReady() { state_ = true; }

 private:
  template <typename... Arguments>
  int Answer(Arguments...) {
    ++calls_;
    if (calls_ % kThrowsEach == 0) {
      ++failed_;
      throw std::runtime_error("the device is gone");
    }
    if (calls_ % kRefusesEach == 0) {
      ++failed_;
      return 107;
    }
    // GetState alone takes nothing and asks for more than success.
    return sizeof...(Arguments) == 0 && state_ ? kReadyState : 0;
  }

  long calls_ = 0;
  long failed_ = 0;
  bool state_ = false;
};

Device* device = nullptr;

long EcrIo(long, long, char*, long, char*, long*, long* client) {
  RtfClientInterface* own = device;
  if (client != nullptr) std::memcpy(client, &own, sizeof own);
  return 0;
}

// What the process holds.
struct Holding {
  size_t memory = 0;  // bytes
  long descriptors = 0;
  long threads = 0;

  bool operator==(const Holding&) const = default;
};

long EntriesOf(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

Holding Look() {
  Holding holding;
  holding.descriptors = EntriesOf("/proc/self/fd");
  holding.threads = EntriesOf("/proc/self/task");
  const struct mallinfo2 memory = mallinfo2();
  holding.memory = memory.uordblks + memory.hblkhd;
  return holding;
}

template <typename Function>
Function* Find(void* library, const char* name) {
  void* const found = dlsym(library, name);
  if (found == nullptr) {
    std::printf("%s\n", dlerror());
    std::exit(2);
  }
  return reinterpret_cast<Function*>(found);
}

constexpr const char* kLines[] = {
    "VEND REP=1, PRE=2.50",
    "VEND REP=2, PRE=1, QTA=3",
    "CHIU",
    "VEND REP=",
    "NO SUCH WORD",
    "; nothing",
    "INP KEY=178",
    "",
    "CHIU",
    "@lines.cmd,errors.txt",
};

// One life of the library; how many of its lines ended with 0.
long LoadAndWork(long lines) {
  void* const library = dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::printf("%s\n", dlerror());
    std::exit(2);
  }
  const auto start = Find<decltype(TradInit)>(library, "TradInit");
  const auto send = Find<decltype(EcrCmd)>(library, "EcrCmd");
  const auto close = Find<decltype(TradClose)>(library, "TradClose");
  long good = 0;
  for (int i = 0; i < kStarts; ++i) {
    char language[] = DEFINITION_FILE;
    start(language, 0, nullptr, &EcrIo);
    for (long n = 0; n < lines / kStarts; ++n) {
      char line[128];
      char answer[512];
      std::snprintf(line, sizeof line, "%s", kLines[static_cast<size_t>(n) % std::size(kLines)]);
      if (send(line, answer) == 0) ++good;
    }
    close();
  }
  dlclose(library);
  return good;
}

int Live(const LoopOptions& options) {
  std::string folder = options.folder + "/lorimat-host.XXXXXX";
  if (mkdtemp(folder.data()) == nullptr || chdir(folder.c_str()) != 0) {
    std::perror(folder.c_str());
    return 2;
  }
  std::ofstream("lines.cmd") << "VEND REP=1, PRE=4\nCHIU\n";
  setenv("LORIMATRT_REGISTRY", "no-registry", 1);
  const int own_output = dup(STDOUT_FILENO);
  // The library's own lines are none of this.
  if (std::freopen("/dev/null", "w", stdout) == nullptr ||
      std::freopen("/dev/null", "w", stderr) == nullptr) {
    return 2;
  }
  Device own;
  own.BeReady();
  device = &own;
  // What the C library keeps for itself of a first time is there behind two lives.
  LoadAndWork(kStarts * kLinesOfStart);
  LoadAndWork(kStarts * kLinesOfStart);
  const Holding before = Look();
  const long wanted = options.places == 0 ? 1000000 : options.places;
  long lines = 0, lives = 0, good = 0;
  Holding now = before;
  while (lines < wanted && now == before) {
    good += LoadAndWork(kStarts * kLinesOfStart);
    lines += kStarts * kLinesOfStart;
    ++lives;
    now = Look();
  }
  dprintf(own_output,
          "%ld lines in %ld lives with %ld starts, %ld answered 0, %ld calls failed\n"
          "before: %zu bytes, %ld descriptors, %ld threads\n"
          "now:    %zu bytes, %ld descriptors, %ld threads\n"
          "COUNT host.lines %ld %ld\n",
          lines, lives, lives * kStarts, good, own.failed(), before.memory, before.descriptors,
          before.threads, now.memory, now.descriptors, now.threads, lines, wanted);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  // Lines that all fail, or a device that never does, show nothing.
  return now == before && good > lines / 4 && good < lines && own.failed() > lives ? 0 : 1;
}

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) {
  // Blocks that the allocator holds ready for a thread count as in use: here it holds none.
  if (getenv("GLIBC_TUNABLES") == nullptr) {
    setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
    execv("/proc/self/exe", argv);
  }
  return lorimat::Live(lorimat::ReadLoopOptions(argc, argv));
}
