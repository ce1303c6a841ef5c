// The log: the one record of all jobs. What a member answers is on the disk. It belongs to one
// device, by its serial number, and one program has it open.
//
// Every member throws RegisterError when the log cannot be read or written: then nothing of what
// was asked is in it. Members may be called by several threads.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "door/log/event_table.h"
#include "door/log/figures.h"
#include "door/log/job.h"
#include "door/log/known_jobs.h"
#include "register/storage/database.h"

namespace lorimat::door {

struct NewJob {
  std::string desk;
  std::string key;
  std::string digest;
  std::string reference;
  std::vector<std::string> lines;
  JobEffect effect = JobEffect::kDocument;
  int64_t expires = 0;
  // A line that the translator is not going to understand: the job is rejected as it comes.
  std::optional<LineAnswer> refused;
};

// The log is another device's.
class OtherDevice : public std::runtime_error {
 public:
  explicit OtherDevice(const std::string& serial)
      : std::runtime_error("the log belongs to the device " + serial), serial_(serial) {}
  const std::string& serial() const { return serial_; }

 private:
  std::string serial_;
};

// A way that a job cannot go: it is not there, or in another state by now.
class IllegalMove : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

// What a job learns as it moves.
struct JobNews {
  std::optional<DeviceNumbers> baseline = {};  // with kRunning
  std::optional<JobDocument> document = {};
  std::optional<std::vector<LineAnswer>> answers = {};
  std::optional<DeviceNumbers> seen = {};  // what the device told last
  std::string note = {};                   // an operator's reason
};

// A job on its way into another state.
struct JobMove {
  int64_t id = 0;
  JobState to = JobState::kQueued;
  Why why = Why::kAccepted;
  JobNews news = {};
};

class JobLog {
 public:
  using Clock = std::function<int64_t()>;  // milliseconds since 1970, UTC

  // The clock's time goes into the history; null is the computer's.
  explicit JobLog(const std::string& file, Clock clock = nullptr);

  // A new log belongs to this device from here on, and has seen it so. Throws OtherDevice.
  void Bind(const std::string& serial, const std::optional<DeviceNumbers>& now = {});
  // How many jobs it left to an operator as it was opened: those that were queued in a log that is
  // a copy, and may have run behind it.
  int64_t left_to_operator() const { return left_to_operator_; }
  // Of the device; empty before Bind.
  std::string serial();
  // What the device told when the last job ended, or a new log was bound to it.
  std::optional<DeviceNumbers> seen();

  // The job of the desk and key; nothing when there is none.
  std::optional<Job> FindKey(const std::string& desk, const std::string& key);
  std::optional<Job> Find(int64_t id);
  // In the order of their acceptance, behind the one of this number; without their lines. Of one
  // desk alone where it is given.
  std::vector<Job> List(std::optional<JobState> state, int64_t after, int limit,
                        const std::optional<std::string>& desk = {});
  // The first one in that state, or with that effect besides.
  std::optional<Job> First(JobState state);
  std::optional<Job> FirstQueued(JobEffect effect);
  int64_t Count(JobState state);
  // The marks of those that are not over.
  std::set<std::string> OpenMarks();
  // Those that have a document of these numbers: a receipt, an invoice or both.
  std::vector<Job> WithDocument(int closure, int number);

  // Takes a job. Where desk and key have one already, that one is answered, with *was_there true.
  // Those that come while the disk is at work are taken together, by one commit, and fail together.
  // In a series of MoveBoth, with more jobs queued, they wait for its next commit for a moment.
  Job Accept(const NewJob& job, bool* was_there);
  // Throws IllegalMove when MayMove does not have it.
  Job Move(int64_t id, JobState to, Why why, const JobNews& news = {});
  // The same for two jobs, by one commit; answers the second one.
  Job MoveBoth(const JobMove& first, const JobMove& second);
  // Queued jobs whose time is over, without those of these numbers.
  int Expire(const std::vector<int64_t>& but = {});

  int64_t Now() const { return clock_(); }

  // How long at most that moment is. One commit of a series comes no later behind the one before,
  // or it is not waited for. While one is, a thread of the server waits.
  static constexpr std::chrono::milliseconds kRide{10};
  // To be set before other threads use the log.
  void SetRide(std::chrono::milliseconds ride) { ride_ = ride; }

  // How the device is, or what somebody should look at (LogEvent::text): an event, by a commit of
  // its own, where it is not what was told of the same kind before; nothing was before the first.
  void NoteText(EventKind kind, const std::string& text);
  // At most so many behind that number; for a desk without what belongs to another one.
  EventPage Events(int64_t after, int limit, const std::optional<std::string>& desk = {});
  int64_t LastEvent();
  LogFigures Figures();
  // Empty for a log in memory.
  const std::string& file() const { return database_.file(); }

  // Told, by the thread that moved it, of each job that nothing more is to be waited for: it is
  // over, or an operator is needed. To be set before other threads use the log.
  void SetObserver(std::function<void(int64_t id)> observer) { observer_ = std::move(observer); }
  // Told, in the same manner, of each event: of the job that has come or moved, or null.
  void SetEventObserver(std::function<void(const Job* job)> observer) {
    event_observer_ = std::move(observer);
  }

 private:
  struct Acceptance;
  using Batch = std::vector<Acceptance*>;
  using SteadyClock = std::chrono::steady_clock;

  void MakeTables();
  void SettleCopy();
  Batch TakeWaiting();
  void Release(const Batch& batch);
  void WakeFirst();
  void AcceptAll(const Batch& batch) noexcept;
  void CommitAll(const std::function<void()>& move, std::initializer_list<const Job*> moved,
                 const Batch& batch);
  void MoveAll(const std::function<void()>& move, std::initializer_list<const Job*> moved);
  void NoteSeries();
  void EndSeries();
  Job Accepted(const NewJob& job, bool* was_there);
  Job Load(Statement& row);
  std::optional<Job> LoadOne(Statement row);
  std::optional<Job> Read(int64_t id);
  // As it is on the disk, within a unit that has not moved it yet.
  Job Present(int64_t id);
  void ReadQueue();
  void KnowQueue();
  std::optional<Job> FirstInQueue();
  void CheckInQueue(int64_t id);
  void AddStep(Job* job, JobState state, Why why, const std::string& note);
  // It is on the disk by then: what keeps somebody from being told takes nothing back.
  void Tell(const Job& job) const noexcept;
  void TellEvent(const Job* job) const noexcept;
  void Commit(Transaction& unit);
  // Behind the commit: what has changed by it.
  void NoteChange(const Job& job, size_t steps);
  void Count(const Job& job, size_t steps);
  void PutValue(std::string_view name, const std::string& value);
  std::optional<std::string> Value(std::string_view name);
  Job Moved(Job job, JobState to, Why why, const JobNews& news);

  std::mutex accepting_;  // taken ahead of mutex_, or alone
  Batch waiting_;
  bool is_accepting_ = false;
  // Until then the next commit of a series is expected, and when the last one was.
  SteadyClock::time_point due_{};
  std::optional<SteadyClock::time_point> last_of_series_;
  std::chrono::milliseconds ride_ = kRide;
  std::atomic<bool> has_queued_{false};
  std::atomic<bool> is_at_work_{false};  // one is running
  std::mutex telling_;                   // taken ahead of mutex_, or alone
  // By kind, what NoteText has last found or put in the log.
  std::array<std::optional<std::string>, static_cast<size_t>(EventKind::kLast) + 1> told_;
  std::mutex mutex_;
  Clock clock_;
  std::function<void(int64_t id)> observer_;
  std::function<void(const Job* job)> event_observer_;
  Database database_;
  EventTable events_{database_};
  LogFigures figures_;
  KnownJobs known_;  // changed with mutex_ taken
  int64_t left_to_operator_ = 0;
};

}  // namespace lorimat::door
