#include "life.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <utility>

#include "apart.h"
#include "check.h"
#include "power.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr int kMostOpenings = 30;  // before help comes

// Now and then the whole day comes behind the fault: it would take too long each time. And now and
// then a host that is struck to its end dies without closing the register.
constexpr long kWholeDayEach = 8;
constexpr long kDiesEach = 2;

void TakeCounts(Report* report) {
  for (int kind = 0; kind < strike::kKinds; ++kind) {
    report->counts[kind] = strike::Count(static_cast<strike::Kind>(kind));
  }
}

void NoteStruck(Report* report) {
  report->failed = std::max(report->failed, strike::Failed());
  if (report->failed > 0 && *report->struck == 0) {
    std::memcpy(report->struck, report->now, sizeof report->now);
  }
}

// Opens the register, as often as it takes. Null when it cannot be opened; it may throw nothing but
// what says so.
std::unique_ptr<VirtualRegister> OpenStruck(const std::string& folder, bool ends_struck,
                                            Report* report) {
  std::snprintf(report->now, sizeof report->now, "opening");
  // It ends the document that was cut off.
  const bool cut = report->open.kind != Report::Open::kNone;
  report->calling = true;
  if (cut) report->in_flight = {Fact::kAbandoned, 0};
  for (int tries = 1;; ++tries) {
    RegisterSettings settings = ShopSettings(folder);
    std::unique_ptr<VirtualRegister> device;
    std::string cause;
    const bool past = strike::Past();
    const long before = strike::Failed();
    strike::Resume();
    try {
      device = std::make_unique<VirtualRegister>(std::move(settings));
      strike::Pause();
    } catch (const RegisterError& error) {
      strike::Pause();
      cause = error.what();
    } catch (const std::bad_alloc&) {
      strike::Pause();
      cause = "no memory";
    } catch (const std::exception& error) {
      strike::Pause();
      report->Wrong("opening: an exception that is none of its own: %s", error.what());
    }
    NoteStruck(report);
    if (device != nullptr) {
      report->calling = false;
      report->in_flight = {};
      report->open = {};
      if (cut) report->Add({Fact::kAbandoned, 0});
      return device;
    }
    ++report->refused;
    if (past && strike::Failed() == before) {
      report->Wrong("opening: refused with nothing failing: %s", cause.c_str());
      return nullptr;
    }
    if (tries < kMostOpenings) continue;
    if (ends_struck) return nullptr;
    strike::Heal();
  }
}

void CloseStruck(std::unique_ptr<VirtualRegister> device, Report* report) {
  std::snprintf(report->now, sizeof report->now, "closing of the register");
  strike::Resume();
  device.reset();
  strike::Pause();
  NoteStruck(report);
  TakeCounts(report);
}

}  // namespace

void Live(const Trouble& trouble, const std::string& folder, const std::vector<Look>& undisturbed,
          Report* report, std::vector<Look>* looks) {
  strike::Place where;
  Host::Manners manners;
  if (trouble.manner != nullptr) {
    where = {trouble.kind,         trouble.place,        trouble.manner->run,
             trouble.manner->half, trouble.manner->kill, trouble.manner->disk};
    manners.dies_at_answer = trouble.manner->dies_at_answer;
    manners.ends_struck = trouble.manner->ends_struck;
  } else {
    manners.lost_code = RTF_E_TIMEOUT;
    manners.undisturbed = &undisturbed;
  }
  std::unique_ptr<VirtualRegister> device;
  if (trouble.part == Part::kDay || trouble.part == Part::kLines) {
    device = std::make_unique<VirtualRegister>(ShopSettings(folder));
    if (trouble.manner == nullptr) {
      device->AddFault({.name = std::string(kLostAnswerFault),
                        .when = FaultWhen::kNth,
                        .count = static_cast<int>(trouble.place)});
    }
    manners.by_lines = trouble.part == Part::kLines;
    if (manners.by_lines) {
      // The library's own lines are none of this.
      if (std::freopen("/dev/null", "w", stdout) == nullptr) report->Wrong("no /dev/null");
      StartTranslator(device.get());
    }
    strike::Arm(where, folder.c_str());
    Host host(*device, folder, report, manners);
    host.Live(trouble.manner == nullptr || trouble.place % kWholeDayEach == 0);
    if (looks != nullptr) *looks = host.looks();
    if (trouble.manner == nullptr) {
      // One that waits for more operations than there were has counted them.
      const auto& waiting = device->faults().faults();
      report->answers = waiting.empty() ? 0 : trouble.place - waiting.front().count;
      device->ClearFaults();
    }
  } else {
    strike::Arm(where, folder.c_str());
    device = OpenStruck(folder, manners.ends_struck, report);
    if (device != nullptr && !manners.ends_struck && !manners.dies_at_answer) {
      // What strikes a start is over with it.
      TakeCounts(report);
      strike::Heal();
      Host(*device, folder, report, {}).LiveOn();
      return;
    }
    TakeCounts(report);
    if (manners.dies_at_answer && report->failed > 0) _exit(0);
  }
  if (manners.ends_struck && report->failed > 0 && trouble.place % kDiesEach == 0) _exit(0);
  CloseStruck(std::move(device), report);
}

void Try(const Trouble& trouble, const std::string& folder, const std::vector<Look>& undisturbed,
         Report* report) {
  const Manner* manner = trouble.manner;
  const std::string disk = folder.substr(0, folder.size() - 1) + "-disk/";
  const bool power = manner != nullptr && manner->power;
  if (power) {
    fs::remove_all(disk);
    fs::create_directories(disk);
  }
  const pid_t host = fork();
  if (host < 0) {
    report->Wrong("no process for it: %s", std::strerror(errno));
    return;
  }
  if (host == 0) {
    Bound();
    if (power) power::Watch(folder, disk);
    Live(trouble, folder, undisturbed, report);
    _exit(0);
  }
  int status = 0;
  waitpid(host, &status, 0);
  const bool may_die = manner != nullptr && (manner->kill || manner->dies_at_answer);
  if (WIFSIGNALED(status)) {
    if (WTERMSIG(status) == SIGALRM) {
      report->Wrong("hangs in %s", report->now);
    } else if (!may_die || WTERMSIG(status) != SIGKILL) {
      report->Wrong("dies by signal %d in %s", WTERMSIG(status), report->now);
    } else {
      report->failed = 1;
      if (*report->struck == 0) std::memcpy(report->struck, report->now, sizeof report->now);
      if (power) {
        report->power_cut = true;
        power::Cut(folder, disk);
      }
    }
  } else if (WEXITSTATUS(status) != 0) {
    report->Wrong("ends with %d in %s", WEXITSTATUS(status), report->now);
  }
  CheckFile(folder, report);
}

void LeaveHalf(const std::string& folder, Report* report) {
  auto* device = new VirtualRegister(ShopSettings(folder));  // never closed
  strike::Arm({}, folder.c_str());
  Host(*device, folder, report, {}).LiveHalf();
}

}  // namespace lorimat
