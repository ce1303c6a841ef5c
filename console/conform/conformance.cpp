#include "console/conform/conformance.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "console/terminal/interrupt.h"
#include "language/code_table.h"
#include "rpccommon/client/rtfclientbuffers.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

constexpr std::string_view kReadings = "readings";
constexpr std::string_view kStatesGroup = "states";
constexpr std::string_view kOperations = "operations";
constexpr std::string_view kRefusals = "refusals";
constexpr std::string_view kAgain = "again";
constexpr char kUntouched = 'Z';  // of what stands behind a text's end

using C = RtfClientInterface;

// Ways out of a document, one behind the other.
struct WayOut {
  std::string_view operation;
  int (*call)(C& device);
};
constexpr WayOut kWaysOut[] = {
    {"ResetPrn", [](C& r) { return r.ResetPrn(); }},
    {"PrintRecVoid", [](C& r) { return r.PrintRecVoid(""); }},
    {"EndFiscalReceipt", [](C& r) { return r.EndFiscalReceipt(true); }},
    {"EndNonFiscal", [](C& r) { return r.EndNonFiscal(); }},
    {"EndItemList", [](C& r) { return r.EndItemList(); }},
};
// Whether settled documents wait to be closed; the step into the state ENDING makes them wait.
constexpr int kClosesByItself = 148;

bool IsKnown(int code) {
  const auto results = language::ClientResults();
  return code == RTF_SUCCESS || std::any_of(results.begin(), results.end(),
                                            [code](const auto& row) { return row.result == code; });
}

// How large tables are does not change by what was done.
bool IsReadAgain(const ReadingCall& reading) { return reading.form == AnswerForm::kCount; }

}  // namespace

Conformance::Conformance(Device& device, ConformSettings settings)
    : device_(device),
      settings_(std::move(settings)),
      client_(settings_.recorder != nullptr ? settings_.recorder->Wrap(*device.client())
                                            : *device.client()),
      cells_(StateCalls().size()),
      first_answers_(ReadingCalls().size()) {}

size_t Conformance::CallsTried() {
  const auto readings = ReadingCalls();
  const auto again = std::count_if(readings.begin(), readings.end(), &IsReadAgain);
  return readings.size() + kStates * (1 + StateCalls().size()) + RefusalCalls().size() +
         static_cast<size_t>(again);
}

ConformReport Conformance::Run() {
  ReadAll();
  TryStates();
  TryRefusals();
  ReadAgain();
  report_.stopped = interrupted != 0;
  return std::move(report_);
}

// --- One call.

template <typename Call>
Conformance::Outcome Conformance::Make(Call&& call) {
  Outcome outcome;
  try {
    outcome.code = call(client_);
  } catch (...) {
    outcome = {ConformCause::kThrew, RTF_E_FAILURE};
  }
  switch (device_.TakeCallFault()) {
    case DeviceCallFault::kNone:
      break;
    case DeviceCallFault::kThrew:
      outcome.fault = ConformCause::kThrew;
      break;
    case DeviceCallFault::kOverrun:
      outcome.fault = ConformCause::kOverrun;
      break;
    case DeviceCallFault::kHung:
      outcome.fault = ConformCause::kHung;
      gone_ = true;
      break;
  }
  if (!outcome.fault && outcome.code == -1) outcome.fault = ConformCause::kMinusOne;
  if (!outcome.fault && !IsKnown(outcome.code)) outcome.fault = ConformCause::kUnknownCode;
  return outcome;
}

bool Conformance::Begin(std::string_view what) {
  if (settings_.behind) settings_.behind(++calls_);
  if (gone_ || interrupted != 0) return false;
  if (settings_.recorder != nullptr) settings_.recorder->LineBegins("; " + std::string(what));
  return true;
}

void Conformance::End(std::string_view result) {
  if (settings_.recorder != nullptr) settings_.recorder->LineEnds(0, result);
}

void Conformance::Add(ConformRow* row, ConformFinding finding) {
  row->verdict = ConformVerdict::kAgainst;
  const auto is_same = [&finding](const ConformFinding& other) {
    return other.cause == finding.cause && other.operation == finding.operation &&
           other.state == finding.state && other.got == finding.got;
  };
  if (std::none_of(row->findings.begin(), row->findings.end(), is_same)) {
    row->findings.push_back(std::move(finding));
  }
}

bool Conformance::AddFault(const Outcome& outcome, std::string_view operation, State state,
                           ConformRow* row) {
  if (!outcome.fault) return false;
  Add(row, {.cause = *outcome.fault,
            .operation = std::string(operation),
            .state = state,
            .got = outcome.code});
  return true;
}

// --- States.

std::optional<int> Conformance::PrinterState(ConformRow* row) {
  int state = 0;
  const Outcome outcome =
      Make([&state](C& r) { return r.GetIntProperty(RTF_PIDXFptr_PrinterState, &state); });
  if (AddFault(outcome, "GetIntProperty", kStates, row)) return std::nullopt;
  return outcome.code == RTF_SUCCESS ? std::optional(state) : std::nullopt;
}

bool Conformance::ExpectState(std::string_view behind, State at, int expected, ConformRow* row) {
  const std::optional<int> state = PrinterState(row);
  if (state == expected) return true;
  if (gone_) return false;
  Add(row, {.cause = ConformCause::kOtherState,
            .operation = std::string(behind),
            .state = at,
            .expected = expected,
            .got = state.value_or(0)});
  return false;
}

bool Conformance::Rest(ConformRow* row, std::string_view behind) {
  at_.reset();
  std::optional<int> state = PrinterState(row);
  for (const WayOut& way_out : kWaysOut) {
    if (state == RTF_FPTR_PS_MONITOR || gone_) break;
    AddFault(Make(way_out.call), way_out.operation, kStates, row);
    if (!gone_) state = PrinterState(row);
  }
  if (std::exchange(waits_, false) && !gone_) {
    AddFault(Make([](C& r) { return r.SetDataInternal(kClosesByItself, "1"); }), "SetDataInternal",
             kStates, row);
  }
  if (gone_) return false;
  if (settings_.training && device_.state().training != true) {
    Add(row, {.cause = ConformCause::kTrainingOver, .operation = std::string(behind)});
    gone_ = true;
    return false;
  }
  if (state != RTF_FPTR_PS_MONITOR) {
    Add(row, {.cause = ConformCause::kNoRest,
              .operation = std::string(behind),
              .got = state.value_or(0)});
    return false;
  }
  return true;
}

bool Conformance::TakeStep(const StateStep& step, State state, ConformRow* state_row) {
  const Outcome outcome = Make(step.call);
  if (AddFault(outcome, step.operation, state, state_row)) return step.optional && !gone_;
  if (outcome.code == RTF_SUCCESS || step.optional) return true;
  const bool in_training = settings_.training && outcome.code == RTF_EFPTR_WRONG_STATE;
  if (outcome.code == RTF_E_ILLEGAL || (in_training && state == kItemList)) {
    if (state_row->findings.empty()) state_row->verdict = ConformVerdict::kMissing;
  } else {
    Add(state_row, {.cause = ConformCause::kRefused,
                    .operation = std::string(step.operation),
                    .state = state,
                    .got = outcome.code});
  }
  return false;
}

bool Conformance::Enter(State state, ConformRow* state_row) {
  if (at_ == state) return true;
  if (!Rest(state_row, NameOfState(state).name)) return false;
  std::string_view last = NameOfState(state).name;
  for (const StateStep& step : StateSteps()) {
    if ((step.states & (1u << state)) == 0) continue;
    waits_ |= state == kEnding;
    if (!TakeStep(step, state, state_row)) return false;
    last = step.operation;
  }
  if (!ExpectState(last, state, NameOfState(state).printer, state_row)) return false;
  if (state_row->verdict == ConformVerdict::kNotTried) state_row->verdict = ConformVerdict::kFits;
  at_ = state;
  return true;
}

// --- Readings.

void Conformance::CheckTexts(const ReadingCall& reading, const AskedTextRooms& texts,
                             ConformRow* row) const {
  for (size_t i = 0; i < reading.texts; ++i) {
    const ClientBuffer* buffer =
        FindClientBuffer(reading.operation, static_cast<int>(i), reading.number);
    const size_t room = buffer != nullptr ? buffer->size : texts[i].size();
    const auto* const end = texts[i].begin() + static_cast<ptrdiff_t>(room);
    if (std::any_of(end, texts[i].end(), [](char c) { return c != kUntouched; })) {
      Add(row, {.cause = ConformCause::kOverrun, .operation = reading.Name()});
    } else if (std::find(texts[i].begin(), end, '\0') == end) {
      Add(row, {.cause = ConformCause::kNoEnd,
                .operation = reading.Name(),
                .expected = static_cast<int>(room)});
    }
  }
}

void Conformance::Read(const ReadingCall& reading, ConformRow* row, std::string* answer) {
  AskedTextRooms texts;
  for (AskedText& text : texts) {
    text.fill(kUntouched);
    text[0] = '\0';
  }
  const Outcome outcome = Make([&](C& r) { return reading.call(r, reading.number, texts); });
  if (AddFault(outcome, reading.Name(), kStates, row)) return;
  CheckTexts(reading, texts, row);
  if (outcome.code == RTF_E_ILLEGAL || outcome.code == RTF_E_NOEXIST) {
    if (row->findings.empty()) row->verdict = ConformVerdict::kMissing;
    return;
  }
  if (outcome.code != RTF_SUCCESS) {
    Add(row, {.cause = ConformCause::kRefused, .operation = reading.Name(), .got = outcome.code});
    return;
  }
  if (!row->findings.empty()) return;
  row->verdict = ConformVerdict::kFits;
  if (reading.texts == 0) return;
  *answer = texts[0].data();
  if (!HasForm(reading.form, *answer)) {
    Add(row, {.cause = ConformCause::kForm, .operation = reading.Name(), .text = *answer});
  }
}

void Conformance::ReadAll() {
  for (size_t i = 0; i < ReadingCalls().size(); ++i) {
    const ReadingCall& reading = ReadingCalls()[i];
    ConformRow row = {kReadings, reading.Name(), {}};
    if (Begin(reading.Name())) {
      Read(reading, &row, &first_answers_[i]);
      End(NameOf(row.verdict));
    }
    report_.rows.push_back(std::move(row));
  }
}

void Conformance::ReadAgain() {
  for (size_t i = 0; i < ReadingCalls().size(); ++i) {
    const ReadingCall& reading = ReadingCalls()[i];
    if (!IsReadAgain(reading)) continue;
    ConformRow row = {kAgain, reading.Name(), {}};
    if (Begin(reading.Name())) {
      std::string answer;
      if (Rest(&row, reading.Name())) Read(reading, &row, &answer);
      if (row.findings.empty() && answer != first_answers_[i]) {
        Add(&row, {.cause = ConformCause::kChanged,
                   .operation = reading.Name(),
                   .text = first_answers_[i]});
      }
      End(NameOf(row.verdict));
    }
    report_.rows.push_back(std::move(row));
  }
}

// --- Operations by states.

void Conformance::TryStates() {
  std::vector<ConformRow> states;
  std::vector<ConformRow> operations;
  for (const StateCall& call : StateCalls()) {
    operations.push_back({kOperations, std::string(call.name), {}});
  }
  for (int number = 0; number < kStates; ++number) {
    const auto state = static_cast<State>(number);
    ConformRow row = {kStatesGroup, std::string(NameOfState(state).name), {}};
    bool reached = false;
    if (Begin(row.name)) {
      reached = Enter(state, &row);
      End(NameOf(row.verdict));
    }
    for (size_t place = 0; place < StateCalls().size(); ++place) {
      const StateCall& call = StateCalls()[place];
      if (!Begin(std::string(call.name) + ", " + row.name)) continue;
      // A state that was not reached is not tried for with each operation.
      if (reached && (call.flags & kLeftAlone) == 0 && Enter(state, &row)) {
        TryCell(place, state, &operations[place]);
      }
      End({});
    }
    states.push_back(std::move(row));
  }
  for (size_t place = 0; place < operations.size(); ++place) JudgeCells(place, &operations[place]);
  for (ConformRow& row : states) report_.rows.push_back(std::move(row));
  for (size_t place = 0; place < operations.size(); ++place) {
    if ((StateCalls()[place].flags & kLeftAlone) == 0) {
      report_.rows.push_back(std::move(operations[place]));
    }
  }
}

void Conformance::TryCell(size_t place, State state, ConformRow* row) {
  const StateCall& call = StateCalls()[place];
  const Outcome outcome = Make(call.call);
  if (!AddFault(outcome, call.name, state, row)) cells_[place][state] = {true, outcome.code};
  bool is_still = false;
  if (outcome.code != RTF_SUCCESS) {
    // A refused operation has done nothing.
    is_still = !gone_ && ExpectState(call.name, state, NameOfState(state).printer, row);
  } else if (call.allowed[state] && call.after != kStates) {
    ExpectState(call.name, state, NameOfState(call.after).printer, row);
  }
  if (!is_still && !gone_) Rest(row, call.name);
}

void Conformance::JudgeCells(size_t place, ConformRow* row) const {
  const StateCall& call = StateCalls()[place];
  const std::array<Cell, kStates>& cells = cells_[place];
  bool has_it = false;
  bool allowed_was_tried = false;
  bool was_tried = false;
  for (int state = 0; state < kStates; ++state) {
    was_tried |= cells[state].tried;
    if (!call.allowed[state] || !cells[state].tried) continue;
    allowed_was_tried = true;
    has_it |= cells[state].code != RTF_E_ILLEGAL;
  }
  // One that no state allows has nothing that shows it to be there.
  if (!allowed_was_tried) {
    has_it = std::any_of(cells.begin(), cells.end(),
                         [](const Cell& cell) { return cell.tried && cell.code != RTF_E_ILLEGAL; });
  }
  for (int number = 0; number < kStates; ++number) {
    const auto state = static_cast<State>(number);
    const int code = cells[number].code;
    if (!cells[number].tried) continue;
    const bool in_training =
        settings_.training && (call.flags & kNotInTraining) != 0 && code == RTF_EFPTR_WRONG_STATE;
    ConformFinding finding = {.operation = row->name, .state = state, .got = code};
    if (code == RTF_E_ILLEGAL) {
      if (!has_it) continue;
      finding.cause = ConformCause::kChangedMind;
    } else if (call.allowed[state]) {
      const bool own_rule = (call.flags & kOwnRules) != 0 && code != RTF_EFPTR_WRONG_STATE;
      if (code == RTF_SUCCESS || in_training || own_rule) continue;
      finding.cause = ConformCause::kRefused;
    } else {
      if (code == RTF_EFPTR_WRONG_STATE) continue;
      finding.cause = code == RTF_SUCCESS ? ConformCause::kAccepted : ConformCause::kOtherCode;
      finding.expected = RTF_EFPTR_WRONG_STATE;
    }
    Add(row, std::move(finding));
  }
  if (row->verdict == ConformVerdict::kAgainst || !was_tried) return;
  row->verdict = has_it ? ConformVerdict::kFits : ConformVerdict::kMissing;
}

// --- Refusals.

void Conformance::TryRefusals() {
  for (const RefusalCall& refusal : RefusalCalls()) {
    ConformRow row = {kRefusals, std::string(refusal.name), refusal.what};
    if (Begin(std::string(refusal.name) + ": " + std::string(refusal.what))) {
      TryRefusal(refusal, &row);
      End(NameOf(row.verdict));
    }
    report_.rows.push_back(std::move(row));
  }
}

void Conformance::TryRefusal(const RefusalCall& refusal, ConformRow* row) {
  ConformRow entered = {kRefusals, row->name, {}};
  if (!Enter(refusal.at, &entered)) {
    row->verdict = gone_ ? ConformVerdict::kAgainst : ConformVerdict::kNotTried;
    if (gone_) row->findings = std::move(entered.findings);
    return;
  }
  const Outcome outcome = Make(refusal.call);
  if (outcome.code == RTF_SUCCESS || outcome.fault) at_.reset();
  if (AddFault(outcome, refusal.name, refusal.at, row)) return;
  const bool in_training = settings_.training && (refusal.flags & kNotInTraining) != 0 &&
                           outcome.code == RTF_EFPTR_WRONG_STATE;
  if (outcome.code == RTF_SUCCESS ||
      (outcome.code != refusal.code && !in_training && outcome.code != RTF_E_ILLEGAL)) {
    Add(row,
        {.cause = outcome.code == RTF_SUCCESS ? ConformCause::kAccepted : ConformCause::kOtherCode,
         .operation = row->name,
         .state = refusal.at,
         .expected = refusal.code,
         .got = outcome.code});
    return;
  }
  const bool missing = outcome.code == RTF_E_ILLEGAL && refusal.code != RTF_E_ILLEGAL;
  row->verdict = missing ? ConformVerdict::kMissing : ConformVerdict::kFits;
  if (!ExpectState(refusal.name, refusal.at, NameOfState(refusal.at).printer, row)) at_.reset();
}

}  // namespace lorimat::console
