// Jobs that come, and their ways from state to state.
#include <sys/random.h>

#include <array>
#include <utility>

#include "door/log/job_log.h"
#include "door/log/job_record.h"

namespace lorimat::door {
namespace {

// Chance, so that a mark of this log is no mark of another one.
std::string NewMark() {
  std::array<unsigned char, kMarkSize - 1> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw RegisterError(MakeFailure(FailureCause::kUnknown));
  }
  std::string mark(1, kMarkBegin);
  for (const unsigned char byte : bytes) mark += kMarkLetters[byte % kMarkLetters.size()];
  return mark;
}

template <typename Enum>
int Number(Enum value) {
  return static_cast<int>(value);
}

}  // namespace

// Within a unit of work: the next step of a job, whose history has it then.
void JobLog::AddStep(Job* job, JobState state, Why why, const std::string& note) {
  job->state = state;
  job->history.push_back({clock_(), state, why, note});
  const auto number = static_cast<int64_t>(job->history.size());
  database_
      .Prepare("INSERT INTO step (job, number, time, state, why, note) VALUES (?, ?, ?, ?, ?, ?)")
      .With(job->id, number, job->history.back().time, Number(state), Number(why), note)
      .Run();
  events_.AddStep(job->id, number, state == JobState::kConfirmed && job->document.has_value());
}

// Within a unit of work.
Job JobLog::Accepted(const NewJob& job, bool* was_there) {
  {
    Statement row = database_.Prepare("SELECT id FROM job WHERE desk = ? AND key = ?");
    row.With(job.desk, job.key);
    *was_there = row.Step();
    // It may have come or moved by this same unit.
    if (*was_there) return Read(row.Integer(0)).value();
  }
  Job taken;
  taken.desk = job.desk;
  taken.key = job.key;
  taken.digest = job.digest;
  taken.reference = job.reference;
  taken.lines = job.lines;
  taken.effect = job.effect;
  taken.expires = job.expires;
  taken.mark = NewMark();
  database_
      .Prepare(
          "INSERT INTO job (desk, key, digest, reference, lines, effect, expires, state,"
          " attempts, mark) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 0, ?)")
      .With(taken.desk, taken.key, taken.digest, taken.reference, LinesRecord(taken.lines),
            Number(taken.effect), taken.expires, Number(taken.state), taken.mark)
      .Run();
  {
    Statement last = database_.Prepare("SELECT last_insert_rowid()");
    last.With();
    last.Step();
    taken.id = last.Integer(0);
  }
  AddStep(&taken, JobState::kQueued, Why::kAccepted, {});
  if (!job.refused) return taken;
  return Moved(std::move(taken), JobState::kRejected, Why::kRefusedLine,
               {.answers = std::vector<LineAnswer>{*job.refused}});
}

Job JobLog::Present(int64_t id) {
  if (const std::shared_ptr<const Job> known = known_.Find(id)) return *known;
  std::optional<Job> job = Read(id);
  if (!job) throw IllegalMove("there is no such job");
  return std::move(*job);
}

// Within a unit of work.
Job JobLog::Moved(Job job, JobState to, Why why, const JobNews& news) {
  if (!MayMove(job.state, to)) throw IllegalMove("the job is in another state");
  if (to == JobState::kRunning) {
    ++job.attempts;
    job.answers.clear();
    job.document.reset();
    database_
        .Prepare(
            "UPDATE job SET state = ?, attempts = ?, answers = NULL, document = NULL,"
            " closure = NULL, number = NULL WHERE id = ?")
        .With(Number(to), job.attempts, job.id)
        .Run();
  }
  const auto record = [](const auto& value, auto make) {
    return value ? std::optional<std::string>(make(*value)) : std::nullopt;
  };
  const std::optional<std::string> baseline = record(news.baseline, NumbersRecord);
  const std::optional<std::string> document = record(news.document, DocumentRecord);
  const std::optional<std::string> answers = record(news.answers, AnswersRecord);
  if (baseline) job.baseline = news.baseline;
  if (answers) job.answers = *news.answers;
  if (document) {
    job.document = news.document;
    database_
        .Prepare(
            "UPDATE job SET state = ?, baseline = coalesce(?, baseline),"
            " answers = coalesce(?, answers), document = ?, closure = ?, number = ? WHERE id = ?")
        .With(Number(to), baseline, answers, *document, job.document->closure, job.document->number,
              job.id)
        .Run();
  } else if (baseline || answers || to != JobState::kRunning) {
    database_
        .Prepare(
            "UPDATE job SET state = ?, baseline = coalesce(?, baseline),"
            " answers = coalesce(?, answers) WHERE id = ?")
        .With(Number(to), baseline, answers, job.id)
        .Run();
  }
  if (news.seen) PutValue("seen", NumbersRecord(*news.seen));
  AddStep(&job, to, why, news.note);
  return job;
}

Job JobLog::Move(int64_t id, JobState to, Why why, const JobNews& news) {
  Job job;
  MoveAll([&] { job = Moved(Present(id), to, why, news); }, {&job});
  if (!is_at_work_) EndSeries();
  Tell(job);
  return job;
}

Job JobLog::MoveBoth(const JobMove& first, const JobMove& second) {
  Job ended;
  Job job;
  MoveAll(
      [&] {
        ended = Moved(Present(first.id), first.to, first.why, first.news);
        job = Moved(Present(second.id), second.to, second.why, second.news);
      },
      {&ended, &job});
  NoteSeries();
  Tell(ended);
  Tell(job);
  return job;
}

int JobLog::Expire(const std::vector<int64_t>& but) {
  KnowQueue();
  // Nearly always none is.
  if (known_.Overdue(clock_(), but).empty()) return 0;
  std::vector<Job> expired;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::vector<int64_t> over = known_.Overdue(clock_(), but);
    if (over.empty()) return 0;
    Transaction unit(database_);
    for (const int64_t id : over) {
      expired.push_back(Moved(Present(id), JobState::kExpired, Why::kExpired, {}));
      // Of many they would take more than there is.
      expired.back().lines = {};
    }
    Commit(unit);
    for (const Job& job : expired) {
      known_.NoteGone(job.id);
      Count(job, 1);
    }
  }
  for (const Job& job : expired) Tell(job);
  return static_cast<int>(expired.size());
}

}  // namespace lorimat::door
