#include "script_device.h"

#include <climits>
#include <cstring>
#include <iterator>
#include <new>
#include <stdexcept>

namespace lorimat {
namespace {

using conversation::Call;
using conversation::CallSlip;
using conversation::Fit;
using conversation::Out;
using conversation::Step;
using conversation::Value;

// Room that the translator gives every text that it asks for.
constexpr size_t kTextRoom = 512;

constexpr int kReadyState = 2;
constexpr int kRefusals[] = {107, 207, 212, 1213, 111};

enum class Doing { Host, Reads, Acts, Records, Prints, Opens, Pays, Totals, Settles, Keys };
constexpr Doing kDoings[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) Doing::Does,
#include "rpccommon/client/rtfclientoperations.inc"
};

bool IsTrace(ClientOperation operation) {
  return operation == ClientOperation::kLogTrace || operation == ClientOperation::kLogError;
}

void FillAll(const CallSlip& slip, const char* number) {
  for (const Out& out : slip.outs) out.fill(out.pointer, Value::Word(number));
}

}  // namespace

bool HasEffect(ClientOperation operation) {
  const Doing doing = kDoings[static_cast<size_t>(operation)];
  return doing != Doing::Host && doing != Doing::Reads && doing != Doing::Records;
}

ScriptDevice::ScriptDevice(const conversation::Conversation& conversation, CallFault fault,
                           long place, bool traces)
    : conversation_(conversation), fault_(fault), place_(place), traces_(traces), client_(*this) {}

void ScriptDevice::Open(const Step& step) {
  step_ = &step;
  next_ = 0;
  items_.clear();
  for (const Step& earlier : conversation_.steps) {
    if (&earlier == &step) break;
    if (earlier.kind == Step::kItem) {
      items_[conversation::ReadNumber(earlier.name)] = earlier.text;
    }
  }
}

int ScriptDevice::Answer(ClientOperation operation, const CallSlip& slip,
                         const conversation::Forward&) {
  const bool counts = traces_ || !IsTrace(operation);
  const bool strikes = counts && ++count_ == place_;
  const auto step = static_cast<size_t>(step_ - conversation_.steps.data());
  if (!IsTrace(operation) || strikes) {
    Call call;
    call.name = ClientOperationName(operation);
    call.arguments = slip.arguments;
    made_.push_back({step, operation, call.Shown(), strikes, false});
  }
  if (strikes) {
    struck_at_step_ = static_cast<long>(step);
    struck_call_ = made_.back().shown;
    struck_answer_ = Strike(slip);
    // What succeeds as it should has answered by the script ahead of it.
    made_.back().accepted = struck_answer_ == 0;
    return struck_answer_;
  }
  if (IsTrace(operation)) return 0;
  const int answer = AnswerByScript(operation, slip);
  made_.back().accepted = answer == 0;
  return answer;
}

int ScriptDevice::Strike(const CallSlip& slip) {
  switch (fault_) {
    case CallFault::kNone:
      break;
    case CallFault::kRefused:
      return kRefusals[static_cast<size_t>(place_) % std::size(kRefusals)];
    case CallFault::kException:
      throw std::runtime_error("a client's own");
    case CallFault::kInteger:
      throw 7;
    case CallFault::kNoMemory:
      throw std::bad_alloc();
    case CallFault::kNoResult:
      return -1;
    case CallFault::kBeyond:
      return place_ % 2 == 0 ? INT_MAX : INT_MIN;
    case CallFault::kFullText:
      for (const Out& out : slip.outs) {
        if (out.is_text && out.pointer != nullptr) std::memset(out.pointer, 'X', kTextRoom);
      }
      break;
    case CallFault::kBadNumber:
      FillAll(slip, place_ % 2 == 0 ? "9223372036854775807" : "-9223372036854775808");
      break;
  }
  return 0;
}

// The next call of the step that is like it; behind a fault any.
const Call* ScriptDevice::FindScripted(ClientOperation operation, const CallSlip& slip) {
  const std::vector<Call>& calls = step_->calls;
  for (size_t i = 0; i < calls.size(); ++i) {
    const size_t at = (next_ + i) % calls.size();
    if (calls[at].operation == operation && Fit(calls[at].arguments, slip.arguments)) {
      next_ = at + 1;
      return &calls[at];
    }
  }
  return nullptr;
}

int ScriptDevice::AnswerByScript(ClientOperation operation, const CallSlip& slip) {
  const Call* wanted = step_->strict ? FindScripted(operation, slip) : nullptr;
  if (wanted == nullptr) {
    if (operation == ClientOperation::kGetDataInternal) {
      const auto item = items_.find(conversation::ReadNumber(slip.arguments[0].text));
      if (item != items_.end()) slip.outs[0].fill(slip.outs[0].pointer, Value::Text(item->second));
    }
    return operation == ClientOperation::kGetState ? kReadyState : 0;
  }
  for (size_t i = 0; i < wanted->outs.size() && i < slip.outs.size(); ++i) {
    conversation::Give(slip.outs[i], wanted->outs[i]);
  }
  const std::optional<int> result = wanted->Result();
  if (!result) throw std::runtime_error("the device of the conversation");
  return *result;
}

}  // namespace lorimat
