// What of the log is in memory, beside what is on the disk.
#include "door/log/known_jobs.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "door/http/api.h"
#include "door/log/job_log.h"
#include "door/log/job_record.h"
#include "properties/property.h"
#include "register/value/register_error.h"
#include "support/temporary_folder.h"
#include "unit/register/failing_memory.h"

namespace lorimat::door {
namespace {

using State = JobState;
using testing::ElementsAre;
constexpr State kStates[] = {State::kQueued,   State::kRunning,  State::kConfirmed,
                             State::kRejected, State::kUnknown,  State::kNeedsOperator,
                             State::kExpired,  State::kCancelled};
using testing::IsEmpty;

Job MakeJob(int64_t id, State state, int64_t expires = 2000) {
  Job job;
  job.id = id;
  job.state = state;
  job.expires = expires;
  job.lines = {"VEND REP=1, PRE=1.20", "CHIU"};
  return job;
}

TEST(KnownJobs, TheQueueHasItsOrderAndItsTimes) {
  KnownJobs known;
  EXPECT_TRUE(known.is_queue_lost());
  known.SetQueue({{3, 2000}, {5, 1000}});
  EXPECT_FALSE(known.is_queue_lost());
  known.Note(MakeJob(7, State::kQueued, 1500));
  EXPECT_EQ(known.FirstQueued(), 3);
  EXPECT_EQ(known.queued(), 3u);
  EXPECT_THAT(known.Overdue(999, {}), IsEmpty());
  EXPECT_THAT(known.Overdue(1500, {}), ElementsAre(5, 7));
  EXPECT_THAT(known.Overdue(2000, {5}), ElementsAre(3, 7));
  known.Note(MakeJob(3, State::kRunning));
  known.NoteGone(5);
  EXPECT_EQ(known.FirstQueued(), 7);
  known.Note(MakeJob(7, State::kCancelled));
  EXPECT_EQ(known.FirstQueued(), std::nullopt);
  known.Note(MakeJob(3, State::kQueued));
  EXPECT_EQ(known.FirstQueued(), 3);
}

TEST(KnownJobs, AJobIsKnownAsItWasNotedLast) {
  KnownJobs known;
  EXPECT_EQ(known.Find(1), nullptr);
  known.Note(MakeJob(1, State::kQueued));
  known.Note(MakeJob(1, State::kRunning));
  ASSERT_NE(known.Find(1), nullptr);
  EXPECT_EQ(known.Find(1)->state, State::kRunning);
  known.NoteGone(1);
  EXPECT_EQ(known.Find(1), nullptr);
}

TEST(KnownJobs, OfThoseThatAreOverTheLastAreKept) {
  KnownJobs known;
  const auto most = static_cast<int64_t>(KnownJobs::kMostOver);
  known.Note(MakeJob(1, State::kQueued));
  for (int64_t id = 2; id <= most + 2; ++id) known.Note(MakeJob(id, State::kConfirmed));
  EXPECT_NE(known.Find(1), nullptr);
  EXPECT_EQ(known.Find(2), nullptr);
  EXPECT_NE(known.Find(3), nullptr);
  EXPECT_NE(known.Find(most + 2), nullptr);
}

TEST(KnownJobs, WhatTheyTakeIsBounded) {
  KnownJobs known;
  known.SetQueue({});
  Job large = MakeJob(1, State::kQueued);
  large.lines = {std::string(KnownJobs::kMostSize / 2, 'x')};
  known.Note(large);
  large.id = 2;
  known.Note(large);
  EXPECT_NE(known.Find(1), nullptr);
  EXPECT_EQ(known.Find(2), nullptr);
  EXPECT_EQ(known.queued(), 2u);
  // Its place is another one's.
  known.NoteGone(1);
  known.Note(large);
  EXPECT_NE(known.Find(2), nullptr);
}

// Also where few of them take it all.
TEST(KnownJobs, LargeOnesThatAreOverGiveWay) {
  KnownJobs known;
  known.SetQueue({});
  Job large = MakeJob(1, State::kConfirmed);
  large.lines = {std::string(KnownJobs::kMostSize / 3, 'x')};
  for (; large.id <= 8; ++large.id) {
    large.state = large.id % 2 == 0 ? State::kConfirmed : State::kNeedsOperator;
    known.Note(large);
    EXPECT_NE(known.Find(large.id), nullptr) << large.id;
  }
  EXPECT_NE(known.Find(7), nullptr);
  EXPECT_EQ(known.Find(6), nullptr);
}

// What somebody has written into the file by other means, or damaged in it.
TEST(KnownJobs, AQueueThatTheFileDoesNotHaveIsReadAgain) {
  const std::filesystem::path folder = MakeTemporaryFolder();
  const std::string file = (folder / "shop.door").string();
  const auto execute = [&file](const char* sql) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
  };
  const auto accept = [](JobLog& log, const std::string& key) {
    NewJob job;
    job.key = key;
    job.lines = {"CHIU"};
    job.expires = 1'000'000'000'000'000;
    bool was_there = false;
    return log.Accept(job, &was_there).id;
  };
  {
    JobLog log(file);
    accept(log, "a");
    accept(log, "b");
  }
  {
    JobLog log(file);
    execute("UPDATE job SET state = 7 WHERE key = 'a'");
    const std::optional<Job> first = log.First(State::kQueued);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->key, "b");
    EXPECT_EQ(log.Count(State::kQueued), 1);
  }
  JobLog log(file);
  execute("DELETE FROM step; DELETE FROM job");
  EXPECT_FALSE(log.First(State::kQueued));
  std::filesystem::remove_all(folder);
}

// Each allocation on the way of an acceptance fails once: what was accepted is in the queue.
TEST(KnownJobs, WithoutMemoryNoJobIsLost) {
  JobLog log("");
  // From 0 on, with none failing, so that what is made once is there.
  for (int n = 0;; ++n) {
    NewJob job;
    job.key = "a key that is longer than a short text: " + std::to_string(n);
    job.lines = {"VEND REP=1, PRE=1.20", "CHIU"};
    job.expires = 1'000'000'000'000'000;
    bool was_there = false;
    int64_t accepted = 0;
    if (n > 0) FailingMemory::FailAt(n, 1);
    try {
      accepted = log.Accept(job, &was_there).id;
    } catch (const std::bad_alloc&) {
    } catch (const RegisterError&) {
    }
    FailingMemory::Heal();
    const bool failed = n == 0 || FailingMemory::failed();
    const std::optional<Job> known = log.FindKey("", job.key);
    if (accepted != 0) {
      ASSERT_TRUE(known);
    }
    // Of the queue and of the job itself, whatever was answered.
    const std::optional<Job> first = log.First(State::kQueued);
    ASSERT_EQ(first.has_value(), known.has_value()) << n;
    if (!known) continue;
    ASSERT_EQ(first->id, known->id);
    const std::optional<Job> found = log.Find(known->id);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->key, job.key);
    log.Move(known->id, State::kCancelled, Why::kCancelled);
    if (!failed) break;
  }
}

TEST(JobRecord, KeepsEveryByteAndEveryNumber) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::vector<std::string> lines = {all, "", "\\u0041\"", all + all};
  EXPECT_EQ(ReadLines(LinesRecord(lines)), lines);
  EXPECT_EQ(ReadLines(LinesRecord({})), std::vector<std::string>());
  const std::vector<LineAnswer> answers = {{1, 0, "OK.", ""}, {1000, -1, all, all}};
  EXPECT_EQ(ReadAnswers(AnswersRecord(answers)), answers);
  constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
  const DeviceNumbers numbers = {all, 1, 2, 3, kLeast, std::numeric_limits<int64_t>::max()};
  EXPECT_EQ(ReadNumbers(NumbersRecord(numbers)), numbers);
  EXPECT_EQ(ReadNumbers(NumbersRecord({"s", 0, 0, 0, 0, {}})), (DeviceNumbers{"s", 0, 0, 0, 0}));
  const JobDocument document = {
      1, 2, all, "2026-11-22T10:00:00+01:00", kLeast, DocumentKind::kInvoice};
  EXPECT_EQ(ReadDocument(DocumentRecord(document)), document);
  EXPECT_EQ(ReadDocument(DocumentRecord({1, 2, "", "", {}, {}})), (JobDocument{1, 2, "", "", {}}));
}

// All that there is of a job.
std::string Record(const Job& job) {
  std::string text = JobJson(job, false) + job.digest + " " + std::to_string(job.expires) + " " +
                     std::to_string(job.attempts) + " " + job.mark + " " +
                     std::to_string(static_cast<int>(job.effect));
  for (const std::string& line : job.lines) text += "\n" + line;
  if (job.baseline) {
    text += "\n" + job.baseline->serial + " " + std::to_string(job.baseline->closure) + " " +
            std::to_string(job.baseline->document) + " " + std::to_string(job.baseline->invoice) +
            " " + std::to_string(job.baseline->day_total) + " " +
            std::to_string(job.baseline->grand_total.value_or(-1));
  }
  for (const LineAnswer& answer : job.answers) text += "\n" + answer.text + answer.explanation;
  for (const JobStep& step : job.history) text += "\n" + std::to_string(step.time) + step.note;
  return text;
}

// 0 to below that, in small cases too.
int Chance(int below) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, below)); }

// By a reading of the file.
std::vector<int64_t> QueueOf(JobLog& log) {
  std::vector<int64_t> queue;
  for (const Job& job : log.List(State::kQueued, 0, 1000)) queue.push_back(job.id);
  return queue;
}

// Whatever ways the jobs go, what the log answers is what it holds.
TEST(KnownJobsProperty, WhatIsKnownIsWhatIsOnTheDisk) {
  Seen seen("known jobs");
  const PropertyRun run = RunOf(20);
  Holds(run, [&] {
    const std::filesystem::path folder = MakeTemporaryFolder();
    const std::string file = (folder / "shop.door").string();
    int64_t now = 1000;
    std::vector<std::string> known;
    std::vector<int64_t> queue;
    {
      JobLog log(file, [&now] { return now; });
      int64_t last = 0;
      const int steps = 1 + Chance(39);
      for (int i = 0; i < steps; ++i) {
        now += Chance(300);
        const int what = Chance(8);
        if (what < 2 || last == 0) {
          NewJob job;
          job.key = std::to_string(Chance(20));
          job.lines = {"VEND DES='\xE8\xFF\x01'", "CHIU"};
          job.expires = now + 1 + Chance(1000);
          if (Chance(5) == 0) job.refused = LineAnswer{1, 256, "\xE0", "why"};
          bool was_there = false;
          last = std::max(last, log.Accept(job, &was_there).id);
        } else if (what == 2) {
          seen.Add("expired", log.Expire());
        } else {
          JobNews news;
          if (Chance(2) == 1) news.baseline = DeviceNumbers{"S\xE8", i, 2, 3, 4};
          if (Chance(2) == 1) news.document = JobDocument{1, i, "S\xE8", "t", 7};
          if (Chance(2) == 1) {
            news.answers = std::vector<LineAnswer>{{1, i, "OK\xE0", "e"}};
          }
          if (Chance(2) == 1) news.note = "reason " + std::to_string(i);
          const int64_t id = 1 + Chance(static_cast<int>(last));
          // Mostly one of the ways that there are.
          std::vector<State> ways = {static_cast<State>(Chance(8))};
          for (const State to : kStates) {
            if (MayMove(log.Find(id)->state, to)) ways.push_back(to);
          }
          try {
            log.Move(id, ways[static_cast<size_t>(Chance(static_cast<int>(ways.size())))],
                     Why::kOperatorDone, news);
            seen.Add("moved");
          } catch (const IllegalMove&) {
            seen.Add("refused");
          }
        }
      }
      for (int64_t id = 1; id <= last; ++id) {
        const std::optional<Job> job = log.Find(id);
        RC_ASSERT(job.has_value());
        known.push_back(Record(*job));
      }
      queue = QueueOf(log);
      const std::optional<Job> first = log.First(State::kQueued);
      RC_ASSERT(first.has_value() == !queue.empty());
      RC_ASSERT((!first || first->id == queue.front()));
      RC_ASSERT(log.Count(State::kQueued) == static_cast<int64_t>(queue.size()));
    }
    JobLog log(file, [&now] { return now; });
    for (size_t i = 0; i < known.size(); ++i) {
      RC_ASSERT(Record(*log.Find(static_cast<int64_t>(i) + 1)) == known[i]);
    }
    RC_ASSERT(QueueOf(log) == queue);
    std::filesystem::remove_all(folder);
  });
  seen.Require(run, {{"expired", 5}, {"moved", 50}, {"refused", 20}});
}

}  // namespace
}  // namespace lorimat::door
