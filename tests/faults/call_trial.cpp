#include "call_trial.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include "language/code_table.h"

namespace lorimat {
namespace {

using conversation::Call;
using conversation::Conversation;
using conversation::Failure;
using conversation::Stage;
using conversation::Step;
using conversation::SweepRule;

bool IsCode(long code) {
  if (code != static_cast<int>(code)) return false;
  const auto readings = language::ReadCode(static_cast<int>(code));
  return !readings.empty() && readings[0].kind != language::CodeReading::kInternal;
}

bool IsBatch(const Step& step) { return step.text.find_first_not_of(" \t") == step.text.find('@'); }

// The conversation, TradClose, and the conversation once more, in a folder without the files that
// it looks at.
Conversation Twice(const Conversation& conversation) {
  Conversation twice;
  twice.path = conversation.path;
  twice.lines = conversation.lines;
  twice.steps = conversation.steps;
  Step close;
  close.kind = Step::kExport;
  close.strict = false;
  close.call.name = "TradClose";
  twice.steps.push_back(close);
  for (const Step& step : conversation.steps) {
    if (step.kind != Step::kFileIs && step.kind != Step::kNoFile) continue;
    Step removal;
    removal.kind = Step::kRemove;
    removal.name = step.name;
    twice.steps.push_back(removal);
  }
  twice.steps.insert(twice.steps.end(), conversation.steps.begin(), conversation.steps.end());
  return twice;
}

// A conversation on a device of its own, with one fault.
class Trial {
 public:
  // `once` is how many steps the device answers; those behind it go as they are written.
  Trial(const Conversation& script, const Stage& stage, const CallManner& manner, long place,
        size_t once)
      : script_(script),
        stage_(stage),
        device_(script, manner.fault, manner.fault != CallFault::kNone ? place : 0, manner.traces),
        codes_(script.steps.size(), -1) {
    if (manner.fault == CallFault::kNone) {
      place_.kind = manner.kind;
      place_.first = place;
      place_.half = manner.half;
      place_.error = manner.error;
    }
    stage_.device = device_.client();
    stage_.comparison = conversation::Comparison::kNothing;
    stage_.wild_device = true;
    stage_.is_code = &IsCode;
    stage_.device_for = [this](const Step& step) -> RtfClientInterface* {
      Begin(step);
      return nullptr;
    };
    stage_.by_script = [this, once](const Step& step) {
      if (Number(step) <= once) return false;
      strike::Heal();
      return true;
    };
    stage_.answered = [this](const Step& step, long code, const std::string& text) {
      codes_[Number(step)] = code;
      if (code != 0 && text.empty()) throw Failure(0, "the line fails without a text");
      if (strike::Count(strike::kMemory) != memory_) {
        throw Failure(0, "the library allocates while the line runs");
      }
    };
    stage_.library_works = [](bool works) { works ? strike::Resume() : strike::Pause(); };
  }

  Wrong Run() {
    strike::Arm(place_, "");
    Wrong wrong;
    try {
      conversation::Play(script_, stage_);
    } catch (const Failure& failure) {
      strike::Pause();
      wrong = "line " + std::to_string(conversation::LineInFile(script_, failure.line)) + ": " +
              failure.what();
    }
    return wrong;
  }

  bool is_struck() const { return device_.struck_at_step() >= 0 || strike::Failed() > 0; }
  const ScriptDevice& device() const { return device_; }
  const std::vector<long>& codes() const { return codes_; }

 private:
  size_t Number(const Step& step) const {
    return static_cast<size_t>(&step - script_.steps.data());
  }
  void Begin(const Step& step) {
    device_.Open(step);
    memory_ = strike::Count(strike::kMemory);
  }

  const Conversation& script_;
  Stage stage_;
  ScriptDevice device_;
  strike::Place place_;
  std::vector<long> codes_;
  long memory_ = 0;  // allocations ahead of the step
};

constexpr CallManner kNoFault = {"none", CallFault::kNone};

// What a line passes over when it fails, whatever the conversation: the blank line behind a barcode
// or a logo, the beginning and the end of a transfer of articles, the erasing of articles ahead of
// one or behind it where the device can be reached, the key that clears the display, the mark that
// a receipt was opened by a key.
constexpr std::string_view kPassedOver[] = {
    "PrintRecMessage(\" \")",
    "PrintNormal(2, \" \")",
    "UploadTable(1, 0, \"\")",
    "UploadTable(1, 2, \"\")",
    "EraseTable(1)",
    "EraseTable(257)",
    "KeyCodeInput(\"\", \"\", \"\", 0)",
    "SetDataInternal(600, \"1\")",
};

// Whether the conversation says that the line goes on as if the call had not failed.
bool MayGoOn(const Conversation& conversation, const std::string& shown, int answer) {
  if (std::find(std::begin(kPassedOver), std::end(kPassedOver), shown) != std::end(kPassedOver)) {
    return true;
  }
  const Call call = ::conversation::ReadCall(shown);
  for (const SweepRule& rule : conversation.sweep) {
    if (rule.call.name != call.name) continue;
    if (rule.call.has_arguments && !conversation::Fit(rule.call.arguments, call.arguments))
      continue;
    if (!rule.any_code && rule.code != answer) continue;
    return rule.outcome == SweepRule::kAsBefore || rule.outcome == SweepRule::kSkip ||
           (rule.outcome == SweepRule::kFixed && rule.fixed == 0);
  }
  return false;
}

// The subtotal that is shown ahead of an adjustment of it: the adjustment is what counts.
bool IsAheadOfAnAdjustment(const Undisturbed& undisturbed, size_t step, ClientOperation operation) {
  return operation == ClientOperation::kPrintRecSubtotalEx &&
         std::any_of(undisturbed.made.begin(), undisturbed.made.end(),
                     [step](const MadeCall& made) {
                       return made.step == step &&
                              made.operation == ClientOperation::kPrintRecSubtotalAdjustment;
                     });
}

// How often each call with an effect is made, of those that `counts`.
template <typename Counts>
std::map<std::string, int> Times(const std::vector<MadeCall>& made, Counts&& counts) {
  std::map<std::string, int> times;
  for (const MadeCall& call : made) {
    if (HasEffect(call.operation) && counts(call)) ++times[call.shown];
  }
  return times;
}

Wrong MoreOften(const std::map<std::string, int>& seen, const std::map<std::string, int>& wanted,
                const char* what) {
  for (const auto& [call, count] : seen) {
    const auto found = wanted.find(call);
    // A call that the line makes only behind the fault stands for another; once is as it may be.
    const int most = found == wanted.end() ? 1 : found->second;
    if (count > most) {
      return call + " is " + what + " " + std::to_string(count) + " times, and " +
             std::to_string(most) + " without the fault";
    }
  }
  return {};
}

}  // namespace

long PlacesOf(const CallManner& manner, const Undisturbed& undisturbed) {
  if (manner.fault == CallFault::kNone) return undisturbed.system[manner.kind];
  return manner.traces ? undisturbed.traces : undisturbed.calls;
}

Wrong Measure(const Conversation& conversation, const Stage& stage, Undisturbed* undisturbed) {
  CallManner with_traces = kNoFault;
  with_traces.traces = true;
  {
    Trial trial(conversation, stage, with_traces, 0, conversation.steps.size());
    if (const Wrong wrong = trial.Run(); !wrong.empty()) return wrong;
    undisturbed->traces = trial.device().count();
    for (int kind = 0; kind < strike::kKinds; ++kind) {
      undisturbed->system[kind] = strike::Count(static_cast<strike::Kind>(kind));
    }
  }
  Trial trial(conversation, stage, kNoFault, 0, conversation.steps.size());
  if (const Wrong wrong = trial.Run(); !wrong.empty()) return wrong;
  undisturbed->calls = trial.device().count();
  undisturbed->codes = trial.codes();
  undisturbed->made = trial.device().made();
  for (size_t i = 0; i < conversation.steps.size(); ++i) {
    const Step& step = conversation.steps[i];
    if (step.kind != Step::kSend || trial.codes()[i] == step.code) continue;
    return "line " + std::to_string(step.line) + ": without a fault it ends with " +
           std::to_string(trial.codes()[i]) + ", not with " + std::to_string(step.code);
  }
  const ::conversation::Conversation twice = Twice(conversation);
  undisturbed->again = Trial(twice, stage, kNoFault, 0, conversation.steps.size()).Run().empty();
  return {};
}

Wrong Try(const Conversation& conversation, const Stage& stage, const Undisturbed& undisturbed,
          const CallManner& manner, long place, bool* struck) {
  const size_t steps = conversation.steps.size();
  // A start that could not read its words keeps those of the start before.
  const bool keeps_words = manner.fault == CallFault::kNone &&
                           (manner.kind == strike::kOpen || manner.kind == strike::kRead);
  const ::conversation::Conversation script =
      undisturbed.again && !keeps_words ? Twice(conversation) : conversation;
  Trial trial(script, stage, manner, place, steps);
  const Wrong wrong = trial.Run();
  *struck = trial.is_struck();
  if (!wrong.empty()) return wrong;
  const ScriptDevice& device = trial.device();
  if (device.struck_at_step() < 0) return {};
  const auto at = static_cast<size_t>(device.struck_at_step());
  const Step& step = conversation.steps[at];
  const auto call = std::find_if(device.made().begin(), device.made().end(),
                                 [](const MadeCall& made) { return made.struck; });
  if (step.kind == Step::kSend && !IsBatch(step) && HasEffect(call->operation) && !call->accepted &&
      trial.codes()[at] == 0 && !MayGoOn(conversation, call->shown, device.struck_answer()) &&
      !IsAheadOfAnAdjustment(undisturbed, at, call->operation)) {
    return "line " + std::to_string(step.line) + ": answers 0, and " + call->shown + " was refused";
  }
  const auto in_line = [at](const MadeCall& made) { return made.step == at; };
  const Wrong twice = MoreOften(Times(device.made(), in_line), Times(undisturbed.made, in_line),
                                "tried in its line");
  // A device that is asked and lies, or does not say, is believed, and lines behind it may do what
  // they did not.
  if (!twice.empty() || call->accepted || !HasEffect(call->operation)) return twice;
  const auto accepted = [steps](const MadeCall& made) {
    return made.accepted && made.step < steps;
  };
  return MoreOften(Times(device.made(), accepted), Times(undisturbed.made, accepted), "accepted");
}

}  // namespace lorimat
