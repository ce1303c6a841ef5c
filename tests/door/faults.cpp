// What goes wrong in lorimatd_faulty, by the environment: LORIMATD_FAULT holds faults, one or more
// with blanks between them, each of which strikes at the N-th time that a job comes to a step:
//
//   kill@STEP:N     the process is gone
//   full@STEP:N     no file may be written to any more (somebody else may raise the limit again)
//   nomem@STEP:N    the next allocation of the working thread fails; nomem3@STEP:N the third one
//   nosql@STEP:N    the same of what SQLite allocates, nosql9@STEP:N the ninth one: log and
//   register lose@STEP:N     the next thing that the device does is done, and its answer is a
//   time-out;
//                   lose2@STEP:N the one behind that, also of "fail" and "hang"
//   fail@STEP:N     the same, and its answer is a refusal
//   hang@STEP:N     the next thing that the device is to do does not come back
//   gone@STEP:N     the device is gone, and comes back some calls later: one from a file when it
//                   has been opened again
//
// The N-th line of a job may stand for a step, as the translator answers it:
//
//   hang@line:N, lose@line:N, fail@line:N, and drop@line:N: it gets lost on its way
//
// And apart from jobs:
//
//   away@reset:N    from the N-th reset on the device does not answer any more
//   open@start:1    a document is open that belongs to no job
//
// With LORIMATD_FAULT_ONCE, a file that a fault leaves (with its number behind the name from the
// second one on), it strikes only while that is not there. LORIMATD_FAULT_TRACE is a file that gets
// the name of each step.
#include "door/faults.h"

#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "door/job/client_device.h"
#include "passing_client.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace {

// Of this thread: the so manieth allocation from here on fails; 0 for none.
thread_local int failing_allocation = 0;
thread_local int failing_in_sqlite = 0;

bool FailsInSqlite() { return failing_in_sqlite > 0 && --failing_in_sqlite == 0; }

sqlite3_mem_methods sqlite_methods = {};

// It takes other allocations only ahead of its first use; without a place aside each is one.
const bool sqlite_placed = [] {
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqlite_methods);
  sqlite3_mem_methods methods = sqlite_methods;
  methods.xMalloc = [](int size) {
    return FailsInSqlite() ? nullptr : sqlite_methods.xMalloc(size);
  };
  methods.xRealloc = [](void* block, int size) {
    return FailsInSqlite() ? nullptr : sqlite_methods.xRealloc(block, size);
  };
  return sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK &&
         sqlite3_config(SQLITE_CONFIG_LOOKASIDE, 0, 0) == SQLITE_OK;
}();

}  // namespace

// AddressSanitizer has its own, which looks after each: with it none fails.
#ifndef __SANITIZE_ADDRESS__

namespace {

void* Allocate(size_t size) {
  if (failing_allocation > 0 && --failing_allocation == 0) throw std::bad_alloc();
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(size_t size) { return Allocate(size); }
void* operator new[](size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t) noexcept { std::free(memory); }

#endif

namespace lorimat::door {
namespace {

struct Fault {
  std::string action;
  std::string step;
  int left = 0;
  std::string once;  // a file; empty without one
};

Fault ReadFault(const std::string& text, size_t number) {
  const size_t at = text.find('@');
  const size_t colon = text.rfind(':');
  if (at == text.npos || colon == text.npos || colon < at) std::abort();
  Fault fault{text.substr(0, at),
              text.substr(at + 1, colon - at - 1),
              std::stoi(text.substr(colon + 1)),
              {}};
  if (const char* once = std::getenv("LORIMATD_FAULT_ONCE")) {
    fault.once = once;
    if (number > 0) fault.once += std::to_string(number);
  }
  return fault;
}

std::vector<Fault> ReadFaults() {
  std::vector<Fault> faults;
  const char* text = std::getenv("LORIMATD_FAULT");
  std::istringstream words(text == nullptr ? "" : text);
  for (std::string word; words >> word;) faults.push_back(ReadFault(word, faults.size()));
  return faults;
}

// The action that strikes at this step; empty for none. The working thread alone asks.
std::string StrikesAt(const std::string& step) {
  static std::vector<Fault> faults = ReadFaults();
  for (Fault& fault : faults) {
    if (fault.left == 0 || fault.step != step || --fault.left != 0) continue;
    if (fault.once.empty()) return fault.action;
    const int file = open(fault.once.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) continue;
    close(file);
    return fault.action;
  }
  return {};
}

void TraceStep(std::string_view name) {
  static const char* const file = std::getenv("LORIMATD_FAULT_TRACE");
  if (file == nullptr) return;
  const int trace = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (trace < 0) return;
  const std::string line = std::string(name) + "\n";
  if (write(trace, line.data(), line.size()) < 0) std::abort();
  close(trace);
}

[[noreturn]] void Hang() {
  for (;;) pause();
}

// What the device does goes wrong in this way.
struct DeviceFault {
  std::string action = {};
  int in = 1;  // so many things from here on
};

DeviceFault& ForDevice() {
  static DeviceFault fault;
  return fault;
}

// "lose2" is "lose" and 2.
std::pair<std::string, int> WithNumber(const std::string& action) {
  const size_t digit = action.find_first_of("0123456789");
  if (digit == action.npos) return {action, 1};
  return {action.substr(0, digit), std::stoi(action.substr(digit))};
}

// In front of the device. One from a file does itself what hangs, and goes away by itself.
class FaultyClient : public PassingClient<FaultyClient> {
 public:
  explicit FaultyClient(RtfClientInterface& inner) : inner_(inner) {}
  RtfClientInterface& inner() { return inner_; }

  template <ClientOperation operation, OperationKind kind, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    using Result = decltype(call());
    // The state of the printer is told all the same: a report would wait for it for minutes.
    if constexpr (std::is_same_v<Result, int> && operation != ClientOperation::kGetIntProperty &&
                  operation != ClientOperation::kGetState) {
      if (ForDevice().action == "gone") {
        ForDevice() = {};
        if (!DoesItself("gone")) gone_ = kGoneCalls;
      }
      if (gone_ > 0) {
        --gone_;
        return RTF_E_OFFLINE;
      }
    }
    if constexpr (ActsOnDevice(kind)) {
      const std::string action = Due();
      if (action == "hang" && !DoesItself("hang")) Hang();
      if (action == "lose" || action == "fail") {
        call();
        return action == "lose" ? RTF_E_TIMEOUT : RTF_EFPTR_WRONG_STATE;
      }
    }
    return call();
  }

 private:
  static std::string Due() {
    if (ForDevice().action.empty() || --ForDevice().in > 0) return {};
    return std::exchange(ForDevice(), {}).action;
  }

  // Each a round of asking, which ends with the first.
  static constexpr int kGoneCalls = 2;

  bool DoesItself(const char* action) {
    return inner_.SetDataInternal(kFaultItem, action) == RTF_SUCCESS;
  }

  RtfClientInterface& inner_;
  int gone_ = 0;  // calls
};

class FaultyDevice : public ClientDevice {
 public:
  explicit FaultyDevice(std::unique_ptr<FiscalDevice> inner)
      : inner_(std::move(inner)), client_(inner_->client()) {}

  RtfClientInterface& client() override { return client_; }
  MissingItems Missing() override { return inner_->Missing(); }
  Told FindLast(const DocumentName& name, LastDocument* document) override {
    return inner_->FindLast(name, document);
  }
  Told FindVoid(const DocumentName& name, const DocumentName& sale) override {
    return inner_->FindVoid(name, sale);
  }
  std::optional<JobDocument> LastClosing() override { return inner_->LastClosing(); }
  void AddReport(DeviceReport* report) override { inner_->AddReport(report); }
  Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                 std::vector<std::string>* lines) override {
    return inner_->FindPaper(name, kind, lines);
  }
  uint64_t refusals() const override { return inner_->refusals(); }
  console::DeviceRefusal last_refusal() const override { return inner_->last_refusal(); }
  void Reopen() override { inner_->Reopen(); }

 private:
  std::unique_ptr<FiscalDevice> inner_;
  FaultyClient client_;
};

void Strike(const std::string& text) {
  const auto [action, number] = WithNumber(text);
  if (action == "kill") {
    kill(getpid(), SIGKILL);
  } else if (action == "full") {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = 0;
    setrlimit(RLIMIT_FSIZE, &limit);
  } else if (action == "nomem") {
    failing_allocation = number;
  } else if (action == "nosql") {
    if (!sqlite_placed) std::abort();
    failing_in_sqlite = number;
  } else {
    ForDevice() = {action, number};
  }
}

}  // namespace

StepWatch FaultWatch() {
  return [](Step step) {
    const std::string name(StepName(step));
    TraceStep(name);
    const std::string action = StrikesAt(name);
    if (!action.empty()) Strike(action);
  };
}

std::unique_ptr<FiscalDevice> WithFaults(std::unique_ptr<FiscalDevice> device) {
  return std::make_unique<FaultyDevice>(std::move(device));
}

LineRunner WithFaults(LineRunner run) {
  if (StrikesAt("start") == "open") {
    std::string answer;
    run("VEND REP=1, PRE=1", &answer);
  }
  return [is_away = false, run = std::move(run)](const std::string& line,
                                                 std::string* answer) mutable {
    constexpr long kTimeOut = 512 + 112;
    constexpr long kWrongState = 1024 + 207;
    // The reset ahead of a job is no line of it.
    if (line == "#74" && StrikesAt("reset") == "away") is_away = true;
    if (is_away) return kTimeOut;
    const std::string action = line == "#74" ? std::string() : StrikesAt("line");
    if (action.empty()) return run(line, answer);
    if (action == "hang") {
      ForDevice() = {action};
      return run(line, answer);
    }
    if (action == "drop") return kTimeOut;
    run(line, answer);
    return action == "lose" ? kTimeOut : kWrongState;
  };
}

}  // namespace lorimat::door
