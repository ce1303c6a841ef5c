#include "door/job/worker.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {
namespace {

// By number, whatever words the definition file has.
const std::string kResetLine = "#74";             // RESPRN
const std::string kRegisteringLine = "#15 #1=1";  // CHIAVE

constexpr std::string_view kStepNames[] = {"before-reset",   "before-baseline", "before-first-line",
                                           "before-mark",    "before-line",     "behind-line",
                                           "before-void",    "behind-void",     "before-outcome",
                                           "behind-outcome", "before-asking",   "behind-asking"};
static_assert(std::size(kStepNames) == static_cast<size_t>(Step::kLast) + 1);

// Of the device: it says that it refuses, and has done nothing.
constexpr int kRefusals[] = {RTF_E_ILLEGAL, RTF_E_NOEXIST, RTF_E_EXISTS};

// Classes of codes that come from the device, and the first of its own codes that is a state of it.
constexpr long kInputOutput = 512;
constexpr long kCritical = 1024;
constexpr int kFirstOfState = 200;

}  // namespace

std::string_view StepName(Step step) { return kStepNames[static_cast<size_t>(step)]; }

bool IsUnclear(long code) {
  if ((code & kInputOutput) == 0) return false;
  // The class stands above the device's own code.
  const int own = static_cast<int>(code & 0xFF);
  return std::find(std::begin(kRefusals), std::end(kRefusals), own) == std::end(kRefusals);
}

// What became of the lines that were sent.
struct Worker::Run {
  std::vector<LineAnswer> answers;
  bool failed = false;   // a line, or the mark
  bool unclear = false;  // and nobody knows what it did
  bool marked = false;
  bool left = false;  // one that was answered well has printed or programmed
};

Worker::Worker(JobLog& log, FiscalDevice& device, LineJudge& judge, LineRunner run, StepWatch watch)
    : log_(log), device_(device), judge_(judge), run_(std::move(run)), watch_(std::move(watch)) {}

void Worker::Move(const Job& job, JobState to, Why why, const JobNews& news) {
  At(Step::kBeforeOutcome);
  log_.Move(job.id, to, why, news);
  At(Step::kBehindOutcome);
}

Worker::Did Worker::Blocked(DeviceTrouble trouble) {
  trouble_ = trouble;
  return Did::kBlocked;
}

Worker::Did Worker::Work() {
  // Nobody is at work on it: the program that began it has ended, or could not write its outcome.
  if (const std::optional<Job> job = log_.First(JobState::kRunning)) {
    Move(*job, JobState::kUnknown, Why::kCutOff);
    return Did::kWork;
  }
  // Also while nothing can run.
  if (log_.Expire() > 0) return Did::kWork;
  if (const std::optional<Job> job = log_.First(JobState::kUnknown)) return Resolve(*job);
  return RunNext();
}

std::optional<DeviceState> Worker::Ask() { return device_.Ask(); }

// What is open is voided, once.
bool Worker::GiveUpOpen() {
  At(Step::kBeforeVoid);
  std::string answer;
  const bool given_up = run_(kResetLine, &answer) == 0;
  At(Step::kBehindVoid);
  return given_up;
}

// The state that each job begins from, as far as the translator makes it: its memory cleared, the
// key registering.
bool Worker::Prepare() {
  At(Step::kBeforeReset);
  std::string answer;
  return run_(kResetLine, &answer) == 0;
}

Worker::Did Worker::RunNext() {
  std::optional<Job> job = log_.First(JobState::kQueued);
  const bool idle = !job;
  std::optional<DeviceState> state = Ask();
  if (!state) return Blocked(DeviceTrouble::kAway);
  if (state->numbers.serial != log_.serial()) return Blocked(DeviceTrouble::kOtherDevice);
  if (state->is_open) {
    // Somebody's document: an operator alone may give it up.
    const std::optional<Job> reset = log_.FirstQueued(JobEffect::kReset);
    if (reset) return RunReset(*reset);
    return Blocked(DeviceTrouble::kDocumentOpen);
  }
  trouble_ = DeviceTrouble::kNone;
  if (idle) return Did::kNothing;
  if (job->effect == JobEffect::kReset) return RunReset(*job);

  // The words may be others by now than those that the job was judged by.
  const Judged judged = judge_.Judge(job->lines, true);
  if (judged.fault || judged.refused || judged.effect != job->effect) {
    JobNews news;
    if (judged.refused) news.answers = std::vector<LineAnswer>{*judged.refused};
    Move(*job, JobState::kRejected, Why::kRefusedLine, news);
    return Did::kWork;
  }

  if (!Prepare()) return Blocked(DeviceTrouble::kAway);
  if (!state->key_registering) {
    std::string answer;
    if (run_(kRegisteringLine, &answer) != 0) return Blocked(DeviceTrouble::kAway);
  }
  state = Ask();
  if (!state || state->is_open || state->numbers.serial != log_.serial()) {
    return Blocked(DeviceTrouble::kAway);
  }
  At(Step::kBeforeBaseline);
  // The device may have taken its time.
  if (log_.Expire() > 0) return Did::kWork;
  job = log_.Move(job->id, JobState::kRunning, Why::kBegun, {.baseline = state->numbers});
  At(Step::kBeforeFirstLine);
  Run run;
  SendLines(*job, judged, &run);
  Conclude(*job, run);
  return Did::kWork;
}

// No number tells of it, and it may be done twice: what is open is given up, or nothing is open.
Worker::Did Worker::RunReset(const Job& job) {
  if (log_.Expire() > 0) return Did::kWork;
  const Job begun = log_.Move(job.id, JobState::kRunning, Why::kBegun);
  LineAnswer answer{1, 0, {}, {}};
  answer.code = run_(kResetLine, &answer.text);
  answer.explanation = ExplainAnswer(answer.code);
  const std::optional<DeviceState> state = Ask();
  const JobNews news{.answers = std::vector<LineAnswer>{answer}};
  if (!state || state->is_open) {
    Move(begun, JobState::kUnknown, state ? Why::kLostAnswer : Why::kLostDevice, news);
  } else {
    Move(begun, JobState::kConfirmed, Why::kAnswered, news);
  }
  return Did::kWork;
}

// Ahead of the payment, which registers the document: without the mark on it nobody could tell it
// from another one.
bool Worker::PrintMark(const Job& job, int line, Run* run) {
  const std::optional<DeviceState> state = Ask();
  if (!state) {
    run->failed = run->unclear = true;
    return false;
  }
  if (!state->is_fiscal_open) return true;
  At(Step::kBeforeMark);
  const int result = device_.PrintMark(job.mark);
  run->marked = result == RTF_SUCCESS;
  if (run->marked) return true;
  // The line is told that could not be sent without it.
  const long code = result < kFirstOfState ? result | kInputOutput : result | kCritical;
  run->answers.push_back({line, code, {}, ExplainAnswer(code)});
  run->failed = true;
  run->unclear = IsUnclear(code);
  return false;
}

void Worker::SendLines(const Job& job, const Judged& judged, Run* run) {
  for (size_t i = 0; i < job.lines.size(); ++i) {
    LineAnswer answer;
    answer.line = static_cast<int>(i) + 1;
    if (judged.pays[i] && !run->marked && job.effect == JobEffect::kDocument &&
        !PrintMark(job, answer.line, run)) {
      return;
    }
    At(Step::kBeforeLine);
    answer.code = run_(job.lines[i], &answer.text);
    answer.explanation = ExplainAnswer(answer.code);
    run->answers.push_back(answer);
    At(Step::kBehindLine);
    if (answer.code == 0) {
      run->left = run->left || judged.leaves[i];
      continue;
    }
    run->failed = true;
    run->unclear = IsUnclear(answer.code);
    return;
  }
}

Verdict Worker::JudgeNow(const Job& job, const DeviceNumbers& now, bool all_answered) {
  Evidence evidence;
  evidence.effect = job.effect;
  evidence.before = *job.baseline;
  evidence.now = now;
  evidence.mark = job.mark;
  evidence.all_answered = all_answered;
  if (job.effect == JobEffect::kClosing) {
    evidence.last_closing = device_.LastClosing();
  } else {
    evidence.last = device_.Last();
  }
  return door::Judge(evidence);
}

void Worker::Conclude(const Job& job, const Run& run) {
  JobNews news{.answers = run.answers};
  std::optional<DeviceState> state = Ask();
  const bool left_open = state && state->is_open;
  if (left_open) {
    GiveUpOpen();
    state = Ask();
  }
  if (!state) return Move(job, JobState::kUnknown, Why::kLostDevice, news);
  if (state->is_open || run.unclear) {
    return Move(job, JobState::kUnknown, Why::kLostAnswer, news);
  }
  ConcludeNumbered(job, run, state->numbers, left_open);
}

void Worker::ConcludeNumbered(const Job& job, const Run& run, const DeviceNumbers& now,
                              bool left_open) {
  JobNews news{.answers = run.answers, .seen = now};
  const Why failure = run.failed ? Why::kLineFailed : Why::kLeftOpen;
  if (job.effect == JobEffect::kOther) {
    // What was printed or programmed ahead of the failure stays, and no number tells of it.
    if (run.failed && run.left) return Move(job, JobState::kUnknown, failure, news);
    const bool done = !run.failed && !left_open;
    Move(job, done ? JobState::kConfirmed : JobState::kRejected, done ? Why::kAnswered : failure,
         news);
    return;
  }
  const Verdict verdict = JudgeNow(job, now, true);
  switch (verdict.outcome) {
    case Outcome::kDone:
      // Also when a line behind the payment failed: the sale is in the books.
      news.document = verdict.document;
      Move(job, JobState::kConfirmed, run.failed ? failure : Why::kAnswered, news);
      break;
    case Outcome::kNotDone:
      Move(job, JobState::kRejected, run.failed || left_open ? failure : Why::kNothingRegistered,
           news);
      break;
    case Outcome::kNobodyKnows:
      Move(job, JobState::kUnknown, Why::kUnclearNumbers, {.answers = run.answers});
      break;
  }
}

Worker::Did Worker::Resolve(const Job& job) {
  At(Step::kBeforeAsking);
  std::optional<DeviceState> state = Ask();
  if (!state) return Blocked(DeviceTrouble::kAway);
  const bool is_known = state->numbers.serial == log_.serial();
  if (is_known && state->is_open) {
    // As behind a cut: what the job had begun is void.
    if (!GiveUpOpen()) return Blocked(DeviceTrouble::kAway);
    state = Ask();
    if (!state || state->is_open) return Blocked(DeviceTrouble::kAway);
  }
  At(Step::kBehindAsking);
  trouble_ = DeviceTrouble::kNone;
  const DeviceNumbers& now = state->numbers;
  Verdict verdict;
  if (!is_known) {
    verdict = {Outcome::kNobodyKnows, Why::kOtherDevice};
  } else if (job.effect == JobEffect::kReset) {
    verdict = {Outcome::kDone, Why::kFoundDone};
  } else if (job.effect == JobEffect::kOther || !job.baseline) {
    verdict = {Outcome::kNobodyKnows, Why::kNotNumbered};
  } else {
    verdict = JudgeNow(job, now, false);
  }
  // Of another device it would be no mark to go by.
  JobNews news{.document = verdict.document};
  if (is_known) news.seen = now;
  switch (verdict.outcome) {
    case Outcome::kDone:
      Move(job, JobState::kConfirmed, verdict.why, news);
      break;
    case Outcome::kNobodyKnows:
      Move(job, JobState::kNeedsOperator, verdict.why, {.seen = news.seen});
      break;
    case Outcome::kNotDone:
      if (job.attempts >= kMostAttempts) {
        Move(job, JobState::kRejected, Why::kTriedOften, news);
      } else if (job.expires <= log_.Now()) {
        Move(job, JobState::kExpired, Why::kFoundNotDone, news);
      } else {
        Move(job, JobState::kQueued, verdict.why, news);
      }
      break;
  }
  return Did::kWork;
}

}  // namespace lorimat::door
