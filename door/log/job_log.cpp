#include "door/log/job_log.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "console/host/door_log_kind.h"
#include "door/log/job_record.h"

namespace lorimat::door {
namespace {

using console::kDoorLogKind;
constexpr int kVersion = kDoorLogKind.newest_version;

// What Load takes.
constexpr SqlText kJobs =
    "SELECT id, desk, key, digest, reference, lines, effect, expires, state, attempts, mark, "
    "baseline, document, answers FROM job ";
// The same without the lines, which may be two megabytes of each.
constexpr SqlText kListed =
    "SELECT id, desk, key, digest, reference, '[]', effect, expires, state, attempts, mark, "
    "baseline, document, answers FROM job ";

int64_t ComputerTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

template <typename Enum>
int Number(Enum value) {
  return static_cast<int>(value);
}

template <typename Enum>
bool IsOne(int64_t number) {
  return number >= 0 && number <= static_cast<int64_t>(Enum::kLast);
}

}  // namespace

JobLog::JobLog(const std::string& file, Clock clock)
    : clock_(clock ? std::move(clock) : Clock(&ComputerTime)),
      database_(file, Database::Open::kCreate, kDoorLogKind) {
  if (database_.version() != kVersion) {
    Transaction unit(database_);
    if (database_.version() == 0) MakeTables();
    if (database_.version() < 2) {
      // What finds the jobs of a document; version 1 had none.
      database_.Execute(
          "ALTER TABLE job ADD COLUMN closure INTEGER;"
          "ALTER TABLE job ADD COLUMN number INTEGER;"
          "UPDATE job SET closure = json_extract(document, '$.closure'),"
          " number = json_extract(document, '$.number') WHERE document IS NOT NULL;"
          "CREATE INDEX job_by_document ON job (closure, number) WHERE closure IS NOT NULL;");
    }
    // Version 2 had no events: what was before has none.
    events_.Make();
    database_.SetVersion(kVersion);
    unit.Commit();
  }
  if (Value("copied")) SettleCopy();
  Statement rows = database_.Prepare("SELECT state, count(*) FROM job GROUP BY state");
  rows.With();
  while (rows.Step()) {
    if (!IsOne<JobState>(rows.Integer(0))) database_.Damaged("job");
    figures_.jobs[static_cast<size_t>(rows.Integer(0))] = rows.Integer(1);
  }
  ReadQueue();
}

void JobLog::ReadQueue() {
  std::map<int64_t, int64_t> queue;
  Statement rows = database_.Prepare("SELECT id, expires FROM job WHERE state = ?");
  rows.With(Number(JobState::kQueued));
  while (rows.Step()) queue.emplace(rows.Integer(0), rows.Integer(1));
  known_.SetQueue(std::move(queue));
}

void JobLog::MakeTables() {
  database_.Execute(
      "PRAGMA application_id = 0x4C4D444C;"
      "CREATE TABLE value (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
      "CREATE TABLE job (id INTEGER PRIMARY KEY AUTOINCREMENT, desk TEXT NOT NULL,"
      " key TEXT NOT NULL, digest TEXT NOT NULL, reference TEXT NOT NULL, lines TEXT NOT NULL,"
      " effect INTEGER NOT NULL, expires INTEGER NOT NULL, state INTEGER NOT NULL,"
      " attempts INTEGER NOT NULL, mark TEXT NOT NULL UNIQUE, baseline TEXT, document TEXT,"
      " answers TEXT, UNIQUE (desk, key));"
      "CREATE INDEX job_by_state ON job (state, id);"
      "CREATE TABLE step (job INTEGER NOT NULL REFERENCES job (id), number INTEGER NOT NULL,"
      " time INTEGER NOT NULL, state INTEGER NOT NULL, why INTEGER NOT NULL, note TEXT NOT NULL,"
      " PRIMARY KEY (job, number)) WITHOUT ROWID;");
}

// The log that it was copied from has gone on: whoever begins these may do it a second time.
void JobLog::SettleCopy() {
  std::vector<int64_t> queued;
  {
    Statement rows = database_.Prepare("SELECT id FROM job WHERE state = ? ORDER BY id");
    rows.With(Number(JobState::kQueued));
    while (rows.Step()) queued.push_back(rows.Integer(0));
  }
  Transaction unit(database_);
  // Whoever follows may have seen other events under the numbers behind the last one: these go on
  // far from there, each time that the copy is put back from another place, and none of those
  // before stay, so that every number that was given finds a gap.
  constexpr int64_t kJump = 1'000'000;
  const int64_t first = std::max(events_.Last() + kJump, clock_());
  database_.Prepare("DELETE FROM event").With().Run();
  database_.Prepare("INSERT INTO event (id, kind, time, text) VALUES (?, ?, ?, ?)")
      .With(first, Number(EventKind::kWarning), clock_(),
            Value(EventName(EventKind::kWarning)).value_or(""))
      .Run();
  for (const int64_t id : queued) Moved(Present(id), JobState::kNeedsOperator, Why::kCopied, {});
  database_.Prepare("DELETE FROM value WHERE name = 'copied'").With().Run();
  unit.Commit();
  left_to_operator_ = static_cast<int64_t>(queued.size());
}

void JobLog::Bind(const std::string& serial, const std::optional<DeviceNumbers>& now) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const std::optional<std::string> owner = Value("serial");
  if (owner) {
    if (*owner != serial) throw OtherDevice(*owner);
    return;
  }
  Transaction unit(database_);
  PutValue("serial", serial);
  if (now) PutValue("seen", NumbersRecord(*now));
  unit.Commit();
}

std::string JobLog::serial() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return Value("serial").value_or(std::string());
}

std::optional<DeviceNumbers> JobLog::seen() {
  const std::lock_guard<std::mutex> lock(mutex_);
  const std::optional<std::string> record = Value("seen");
  if (!record) return std::nullopt;
  return ReadNumbers(*record);
}

void JobLog::PutValue(std::string_view name, const std::string& value) {
  database_.Prepare("INSERT OR REPLACE INTO value (name, value) VALUES (?, ?)")
      .With(name, value)
      .Run();
}

std::optional<std::string> JobLog::Value(std::string_view name) {
  Statement row = database_.Prepare("SELECT value FROM value WHERE name = ?");
  row.With(name);
  if (!row.Step()) return std::nullopt;
  return row.String(0);
}

Job JobLog::Load(Statement& row) {
  Job job;
  job.id = row.Integer(0);
  job.desk = row.String(1);
  job.key = row.String(2);
  job.digest = row.String(3);
  job.reference = row.String(4);
  if (!IsOne<JobEffect>(row.Integer(6)) || !IsOne<JobState>(row.Integer(8))) {
    database_.Damaged("job");
  }
  job.effect = static_cast<JobEffect>(row.Integer(6));
  job.expires = row.Integer(7);
  job.state = static_cast<JobState>(row.Integer(8));
  job.attempts = row.Int(9);
  job.mark = row.String(10);
  try {
    job.lines = ReadLines(row.Text(5));
    if (!row.IsNull(11)) job.baseline = ReadNumbers(row.Text(11));
    if (!row.IsNull(12)) job.document = ReadDocument(row.Text(12));
    if (!row.IsNull(13)) job.answers = ReadAnswers(row.Text(13));
  } catch (const nlohmann::json::exception&) {
    database_.Damaged("job");
  }
  Statement steps =
      database_.Prepare("SELECT time, state, why, note FROM step WHERE job = ? ORDER BY number");
  steps.With(job.id);
  while (steps.Step()) {
    if (!IsOne<JobState>(steps.Integer(1)) || !IsOne<Why>(steps.Integer(2))) {
      database_.Damaged("step");
    }
    job.history.push_back({steps.Integer(0), static_cast<JobState>(steps.Integer(1)),
                           static_cast<Why>(steps.Integer(2)), steps.String(3)});
  }
  return job;
}

std::optional<Job> JobLog::LoadOne(Statement row) {
  if (!row.Step()) return std::nullopt;
  return Load(row);
}

std::optional<Job> JobLog::FindKey(const std::string& desk, const std::string& key) {
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement row = database_.Prepare(kSql<kJobs, "WHERE desk = ? AND key = ?">);
  row.With(desk, key);
  return LoadOne(std::move(row));
}

std::optional<Job> JobLog::Read(int64_t id) {
  Statement row = database_.Prepare(kSql<kJobs, "WHERE id = ?">);
  row.With(id);
  return LoadOne(std::move(row));
}

std::optional<Job> JobLog::Find(int64_t id) {
  if (const std::shared_ptr<const Job> known = known_.Find(id)) return *known;
  const std::lock_guard<std::mutex> lock(mutex_);
  return Read(id);
}

std::optional<Job> JobLog::First(JobState state) {
  if (state == JobState::kQueued) return FirstInQueue();
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement row = database_.Prepare(kSql<kJobs, "WHERE state = ? ORDER BY id LIMIT 1">);
  row.With(Number(state));
  return LoadOne(std::move(row));
}

void JobLog::KnowQueue() {
  if (!known_.is_queue_lost()) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  ReadQueue();
}

std::optional<Job> JobLog::FirstInQueue() {
  for (;;) {
    KnowQueue();
    const std::optional<int64_t> first = known_.FirstQueued();
    if (!first) return std::nullopt;
    std::optional<Job> job = Find(*first);
    if (job && job->state == JobState::kQueued) return job;
    CheckInQueue(*first);
  }
}

// Of a job that was not queued: it may have left the queue meanwhile. With the lock nobody is
// between the two: where the file differs even so, it was written by other means, or is damaged.
void JobLog::CheckInQueue(int64_t id) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto is_odd = [&] {
    if (known_.FirstQueued() != id) return false;
    const std::optional<Job> job = Read(id);
    return !job || job->state != JobState::kQueued;
  };
  if (!is_odd()) return;
  ReadQueue();
  if (is_odd()) database_.Damaged("job");
}

std::optional<Job> JobLog::FirstQueued(JobEffect effect) {
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement row =
      database_.Prepare(kSql<kJobs, "WHERE state = ? AND effect = ? ORDER BY id LIMIT 1">);
  row.With(Number(JobState::kQueued), Number(effect));
  return LoadOne(std::move(row));
}

std::vector<Job> JobLog::List(std::optional<JobState> state, int64_t after, int limit,
                              const std::optional<std::string>& desk) {
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement rows = database_.Prepare(
      kSql<kListed,
           "WHERE (?1 < 0 OR state = ?1) AND id > ?2 AND (?4 = 0 OR desk = ?5) ORDER BY id "
           "LIMIT ?3">);
  rows.With(state ? Number(*state) : -1, after, limit, desk ? 1 : 0, desk.value_or(std::string()));
  std::vector<Job> jobs;
  while (rows.Step()) jobs.push_back(Load(rows));
  return jobs;
}

int64_t JobLog::Count(JobState state) {
  if (state == JobState::kQueued) {
    KnowQueue();
    return static_cast<int64_t>(known_.queued());
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement row = database_.Prepare("SELECT count(*) FROM job WHERE state = ?");
  row.With(Number(state));
  row.Step();
  return row.Integer(0);
}

std::set<std::string> JobLog::OpenMarks() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::set<std::string> marks;
  for (int state = 0; state <= Number(JobState::kLast); ++state) {
    if (IsFinal(static_cast<JobState>(state))) continue;
    Statement rows = database_.Prepare("SELECT mark FROM job WHERE state = ?");
    rows.With(state);
    while (rows.Step()) marks.insert(rows.String(0));
  }
  return marks;
}

std::vector<Job> JobLog::WithDocument(int closure, int number) {
  const std::lock_guard<std::mutex> lock(mutex_);
  Statement rows = database_.Prepare(kSql<kJobs, "WHERE closure = ? AND number = ? ORDER BY id">);
  rows.With(closure, number);
  std::vector<Job> jobs;
  while (rows.Step()) jobs.push_back(Load(rows));
  return jobs;
}

}  // namespace lorimat::door
