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

}  // namespace
}  // namespace lorimat::door
