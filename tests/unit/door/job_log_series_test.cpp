// Jobs that come while others are done one after the other: by whose commit they are taken.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "console/host/door_log_kind.h"
#include "door/log/job_log.h"
#include "support/temporary_folder.h"

namespace lorimat::door {
namespace {

using State = JobState;

class JobLogSeriesTest : public testing::Test {
 protected:
  JobLogSeriesTest() { Open(); }
  ~JobLogSeriesTest() override {
    log_.reset();
    std::filesystem::remove_all(folder_);
  }
  void Open() {
    log_.reset();
    log_ = std::make_unique<JobLog>((folder_ / "shop.door").string());
    // Longer than any test.
    log_->SetRide(std::chrono::hours(1));
  }
  void Change(SqlLiteral sql) {
    log_.reset();
    {
      Database database((folder_ / "shop.door").string(), Database::Open::kChange,
                        console::kDoorLogKind);
      Transaction unit(database);
      database.Execute(sql);
      unit.Commit();
    }
    Open();
  }
  Job Accept(const std::string& key) const {
    NewJob job;
    job.key = key;
    job.expires = std::numeric_limits<int64_t>::max();
    bool was_there = false;
    return log_->Accept(job, &was_there);
  }
  int64_t Commits() const {
    const auto counts = log_->Figures().commits.counts;
    return std::accumulate(counts.begin(), counts.end(), int64_t{0});
  }
  // Three jobs, of which one is running, one comes next, and one waits all the time.
  void BeginSeries() {
    ended_ = Accept("a").id;
    running_ = Accept("b").id;
    Accept("c");
    log_->Move(running_, State::kRunning, Why::kBegun);
    GoOn();
    GoOn();
  }
  // Two commits.
  void GoOn() {
    log_->MoveBoth({running_, State::kUnknown, Why::kLostAnswer},
                   {ended_, State::kRunning, Why::kBegun});
    log_->Move(running_, State::kQueued, Why::kFoundNotDone);
    std::swap(running_, ended_);
  }

  std::filesystem::path folder_ = MakeTemporaryFolder();
  std::unique_ptr<JobLog> log_;
  int64_t running_ = 0;
  int64_t ended_ = 0;
};

TEST_F(JobLogSeriesTest, AnAcceptanceCostsNoCommitOfItsOwn) {
  BeginSeries();
  const int64_t before = Commits();
  constexpr int kThreads = 4;
  constexpr int kEach = 5;
  std::atomic<int> at_work{kThreads};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (int k = 0; k < kEach; ++k) {
        const std::string key = std::to_string(i) + "-" + std::to_string(k);
        const Job job = Accept(key);
        // What is answered is in the log.
        EXPECT_EQ(log_->Find(job.id)->key, key);
      }
      --at_work;
    });
  }
  int64_t commits = 0;
  for (; at_work > 0; commits += 2) GoOn();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Commits() - before, commits);
  EXPECT_EQ(log_->Count(State::kQueued) + log_->Count(State::kRunning), 3 + kThreads * kEach);
  Open();
  EXPECT_EQ(log_->Count(State::kQueued) + log_->Count(State::kRunning), 3 + kThreads * kEach);
}

// With no other job that waits nothing is known to come.
TEST_F(JobLogSeriesTest, BehindTheLastJobNothingIsWaitedFor) {
  const Job first = Accept("a");
  const Job second = Accept("b");
  const Job third = Accept("c");
  log_->Move(first.id, State::kRunning, Why::kBegun);
  log_->MoveBoth({first.id, State::kRejected, Why::kLineFailed},
                 {second.id, State::kRunning, Why::kBegun});
  log_->MoveBoth({second.id, State::kRejected, Why::kLineFailed},
                 {third.id, State::kRunning, Why::kBegun});
  EXPECT_EQ(Accept("d").state, State::kQueued);
}

TEST_F(JobLogSeriesTest, BehindAMoveThatEndsItNothingIsWaitedFor) {
  BeginSeries();
  log_->MoveBoth({running_, State::kUnknown, Why::kLostAnswer},
                 {ended_, State::kRunning, Why::kBegun});
  log_->Move(ended_, State::kRejected, Why::kLineFailed);
  EXPECT_EQ(Accept("d").state, State::kQueued);
}

TEST_F(JobLogSeriesTest, OnlyTheNextCommitIsWaitedForAndThatNotForEver) {
  log_->SetRide(std::chrono::milliseconds(20));
  BeginSeries();
  EXPECT_EQ(Accept("d").state, State::kQueued);
}

// Of a unit of work that SQLite itself takes back as a whole.
TEST_F(JobLogSeriesTest, AnAcceptanceThatFailsKeepsNoMoveFromTheLog) {
  Change(
      "CREATE TRIGGER bad BEFORE INSERT ON job WHEN new.key = 'bad'"
      " BEGIN SELECT RAISE(ROLLBACK, 'bad'); END");
  BeginSeries();
  std::atomic<bool> is_over{false};
  std::thread bad([&] {
    EXPECT_THROW(Accept("bad"), RegisterError);
    is_over = true;
  });
  while (!is_over) GoOn();
  bad.join();
  EXPECT_FALSE(log_->FindKey("", "bad"));
  EXPECT_EQ(log_->Find(running_)->state, State::kRunning);
  EXPECT_EQ(log_->Find(ended_)->state, State::kQueued);
  is_over = false;
  std::thread good([&] {
    EXPECT_EQ(Accept("good").key, "good");
    is_over = true;
  });
  while (!is_over) GoOn();
  good.join();
}

TEST_F(JobLogSeriesTest, AMoveThatFailsKeepsNoAcceptanceFromTheLog) {
  Change(
      "CREATE TRIGGER bad BEFORE UPDATE ON job WHEN new.state = 7"
      " BEGIN SELECT RAISE(ROLLBACK, 'bad'); END");
  for (const bool is_illegal : {true, false}) {
    BeginSeries();
    std::atomic<bool> is_over{false};
    std::thread good([&] {
      EXPECT_EQ(Accept(is_illegal ? "good" : "better").state, State::kQueued);
      is_over = true;
    });
    while (!is_over) {
      if (is_illegal) {
        EXPECT_THROW(log_->Move(running_, State::kQueued, Why::kBegun), IllegalMove);
      } else {
        EXPECT_THROW(log_->Move(ended_, State::kCancelled, Why::kCancelled), RegisterError);
      }
    }
    good.join();
    EXPECT_TRUE(log_->FindKey("", is_illegal ? "good" : "better"));
    EXPECT_EQ(log_->Find(running_)->state, State::kRunning);
    EXPECT_EQ(log_->Find(ended_)->state, State::kQueued);
    Change("DELETE FROM event; DELETE FROM step; DELETE FROM job");
  }
}

}  // namespace
}  // namespace lorimat::door
