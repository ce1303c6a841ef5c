#include "register/fault/faults.h"

#include <fmt/format.h>

#include <charconv>
#include <utility>

#include "register/fault/fault_operations.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr FaultKind kKinds[] = {
    {kPaperEndFault, RTF_EFPTR_REC_EMPTY, "the roll of paper is at its end", "what prints",
     kEffectPrints, false},
    {kPaperNearEndFault, RTF_SUCCESS, "the roll is near its end; printing goes on", "what prints",
     kEffectPrints, false},
    {kCoverOpenFault, RTF_EFPTR_COVER_OPEN, "the cover is open", "what prints", kEffectPrints,
     false},
    {kOffLineFault, RTF_E_OFFLINE, "the device does not answer: switched off or not connected",
     "everything", kEffectActs, true},
    {kBusyFault, RTF_E_BUSY, "the device is busy; polls of its state count", "all but reading",
     kEffectActs, false},
    {kFiscalMemoryFullFault, RTF_EFPTR_FISCAL_MEMORY_FULL, "the fiscal memory is full",
     "openings of fiscal documents, payments, day closings", kEffectOpens | kEffectRegisters,
     false},
    {"day-end-required", RTF_EFPTR_DAY_END_REQUIRED, "the day has to be closed first",
     "openings of fiscal documents", kEffectOpens, false},
    {"wrong-totals", RTF_EFPTR_FISCAL_TOTALS_ERROR, "the totals do not agree",
     "subtotals and payments", kEffectTotals, false},
    {"no-answer", RTF_E_TIMEOUT, "the operation gets lost on its way, and nothing is done",
     "everything", kEffectActs, true},
    {kLostAnswerFault, RTF_E_TIMEOUT, "the operation is carried out, and its answer gets lost",
     "all but reading", kEffectActs, false},
};

constexpr FaultKind kAnyCode = {kCodeFault,   RTF_SUCCESS, "any result code",
                                "everything", kEffectActs, true};

const FaultKind* FindKind(std::string_view name) {
  return name == kCodeFault ? &kAnyCode : FindFaultKind(name);
}

constexpr std::string_view kWhenNames[] = {"next", "nth", "every", "times"};

// A name from outside, fit for a message.
std::string Shown(std::string_view name) {
  constexpr size_t kMost = 60;
  std::string shown(name.substr(0, kMost));
  for (char& c : shown) {
    if (c < ' ' || c > '~') c = '?';
  }
  if (name.size() > kMost) shown += "...";
  return shown;
}

bool Counts(FaultWhen when) { return when == FaultWhen::kNth || when == FaultWhen::kTimes; }

// Whether it strikes the next operation that it can.
bool IsDue(const Fault& fault) { return fault.when != FaultWhen::kNth || fault.count <= 1; }

// Whether a fault that is restricted to an operation can strike it, doing this.
bool StrikesByName(const FaultKind& kind, unsigned effects) {
  if (kind.name == kCodeFault) return true;
  return (effects & (kind.effects | (kind.reading ? kEffectReads : 0u))) != 0;
}

// One more word of a line, up to a blank.
std::string_view TakeWord(std::string_view* line) {
  const size_t end = line->find(' ');
  const std::string_view word = line->substr(0, end);
  *line = end == line->npos ? std::string_view() : line->substr(end + 1);
  return word;
}

bool ReadNumber(std::string_view word, int* value) {
  const char* end = word.data() + word.size();
  const std::from_chars_result read = std::from_chars(word.data(), end, *value);
  return read.ec == std::errc() && read.ptr == end;
}

// "paper-end 203 next 1 -": name, code, when, number, operation.
bool ReadFault(std::string_view line, Fault* fault) {
  fault->name = TakeWord(&line);
  if (!ReadNumber(TakeWord(&line), &fault->code)) return false;
  const std::optional<FaultWhen> when = FindFaultWhen(TakeWord(&line));
  if (!when || !ReadNumber(TakeWord(&line), &fault->count)) return false;
  fault->when = *when;
  if (line.empty()) return false;
  if (line == "-") return true;
  fault->operation = FindClientOperation(line);
  return fault->operation.has_value();
}

}  // namespace

std::span<const FaultKind> FaultKinds() { return kKinds; }

const FaultKind* FindFaultKind(std::string_view name) {
  for (const FaultKind& kind : kKinds) {
    if (kind.name == name) return &kind;
  }
  return nullptr;
}

std::string_view FaultWhenName(FaultWhen when) { return kWhenNames[static_cast<size_t>(when)]; }

std::optional<FaultWhen> FindFaultWhen(std::string_view name) {
  for (size_t i = 0; i < std::size(kWhenNames); ++i) {
    if (kWhenNames[i] == name) return static_cast<FaultWhen>(i);
  }
  return std::nullopt;
}

std::optional<RegisterFailure> FaultPlan::Refusal(const Fault& fault) {
  const FaultKind* kind = FindKind(fault.name);
  if (kind == nullptr) return MakeFailure(FailureCause::kUnknownFault, {}, Shown(fault.name));
  if (kind->name == kCodeFault) {
    // Above 0: a client never answers less.
    if (fault.code < 1 || fault.code > kMostCode) {
      return MakeFailure(FailureCause::kResultCode, {kMostCode, fault.code});
    }
  } else if (fault.code != 0 && fault.code != kind->code) {
    return MakeFailure(FailureCause::kFaultCode, {kind->code, fault.code}, fault.name);
  }
  if (fault.when < FaultWhen::kNext || fault.when > FaultWhen::kTimes) {
    return MakeFailure(FailureCause::kUnknownOccasion);
  }
  if (Counts(fault.when) && (fault.count < 1 || fault.count > kMostCount)) {
    return MakeFailure(FailureCause::kFaultCount, {kMostCount, fault.count});
  }
  if (!fault.operation) return std::nullopt;
  const auto operation = static_cast<int64_t>(*fault.operation);
  if (ClientOperationName(*fault.operation).empty()) {
    return MakeFailure(FailureCause::kUnknownOperation);
  }
  if (!AnswersCode(*fault.operation)) return MakeFailure(FailureCause::kAnswersNoCode, {operation});
  if (!StrikesByName(*kind, EffectsOf(*fault.operation))) {
    return MakeFailure(FailureCause::kCannotStrike, {operation}, fault.name);
  }
  return std::nullopt;
}

void FaultPlan::Add(Fault fault) {
  if (std::optional<RegisterFailure> refusal = Refusal(fault)) {
    throw RegisterError(std::move(*refusal));
  }
  if (faults_.size() >= kMostFaults) {
    throw RegisterError(MakeFailure(FailureCause::kPlanFull, {static_cast<int64_t>(kMostFaults)}));
  }
  if (fault.name != kCodeFault) fault.code = FindFaultKind(fault.name)->code;
  if (!Counts(fault.when)) fault.count = 1;
  faults_.push_back(std::move(fault));
  ++changes_;
}

void FaultPlan::Clear() {
  faults_.clear();
  ++changes_;
}

std::string FaultPlan::ToText() const {
  std::string text;
  for (const Fault& fault : faults_) {
    text += fmt::format("{} {} {} {} {}\n", fault.name, fault.code, FaultWhenName(fault.when),
                        fault.count, fault.operation ? ClientOperationName(*fault.operation) : "-");
  }
  return text;
}

bool FaultPlan::FromText(std::string_view text, FaultPlan* plan) {
  FaultPlan read;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    Fault fault;
    if (end == text.npos || !ReadFault(text.substr(0, end), &fault)) return false;
    if (read.faults_.size() >= kMostFaults || Refusal(fault)) return false;
    read.Add(std::move(fault));
    text.remove_prefix(end + 1);
  }
  read.changes_ = plan->changes_ + 1;
  *plan = std::move(read);
  return true;
}

bool FaultPlan::CanStrike(const Fault& fault, ClientOperation operation, unsigned effects) const {
  const FaultKind* kind = FindKind(fault.name);
  if (kind == nullptr) return false;
  if (fault.operation) {
    return *fault.operation == operation && StrikesByName(*kind, effects);
  }
  if ((effects & kind->effects) != 0) return true;
  // Hosts read on their way to an operation: a fault that counts leaves that alone, or it would
  // be used up before the operation that it is meant for.
  return kind->reading && fault.when == FaultWhen::kEvery && (effects & kEffectReads) != 0;
}

void FaultPlan::Use(size_t index) {
  Fault& fault = faults_[index];
  if (fault.when == FaultWhen::kEvery) return;
  ++changes_;
  if (fault.when == FaultWhen::kTimes && fault.count > 1) {
    --fault.count;
  } else {
    faults_.erase(faults_.begin() + static_cast<std::ptrdiff_t>(index));
  }
}

FaultPlan::Strike FaultPlan::Begin(std::optional<ClientOperation> operation, bool document_open,
                                   unsigned effects) {
  Strike strike;
  if (faults_.empty() || !operation || !AnswersCode(*operation)) return strike;
  if (effects == 0) effects = EffectsOf(*operation);
  if (document_open) effects &= ~static_cast<unsigned>(kEffectOpens);

  // The first that is due and refuses the operation; else the first that loses its answer.
  const size_t none = faults_.size();
  size_t refusing = none;
  size_t losing = none;
  for (size_t i = 0; i < faults_.size(); ++i) {
    const Fault& fault = faults_[i];
    if (!IsDue(fault) || !CanStrike(fault, *operation, effects)) continue;
    if (fault.name == kLostAnswerFault) {
      if (losing == none) losing = i;
    } else if (fault.code != RTF_SUCCESS && refusing == none) {
      refusing = i;
    }
  }
  if (refusing != none) {
    strike.before = faults_[refusing].code;
    losing = none;
  } else if (losing != none) {
    strike.after = faults_[losing].code;
  }
  // From the end, as a fault that is used up moves those behind it.
  for (size_t i = faults_.size(); i-- > 0;) {
    Fault& fault = faults_[i];
    if (!CanStrike(fault, *operation, effects)) continue;
    if (!IsDue(fault)) {
      --fault.count;
      ++changes_;
    } else if (i == refusing || i == losing || (fault.code == RTF_SUCCESS && refusing == none)) {
      Use(i);
    }
  }
  return strike;
}

int FaultPlan::PollState() {
  bool busy = false;
  for (size_t i = 0; i < faults_.size();) {
    Fault& fault = faults_[i];
    const size_t waiting = faults_.size();
    if (fault.name == kBusyFault && !fault.operation) {
      if (!IsDue(fault)) {
        --fault.count;
        ++changes_;
      } else if (!busy) {
        busy = true;
        Use(i);
      }
    }
    if (faults_.size() == waiting) ++i;
  }
  if (busy) return RTF_S_BUSY;
  const bool stopped = Waits(kOffLineFault) || Waits(kPaperEndFault) || Waits(kCoverOpenFault);
  return stopped ? RTF_S_ERROR : RTF_S_IDLE;
}

bool FaultPlan::Waits(std::string_view name) const {
  for (const Fault& fault : faults_) {
    if (fault.name == name && IsDue(fault)) return true;
  }
  return false;
}

}  // namespace lorimat
