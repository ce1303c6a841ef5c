#include "door/job/waited_jobs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "door_shop.h"

namespace lorimat::door {
namespace {

using State = JobState;

class WaitedJobsTest : public testing::Test {
 protected:
  // Somebody copies the file of the log while no door is there.
  void KeepLog() {
    shop_.End();
    std::filesystem::copy_file(shop_.log_file(), Kept(),
                               std::filesystem::copy_options::overwrite_existing);
    shop_.Start();
  }
  void PutBackLog() {
    shop_.End();
    std::filesystem::copy_file(Kept(), shop_.log_file(),
                               std::filesystem::copy_options::overwrite_existing);
    shop_.Start();
  }
  std::string Kept() const { return shop_.log_file().string() + ".kept"; }
  void Cancel(const Job& job) { shop_.log->Move(job.id, State::kCancelled, Why::kCancelled); }
  State StateOf(const Job& job) { return shop_.Get(job.id).state; }
  void ExpectLeft(const Job& job) {
    EXPECT_EQ(StateOf(job), State::kNeedsOperator);
    EXPECT_EQ(shop_.Get(job.id).history.back().why, Why::kMayHaveRun);
  }

  DoorShop shop_;
};

TEST_F(WaitedJobsTest, WhatRanBehindACopyOfTheFilesDoesNotRunAgain) {
  shop_.Sell("a");
  shop_.Drain();
  const Job sold = shop_.Sell("b");
  const Job unsold = shop_.Sell("c");
  const Job text = shop_.Submit("d", {"NOFIS INIZIO", "NOFIS MSG='A'", "NOFIS FINE"}, "operator");
  const Job closing = shop_.Submit("e", {"AZZGIO"}, "operator");
  KeepLog();
  Cancel(unsold);
  Cancel(text);
  Cancel(closing);
  shop_.Drain();
  EXPECT_EQ(StateOf(sold), State::kConfirmed);
  PutBackLog();
  shop_.Drain();
  ExpectLeft(sold);
  // Nothing tells of a text.
  ExpectLeft(text);
  EXPECT_EQ(StateOf(unsold), State::kConfirmed);
  EXPECT_EQ(StateOf(closing), State::kConfirmed);
  EXPECT_EQ(shop_.documents(), 3);
  EXPECT_EQ(shop_.WithMark(sold.mark), 1);
}

TEST_F(WaitedJobsTest, OneThatRanIsNotTakenForOverItsTime) {
  const Job sold = shop_.Sell("a");
  const Job unsold = shop_.Sell("b");
  KeepLog();
  Cancel(unsold);
  shop_.Drain();
  shop_.now += 3600'000;
  PutBackLog();
  shop_.Drain();
  ExpectLeft(sold);
  EXPECT_EQ(StateOf(unsold), State::kExpired);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WaitedJobsTest, BehindAClosingNobodyKnowsWhatRan) {
  const Job sold = shop_.Sell("a");
  const Job unsold = shop_.Sell("b");
  const Job closing = shop_.Submit("c", {"AZZGIO"}, "operator");
  KeepLog();
  Cancel(unsold);
  shop_.Drain();
  EXPECT_EQ(StateOf(closing), State::kConfirmed);
  PutBackLog();
  shop_.Drain();
  for (const Job& job : {sold, unsold, closing}) ExpectLeft(job);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WaitedJobsTest, WhatSomebodySoldAsideKeepsNoneWaiting) {
  shop_.Sell("a");
  shop_.Drain();
  const Job job = shop_.Sell("b");
  shop_.End();
  shop_.Start();
  shop_.SellAside(10000);
  shop_.Drain();
  EXPECT_EQ(StateOf(job), State::kConfirmed);
  // Without papers it cannot be told from the job's.
  shop_.TakeJournal();
  const Job next = shop_.Sell("c");
  shop_.Restart();
  shop_.SellAside(10000);
  shop_.Drain();
  ExpectLeft(next);
  // What comes later was not there to run, and the look is over.
  const Job last = shop_.Sell("d");
  shop_.Restart();
  shop_.Drain();
  EXPECT_EQ(StateOf(last), State::kConfirmed);
}

// The document is that of the job at work, whether the device tells its paper or not.
TEST_F(WaitedJobsTest, BehindAKillTheQueueGoesOn) {
  for (const bool has_journal : {true, false}) {
    if (!has_journal) shop_.TakeJournal();
    const std::string name = has_journal ? "j" : "n";
    const Job first = shop_.Sell(name + "1");
    const Job second = shop_.Sell(name + "2");
    const int64_t before = shop_.documents();
    shop_.KillAt(Step::kBehindLine, 2);
    shop_.DrainWithRestarts();
    EXPECT_EQ(StateOf(first), has_journal ? State::kConfirmed : State::kNeedsOperator);
    EXPECT_EQ(StateOf(second), State::kConfirmed);
    EXPECT_EQ(shop_.documents(), before + 2);
  }
}

TEST_F(WaitedJobsTest, BehindACopyWithAJobAtWorkToo) {
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.KillAt(Step::kBeforeFirstLine);
  EXPECT_THROW(shop_.Drain(), Killed);
  KeepLog();
  shop_.Drain();
  EXPECT_EQ(StateOf(second), State::kConfirmed);
  PutBackLog();
  shop_.Drain();
  EXPECT_EQ(StateOf(first), State::kNeedsOperator);
  ExpectLeft(second);
  EXPECT_EQ(shop_.documents(), 2);
}

// Ahead of the commit by which the device counts as seen, and behind it.
TEST_F(WaitedJobsTest, ALookThatIsCutOffIsTakenAgain) {
  for (const Step step : {Step::kBeforeOutcome, Step::kBehindOutcome}) {
    const std::string name = step == Step::kBeforeOutcome ? "a" : "b";
    const int64_t before = shop_.documents();
    const Job first = shop_.Sell(name + "1");
    const Job second = shop_.Sell(name + "2");
    shop_.KillAt(Step::kBeforeFirstLine);
    EXPECT_THROW(shop_.Drain(), Killed);
    KeepLog();
    shop_.Drain();
    PutBackLog();
    // The first outcome is that nobody knows yet.
    shop_.KillAt(step, 2);
    EXPECT_THROW(shop_.Drain(), Killed);
    shop_.Restart();
    shop_.Drain();
    EXPECT_EQ(StateOf(first), State::kNeedsOperator);
    ExpectLeft(second);
    EXPECT_EQ(shop_.documents(), before + 2);
  }
}

// It has no baseline; what it ends with is no look at the others.
TEST_F(WaitedJobsTest, AResetThatWasAtWorkIsNoLook) {
  shop_.Sell("a");
  shop_.Drain();
  const Job reset = shop_.Reset("r");
  const Job sold = shop_.Sell("b");
  shop_.KillAt(Step::kBeforeOutcome);
  EXPECT_THROW(shop_.Drain(), Killed);
  KeepLog();
  shop_.Drain();
  EXPECT_EQ(StateOf(sold), State::kConfirmed);
  PutBackLog();
  shop_.KillAt(Step::kBehindOutcome, 2);
  EXPECT_THROW(shop_.Drain(), Killed);
  EXPECT_EQ(StateOf(reset), State::kConfirmed);
  shop_.Restart();
  shop_.Drain();
  ExpectLeft(sold);
  EXPECT_EQ(shop_.WithMark(sold.mark), 1);
}

// The queue goes on behind one kill, and behind the next one.
TEST_F(WaitedJobsTest, TwoKillsKeepNoneWaiting) {
  shop_.TakeJournal();
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.KillAt(Step::kBehindLine, 2);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  shop_.KillAt(Step::kBehindOutcome, 2);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  shop_.Drain();
  EXPECT_EQ(StateOf(first), State::kNeedsOperator);
  EXPECT_EQ(StateOf(second), State::kConfirmed);
}

// What it will be is told when it is closed; and an operator may give it up.
TEST_F(WaitedJobsTest, ADocumentThatIsOpenIsNoAnswer) {
  shop_.Sell("a");
  shop_.Drain();
  const Job job = shop_.Sell("b");
  shop_.Restart();
  shop_.SellAside(10000);
  shop_.device->device().BeginFiscalReceipt(true);
  shop_.device->device().PrintRecItem("CAFFE", 10000, 0, 1, 0, "");
  shop_.Drain();
  EXPECT_EQ(StateOf(job), State::kQueued);
  shop_.now += 3600'000;
  const Job reset = shop_.Reset("r");
  shop_.Drain();
  EXPECT_EQ(StateOf(reset), State::kConfirmed);
  EXPECT_EQ(StateOf(job), State::kExpired);
}

TEST_F(WaitedJobsTest, AResetLetsNoneExpireAheadOfTheLook) {
  shop_.Sell("a");
  shop_.Drain();
  const Job sold = shop_.Sell("b");
  KeepLog();
  shop_.Drain();
  shop_.now += 3600'000;
  PutBackLog();
  shop_.device->device().BeginFiscalReceipt(true);
  shop_.device->device().PrintRecItem("CAFFE", 10000, 0, 1, 0, "");
  const Job reset = shop_.Reset("r");
  shop_.Drain();
  EXPECT_EQ(StateOf(reset), State::kConfirmed);
  ExpectLeft(sold);
}

// It may tell in a moment what it does not tell now; and one that never does keeps none waiting.
TEST_F(WaitedJobsTest, ADeviceThatDoesNotTellAPaperIsAskedAgain) {
  class Slow : public RegisterDevice {
   public:
    using RegisterDevice::RegisterDevice;
    Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                   std::vector<std::string>* lines) override {
      return --left >= 0 ? Told::kNoAnswer : RegisterDevice::FindPaper(name, kind, lines);
    }
    int left = 0;
  };
  for (const int times : {3, 1000}) {
    const Job job = shop_.Sell(std::to_string(times));
    shop_.End();
    shop_.Start();
    shop_.SellAside(10000);
    const DeviceState state = *shop_.device->Ask();
    shop_.worker.reset();
    shop_.device.reset();
    RegisterSettings settings;
    settings.file = shop_.register_file();
    Slow device(std::move(settings));
    device.left = times;
    WaitedJobs waited(*shop_.log, device, DoorShop::judge());
    int asked = 1;
    while (!waited.Settle(state)) ++asked;
    EXPECT_FALSE(waited.any());
    EXPECT_EQ(asked, times == 3 ? 4 : 20);
    EXPECT_EQ(StateOf(job), times == 3 ? State::kQueued : State::kNeedsOperator);
    if (times == 3) Cancel(job);
  }
}

}  // namespace
}  // namespace lorimat::door
