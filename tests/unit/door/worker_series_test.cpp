// The end of a job where another one waits.
#include <gtest/gtest.h>

#include "door_shop.h"

namespace lorimat::door {
namespace {

// The device is made ready for the next job, and the process ends there.
struct Series {
  explicit Series(bool has_journal, const std::vector<std::string>& lines) {
    if (!has_journal) shop.TakeJournal();
    first = shop.Submit("a", lines).id;
    second = shop.Sell("b").id;
    shop.KillAt(Step::kBeforeReset, 2);
    EXPECT_THROW(shop.Drain(), Killed);
    shop.Restart();
  }
  DoorShop shop;
  int64_t first = 0;
  int64_t second = 0;
};

const std::vector<std::string> kSale = {"VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"};

TEST(WorkerSeries, AnEndThatAskingWouldFindWaitsForTheNextJob) {
  Series series(true, kSale);
  EXPECT_EQ(series.shop.Get(series.first).state, JobState::kRunning);
  series.shop.Drain();
  EXPECT_EQ(series.shop.Get(series.first).state, JobState::kConfirmed);
  EXPECT_EQ(series.shop.Get(series.first).history.back().why, Why::kFoundDone);
  EXPECT_EQ(series.shop.Get(series.second).state, JobState::kConfirmed);
  EXPECT_EQ(series.shop.documents(), 2);
}

TEST(WorkerSeries, AnEndThatRestsOnAnswersIsOnTheDiskAheadOfTheNextJob) {
  Series series(false, kSale);
  EXPECT_EQ(series.shop.Get(series.first).state, JobState::kConfirmed);
  EXPECT_EQ(series.shop.Get(series.first).history.back().why, Why::kAnswered);
  EXPECT_EQ(series.shop.Get(series.second).state, JobState::kQueued);
  series.shop.Drain();
  EXPECT_EQ(series.shop.Get(series.second).state, JobState::kConfirmed);
  EXPECT_EQ(series.shop.documents(), 2);
}

// Two sales in a series, and one whose time is over meanwhile.
TEST(WorkerSeries, WhatWaitsBehindASeriesExpiresInTime) {
  DoorShop shop;
  shop.Sell("a");
  const Job second = shop.Sell("b");
  shop.now -= 300000;
  const Job late = shop.Sell("c");
  shop.now += 300000;
  int begun = 0;
  JobState seen = JobState::kQueued;
  shop.at_step = [&](Step step) {
    if (step != Step::kBeforeFirstLine) return;
    if (++begun == 1) shop.now += 400000;
    if (begun == 2) seen = shop.Get(late.id).state;
  };
  shop.Drain();
  EXPECT_EQ(begun, 2);
  EXPECT_EQ(seen, JobState::kExpired);
  EXPECT_EQ(shop.Get(second.id).state, JobState::kConfirmed);
}

}  // namespace
}  // namespace lorimat::door
