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

}  // namespace

Conformance::Conformance(Device& device, ConformProgress& progress, ConformSettings settings)
    : device_(device),
      progress_(progress),
      settings_(std::move(settings)),
      client_([&]() -> RtfClientInterface& {
        RtfClientInterface& own =
            settings_.client != nullptr ? *settings_.client : *device.client();
        return settings_.recorder != nullptr ? settings_.recorder->Wrap(own) : own;
      }()),
      at_rest_(progress.resumed == 0) {}

void Conformance::Run() {
  const std::vector<ConformPiece> pieces = ConformPieces();
  while (progress_.tried < pieces.size() && !progress_.gone && interrupted == 0) {
    const size_t number = progress_.tried;
    if (settings_.recorder != nullptr) {
      settings_.recorder->LineBegins("; " + pieces[number].Name());
    }
    const std::string_view result = Try(pieces[number]);
    if (settings_.recorder != nullptr) settings_.recorder->LineEnds(0, result);
    progress_.tried = number + 1;
    if (settings_.behind) settings_.behind(number);
  }
}

std::string_view Conformance::Try(const ConformPiece& piece) {
  ConformRow& row = progress_.RowOf(piece);
  if (!std::exchange(at_rest_, true) && !Rest(&row, piece.Name())) return NameOf(row.verdict);
  switch (piece.kind) {
    case ConformPiece::kReading:
      Read(ReadingCalls()[piece.place], &row, &progress_.FirstAnswer(piece.place));
      break;
    case ConformPiece::kState:
      progress_.Reached(piece.state) = Enter(piece.state, &row);
      break;
    case ConformPiece::kOperation:
      TryCell(piece, &row);
      return {};
    case ConformPiece::kRefusal:
      TryRefusal(RefusalCalls()[piece.place], &row);
      break;
    case ConformPiece::kAgain:
      ReadAgain(piece, &row);
      break;
  }
  return NameOf(row.verdict);
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
      progress_.gone = true;
      break;
  }
  if (!outcome.fault && outcome.code == -1) outcome.fault = ConformCause::kMinusOne;
  if (!outcome.fault && !IsKnown(outcome.code)) outcome.fault = ConformCause::kUnknownCode;
  return outcome;
}

bool Conformance::AddFault(const Outcome& outcome, std::string_view operation, State state,
                           ConformRow* row) {
  if (!outcome.fault) return false;
  AddFinding(row, {.cause = *outcome.fault,
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
  if (progress_.gone) return false;
  AddFinding(row, {.cause = ConformCause::kOtherState,
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
    if (state == RTF_FPTR_PS_MONITOR || progress_.gone) break;
    AddFault(Make(way_out.call), way_out.operation, kStates, row);
    if (!progress_.gone) state = PrinterState(row);
  }
  if (std::exchange(waits_, false) && !progress_.gone) {
    AddFault(Make([](C& r) { return r.SetDataInternal(kClosesByItself, "1"); }), "SetDataInternal",
             kStates, row);
  }
  if (progress_.gone) return false;
  if (settings_.training && device_.state().training != true) {
    AddFinding(row, {.cause = ConformCause::kTrainingOver, .operation = std::string(behind)});
    progress_.gone = true;
    return false;
  }
  if (state != RTF_FPTR_PS_MONITOR) {
    AddFinding(row, {.cause = ConformCause::kNoRest,
                     .operation = std::string(behind),
                     .got = state.value_or(0)});
    return false;
  }
  return true;
}

bool Conformance::TakeStep(const StateStep& step, State state, ConformRow* state_row) {
  const Outcome outcome = Make(step.call);
  if (AddFault(outcome, step.operation, state, state_row)) return step.optional && !progress_.gone;
  if (outcome.code == RTF_SUCCESS || step.optional) return true;
  const bool in_training = settings_.training && outcome.code == RTF_EFPTR_WRONG_STATE;
  if (outcome.code == RTF_E_ILLEGAL || (in_training && state == kItemList)) {
    if (state_row->findings.empty()) state_row->verdict = ConformVerdict::kMissing;
  } else {
    AddFinding(state_row, {.cause = ConformCause::kRefused,
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
      AddFinding(row, {.cause = ConformCause::kOverrun, .operation = reading.Name()});
    } else if (std::find(texts[i].begin(), end, '\0') == end) {
      AddFinding(row, {.cause = ConformCause::kNoEnd,
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
    AddFinding(row,
               {.cause = ConformCause::kRefused, .operation = reading.Name(), .got = outcome.code});
    return;
  }
  if (!row->findings.empty()) return;
  row->verdict = ConformVerdict::kFits;
  if (reading.texts == 0) return;
  *answer = texts[0].data();
  if (!HasForm(reading.form, *answer)) {
    AddFinding(row, {.cause = ConformCause::kForm, .operation = reading.Name(), .text = *answer});
  }
}

void Conformance::ReadAgain(const ConformPiece& piece, ConformRow* row) {
  // What ended the process once is not called again.
  if (ConformProgress::EndedAt(progress_.RowOf({ConformPiece::kReading, piece.place}))) return;
  const ReadingCall& reading = ReadingCalls()[piece.place];
  const std::string& first = progress_.FirstAnswer(piece.place);
  std::string answer;
  if (Rest(row, reading.Name())) Read(reading, row, &answer);
  if (row->findings.empty() && answer != first) {
    AddFinding(row, {.cause = ConformCause::kChanged, .operation = reading.Name(), .text = first});
  }
}

// --- Operations by states.

void Conformance::TryCell(const ConformPiece& piece, ConformRow* row) {
  const StateCall& call = StateCalls()[piece.place];
  const State state = piece.state;
  // A state that was not reached is not tried for with each operation.
  if (!progress_.Reached(state) || (call.flags & kLeftAlone) != 0) return;
  if (ConformProgress::EndedAt(*row) || !Enter(state, &progress_.RowOfState(state))) return;
  const Outcome outcome = Make(call.call);
  if (!AddFault(outcome, call.name, state, row)) progress_.CellOf(piece) = {true, outcome.code};
  bool is_still = false;
  if (outcome.code != RTF_SUCCESS) {
    // A refused operation has done nothing.
    is_still = !progress_.gone && ExpectState(call.name, state, NameOfState(state).printer, row);
  } else if (call.allowed[state] && call.after != kStates) {
    ExpectState(call.name, state, NameOfState(call.after).printer, row);
  }
  if (!is_still && !progress_.gone) Rest(row, call.name);
}

// --- Refusals.

void Conformance::TryRefusal(const RefusalCall& refusal, ConformRow* row) {
  if (ConformProgress::EndedAt(progress_.RowOfState(refusal.at))) return;
  ConformRow entered = {row->group, row->name, {}};
  if (!Enter(refusal.at, &entered)) {
    row->verdict = progress_.gone ? ConformVerdict::kAgainst : ConformVerdict::kNotTried;
    if (progress_.gone) row->findings = std::move(entered.findings);
    return;
  }
  const Outcome outcome = Make(refusal.call);
  if (outcome.code == RTF_SUCCESS || outcome.fault) at_.reset();
  if (AddFault(outcome, refusal.name, refusal.at, row)) return;
  const bool in_training = settings_.training && (refusal.flags & kNotInTraining) != 0 &&
                           outcome.code == RTF_EFPTR_WRONG_STATE;
  if (outcome.code == RTF_SUCCESS ||
      (outcome.code != refusal.code && !in_training && outcome.code != RTF_E_ILLEGAL)) {
    AddFinding(row, {.cause = outcome.code == RTF_SUCCESS ? ConformCause::kAccepted
                                                          : ConformCause::kOtherCode,
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
