#include "door/job/worker.h"

#include <exception>
#include <iterator>
#include <type_traits>
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

}  // namespace

std::string_view StepName(Step step) { return kStepNames[static_cast<size_t>(step)]; }

// What became of the lines that were sent.
struct Worker::Run {
  std::vector<LineAnswer> answers;
  bool failed = false;   // a line, or the mark
  bool unclear = false;  // and nobody knows what it did
  bool marked = false;
  bool left = false;  // one that was answered well has printed or programmed
  // One that pays was answered well, and none behind it may have taken the document back.
  bool paid = false;
};

class Worker::AtWork {
 public:
  AtWork(std::atomic<int64_t>& job, int64_t id) : job_(job) { job_ = id; }
  ~AtWork() { job_ = 0; }
  AtWork(const AtWork&) = delete;
  AtWork& operator=(const AtWork&) = delete;

 private:
  std::atomic<int64_t>& job_;
};

Worker::Worker(JobLog& log, FiscalDevice& device, LineJudge& judge, LineRunner run, StepWatch watch,
               std::function<bool()> is_awaited, DeviceTrouble trouble)
    : log_(log),
      device_(device),
      judge_(judge),
      run_(std::move(run)),
      watch_(std::move(watch)),
      is_awaited_(std::move(is_awaited)),
      trouble_(trouble),
      waited_(log, device, judge) {}

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
  if (const std::optional<Begun> begun = std::exchange(begun_, std::nullopt)) {
    // In a long series too whoever waits is told when its time is over.
    try {
      log_.Expire();
    } catch (const std::exception&) {
      // Another round tells it: what has begun waits for nothing.
    }
    return RunBegun(*begun);
  }
  // Nobody is at work on it: the program that began it has ended, or could not write its outcome.
  if (const std::optional<Job> job = log_.First(JobState::kRunning)) {
    Move(*job, JobState::kUnknown, Why::kCutOff);
    return Did::kWork;
  }
  // Also while nothing can run.
  if (log_.Expire(waited_.overdue()) > 0) return Did::kWork;
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

// The words may be others by now than those that the job was judged by: then nothing is sent.
std::optional<Judged> Worker::JudgeAgain(const Job& job, JobNews* refused) {
  Judged judged = judge_.Judge(job.lines, true);
  if (!judged.fault && !judged.refused && judged.effect == job.effect) return judged;
  if (judged.refused) refused->answers = std::vector<LineAnswer>{*judged.refused};
  return std::nullopt;
}

// What the device is ahead of a job; nothing when it cannot be brought there.
std::optional<DeviceState> Worker::MakeReady(const DeviceState& state) {
  if (!Prepare()) return std::nullopt;
  if (!state.key_registering) {
    std::string answer;
    if (run_(kRegisteringLine, &answer) != 0) return std::nullopt;
  }
  const std::optional<DeviceState> ready = Ask();
  if (!ready || ready->is_open || ready->numbers.serial != log_.serial()) return std::nullopt;
  return ready;
}

Worker::Did Worker::RunNext() {
  std::optional<DeviceState> state = Ask();
  if (!state) return Blocked(DeviceTrouble::kAway);
  if (state->numbers.serial != log_.serial()) return Blocked(DeviceTrouble::kOtherDevice);
  // With somebody's document open not all can be told yet, and nothing but a reset runs.
  if (waited_.any() && !state->is_open) {
    if (!waited_.Settle(*state)) return Blocked(DeviceTrouble::kAway);
    if (log_.Expire() > 0) return Did::kWork;
  }
  const std::optional<Job> job = log_.First(JobState::kQueued);
  if (state->is_open) {
    // Somebody's document: an operator alone may give it up.
    const std::optional<Job> reset = log_.FirstQueued(JobEffect::kReset);
    if (reset) return RunReset(*reset);
    return Blocked(DeviceTrouble::kDocumentOpen);
  }
  if (job && job->effect == JobEffect::kReset) return RunReset(*job);

  JobNews refused;
  std::optional<Judged> judged = job ? JudgeAgain(*job, &refused) : std::nullopt;
  if (!judged) {
    trouble_ = DeviceTrouble::kNone;
    if (!job) return Did::kNothing;
    Move(*job, JobState::kRejected, Why::kRefusedLine, refused);
    return Did::kWork;
  }
  state = MakeReady(*state);
  if (!state) return Blocked(DeviceTrouble::kAway);
  // One that answers what it is, and nothing else, is away until it is ready.
  trouble_ = DeviceTrouble::kNone;
  At(Step::kBeforeBaseline);
  // The device may have taken its time.
  if (log_.Expire() > 0) return Did::kWork;
  Begun begun{{}, std::move(*judged)};
  begun.job = log_.Move(job->id, JobState::kRunning, Why::kBegun, {.baseline = state->numbers});
  return RunBegun(begun);
}

Worker::Did Worker::RunBegun(const Begun& begun) {
  const AtWork at_work(at_work_, begun.job.id);
  At(Step::kBeforeFirstLine);
  Run run;
  SendLines(begun.job, begun.judged, &run);
  Conclude(begun.job, run);
  return Did::kWork;
}

// No number tells of it, and it may be done twice: what is open is given up, or nothing is open.
Worker::Did Worker::RunReset(const Job& job) {
  if (log_.Expire(waited_.overdue()) > 0) return Did::kWork;
  const Job begun = log_.Move(job.id, JobState::kRunning, Why::kBegun);
  const AtWork at_work(at_work_, begun.id);
  LineAnswer answer{1, 0, {}, {}};
  const uint64_t refusals = device_.refusals();
  answer.code = run_(kResetLine, &answer.text);
  answer.explanation = Explain(answer.code, refusals);
  const std::optional<DeviceState> state = Ask();
  const JobNews news{.answers = std::vector<LineAnswer>{answer}};
  if (!state || state->is_open) {
    Move(begun, JobState::kUnknown, state ? Why::kLostAnswer : Why::kLostDevice, news);
  } else {
    // Whoever is told of it may send the next job at once.
    trouble_ = DeviceTrouble::kNone;
    Move(begun, JobState::kConfirmed, Why::kAnswered, news);
  }
  return Did::kWork;
}

// What a line's code means, behind the reason of the device that led to it: a code has several.
std::string Worker::Explain(long code, uint64_t refusals_before) const {
  std::string text = ExplainAnswer(code);
  if (device_.refusals() == refusals_before) return text;
  const std::string reason = console::Device::Reason(device_.last_refusal(), code);
  return reason.empty() ? text : reason + " " + text;
}

// Ahead of the payment, which registers the document: without the mark on it nobody could tell it
// from another one.
bool Worker::PrintMark(const Job& job, int line, Run* run) {
  const std::optional<bool> is_open = device_.AskFiscalOpen();
  if (!is_open) {
    run->failed = run->unclear = true;
    return false;
  }
  if (!*is_open) return true;
  At(Step::kBeforeMark);
  const uint64_t refusals = device_.refusals();
  const int result = device_.PrintMark(job.mark);
  run->marked = result == RTF_SUCCESS;
  if (run->marked) return true;
  // The line is told that could not be sent without it.
  const long code = CodeOf(result);
  run->answers.push_back({line, code, {}, Explain(code, refusals)});
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
    const uint64_t refusals = device_.refusals();
    answer.code = run_(job.lines[i], &answer.text);
    answer.explanation = Explain(answer.code, refusals);
    run->answers.push_back(answer);
    At(Step::kBehindLine);
    run->paid = (run->paid && !judged.voids[i]) || (judged.pays[i] && answer.code == 0);
    if (answer.code == 0) {
      run->left = run->left || judged.leaves[i];
      continue;
    }
    run->failed = true;
    run->unclear = IsUnclear(answer.code);
    return;
  }
}

// The sale that a job makes void as a whole, where no mark can tell of it.
std::optional<DocumentName> Worker::VoidedSale(const Job& job, const Evidence& evidence) {
  if (evidence.last && HasMark(evidence.last->paper, evidence.mark)) return std::nullopt;
  std::optional<DocumentName> sale = judge_.Judge(job.lines, true).voids_whole;
  // The last document of all: that of the day, where there was one.
  if (!sale || sale->number != 0) return sale;
  if (evidence.before.document == 0) return std::nullopt;
  return DocumentName{evidence.before.closure + 1, evidence.before.document, false};
}

std::optional<Verdict> Worker::JudgeNow(const Job& job, const DeviceNumbers& now,
                                        bool is_answered) {
  Evidence evidence;
  evidence.effect = job.effect;
  evidence.before = *job.baseline;
  evidence.now = now;
  evidence.mark = job.mark;
  evidence.is_answered = is_answered;
  if (job.effect == JobEffect::kClosing) {
    evidence.last_closing = device_.LastClosing();
  } else if (const auto next = NextDocument(evidence.before, now)) {
    LastDocument last;
    switch (device_.FindLast(*next, &last)) {
      case Told::kYes:
        evidence.last = std::move(last);
        break;
      case Told::kNo:
        break;
      case Told::kNoAnswer:
        // One that answers everything else will not tell it another day either.
        if (!is_answered && ++asked_in_vain_ < kMostAsked) return std::nullopt;
        break;
    }
    if (const std::optional<DocumentName> sale = VoidedSale(job, evidence)) {
      const Told told = device_.FindVoid(*next, *sale);
      const bool is_in_vain = told == Told::kNoAnswer && !is_answered;
      if (is_in_vain && ++asked_in_vain_ < kMostAsked) return std::nullopt;
      evidence.is_void_of_sale = told == Told::kYes;
    }
  }
  asked_in_vain_ = 0;
  if (job.effect == JobEffect::kDocument && !(evidence.last && evidence.last->facts.kind)) {
    evidence.kind = judge_.Judge(job.lines, true).kind;
  }
  Verdict verdict = door::Judge(evidence);
  evidence.is_answered = false;
  verdict.is_lasting = door::Judge(evidence).outcome == verdict.outcome;
  return verdict;
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
  ConcludeNumbered(job, run, *state, left_open);
}

// In a series the end of a job and the beginning of the next one are one commit: what the device is
// behind the one is the baseline of the other. The device is made ready for the next one ahead of
// it, so that an end that asking would not find again does not wait for that.
void Worker::EndAndBegin(const JobMove& end, const DeviceState& state, bool is_lasting) {
  At(Step::kBeforeOutcome);
  bool begun = false;
  try {
    const bool is_awaited = is_awaited_ && is_awaited_();
    begun = is_lasting && !begins_no_more_ && !is_awaited && BeginNext(end, state);
  } catch (const std::exception&) {
    // The next one was cancelled meanwhile, say: it waits, and keeps this one from nothing.
  }
  if (!begun) log_.Move(end.id, end.to, end.why, end.news);
  At(Step::kBehindOutcome);
}

// Whether the end is in the log, with the next job begun; nothing of it is otherwise.
bool Worker::BeginNext(const JobMove& end, const DeviceState& state) {
  const std::optional<Job> next = log_.First(JobState::kQueued);
  JobNews refused;
  if (!next || next->effect == JobEffect::kReset || next->expires <= log_.Now()) return false;
  std::optional<Judged> judged = JudgeAgain(*next, &refused);
  if (!judged) return false;
  const std::optional<DeviceState> ready = MakeReady(state);
  At(Step::kBeforeBaseline);
  if (!ready || next->expires <= log_.Now()) return false;
  const JobMove begin{next->id, JobState::kRunning, Why::kBegun, {.baseline = ready->numbers}};
  // What has begun is in the log: nothing may be thrown here behind that.
  static_assert(std::is_nothrow_move_assignable_v<Job> &&
                std::is_nothrow_move_constructible_v<Begun>);
  Begun begun{{}, std::move(*judged)};
  begun.job = log_.MoveBoth(end, begin);
  begun_.emplace(std::move(begun));
  return true;
}

void Worker::ConcludeNumbered(const Job& job, const Run& run, const DeviceState& state,
                              bool left_open) {
  const DeviceNumbers& now = state.numbers;
  JobMove end{job.id,
              JobState::kRejected,
              run.failed ? Why::kLineFailed : Why::kLeftOpen,
              {.answers = run.answers, .seen = now}};
  const bool whole = !run.failed && !left_open;
  if (job.effect == JobEffect::kOther) {
    // What was printed or programmed ahead of the failure stays, and no number tells of it.
    if (!whole && run.left) return Move(job, JobState::kUnknown, end.why, end.news);
    if (whole) return Move(job, JobState::kConfirmed, Why::kAnswered, end.news);
    // Asking would not tell of it: its end waits for nothing.
    return Move(job, JobState::kRejected, end.why, end.news);
  }
  // Without its own word that it was done, what came meanwhile may be somebody else's.
  const bool is_answered = job.effect == JobEffect::kClosing ? whole : run.paid && !left_open;
  const Verdict verdict = JudgeNow(job, now, is_answered).value_or(Verdict());
  switch (verdict.outcome) {
    case Outcome::kDone:
      // Also when a line behind the payment failed: the sale is in the books.
      end.to = JobState::kConfirmed;
      end.news.document = verdict.document;
      // It was made this minute.
      if (end.news.document->time.empty()) end.news.document->time = device_.Clock();
      if (whole) end.why = Why::kAnswered;
      break;
    case Outcome::kNotDone:
      if (whole) end.why = Why::kNothingRegistered;
      break;
    case Outcome::kNobodyKnows:
      return Move(job, JobState::kUnknown, whole ? Why::kUnclearNumbers : end.why,
                  {.answers = run.answers});
  }
  EndAndBegin(end, state, verdict.is_lasting);
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
  const DeviceNumbers& now = state->numbers;
  Verdict verdict;
  if (!is_known) {
    verdict = {Outcome::kNobodyKnows, Why::kOtherDevice};
  } else if (job.effect == JobEffect::kReset) {
    verdict = {Outcome::kDone, Why::kFoundDone};
  } else if (job.effect == JobEffect::kOther || !job.baseline) {
    verdict = {Outcome::kNobodyKnows, Why::kNotNumbered};
  } else {
    const std::optional<Verdict> told = JudgeNow(job, now, false);
    if (!told) return Blocked(DeviceTrouble::kAway);
    verdict = *told;
  }
  trouble_ = DeviceTrouble::kNone;
  // Of another device it would be no mark to go by.
  JobNews news{.document = verdict.document};
  if (is_known) news.seen = now;
  if (verdict.outcome != Outcome::kNobodyKnows && job.baseline) waited_.NoteResolved(now);
  // Ahead of the move, by which the device counts as seen: a kill between finds all of it as it
  // was.
  if (is_known && waited_.any() && !waited_.Settle(*state)) return Blocked(DeviceTrouble::kAway);
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
