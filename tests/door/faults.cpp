// What goes wrong in lorimatd_faulty, by the environment: LORIMATD_FAULT holds one fault,
//
//   kill@STEP:N   the process is gone at the N-th time that a job comes to this step
//   hang@line:N   the N-th line does not come back
//   lose@line:N   the N-th line is carried out, and its answer is a time-out
//   fail@line:N   the same, and its answer is a refusal
//   drop@line:N   the N-th line gets lost on its way
//   away@reset:N  from the N-th reset on the device does not answer any more
//   open@start:1  a document is open that belongs to no job
//
// and with LORIMATD_FAULT_ONCE, a file that the fault leaves, it strikes only while that is not
// there.
#include "door/faults.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>

namespace lorimat::door {
namespace {

struct Fault {
  std::string action;
  std::string step;
  int left = 0;
};

Fault ReadFault() {
  const char* text = std::getenv("LORIMATD_FAULT");
  if (text == nullptr) return {};
  const std::string all = text;
  const size_t at = all.find('@');
  const size_t colon = all.rfind(':');
  if (at == all.npos || colon == all.npos || colon < at) return {};
  return {all.substr(0, at), all.substr(at + 1, colon - at - 1), std::stoi(all.substr(colon + 1))};
}

// The working thread alone asks.
Fault& TheFault() {
  static Fault fault = ReadFault();
  return fault;
}

bool Strikes(const std::string& step) {
  Fault& fault = TheFault();
  if (fault.left == 0 || fault.step != step || --fault.left != 0) return false;
  const char* once = std::getenv("LORIMATD_FAULT_ONCE");
  if (once == nullptr) return true;
  const int file = open(once, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return false;
  close(file);
  return true;
}

}  // namespace

StepWatch FaultWatch() {
  return [](Step step) {
    if (Strikes(std::string(StepName(step))) && TheFault().action == "kill") {
      kill(getpid(), SIGKILL);
    }
  };
}

LineRunner WithFaults(LineRunner run) {
  if (Strikes("start")) {
    std::string answer;
    run("VEND REP=1, PRE=1", &answer);
  }
  return [is_away = false, run = std::move(run)](const std::string& line,
                                                 std::string* answer) mutable {
    constexpr long kTimeOut = 512 + 112;
    constexpr long kWrongState = 1024 + 207;
    // The reset ahead of a job is no line of it.
    if (line == "#74" && Strikes("reset")) is_away = true;
    if (is_away) return kTimeOut;
    if (line == "#74" || !Strikes("line")) return run(line, answer);
    const std::string& action = TheFault().action;
    if (action == "hang") {
      for (;;) pause();
    }
    if (action == "drop") return kTimeOut;
    run(line, answer);
    return action == "lose" ? kTimeOut : kWrongState;
  };
}

}  // namespace lorimat::door
