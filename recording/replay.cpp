#include "recording/replay.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "recording/doing.h"
#include "recording/text_rooms.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace recording {
namespace {

using conversation::Call;
using conversation::CallSlip;
using conversation::Out;
using conversation::Value;

bool OnlyReads(ClientOperation operation) {
  const Doing doing = DoingOf(operation);
  return doing == Doing::kReads || doing == Doing::kHost;
}

constexpr bool kHasCode[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) std::is_same_v<Result, int>,
#include "rpccommon/client/rtfclientoperations.inc"
};

bool IsTrace(ClientOperation operation) {
  return operation == ClientOperation::kLogTrace || operation == ClientOperation::kLogError;
}

}  // namespace

Replay::Replay(Recording recording, ReplaySettings settings)
    : recording_(std::move(recording)), settings_(std::move(settings)), client_(*this) {
  for (const conversation::Step& step : recording_.script.steps) {
    for (const Call& call : step.calls) {
      // The host's callback is no call of the client.
      if (call.operation) calls_.push_back({&call});
    }
  }
}

std::optional<Departure> Replay::NotMade() const {
  const auto left = std::find_if(calls_.begin(), calls_.end(),
                                 [](const Recorded& recorded) { return !recorded.used; });
  if (left == calls_.end()) return std::nullopt;
  return Departure{DepartureKind::kNotMade,
                   LineInFile(recording_.script, left->call->line),
                   left->call->Shown(),
                   {}};
}

int Replay::Answer(ClientOperation operation, const CallSlip& slip, const conversation::Forward&) {
  if (IsTrace(operation)) return 0;
  return AnswerCall(operation, slip);
}

int Replay::AnswerUntold(ClientOperation operation, const conversation::Forward&) {
  return Refuse(operation, {});
}

int Replay::AnswerCall(ClientOperation operation, const CallSlip& slip) {
  Call made;
  made.name = ClientOperationName(operation);
  made.operation = operation;
  made.arguments = slip.arguments;
  if (recording_.blanked) secrets_.Arguments(operation, made.arguments);
  const std::optional<size_t> place = Find(operation, made);
  if (!place) return Refuse(operation, slip);
  ++answered_;
  return Give(*calls_[*place].call, operation, slip);
}

bool Replay::Fits(size_t place, const Call& made) const {
  const Call& recorded = *calls_[place].call;
  return recorded.operation == made.operation && Fit(recorded.arguments, made.arguments);
}

std::optional<size_t> Replay::Find(ClientOperation operation, const Call& made) {
  if (settings_.order == ReplayOrder::kLenient) return FindLeniently(operation, made);
  if (parted_) return std::nullopt;
  if (next_ < calls_.size() && Fits(next_, made)) {
    calls_[next_].used = true;
    return next_++;
  }
  parted_ = true;
  if (next_ < calls_.size()) {
    Part(DepartureKind::kOther, calls_[next_].call, made.Shown());
  } else {
    Part(DepartureKind::kRanOut, nullptr, made.Shown());
  }
  return std::nullopt;
}

std::optional<size_t> Replay::FindLeniently(ClientOperation operation, const Call& made) {
  std::optional<size_t> found;
  for (size_t i = 0; i < calls_.size() && !found; ++i) {
    const size_t place = (next_ + i) % calls_.size();
    if (!calls_[place].used && Fits(place, made)) found = place;
  }
  if (found) {
    calls_[*found].used = true;
    next_ = *found + 1;
    return found;
  }
  if (OnlyReads(operation)) {
    for (size_t place = calls_.size(); place > 0; --place) {
      if (Fits(place - 1, made)) return place - 1;
    }
  }
  const bool any_left = std::any_of(calls_.begin(), calls_.end(),
                                    [](const Recorded& recorded) { return !recorded.used; });
  Part(any_left ? DepartureKind::kNowhere : DepartureKind::kRanOut, nullptr, made.Shown());
  return std::nullopt;
}

int Replay::Give(const Call& recorded, ClientOperation operation, const CallSlip& slip) {
  std::optional<int> result;
  try {
    if (recorded.outs.size() > slip.outs.size()) throw conversation::Failure(0, "");
    for (size_t i = 0; i < recorded.outs.size(); ++i) {
      const Out& out = slip.outs[i];
      const Value& value = recorded.outs[i];
      if (out.is_text && settings_.guard_texts && !value.IsKept()) {
        if (out.pointer == nullptr) continue;
        const size_t room = TextRoom(operation, slip, i);
        const size_t length = std::min(value.text.size(), room);
        char* text = static_cast<char*>(out.pointer);
        value.text.copy(text, length);
        if (length < room) text[length] = '\0';
      } else {
        conversation::Give(out, value);
      }
    }
    result = recorded.Result();
  } catch (const conversation::Failure&) {
    Call made;
    made.name = recorded.name;
    made.arguments = slip.arguments;
    if (recording_.blanked) secrets_.Arguments(operation, made.arguments);
    parted_ = true;
    Part(DepartureKind::kNoAnswer, &recorded, made.Shown());
    return Refuse(operation, slip);
  }
  if (!result) throw std::runtime_error("the device of the recording");
  return *result;
}

// A report waits for minutes for a printer whose state cannot be read, and a wait for a device that
// is busy has no end.
int Replay::Refuse(ClientOperation operation, const CallSlip& slip) {
  if (operation == ClientOperation::kGetState) return RTF_S_CLOSED;
  if (operation == ClientOperation::kGetIntProperty && slip.outs.size() == 1) {
    conversation::Give(slip.outs[0], Value::Word(std::to_string(RTF_FPTR_PS_MONITOR)));
    return RTF_SUCCESS;
  }
  return kHasCode[static_cast<size_t>(operation)] ? RTF_E_FAILURE : 0;
}

void Replay::Part(DepartureKind kind, const Call* expected, std::string got) {
  ++departures_;
  if (!settings_.parted) return;
  Departure departure;
  departure.kind = kind;
  departure.got = std::move(got);
  const Call* at = expected;
  if (at == nullptr && !calls_.empty()) at = calls_.back().call;
  if (at != nullptr && kind != DepartureKind::kNowhere) {
    departure.line = LineInFile(recording_.script, at->line);
  }
  if (expected != nullptr) departure.expected = expected->Shown();
  settings_.parted(departure);
}

}  // namespace recording
