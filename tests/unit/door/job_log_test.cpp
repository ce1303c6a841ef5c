#include "door/log/job_log.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "console/host/door_log_kind.h"
#include "register/storage/change_copy.h"
#include "support/temporary_folder.h"

namespace lorimat::door {
namespace {

using testing::ElementsAre;
using State = JobState;

class JobLogTest : public testing::Test {
 protected:
  JobLogTest() { Open(); }
  ~JobLogTest() override {
    log_.reset();
    std::filesystem::remove_all(folder_);
  }
  void Open() {
    log_.reset();
    log_ = std::make_unique<JobLog>(File(), [this] { return now_; });
  }
  std::string File() const { return (folder_ / "shop.door").string(); }
  Job Accept(const std::string& key, const std::string& desk = "till") {
    NewJob job;
    job.desk = desk;
    job.key = key;
    job.digest = "d";
    job.lines = {"VEND REP=1, PRE=1.20", "CHIU"};
    job.expires = 2000;
    return log_->Accept(job, &was_there_);
  }

  std::filesystem::path folder_ = MakeTemporaryFolder();
  int64_t now_ = 1000;
  bool was_there_ = false;
  std::unique_ptr<JobLog> log_;
};

// The states as clients are told of them; what a move means stands in docs/door.md.
TEST(JobState, MovesOnlyAsTheTableSays) {
  const std::set<std::pair<State, State>> ways = {
      {State::kQueued, State::kRunning},        {State::kQueued, State::kRejected},
      {State::kQueued, State::kExpired},        {State::kQueued, State::kCancelled},
      {State::kQueued, State::kNeedsOperator},  {State::kRunning, State::kConfirmed},
      {State::kRunning, State::kRejected},      {State::kRunning, State::kUnknown},
      {State::kUnknown, State::kQueued},        {State::kUnknown, State::kConfirmed},
      {State::kUnknown, State::kRejected},      {State::kUnknown, State::kExpired},
      {State::kUnknown, State::kNeedsOperator}, {State::kNeedsOperator, State::kConfirmed},
      {State::kNeedsOperator, State::kRejected}};
  for (int from = 0; from <= static_cast<int>(State::kLast); ++from) {
    for (int to = 0; to <= static_cast<int>(State::kLast); ++to) {
      const std::pair way(static_cast<State>(from), static_cast<State>(to));
      EXPECT_EQ(MayMove(way.first, way.second), ways.count(way) != 0) << from << " " << to;
    }
  }
}

TEST(JobState, FourAreFinal) {
  std::vector<std::string_view> finals;
  for (int state = 0; state <= static_cast<int>(State::kLast); ++state) {
    const auto one = static_cast<State>(state);
    EXPECT_EQ(FindJobState(JobStateName(one)), one);
    if (IsFinal(one)) finals.push_back(JobStateName(one));
  }
  EXPECT_THAT(finals, ElementsAre("confirmed", "rejected", "expired", "cancelled"));
  EXPECT_FALSE(FindJobState("done"));
}

TEST(JobState, EachReasonHasASentenceOfItsOwn) {
  std::set<std::string_view> texts;
  for (int why = 0; why <= static_cast<int>(Why::kLast); ++why) {
    EXPECT_TRUE(texts.insert(WhyText(static_cast<Why>(why))).second);
  }
  EXPECT_EQ(texts.count(""), 0u);
}

TEST_F(JobLogTest, AJobIsThereBehindANewStart) {
  const Job job = Accept("k");
  EXPECT_FALSE(was_there_);
  EXPECT_EQ(job.state, State::kQueued);
  Open();
  const std::optional<Job> found = log_->FindKey("till", "k");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->id, job.id);
  EXPECT_EQ(found->mark, job.mark);
  EXPECT_THAT(found->lines, ElementsAre("VEND REP=1, PRE=1.20", "CHIU"));
  ASSERT_EQ(found->history.size(), 1u);
  EXPECT_EQ(found->history[0].time, 1000);
}

TEST_F(JobLogTest, AKeyOfADeskIsTakenOnce) {
  const Job first = Accept("k");
  const Job again = Accept("k");
  EXPECT_TRUE(was_there_);
  EXPECT_EQ(again.id, first.id);
  const Job other = Accept("k", "bar");
  EXPECT_FALSE(was_there_);
  EXPECT_NE(other.id, first.id);
  EXPECT_NE(other.mark, first.mark);
  EXPECT_EQ(log_->Count(State::kQueued), 2);
}

TEST_F(JobLogTest, LinesKeepTheirBytes) {
  NewJob job;
  job.key = "k";
  job.lines = {"PRMSG MSG='\xE0\x80\xFF'"};
  log_->Accept(job, &was_there_);
  Open();
  EXPECT_THAT(log_->FindKey("", "k")->lines, ElementsAre("PRMSG MSG='\xE0\x80\xFF'"));
}

TEST_F(JobLogTest, WhatAJobLearnsIsKept) {
  const Job job = Accept("k");
  const DeviceNumbers numbers = {"99LRM0000001VR", 3, 7, 2, 123400};
  log_->Move(job.id, State::kRunning, Why::kBegun, {.baseline = numbers});
  const JobDocument document = {
      4, 8, "99LRM0000001VR", "2026-11-22T10:00:00+01:00", 12000, DocumentKind::kRefund};
  log_->Move(job.id, State::kConfirmed, Why::kAnswered,
             {.document = document,
              .answers = std::vector<LineAnswer>{{1, 0, "OK.", ""}, {2, 1231, "ERROR\xE0", "why"}},
              .seen = numbers});
  Open();
  const Job kept = *log_->Find(job.id);
  EXPECT_EQ(kept.baseline, numbers);
  EXPECT_EQ(kept.document, document);
  EXPECT_EQ(kept.attempts, 1);
  ASSERT_EQ(kept.answers.size(), 2u);
  EXPECT_EQ(kept.answers[1], (LineAnswer{2, 1231, "ERROR\xE0", "why"}));
  EXPECT_EQ(log_->seen(), numbers);
}

TEST_F(JobLogTest, AMoveThatIsNoneLeavesTheJob) {
  const Job job = Accept("k");
  EXPECT_THROW(log_->Move(job.id, State::kConfirmed, Why::kAnswered), IllegalMove);
  EXPECT_THROW(log_->Move(job.id + 1, State::kRunning, Why::kBegun), IllegalMove);
  const Job kept = *log_->Find(job.id);
  EXPECT_EQ(kept.state, State::kQueued);
  EXPECT_EQ(kept.history.size(), 1u);
}

TEST_F(JobLogTest, ARefusedLineRejectsTheJobAsItComes) {
  NewJob job;
  job.key = "k";
  job.lines = {"VNED"};
  job.refused = LineAnswer{1, 257, "", "no such command"};
  const Job taken = log_->Accept(job, &was_there_);
  EXPECT_EQ(taken.state, State::kRejected);
  ASSERT_EQ(taken.answers.size(), 1u);
  EXPECT_EQ(taken.answers[0].code, 257);
}

TEST_F(JobLogTest, QueuedJobsExpireAndOthersDoNot) {
  const Job waits = Accept("a");
  const Job runs = Accept("b");
  log_->Move(runs.id, State::kRunning, Why::kBegun);
  now_ = 1999;
  EXPECT_EQ(log_->Expire(), 0);
  now_ = 2000;
  EXPECT_EQ(log_->Expire(), 1);
  EXPECT_EQ(log_->Find(waits.id)->state, State::kExpired);
  EXPECT_EQ(log_->Find(runs.id)->state, State::kRunning);
}

TEST_F(JobLogTest, WhatTheObserverThrowsTakesNothingBack) {
  log_->SetObserver([](int64_t) { throw std::bad_alloc(); });
  const Job job = Accept("k");
  EXPECT_EQ(log_->Move(job.id, JobState::kCancelled, Why::kCancelled).state, JobState::kCancelled);
  EXPECT_EQ(log_->Find(job.id)->state, JobState::kCancelled);
}

TEST_F(JobLogTest, TheObserverHearsOfWhatNobodyWaitsForAnyLonger) {
  std::vector<int64_t> told;
  log_->SetObserver([&](int64_t id) { told.push_back(id); });
  const Job a = Accept("a");
  const Job b = Accept("b");
  log_->Move(a.id, State::kRunning, Why::kBegun);
  log_->Move(a.id, State::kUnknown, Why::kCutOff);
  EXPECT_THAT(told, ElementsAre());
  log_->Move(a.id, State::kNeedsOperator, Why::kNotNumbered);
  log_->Move(b.id, State::kCancelled, Why::kCancelled);
  EXPECT_THAT(told, ElementsAre(a.id, b.id));
}

TEST_F(JobLogTest, ListsByStateInTheirOrder) {
  const Job a = Accept("a");
  const Job b = Accept("b");
  const Job c = Accept("c");
  log_->Move(b.id, State::kCancelled, Why::kCancelled);
  const auto ids = [](const std::vector<Job>& jobs) {
    std::vector<int64_t> numbers;
    for (const Job& job : jobs) numbers.push_back(job.id);
    return numbers;
  };
  EXPECT_THAT(ids(log_->List(std::nullopt, 0, 10)), ElementsAre(a.id, b.id, c.id));
  EXPECT_THAT(ids(log_->List(State::kQueued, 0, 10)), ElementsAre(a.id, c.id));
  EXPECT_THAT(ids(log_->List(State::kQueued, a.id, 10)), ElementsAre(c.id));
  EXPECT_THAT(ids(log_->List(std::nullopt, 0, 1)), ElementsAre(a.id));
  EXPECT_TRUE(log_->List(std::nullopt, 0, 1).at(0).lines.empty());
  EXPECT_FALSE(log_->Find(a.id)->lines.empty());
}

TEST_F(JobLogTest, BelongsToOneDevice) {
  log_->Bind("A");
  log_->Bind("A");
  Open();
  EXPECT_EQ(log_->serial(), "A");
  EXPECT_THROW(log_->Bind("B"), OtherDevice);
}

// One thread accepts while another moves: no unit of work ends another's.
TEST_F(JobLogTest, ThreadsTakeTurns) {
  constexpr int kJobs = 150;
  std::jthread mover([this](const std::stop_token& stop) {
    for (int done = 0; done < kJobs && !stop.stop_requested();) {
      const std::optional<Job> job = log_->First(State::kQueued);
      if (!job) continue;
      log_->Move(job->id, State::kRunning, Why::kBegun);
      log_->Move(job->id, State::kConfirmed, Why::kAnswered);
      ++done;
    }
  });
  for (int i = 0; i < kJobs; ++i) ASSERT_NO_THROW(Accept(std::to_string(i)));
  mover.join();
  EXPECT_EQ(log_->Count(State::kConfirmed), kJobs);
  // As it is on the disk, too.
  const std::string copy = (folder_ / "copy.door").string();
  std::filesystem::copy_file(File(), copy);
  std::filesystem::copy_file(File() + "-wal", copy + "-wal");
  log_.reset();
  JobLog killed(copy);
  EXPECT_EQ(killed.Count(State::kConfirmed), kJobs);
}

TEST_F(JobLogTest, OneProgramHasItOpen) { EXPECT_THROW(JobLog second(File()), RegisterError); }

// What one program has answered another one reads: it is stored.
TEST_F(JobLogTest, AnAcceptanceIsAnsweredBehindItsCommit) {
  constexpr int kThreads = 8;
  constexpr int kEach = 20;
  std::atomic<int> missing{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int number = 0; number < kEach; ++number) {
        NewJob job;
        job.desk = "desk-" + std::to_string(thread);
        job.key = "k" + std::to_string(number);
        job.expires = 2000;
        bool was_there = true;
        const int64_t id = log_->Accept(job, &was_there).id;
        Database reader(File(), Database::Open::kRead, {0x4C4D444C, 3});
        Statement row = reader.Prepare("SELECT desk FROM job WHERE id = ?");
        row.With(id);
        if (was_there || !row.Step() || row.String(0) != job.desk) ++missing;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(log_->Count(State::kQueued), kThreads * kEach);
}

// While one is at work on the disk the others wait, and go with the next commit, all of them.
TEST_F(JobLogTest, AcceptancesThatWaitAreCommittedTogether) {
  std::mutex held;
  std::atomic<int> units{0};
  std::set<std::thread::id> workers;
  log_.reset();
  log_ = std::make_unique<JobLog>(File(), [&]() -> int64_t {
    const std::lock_guard<std::mutex> lock(held);
    workers.insert(std::this_thread::get_id());
    return now_;
  });
  constexpr int kThreads = 6;
  std::vector<std::thread> threads;
  bool together = false;
  // Whether others come while one is at work is up to the machine; sooner or later they do.
  for (int round = 0; round < 1000 && !together; ++round) {
    workers.clear();
    {
      std::unique_lock<std::mutex> lock(held);
      for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread, round] {
          NewJob job;
          job.desk = "desk-" + std::to_string(thread);
          job.key = "k" + std::to_string(round);
          job.expires = 2000;
          bool was_there = false;
          ++units;
          log_->Accept(job, &was_there);
        });
      }
      while (units < kThreads * (round + 1)) std::this_thread::yield();
    }
    for (std::thread& thread : threads) thread.join();
    threads.clear();
    together = workers.size() < kThreads;
  }
  EXPECT_TRUE(together);
  EXPECT_EQ(log_->Count(State::kQueued), units);
}

TEST_F(JobLogTest, AcceptancesOfOneCommitFailTogether) {
  now_ = 0;
  log_.reset();
  log_ = std::make_unique<JobLog>(File(), [this]() -> int64_t {
    if (now_ != 0) throw std::runtime_error("no clock");
    return 1000;
  });
  Accept("a");
  now_ = 1;
  EXPECT_THROW(Accept("b"), std::runtime_error);
  now_ = 0;
  EXPECT_FALSE(log_->FindKey("till", "b"));
  EXPECT_EQ(Accept("b").key, "b");
  EXPECT_FALSE(was_there_);
}

TEST_F(JobLogTest, TheJobOfADocumentIsFoundWithoutALookAtAll) {
  const Job job = Accept("a");
  log_->Move(job.id, State::kRunning, Why::kBegun, {.baseline = DeviceNumbers{"S", 1, 2, 3, 4, 5}});
  EXPECT_EQ(log_->Find(job.id)->baseline, (DeviceNumbers{"S", 1, 2, 3, 4, 5}));
  log_->Move(job.id, State::kConfirmed, Why::kAnswered,
             {.document = JobDocument{2, 3, "S", "t", 100}});
  ASSERT_EQ(log_->WithDocument(2, 3).size(), 1u);
  EXPECT_TRUE(log_->WithDocument(2, 4).empty());
  log_.reset();
  Database reader(File(), Database::Open::kRead, {0x4C4D444C, 3});
  Statement plan = reader.Prepare(
      "EXPLAIN QUERY PLAN SELECT id FROM job WHERE closure = ? AND number = ? ORDER BY id");
  plan.With(2, 3);
  ASSERT_TRUE(plan.Step());
  EXPECT_THAT(plan.String(3), testing::HasSubstr("job_by_document"));
}

TEST_F(JobLogTest, ALogOfTheFirstVersionIsTakenOn) {
  log_.reset();
  const std::string old_file = (folder_ / "old.door").string();
  {
    Database database(old_file, Database::Open::kCreate, {0x4C4D444C, 1});
    Transaction unit(database);
    database.Execute(
        "PRAGMA application_id = 0x4C4D444C;"
        "CREATE TABLE value (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
        "CREATE TABLE job (id INTEGER PRIMARY KEY AUTOINCREMENT, desk TEXT NOT NULL,"
        " key TEXT NOT NULL, digest TEXT NOT NULL, reference TEXT NOT NULL, lines TEXT NOT NULL,"
        " effect INTEGER NOT NULL, expires INTEGER NOT NULL, state INTEGER NOT NULL,"
        " attempts INTEGER NOT NULL, mark TEXT NOT NULL UNIQUE, baseline TEXT, document TEXT,"
        " answers TEXT, UNIQUE (desk, key));"
        "CREATE TABLE step (job INTEGER NOT NULL REFERENCES job (id), number INTEGER NOT NULL,"
        " time INTEGER NOT NULL, state INTEGER NOT NULL, why INTEGER NOT NULL, note TEXT NOT NULL,"
        " PRIMARY KEY (job, number)) WITHOUT ROWID;"
        "INSERT INTO job (desk, key, digest, reference, lines, effect, expires, state, attempts,"
        " mark, document) VALUES ('till', 'a', 'd', '', '[]', 0, 1, 2, 1, 'R1',"
        " '{\"closure\":2,\"number\":3,\"serial\":\"S\",\"time\":\"t\",\"total\":100}');");
    database.SetVersion(1);
    unit.Commit();
  }
  JobLog log(old_file, [] { return int64_t{1000}; });
  ASSERT_EQ(log.WithDocument(2, 3).size(), 1u);
  EXPECT_EQ(log.WithDocument(2, 3)[0].key, "a");
  EXPECT_EQ(log.WithDocument(2, 3)[0].document, (JobDocument{2, 3, "S", "t", 100}));
}

TEST_F(JobLogTest, AMarkIsOpenUntilItsJobIsOver) {
  const Job first = Accept("a");
  const Job second = Accept("b");
  EXPECT_EQ(log_->OpenMarks(), (std::set<std::string>{first.mark, second.mark}));
  log_->Move(first.id, State::kCancelled, Why::kCancelled);
  for (const State state : {State::kRunning, State::kUnknown, State::kNeedsOperator}) {
    log_->Move(second.id, state, Why::kBegun);
    EXPECT_EQ(log_->OpenMarks(), (std::set<std::string>{second.mark}));
  }
  log_->Move(second.id, State::kConfirmed, Why::kOperatorDone);
  EXPECT_TRUE(log_->OpenMarks().empty());
  EXPECT_EQ(first.mark.size(), kMarkSize);
}

// It may have run behind the copy: none of it begins again.
TEST_F(JobLogTest, WhatWaitedInACopyIsLeftToAnOperator) {
  const Job first = Accept("a");
  const Job second = Accept("b");
  log_->Move(first.id, State::kRunning, Why::kBegun);
  const std::string to = (folder_ / "copy.door").string();
  {
    Database source(File(), Database::Open::kRead, console::kDoorLogKind);
    PartFile part(to);
    ASSERT_TRUE(source.CopyTo(part, nullptr));
    ChangeCopy(part, console::kMarkDoorLogCopied);
    EXPECT_EQ(part.Finish(), 0);
  }
  EXPECT_EQ(log_->Find(second.id)->state, State::kQueued);
  {
    JobLog copy(to, [this] { return now_; });
    EXPECT_EQ(copy.left_to_operator(), 1);
    EXPECT_EQ(copy.Find(first.id)->state, State::kRunning);
    EXPECT_EQ(copy.Find(second.id)->state, State::kNeedsOperator);
    EXPECT_EQ(copy.Find(second.id)->history.back().why, Why::kCopied);
    EXPECT_EQ(copy.Figures().jobs[static_cast<size_t>(State::kNeedsOperator)], 1);
    NewJob next;
    next.key = "c";
    copy.Accept(next, &was_there_);
  }
  // Once: what comes behind it is its own.
  JobLog again(to, [this] { return now_; });
  EXPECT_EQ(again.left_to_operator(), 0);
  EXPECT_EQ(again.Count(State::kQueued), 1);
}

}  // namespace
}  // namespace lorimat::door
