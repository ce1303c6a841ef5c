// A host that lives long: it loads the library, starts it, sends lines and ends it, again and
// again, on a device that fails now and then. What the process holds has to stay as it is: the
// memory from the allocator to the byte, the descriptors and the threads. script/faults --help
// tells of the arguments; a place is a line here.
#include <dlfcn.h>
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

#include "loaded_library.h"
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
  const LoadedLibrary library;
  if (!library.loaded()) {
    std::printf("%s\n", dlerror());
    std::exit(2);
  }
  long good = 0;
  for (int i = 0; i < kStarts; ++i) {
    char language[] = DEFINITION_FILE;
    library.start(language, 0, nullptr, &EcrIo);
    for (long n = 0; n < lines / kStarts; ++n) {
      char line[128];
      char answer[512];
      std::snprintf(line, sizeof line, "%s", kLines[static_cast<size_t>(n) % std::size(kLines)]);
      if (library.send(line, answer) == 0) ++good;
    }
    library.close();
  }
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
  const int own_output = SilenceStreams();
  if (own_output < 0) return 2;
  Device own;
  own.BeReady();
  device = &own;
  // What the C library keeps for itself of a first time is there behind two lives.
  LoadAndWork(kStarts * kLinesOfStart);
  LoadAndWork(kStarts * kLinesOfStart);
  const Holding before = HoldingNow();
  const long wanted = options.places == 0 ? 1000000 : options.places;
  long lines = 0, lives = 0, good = 0;
  Holding now = before;
  while (lines < wanted && now == before) {
    good += LoadAndWork(kStarts * kLinesOfStart);
    lines += kStarts * kLinesOfStart;
    ++lives;
    now = HoldingNow();
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
  lorimat::HoldNothingReady(argv);
  return lorimat::Live(lorimat::ReadLoopOptions(argc, argv));
}
