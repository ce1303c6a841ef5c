#include "sweep.h"

#include <algorithm>

namespace conversation {
namespace {

// The result code that stands for a client result.
long Checked(long result) {
  if (result == 0) return 0;
  if (result == -1) return 512;
  return result < 200 ? (result | 0x200) : (result | 0x400);
}

// The answer text of a code, with the default titles and no row texts. The message
// tables of the classes 2 and 4 are read 100 and 200 rows down: an index of 100 or 200
// shows the title again.
std::string ErrorText(long code) {
  const long bits = code & 0xFFFF00;
  const long index = code & 0xFF;
  const std::string number = std::to_string(index);
  std::string text = "ERROR " + std::to_string(bits >> 8) + "/" + number + " : ";
  if (bits == 0x200) {
    text += "I/O ERROR " + number;
  } else if (bits == 0x400) {
    text += "ECR SIGNALS CRITICAL ERROR " + number + " : ";
  } else if (code == 265) {  // the refusal of the translator itself that sweeps meet
    text += "SINTAX ERROR 9 : ILLEGAL VALUE";
  } else if (bits == 0 || bits == 0x100) {
    throw Failure(0, "a sweep cannot tell the text of code " + std::to_string(code));
  }
  return text;
}

bool RuleFits(const SweepRule& rule, const Call& call, long code) {
  return rule.call.name == call.name &&
         (!rule.call.has_arguments || Fit(rule.call.arguments, call.arguments)) &&
         (rule.any_code || rule.code == code);
}

// The step as it has to run when its call number `faulty` answers `code`.
Step WithFault(const Step& step, std::size_t faulty, long code, const SweepRule& rule) {
  Step changed = step;
  changed.traces.clear();
  changed.calls.resize(faulty + 1);
  Call& call = changed.calls[faulty];
  call.has_answer = true;
  call.answer = Value::Word(std::to_string(code));
  call.outs.clear();
  changed.calls.insert(changed.calls.end(), rule.also.begin(), rule.also.end());
  for (std::size_t i = faulty + 1; i < step.calls.size() && !rule.nothing_more; ++i) {
    const auto& without = rule.without;
    if (std::find(without.begin(), without.end(), step.calls[i].name) == without.end()) {
      changed.calls.push_back(step.calls[i]);
    }
  }
  if (rule.outcome == SweepRule::kAsBefore) return changed;
  changed.code = rule.outcome == SweepRule::kFixed          ? rule.fixed
                 : rule.outcome == SweepRule::kCheckedTwice ? Checked(Checked(code))
                                                            : Checked(code);
  changed.answer = Value::Text(ErrorText(changed.code));
  return changed;
}

}  // namespace

int Sweep(const Conversation& conversation, const Stage& stage) {
  if (conversation.sweep.empty()) return 0;
  std::vector<bool> met(conversation.sweep.size(), false);
  int faults = 0;
  for (std::size_t s = 0; s < conversation.steps.size(); ++s) {
    const Step& step = conversation.steps[s];
    if (step.kind != Step::kSend) continue;
    for (std::size_t c = 0; c < step.calls.size(); ++c) {
      for (const long code : {107L, 207L, 212L, 1213L, -1L}) {
        const auto rule =
            std::find_if(conversation.sweep.begin(), conversation.sweep.end(),
                         [&](const SweepRule& r) { return RuleFits(r, step.calls[c], code); });
        if (rule == conversation.sweep.end()) {
          throw Failure(step.calls[c].line, "no sweep rule for " + step.calls[c].Shown());
        }
        met[static_cast<std::size_t>(rule - conversation.sweep.begin())] = true;
        if (rule->outcome == SweepRule::kSkip) continue;

        Conversation changed;
        changed.path = conversation.path;
        changed.steps.assign(conversation.steps.begin(),
                             conversation.steps.begin() + static_cast<std::ptrdiff_t>(s));
        changed.steps.push_back(WithFault(step, c, code, *rule));
        try {
          Play(changed, stage);
        } catch (const Failure& failure) {
          throw Failure(failure.line, "when " + step.calls[c].Shown() + " fails with " +
                                          std::to_string(code) + ", " + failure.what());
        }
        ++faults;
      }
    }
  }
  for (std::size_t r = 0; r < met.size(); ++r) {
    if (!met[r]) throw Failure(conversation.sweep[r].line, "no call meets this sweep rule");
  }
  return faults;
}

}  // namespace conversation
