#include "door/log/event_table.h"

#include <iterator>

#include "door/log/job_record.h"

namespace lorimat::door {
namespace {

constexpr std::string_view kEventNames[] = {"job", "document", "device", "warning"};
static_assert(std::size(kEventNames) == static_cast<size_t>(EventKind::kLast) + 1);

// Old ones go so many at a time, which costs less than one by one.
constexpr int64_t kPrunedAtOnce = 256;

template <typename Enum>
Enum OneOf(Database& database, int64_t number, std::string_view table) {
  if (number < 0 || number > static_cast<int64_t>(Enum::kLast)) database.Damaged(table);
  return static_cast<Enum>(number);
}

}  // namespace

std::string_view EventName(EventKind kind) { return kEventNames[static_cast<size_t>(kind)]; }

// The newest one is never removed, so that no number comes again.
void EventTable::Make() {
  database_.Execute(
      "CREATE TABLE event (id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, time INTEGER,"
      " job INTEGER, step INTEGER, text TEXT NOT NULL);");
}

void EventTable::AddStep(int64_t job, int64_t step, bool has_document) {
  const auto add = [&](EventKind kind) {
    database_.Prepare("INSERT INTO event (kind, job, step, text) VALUES (?, ?, ?, '')")
        .With(static_cast<int>(kind), job, step)
        .Run();
  };
  add(EventKind::kJob);
  if (has_document) add(EventKind::kDocument);
}

void EventTable::AddText(EventKind kind, int64_t time, const std::string& text) {
  database_.Prepare("INSERT INTO event (kind, time, text) VALUES (?, ?, ?)")
      .With(static_cast<int>(kind), time, text)
      .Run();
}

void EventTable::Prune() {
  const int64_t oldest = Last() - kEventsKept + 1;
  database_.Prepare("DELETE FROM event WHERE id < ?1 AND (SELECT min(id) FROM event) <= ?2")
      .With(oldest, oldest - kPrunedAtOnce)
      .Run();
}

int64_t EventTable::Last() {
  Statement row = database_.Prepare("SELECT max(id) FROM event");
  row.With();
  return row.Step() && !row.IsNull(0) ? row.Integer(0) : 0;
}

EventPage EventTable::Read(int64_t after, int limit, const std::optional<std::string>& desk) {
  EventPage page;
  page.last = Last();
  int64_t first = page.last + 1;
  {
    Statement row = database_.Prepare("SELECT min(id) FROM event");
    row.With();
    if (row.Step() && !row.IsNull(0)) first = row.Integer(0);
  }
  page.has_gap = after < first - 1 || after > page.last;
  if (page.has_gap) return page;
  page.last = after;
  // Only what a final state has cannot change any more: of all others there is no document.
  Statement rows = database_.Prepare(
      "SELECT event.id, event.kind, coalesce(step.time, event.time, 0), event.text, event.job,"
      " step.state, step.why, step.note, job.desk, job.key, job.reference, job.effect,"
      " CASE WHEN step.state = 2 THEN job.document END"
      " FROM event LEFT JOIN step ON step.job = event.job AND step.number = event.step"
      " LEFT JOIN job ON job.id = event.job WHERE event.id > ? ORDER BY event.id LIMIT ?");
  static_assert(static_cast<int>(JobState::kConfirmed) == 2);
  rows.With(after, limit);
  while (rows.Step()) {
    LogEvent event = Load(rows);
    page.last = event.id;
    if (event.job && desk && event.job->desk != *desk) continue;
    page.events.push_back(std::move(event));
  }
  return page;
}

LogEvent EventTable::Load(Statement& row) {
  LogEvent event;
  event.id = row.Integer(0);
  event.kind = OneOf<EventKind>(database_, row.Integer(1), "event");
  event.time = row.Integer(2);
  event.text = row.String(3);
  if (event.kind != EventKind::kJob && event.kind != EventKind::kDocument) return event;
  if (row.IsNull(5) || row.IsNull(8)) database_.Damaged("event");
  Job job;
  job.id = row.Integer(4);
  job.state = OneOf<JobState>(database_, row.Integer(5), "step");
  job.history.push_back(
      {event.time, job.state, OneOf<Why>(database_, row.Integer(6), "step"), row.String(7)});
  job.desk = row.String(8);
  job.key = row.String(9);
  job.reference = row.String(10);
  job.effect = OneOf<JobEffect>(database_, row.Integer(11), "job");
  try {
    if (!row.IsNull(12)) job.document = ReadDocument(row.Text(12));
  } catch (const nlohmann::json::exception&) {
    database_.Damaged("job");
  }
  event.job = std::move(job);
  return event;
}

}  // namespace lorimat::door
