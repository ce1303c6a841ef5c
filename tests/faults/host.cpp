#include "host.h"

#include <fmt/format.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

// So often a host tries in a row, or in one step of its day, before it waits for help. A trouble of
// twenty failures has passed by then.
constexpr int kMostTries = 30;
constexpr int kMostTriesOfStep = 60;
// Part of the cause where the register cannot tell whether an operation that failed is stored.
constexpr char kUnknown[] = "not known";

// Behind the trouble nothing may fail. What does so is tried again, to tell a stumble from a
// register that stays unusable.
constexpr int kMostTriesInPeace = 3;

std::tm ShopTime() {
  std::tm time = {};
  time.tm_mday = 15;
  time.tm_mon = 0;
  time.tm_year = 124;
  time.tm_hour = 10;
  time.tm_min = 30;
  return time;
}

bool IsUnpaid(int state) {
  return state == RTF_FPTR_PS_FISCAL_RECEIPT || state == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
}

}  // namespace

RegisterSettings ShopSettings(const std::string& folder) {
  RegisterSettings settings;
  settings.file = folder + kRegisterName;
  settings.outbox = folder + kOutboxName;
  settings.outbox.pop_back();
  settings.clock = ShopTime;
  settings.articles = {{"8001", "LATTE", 4, 15000}};
  return settings;
}

bool IsProgrammed(const VirtualRegister& device, Programmed what) {
  const Tables& tables = device.tables();
  switch (what) {
    case kHeader:
      return tables.settings().header_lines.front() == kNewHeader;
    case kTrailer:
      return std::any_of(
          device.paper_lines().begin(), device.paper_lines().end(),
          [](const std::string& line) { return line.find(kNewTrailer) != std::string::npos; });
    case kDepartment:
      return tables.FindDepartment(3)->name == kNewDepartment;
    case kRate:
      return tables.FindVat(2)->rate == kNewRate;
    case kFirstArticle:
      return tables.FindArticle("77") != nullptr;
    case kSecondArticle:
      return tables.FindArticle("78") != nullptr;
    case kProgrammedCount:
      break;
  }
  return false;
}

Look LookAt(const VirtualRegister& device) {
  Look look;
  look.state = device.printer_state();
  const Receipt& receipt = device.receipt();
  look.receipt_lines = static_cast<int>(receipt.lines().size() + receipt.adjustments().size());
  look.receipt_total = receipt.total();
  look.receipt_paid = receipt.paid();
  const RegisterStore& store = device.store();
  look.documents = store.document_count();
  look.grand_total = store.grand_total();
  look.number = store.counters().documents;
  look.invoice = store.next_invoice();
  look.closure = store.last_closure();
  look.pending = store.pending_closures();
  look.non_fiscal = store.counters().non_fiscal;
  look.abandoned = store.counters().abandoned;
  look.entries = store.journal_count();
  look.paper = device.paper().dropped() + device.paper_lines().size();
  for (int what = 0; what < kProgrammedCount; ++what) {
    if (what == kTrailer) continue;
    if (IsProgrammed(device, static_cast<Programmed>(what))) look.programmed |= 1u << what;
  }
  return look;
}

std::string Look::Difference(const Look& other) const {
  std::string text;
  const auto compare = [&text](const char* name, auto mine, auto theirs) {
    if (mine != theirs)
      text += fmt::format("{}{} {} -> {}", text.empty() ? "" : ", ", name, mine, theirs);
  };
  compare("state", state, other.state);
  compare("receipt lines", receipt_lines, other.receipt_lines);
  compare("receipt total", receipt_total, other.receipt_total);
  compare("paid", receipt_paid, other.receipt_paid);
  compare("documents", documents, other.documents);
  compare("grand total", grand_total, other.grand_total);
  compare("number", number, other.number);
  compare("invoice", invoice, other.invoice);
  compare("closure", closure, other.closure);
  compare("pending", pending, other.pending);
  compare("non-fiscal", non_fiscal, other.non_fiscal);
  compare("abandoned", abandoned, other.abandoned);
  compare("entries", entries, other.entries);
  compare("paper", paper, other.paper);
  compare("programmed", programmed, other.programmed);
  return text;
}

Look Look::Stored() const {
  Look look = *this;
  look.state = look.receipt_lines = 0;
  look.receipt_total = look.receipt_paid = 0;
  look.paper = 0;
  return look;
}

Host::Host(VirtualRegister& device, std::string folder, Report* report, Manners manners)
    : device_(device), folder_(std::move(folder)), report_(*report), manners_(manners) {}

// --- A call

Look Host::Begin(const char* name, const Fact& fact) {
  ++report_.calls;
  report_.in_flight = fact;
  report_.calling = true;
  std::snprintf(report_.now, sizeof report_.now, "%s: %s", step_, name);
  return LookAt(device_);
}

bool Host::End(const char* name, int code, const Fact& fact, const Look& before) {
  const bool was_struck = report_.failed > 0;
  const long failed_before = report_.failed;
  report_.failed = std::max(report_.failed, strike::Failed());
  const bool struck_here = report_.failed > failed_before;
  if (!was_struck && struck_here) std::memcpy(report_.struck, report_.now, sizeof report_.now);

  const Look after = LookAt(device_);
  bool done = code == RTF_SUCCESS;
  if (manners_.lost_code != 0) {
    looks_.push_back(after);
    const size_t call = looks_.size() - 1;
    if (code == manners_.lost_code) {
      report_.failed = 1;
      std::memcpy(report_.struck, report_.now, sizeof report_.now);
      Ask(name);
      done = true;
    }
    if (call < manners_.undisturbed->size() && !(after == (*manners_.undisturbed)[call])) {
      report_.Wrong("%s: %s: not as on a day without faults: %s", step_, name,
                    (*manners_.undisturbed)[call].Difference(after).c_str());
    }
  } else if (manners_.undisturbed == nullptr) {
    looks_.push_back(after);
  }

  if (manners_.by_lines && !done && IsThere(fact, before, after)) done = true;

  if (done) {
    CompareDone(name, fact, before, after);
    if (fact.kind != Fact::kNone) {
      if (to_be_told_) {
        report_.Wrong("%s: %s: answered 0 behind articles that the disk did not take", step_, name);
      }
      // It was stored behind what was unknown, which therefore is not there.
      report_.unknown = false;
      report_.doubtful = {};
    }
    report_.Add(fact);
    if (fact.kind != Fact::kNone && fact.kind != Fact::kProgrammed) settled_ = true;
    failures_ = 0;
  } else {
    ++failures_;
    ++failures_of_step_;
    ++report_.refused;
    const std::string& cause = device_.last_failure();
    if (!(manners_.by_lines ? after.Stored() == before.Stored() : after == before)) {
      report_.Wrong("%s: %s: answered %d and changed: %s", step_, name, code,
                    before.Difference(after).c_str());
    }
    // What is refused behind it, for the same cause, has not been begun.
    if (!report_.unknown && cause.find(kUnknown) != std::string::npos) {
      report_.unknown = report_.was_unknown = true;
      report_.doubtful = fact;
    }
    const FailureCause why = device_.failure().cause;
    // Once, for those who did not look at the answer to the closing.
    const bool told = to_be_told_ && why == FailureCause::kNotOnDisk;
    if (told && (report_.failed == 0 || strike::Past())) to_be_told_ = false;
    if (struck_here && std::string_view(name) == "UploadTable" && fact.kind == Fact::kNone &&
        (why == FailureCause::kCutOff || why == FailureCause::kCutOffBySystem)) {
      to_be_told_ = true;
    }
    // What fails without being struck has been left behind unusable, but where the register has
    // said that it refuses to go on.
    if (!struck_here && !told && (report_.failed == 0 || strike::Past())) {
      ++failures_in_peace_;
      report_.Wrong("%s: %s: answered %d with nothing failing (%s)", step_, name, code,
                    cause.c_str());
    }
  }
  report_.in_flight = {};
  report_.calling = false;
  report_.open = {};
  if (IsUnpaid(after.state)) {
    report_.open = {moves_cash_ ? Report::Open::kCash : Report::Open::kReceipt,
                    after.receipt_total};
  } else if (after.state != RTF_FPTR_PS_MONITOR) {
    report_.open = {Report::Open::kOther, 0};
  }
  if (manners_.dies_at_answer && report_.failed > 0) Stop();
  return done;
}

void Host::Stop() {
  report_.done = true;
  kill(getpid(), SIGKILL);
  for (;;) pause();
}

bool Host::IsThere(const Fact& fact, const Look& before, const Look& after) {
  if (IsDocument(fact.kind)) return after.documents > before.documents;
  if (fact.kind == Fact::kNonFiscal) return after.non_fiscal > before.non_fiscal;
  return fact.kind == Fact::kClosure && after.closure > before.closure;
}

void Host::CompareDone(const char* name, const Fact& fact, const Look& before, const Look& after) {
  Look wanted = before;
  if (IsDocument(fact.kind)) {
    ++wanted.documents;
    wanted.grand_total += Sign(fact.kind) * fact.value;
    if (fact.kind == Fact::kInvoice) {
      ++wanted.invoice;
    } else {
      ++wanted.number;
    }
  } else if (fact.kind == Fact::kNonFiscal) {
    ++wanted.non_fiscal;
  } else if (fact.kind == Fact::kAbandoned) {
    ++wanted.abandoned;
  } else if (fact.kind == Fact::kClosure) {
    ++wanted.closure;
    wanted.number = wanted.non_fiscal = wanted.abandoned = 0;
  } else if (fact.kind == Fact::kProgrammed && fact.value != kTrailer) {
    wanted.programmed |= 1u << fact.value;
  }
  // These are the business of the single operations.
  wanted.state = after.state;
  wanted.receipt_lines = after.receipt_lines;
  wanted.receipt_total = after.receipt_total;
  wanted.receipt_paid = after.receipt_paid;
  wanted.entries = after.entries;
  wanted.paper = after.paper;
  wanted.pending = after.pending;
  if (!(wanted == after)) {
    report_.Wrong("%s: %s: answered 0, and not as it should be: %s", step_, name,
                  wanted.Difference(after).c_str());
  }
}

// What a host has that did not get an answer: the state, the number of the last document, and
// what the open one comes to. It has to be told the truth.
void Host::Ask(const char* name) {
  const Look look = LookAt(device_);
  int number = 0;
  char text[64] = "";
  int state = -1;
  if (device_.GetState() != RTF_S_IDLE) report_.Wrong("%s: %s: not idle behind it", step_, name);
  if (device_.GetIntProperty(RTF_PIDXFptr_PrinterState, &state) != RTF_SUCCESS ||
      state != look.state) {
    report_.Wrong("%s: %s: shows the state %d, not %d", step_, name, state, look.state);
  }
  if (device_.GetData(RTF_FPTR_GD_FISCAL_REC, &number, text) != RTF_SUCCESS ||
      std::atoi(text) != look.number) {
    report_.Wrong("%s: %s: shows the number %s, not %d", step_, name, text, look.number);
  }
  if (device_.GetData(RTF_FPTR_GD_CURRENT_TOTAL, &number, text) != RTF_SUCCESS ||
      std::atoll(text) != look.receipt_total) {
    report_.Wrong("%s: %s: shows the total %s", step_, name, text);
  }
}

// --- Going on

bool Host::Wait() {
  if (failures_in_peace_ >= kMostTriesInPeace) {
    report_.Wrong("%s: the register stays unusable", step_);
    return false;
  }
  if (failures_ < kMostTries && failures_of_step_ < kMostTriesOfStep) return true;
  if (manners_.ends_struck) return false;
  strike::Heal();
  failures_ = 0;
  failures_of_step_ = 0;
  return true;
}

bool Host::GiveUp() {
  // The translator has a state of its own, which goes back with the device's.
  bool due = manners_.by_lines;
  for (;;) {
    const int state = device_.printer_state();
    if (state == RTF_FPTR_PS_MONITOR && !due) return true;
    const Fact fact{IsUnpaid(state) ? Fact::kAbandoned : Fact::kNone, 0};
    const bool settled = settled_;
    const bool done = manners_.by_lines
                          ? Send("RESPRN", fact)
                          : Call(
                                "ResetPrn", [this] { return device_.ResetPrn(); }, fact);
    settled_ = settled;
    if (done) due = false;
    if (!done && !Wait()) return false;
  }
}

bool Host::Do(const Step& step) {
  step_ = step.name;
  settled_ = false;
  moves_cash_ = false;
  failures_of_step_ = 0;
  failures_in_peace_ = 0;
  while (!(this->*step.work)()) {
    if (!Wait() || !GiveUp()) return false;
    if (settled_ && !moves_cash_) break;
  }
  return true;
}

void Host::Live(bool to_the_end) {
  for (const Step& step : manners_.by_lines ? DayOfLines() : Day()) {
    if (!Do(step)) {
      report_.done = true;
      return;
    }
    if (!to_the_end && report_.failed > 0 && strike::Past()) break;
  }
  LiveOn();
}

void Host::LiveOn() {
  static const Step last[] = {{"sale behind it", &Host::SmallReceipt},
                              {"invoice behind it", &Host::Invoice},
                              {"closing behind it", &Host::Closing},
                              {"last sale", &Host::SmallReceipt}};
  static const Step last_lines[] = {{"sale behind it", &Host::LineReceipt},
                                    {"closing behind it", &Host::LineClosing},
                                    {"last sale", &Host::LineReceipt}};
  for (const Step& step : manners_.by_lines ? std::span<const Step>(last_lines) : last) {
    if (!Do(step)) break;
  }
  report_.done = true;
}

}  // namespace lorimat
