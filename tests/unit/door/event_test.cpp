// What the log tells of jobs and device, in the order in which it happened.
#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "console/host/door_log_kind.h"
#include "door/http/event_stream.h"
#include "door/log/job_log.h"
#include "register/storage/change_copy.h"
#include "support/temporary_folder.h"

namespace lorimat::door {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using State = JobState;

class EventTest : public testing::Test {
 protected:
  EventTest() { Open(); }
  ~EventTest() override {
    log_.reset();
    std::filesystem::remove_all(folder_);
  }
  void Open() {
    log_.reset();
    log_ = std::make_unique<JobLog>(File(), [this] { return now_; });
  }
  std::string File() const { return (folder_ / "shop.door").string(); }
  Job Accept(const std::string& key, const std::string& desk = "till",
             std::optional<LineAnswer> refused = {}) {
    NewJob job;
    job.desk = desk;
    job.key = key;
    job.reference = "order " + key;
    job.lines = {"VEND REP=1, PRE=1.20", "CHIU"};
    job.expires = 2000;
    job.refused = std::move(refused);
    bool was_there = false;
    return log_->Accept(job, &was_there);
  }
  // "1 job 1 queued" for each.
  std::vector<std::string> Told(int64_t after = 0, const std::optional<std::string>& desk = {}) {
    std::vector<std::string> told;
    for (const LogEvent& event : log_->Events(after, 100, desk).events) {
      std::string text = std::to_string(event.id) + " " + std::string(EventName(event.kind));
      if (event.job) {
        text +=
            " " + std::to_string(event.job->id) + " " + std::string(JobStateName(event.job->state));
        if (event.job->document) text += " " + std::to_string(event.job->document->number);
      }
      told.push_back(text + event.text);
    }
    return told;
  }
  void Confirm(int64_t id, int number) {
    log_->Move(id, State::kRunning, Why::kBegun);
    log_->Move(id, State::kConfirmed, Why::kAnswered,
               {.document = JobDocument{1, number, "99LRM0000001VR", "", 12000}});
  }

  std::filesystem::path folder_ = MakeTemporaryFolder();
  int64_t now_ = 1000;
  std::unique_ptr<JobLog> log_;
};

TEST_F(EventTest, EachMoveIsOneAndADocumentIsAnother) {
  Accept("a");
  Confirm(1, 7);
  EXPECT_THAT(Told(), ElementsAre("1 job 1 queued", "2 job 1 running", "3 job 1 confirmed 7",
                                  "4 document 1 confirmed 7"));
  EXPECT_THAT(Told(3), ElementsAre("4 document 1 confirmed 7"));
  EXPECT_EQ(log_->LastEvent(), 4);
}

TEST_F(EventTest, TheyAreThereBehindANewStartAndCountOn) {
  Accept("a");
  Open();
  Accept("b");
  EXPECT_THAT(Told(), ElementsAre("1 job 1 queued", "2 job 2 queued"));
}

TEST_F(EventTest, WhatIsCommittedTogetherIsToldInItsOrder) {
  Accept("a");
  Accept("b");
  log_->Move(1, State::kRunning, Why::kBegun);
  log_->MoveBoth({1, State::kRejected, Why::kLineFailed}, {2, State::kRunning, Why::kBegun});
  Accept("c", "till", LineAnswer{1, 1, "", ""});
  Accept("d");
  now_ = 3000;
  log_->Expire();
  EXPECT_THAT(Told(2), ElementsAre("3 job 1 running", "4 job 1 rejected", "5 job 2 running",
                                   "6 job 3 queued", "7 job 3 rejected", "8 job 4 queued",
                                   "9 job 4 expired"));
}

TEST_F(EventTest, WhatIsTakenBackIsNotTold) {
  Accept("a");
  Accept("b");
  log_->Move(1, State::kRunning, Why::kBegun);
  EXPECT_THROW(
      log_->MoveBoth({1, State::kRejected, Why::kLineFailed}, {2, State::kConfirmed, Why::kBegun}),
      IllegalMove);
  EXPECT_EQ(log_->LastEvent(), 3);
}

// As it was then: what the job learns later is told later.
TEST_F(EventTest, AnEventHasTheJobAsItWas) {
  Accept("a");
  log_->Move(1, State::kRunning, Why::kBegun);
  log_->Move(1, State::kUnknown, Why::kLostAnswer);
  log_->Move(1, State::kNeedsOperator, Why::kFurtherOn);
  log_->Move(1, State::kConfirmed, Why::kOperatorDone,
             {.document = JobDocument{1, 7, "99LRM0000001VR", "", {}}, .note = "seen"});
  EXPECT_THAT(Told(), ElementsAre("1 job 1 queued", "2 job 1 running", "3 job 1 unknown",
                                  "4 job 1 needs_operator", "5 job 1 confirmed 7",
                                  "6 document 1 confirmed 7"));
  const std::string text = EventText(log_->Events(4, 1).events.at(0));
  EXPECT_THAT(text, testing::StartsWith("id: 5\nevent: job\ndata: {\"id\":1,\"key\":\"a\","
                                        "\"desk\":\"till\",\"reference\":\"order a\","
                                        "\"state\":\"confirmed\",\"document\":{\"closure\":1,"));
  EXPECT_THAT(text, HasSubstr("\"why\":\"an operator says that it is done: seen\""));
  EXPECT_THAT(text, testing::EndsWith("}\n\n"));
}

TEST_F(EventTest, ADeskSeesItsOwnAndWhatIsNobodys) {
  Accept("a", "bar");
  Accept("b", "till");
  log_->NoteText(EventKind::kDevice, "device_away");
  Accept("c", "bar");
  EXPECT_THAT(Told(0, "till"), ElementsAre("2 job 2 queued", "3 devicedevice_away"));
  EXPECT_THAT(Told(0, "hotel"), ElementsAre("3 devicedevice_away"));
  // It has been read up to the last one, though that is another's.
  EXPECT_EQ(log_->Events(0, 100, "till").last, 4);
}

TEST_F(EventTest, WhatIsAsItWasIsNotToldAgain) {
  log_->NoteText(EventKind::kDevice, "");
  log_->NoteText(EventKind::kWarning, "");
  EXPECT_EQ(log_->LastEvent(), 0);
  log_->NoteText(EventKind::kDevice, "device_away");
  log_->NoteText(EventKind::kDevice, "device_away");
  Open();
  log_->NoteText(EventKind::kDevice, "device_away");
  log_->NoteText(EventKind::kWarning, "disk_low needs_operator");
  log_->NoteText(EventKind::kDevice, "");
  EXPECT_EQ(
      EventText(log_->Events(0, 1).events.at(0)).substr(0, 79),
      "id: 1\nevent: device\ndata: {\"ready\":false,\"trouble\":\"device_away\",\"time\":\"1970-0");
  EXPECT_THAT(EventText(log_->Events(1, 1).events.at(0)),
              HasSubstr("\ndata: {\"warnings\":[\"disk_low\",\"needs_operator\"],"));
  EXPECT_THAT(EventText(log_->Events(2, 1).events.at(0)),
              HasSubstr("\ndata: {\"ready\":true,\"trouble\":null,"));
  EXPECT_EQ(log_->LastEvent(), 3);
}

TEST_F(EventTest, OldOnesGoAndNoNumberComesAgain) {
  JobLog log("");
  const int64_t all = kEventsKept + 1000;
  for (int64_t i = 1; i <= all; ++i) {
    log.NoteText(EventKind::kDevice, i % 2 == 0 ? "" : "device_away");
  }
  EXPECT_EQ(log.LastEvent(), all);
  // The newest ones are there.
  const EventPage kept = log.Events(all - kEventsKept, 1);
  EXPECT_FALSE(kept.has_gap);
  EXPECT_EQ(kept.events.at(0).id, all - kEventsKept + 1);
  const EventPage old = log.Events(0, 1);
  EXPECT_TRUE(old.has_gap);
  EXPECT_THAT(old.events, IsEmpty());
  EXPECT_EQ(old.last, all);
  // Pruned by more than one, so that they do not grow without end.
  EXPECT_TRUE(log.Events(all - kEventsKept - 300, 1).has_gap);
}

TEST_F(EventTest, AStreamBeginsAnewWhereTheLogCannotGoOn) {
  Accept("a");
  Accept("b");
  EventStream future(*log_, 9, {});
  EXPECT_EQ(future.Next(), "id: 2\nevent: reset\ndata: {\"after\":9,\"last\":2}\n\n");
  EXPECT_EQ(future.Next(), "");
  Accept("c");
  EXPECT_THAT(future.Next(), testing::StartsWith("id: 3\nevent: job\n"));
  EXPECT_EQ(future.Next(), "");
}

TEST_F(EventTest, AStreamBeginsNowOrBehindANumber) {
  Accept("a");
  EventStream from_now(*log_, {}, {});
  EventStream from_first(*log_, 0, {});
  EventStream others(*log_, 0, "bar");
  EXPECT_EQ(from_now.Next(), "");
  EXPECT_THAT(from_first.Next(), testing::StartsWith("id: 1\n"));
  EXPECT_EQ(others.Next(), "");
  // However many are somebody else's, the next one of its own is found.
  for (int i = 0; i < EventStream::kAtOnce * 2; ++i) Accept("k" + std::to_string(i));
  Accept("b", "bar");
  EXPECT_THAT(others.Next(), HasSubstr("\"key\":\"b\""));
}

TEST_F(EventTest, WhoFollowsIsToldOfEach) {
  std::vector<std::string> told;
  log_->SetEventObserver([&told](const Job* job) {
    told.emplace_back(job == nullptr ? "-" : JobStateName(job->state));
  });
  Accept("a");
  Accept("a");  // is there already
  Accept("b");
  log_->Move(1, State::kRunning, Why::kBegun);
  log_->MoveBoth({1, State::kRejected, Why::kLineFailed}, {2, State::kRunning, Why::kBegun});
  log_->NoteText(EventKind::kDevice, "device_away");
  log_->NoteText(EventKind::kDevice, "device_away");
  Accept("c");
  now_ = 3000;
  log_->Expire();
  EXPECT_THAT(told, ElementsAre("queued", "queued", "running", "rejected", "running", "-", "queued",
                                "expired"));
}

TEST_F(EventTest, ALogOfTheSecondVersionIsTakenOn) {
  log_.reset();
  std::filesystem::remove(File());
  {
    Database database(File(), Database::Open::kCreate, {0x4C4D444C, 2});
    Transaction unit(database);
    database.Execute(
        "PRAGMA application_id = 0x4C4D444C;"
        "CREATE TABLE value (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
        "CREATE TABLE job (id INTEGER PRIMARY KEY AUTOINCREMENT, desk TEXT NOT NULL,"
        " key TEXT NOT NULL, digest TEXT NOT NULL, reference TEXT NOT NULL, lines TEXT NOT NULL,"
        " effect INTEGER NOT NULL, expires INTEGER NOT NULL, state INTEGER NOT NULL,"
        " attempts INTEGER NOT NULL, mark TEXT NOT NULL UNIQUE, baseline TEXT, document TEXT,"
        " answers TEXT, closure INTEGER, number INTEGER, UNIQUE (desk, key));"
        "CREATE TABLE step (job INTEGER NOT NULL REFERENCES job (id), number INTEGER NOT NULL,"
        " time INTEGER NOT NULL, state INTEGER NOT NULL, why INTEGER NOT NULL, note TEXT NOT NULL,"
        " PRIMARY KEY (job, number)) WITHOUT ROWID;"
        "INSERT INTO job (desk, key, digest, reference, lines, effect, expires, state, attempts,"
        " mark) VALUES ('till', 'a', 'd', '', '[]', 0, 9000, 0, 1, 'R1');"
        "INSERT INTO step VALUES (1, 1, 500, 0, 0, '');");
    database.SetVersion(2);
    unit.Commit();
  }
  Open();
  EXPECT_EQ(log_->LastEvent(), 0);
  EXPECT_EQ(log_->Figures().jobs[0], 1);
  // What was before is not told; what comes is.
  log_->Move(1, State::kRunning, Why::kBegun);
  Accept("b");
  EXPECT_THAT(Told(), ElementsAre("1 job 1 running", "2 job 2 queued"));
}

TEST_F(EventTest, FiguresCountWhatMoves) {
  Accept("a");
  now_ = 1500;
  log_->Move(1, State::kRunning, Why::kBegun);
  now_ = 1000;  // the clock was set back
  log_->Move(1, State::kConfirmed, Why::kAnswered);
  Accept("b", "till", LineAnswer{1, 1, "", ""});
  now_ = 1200;
  Accept("c");
  now_ = 1300;
  Accept("d");
  const LogFigures figures = log_->Figures();
  const auto of = [](State state) { return static_cast<size_t>(state); };
  EXPECT_THAT(figures.jobs, ElementsAre(2, 0, 1, 1, 0, 0, 0, 0));
  EXPECT_THAT(figures.entered, ElementsAre(4, 1, 1, 1, 0, 0, 0, 0));
  EXPECT_DOUBLE_EQ(figures.left[of(State::kQueued)].sum, 0.5);
  EXPECT_DOUBLE_EQ(figures.left[of(State::kRunning)].sum, 0);
  EXPECT_EQ(figures.oldest_queued, 1200);
  EXPECT_EQ(figures.last_event, log_->LastEvent());
  int64_t commits = 0;
  for (const int64_t count : figures.commits.counts) commits += count;
  EXPECT_EQ(commits, 6);
  Open();
  EXPECT_THAT(log_->Figures().jobs, ElementsAre(2, 0, 1, 1, 0, 0, 0, 0));
}

TEST(Durations, AreCountedByTheFirstBoundThatHoldsThem) {
  Durations durations;
  durations.Add(0.001);
  durations.Add(0.0011);
  durations.Add(5000);
  EXPECT_EQ(durations.counts[0], 1);
  EXPECT_EQ(durations.counts[1], 1);
  EXPECT_EQ(durations.counts.back(), 1);
}

// Numbers behind the copy were given to other events.
TEST_F(EventTest, ACopyThatIsPutBackGivesNoNumberAgain) {
  Accept("a");
  const std::string to = (folder_ / "copy.door").string();
  {
    Database source(File(), Database::Open::kRead, console::kDoorLogKind);
    PartFile part(to);
    ASSERT_TRUE(source.CopyTo(part, nullptr));
    ChangeCopy(part, console::kMarkDoorLogCopied);
    EXPECT_EQ(part.Finish(), 0);
  }
  for (int i = 0; i < 20; ++i) Accept("b" + std::to_string(i));
  const int64_t last = log_->LastEvent();
  log_ = std::make_unique<JobLog>(to, [this] { return now_; });
  for (int i = 0; i < 40; ++i) Accept("c" + std::to_string(i));
  for (int64_t after = 0; after <= last; ++after) {
    EXPECT_TRUE(log_->Events(after, 100).has_gap) << after;
  }
  // Whoever has been told goes on.
  const int64_t from = log_->LastEvent();
  Accept("d");
  const EventPage page = log_->Events(from, 100);
  EXPECT_FALSE(page.has_gap);
  ASSERT_EQ(page.events.size(), 1u);
  EXPECT_EQ(page.events[0].id, from + 1);
}

}  // namespace
}  // namespace lorimat::door
