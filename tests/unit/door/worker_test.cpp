#include "door/job/worker.h"

#include <gmock/gmock.h>

#include "door_shop.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::door {
namespace {

using testing::ElementsAre;
using State = JobState;

class WorkerTest : public testing::Test {
 protected:
  // Of the states that a job has been in.
  std::vector<State> Way(int64_t id) {
    std::vector<State> way;
    for (const JobStep& step : shop_.Get(id).history) way.push_back(step.state);
    return way;
  }
  Why LastWhy(int64_t id) { return shop_.Get(id).history.back().why; }
  void Strike(const char* name, ClientOperation operation, FaultWhen when = FaultWhen::kNext) {
    shop_.device->device().AddFault({.name = name, .operation = operation, .when = when});
  }

  DoorShop shop_;
};

TEST_F(WorkerTest, ASaleIsConfirmedWithItsDocument) {
  const Job job = shop_.Sell("k");
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  const Job done = shop_.Get(job.id);
  EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kRunning, State::kConfirmed));
  ASSERT_TRUE(done.document);
  EXPECT_EQ(done.document->closure, 1);
  EXPECT_EQ(done.document->number, 1);
  EXPECT_EQ(done.document->total, 12000);
  EXPECT_EQ(done.document->serial, "99LRM0000001VR");
  EXPECT_THAT(done.document->time, testing::StartsWith("2026-11-22T10:00:00"));
  ASSERT_EQ(done.answers.size(), 2u);
  EXPECT_EQ(shop_.documents(), 1);
  EXPECT_EQ(shop_.WithMark(done.mark), 1);
}

TEST_F(WorkerTest, TheBaselineIsOnTheDiskAheadOfTheFirstLine) {
  const Job job = shop_.Sell("k");
  shop_.KillAt(Step::kBeforeFirstLine);
  EXPECT_THROW(shop_.Drain(), Killed);
  EXPECT_THAT(shop_.sent, ElementsAre("#74"));
  shop_.Restart();
  const Job begun = shop_.Get(job.id);
  EXPECT_EQ(begun.state, State::kRunning);
  ASSERT_TRUE(begun.baseline);
  EXPECT_EQ(begun.baseline->document, 0);
}

TEST_F(WorkerTest, EachJobBeginsWithAClearedMemory) {
  // Behind a document that a refused check has ended the translator opens none by itself.
  const Job failed = shop_.Submit("a", {"VEND REP=1, PRE=1.20", "CHKSUB IMP=9.99", "CHIU"});
  const Job next = shop_.Sell("b");
  shop_.Drain();
  EXPECT_EQ(shop_.Get(failed.id).state, State::kRejected);
  EXPECT_EQ(shop_.Get(next.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WorkerTest, TheKeyIsTurnedBackForAJob) {
  const Job key = shop_.Submit("a", {"CHIAVE POS=4"});
  const Job sale = shop_.Sell("b");
  shop_.Drain();
  EXPECT_EQ(shop_.Get(key.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(sale.id).state, State::kConfirmed);
}

TEST_F(WorkerTest, ARefusedLineEndsTheJobAndVoidsWhatIsOpen) {
  const Job job = shop_.Submit("k", {"VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1", "CHIU"});
  shop_.Drain();
  const Job done = shop_.Get(job.id);
  EXPECT_EQ(done.state, State::kRejected);
  EXPECT_EQ(LastWhy(job.id), Why::kLineFailed);
  ASSERT_EQ(done.answers.size(), 2u);
  EXPECT_EQ(done.answers[1].code, 1241);
  EXPECT_THAT(done.answers[1].explanation,
              testing::StartsWith("There is no department 99: they are 1 to 40. class 4: "));
  EXPECT_FALSE(done.document);
  EXPECT_EQ(shop_.documents(), 0);
  EXPECT_FALSE(shop_.device->Ask()->is_open);
  EXPECT_THAT(shop_.sent, ElementsAre("#74", "VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1", "#74"));
}

// A code has several causes: what is told is why the device refused this time, in UTF-8.
TEST_F(WorkerTest, TheReasonOfTheDeviceIsTold) {
  const Job sale = shop_.Sell("s");
  const std::vector<std::string> refund = {"NOTACRED DOC=00010001, DATA=221126",
                                           "VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"};
  shop_.Submit("a", refund);
  const Job twice = shop_.Submit("b", refund);
  const Job article = shop_.Submit("c", {"VEND ART='CAFF\xC8'", "CHIU"});
  shop_.Drain();
  const auto told = [this](const Job& job) { return shop_.Get(job.id).answers.back().explanation; };
  EXPECT_EQ(told(sale), "");
  EXPECT_THAT(told(twice), testing::StartsWith("Receipt 0001-0001 was paid back by a credit note "
                                               "already. class "));
  EXPECT_THAT(told(article), testing::StartsWith("There is no article 'CAFF\xC3\x88'. class 2: "));
}

TEST_F(WorkerTest, AJobThatLeavesSomethingOpenIsRejected) {
  const Job fiscal = shop_.Submit("a", {"VEND REP=1, PRE=1.20"});
  const Job partly = shop_.Submit("b", {"VEND REP=1, PRE=1.20", "CHIU IMP=1.00"});
  const Job plain = shop_.Submit("c", {"NOFIS INIZIO", "NOFIS MSG='CIAO'"});
  shop_.Drain();
  for (const Job& job : {fiscal, partly, plain}) {
    EXPECT_EQ(shop_.Get(job.id).state, State::kRejected);
    EXPECT_EQ(LastWhy(job.id), Why::kLeftOpen);
  }
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, ASaleInTheBooksIsConfirmedWhateverFailsBehindIt) {
  const Job job =
      shop_.Submit("k", {"VEND REP=1, PRE=1.20", "CHIU", "SCONTO IMP=0.10", "ALLEG MSG='A'"});
  shop_.Drain();
  const Job done = shop_.Get(job.id);
  EXPECT_EQ(done.state, State::kConfirmed);
  EXPECT_EQ(LastWhy(job.id), Why::kLineFailed);
  EXPECT_TRUE(done.document);
  EXPECT_EQ(done.answers.back().line, 3);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WorkerTest, AJobThatVoidsItselfIsRejected) {
  const Job job = shop_.Submit("k", {"VEND REP=1, PRE=1.20", "RESPRN"});
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kRejected);
  EXPECT_EQ(LastWhy(job.id), Why::kNothingRegistered);
}

TEST_F(WorkerTest, ALostAnswerOfAPaymentIsFoundByAsking) {
  const Job job = shop_.Sell("k");
  Strike("lost-answer", ClientOperation::kPrintRecTotalEx);
  shop_.Drain();
  EXPECT_THAT(Way(job.id),
              ElementsAre(State::kQueued, State::kRunning, State::kUnknown, State::kConfirmed));
  EXPECT_EQ(LastWhy(job.id), Why::kFoundDone);
  ASSERT_TRUE(shop_.Get(job.id).document);
  EXPECT_EQ(shop_.Get(job.id).document->number, 1);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WorkerTest, APaymentThatGotLostIsMadeOnce) {
  const Job job = shop_.Sell("k");
  Strike("no-answer", ClientOperation::kPrintRecTotalEx);
  shop_.Drain();
  EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kRunning, State::kUnknown,
                                       State::kQueued, State::kRunning, State::kConfirmed));
  EXPECT_EQ(shop_.documents(), 1);
  EXPECT_EQ(shop_.Get(job.id).attempts, 2);
}

// In a series a job costs one commit beside that of its acceptance.
TEST_F(WorkerTest, TheEndOfAJobAndTheBeginningOfTheNextOneAreOneCommit) {
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.KillAt(Step::kBehindOutcome);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  EXPECT_EQ(shop_.Get(first.id).state, State::kConfirmed);
  const Job begun = shop_.Get(second.id);
  EXPECT_EQ(begun.state, State::kRunning);
  ASSERT_TRUE(begun.baseline);
  EXPECT_EQ(begun.baseline->document, 1);
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_EQ(shop_.Get(second.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.documents(), 2);
}

TEST_F(WorkerTest, WhatCannotBeginLeavesTheEndOfTheOneBeforeIt) {
  const Job first = shop_.Sell("a");
  const Job cancelled = shop_.Sell("b");
  const Job late = shop_.Sell("c");
  int baselines = 0;
  shop_.at_step = [&](Step step) {
    if (step != Step::kBeforeBaseline) return;
    ++baselines;
    if (baselines == 2) shop_.log->Move(cancelled.id, State::kCancelled, Why::kCancelled);
    if (baselines == 3) shop_.now += 600000;
  };
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_EQ(shop_.Get(first.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(first.id).attempts, 1);
  EXPECT_EQ(shop_.Get(cancelled.id).state, State::kCancelled);
  EXPECT_EQ(shop_.Get(late.id).state, State::kExpired);
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WorkerTest, NoneBeginsBehindTheOneAtWorkWhenItIsToStop) {
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.worker->BeginNoMore();
  EXPECT_EQ(shop_.worker->Work(), Worker::Did::kWork);
  EXPECT_FALSE(shop_.worker->has_begun());
  EXPECT_EQ(shop_.Get(first.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(second.id).state, State::kQueued);
}

TEST_F(WorkerTest, WhatIsNeverAnsweredIsTriedThreeTimes) {
  const Job job = shop_.Sell("k");
  Strike("no-answer", ClientOperation::kPrintRecTotalEx, FaultWhen::kEvery);
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kRejected);
  EXPECT_EQ(LastWhy(job.id), Why::kTriedOften);
  EXPECT_EQ(shop_.Get(job.id).attempts, 3);
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, WithoutItsMarkADocumentIsNotPaid) {
  const Job job = shop_.Sell("k");
  shop_.device->device().AddFault({.name = "code",
                                   .code = RTF_EFPTR_REC_EMPTY,
                                   .operation = ClientOperation::kPrintRecMessage});
  shop_.Drain();
  const Job done = shop_.Get(job.id);
  EXPECT_EQ(done.state, State::kRejected);
  EXPECT_EQ(LastWhy(job.id), Why::kLineFailed);
  ASSERT_EQ(done.answers.size(), 2u);
  EXPECT_EQ(done.answers[1].line, 2);
  EXPECT_EQ(done.answers[1].code, 1024 | RTF_EFPTR_REC_EMPTY);
  EXPECT_THAT(done.answers[1].explanation, testing::StartsWith("A planned fault struck. class 4"));
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, WhatIsNotDoneIsNotTriedBehindItsTime) {
  const Job job = shop_.Sell("k");
  shop_.KillAt(Step::kBeforeFirstLine);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.now += 600000;
  shop_.Restart();
  shop_.Drain();
  EXPECT_THAT(Way(job.id),
              ElementsAre(State::kQueued, State::kRunning, State::kUnknown, State::kExpired));
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, AVoidThatGotLostIsMadeAheadOfTheNextTry) {
  const Job job = shop_.Sell("k");
  Strike("no-answer", ClientOperation::kPrintRecTotalEx);
  // The first reset is the one ahead of the job.
  shop_.device->device().AddFault({.name = "no-answer",
                                   .operation = ClientOperation::kResetPrn,
                                   .when = FaultWhen::kNth,
                                   .count = 2});
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kRunning, State::kUnknown,
                                       State::kQueued, State::kRunning, State::kConfirmed));
  EXPECT_EQ(shop_.documents(), 1);
}

TEST_F(WorkerTest, WhatWaitsBeyondItsTimeNeverBegins) {
  const Job job = shop_.Sell("k");
  shop_.now += 600000;
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kExpired);
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, WhatWaitsBehindAnUnknownJobExpiresToo) {
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.KillAt(Step::kBehindLine, 2);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  shop_.device->device().AddFault({.name = "off-line", .when = FaultWhen::kEvery});
  shop_.now += 600000;
  EXPECT_EQ(shop_.Drain(), Worker::Did::kBlocked);
  EXPECT_EQ(shop_.Get(first.id).state, State::kUnknown);
  EXPECT_EQ(shop_.Get(second.id).state, State::kExpired);
}

TEST_F(WorkerTest, WhatExpiresWhileTheDeviceIsMadeReadyNeverBegins) {
  const Job job = shop_.Sell("k");
  shop_.at_step = [this](Step step) {
    if (step == Step::kBeforeReset) shop_.now += 600000;
  };
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kExpired));
  EXPECT_EQ(shop_.documents(), 0);
}

TEST_F(WorkerTest, AnotherDocumentInTheJobsPlaceIsForAnOperator) {
  const Job job = shop_.Sell("k");
  shop_.KillAt(Step::kBeforeFirstLine);
  EXPECT_THROW(shop_.Drain(), Killed);
  // The same amount, sold at the register by somebody else.
  shop_.SellAside(12000);
  shop_.Restart();
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kNeedsOperator);
  EXPECT_EQ(LastWhy(job.id), Why::kOtherDocument);
  EXPECT_EQ(shop_.documents(), 1);
  // Others go on.
  const Job next = shop_.Sell("n");
  shop_.Drain();
  EXPECT_EQ(shop_.Get(next.id).state, State::kConfirmed);
}

// At the device's keyboard, as soon as the job has nothing open there any more.
TEST_F(WorkerTest, ADocumentBehindAJobThatWasGivenUpIsNotItsOwn) {
  const std::vector<std::vector<std::string>> bodies = {
      {"VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1", "CHIU"},
      {"VEND REP=1, PRE=1.20", "CHIU IMP=1.00"},
      {"VEND REP=1, PRE=1.20", "CHIU IMP=1.00", "CHKSUB IMP=9.99"},
      {"VEND REP=1, PRE=1.20", "RESPRN"},
      {"VEND REP=1, PRE=1.20", "CHIU IMP=1.00", "RESPRN"}};
  int64_t sold = 0;
  for (const bool has_journal : {true, false}) {
    if (!has_journal) shop_.TakeJournal();
    for (const std::vector<std::string>& lines : bodies) {
      const Job job = shop_.Submit("k" + std::to_string(++sold), lines);
      bool has_run = false;
      shop_.at_step = [&](Step step) {
        has_run = has_run || step == Step::kBehindLine;
        const bool is_free = !shop_.device->Ask()->is_open;
        if (has_run && shop_.documents() < sold &&
            (step == Step::kBehindVoid || step == Step::kBehindLine) && is_free) {
          shop_.SellAside(990000);
        }
      };
      shop_.Drain();
      ASSERT_EQ(shop_.documents(), sold);
      EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kRunning, State::kUnknown,
                                           State::kNeedsOperator))
          << lines.back();
      EXPECT_EQ(LastWhy(job.id), Why::kOtherDocument);
      EXPECT_FALSE(shop_.Get(job.id).document);
    }
  }
}

TEST_F(WorkerTest, WithoutAJournalWhatWasAnsweredIsConfirmed) {
  shop_.TakeJournal();
  const Job sale = shop_.Sell("a");
  const Job failed = shop_.Submit("b", {"VEND REP=1, PRE=1.20", "CHIU", "SCONTO IMP=0.10"});
  const Job closing = shop_.Submit("c", {"AZZGIO"});
  shop_.Drain();
  for (const Job& job : {sale, failed, closing}) {
    EXPECT_EQ(shop_.Get(job.id).state, State::kConfirmed);
  }
  EXPECT_EQ(LastWhy(failed.id), Why::kLineFailed);
}

TEST_F(WorkerTest, ADocumentOfNoJobKeepsAllWaitingUntilAReset) {
  ASSERT_EQ(shop_.device->client().BeginFiscalReceipt(true), RTF_SUCCESS);
  const Job sale = shop_.Sell("k");
  EXPECT_EQ(shop_.Drain(), Worker::Did::kBlocked);
  EXPECT_EQ(shop_.worker->trouble(), DeviceTrouble::kDocumentOpen);
  EXPECT_EQ(shop_.Get(sale.id).state, State::kQueued);
  EXPECT_TRUE(shop_.sent.empty());
  const int64_t id = shop_.Reset("r").id;
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_EQ(shop_.Get(id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(sale.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.worker->trouble(), DeviceTrouble::kNone);
}

TEST_F(WorkerTest, NothingIsSentToADeviceThatDoesNotAnswer) {
  const Job job = shop_.Sell("k");
  shop_.device->device().AddFault({.name = "off-line", .when = FaultWhen::kEvery});
  EXPECT_EQ(shop_.Drain(), Worker::Did::kBlocked);
  EXPECT_EQ(shop_.worker->trouble(), DeviceTrouble::kAway);
  EXPECT_EQ(shop_.Get(job.id).state, State::kQueued);
  shop_.device->device().ClearFaults();
  EXPECT_EQ(shop_.Drain(), Worker::Did::kNothing);
  EXPECT_EQ(shop_.Get(job.id).state, State::kConfirmed);
}

TEST_F(WorkerTest, AnUnknownJobKeepsTheDeviceForItself) {
  const Job first = shop_.Sell("a");
  const Job second = shop_.Sell("b");
  shop_.KillAt(Step::kBehindLine, 2);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  shop_.device->device().AddFault({.name = "off-line", .when = FaultWhen::kEvery});
  EXPECT_EQ(shop_.Drain(), Worker::Did::kBlocked);
  EXPECT_EQ(shop_.Get(first.id).state, State::kUnknown);
  EXPECT_EQ(shop_.Get(second.id).state, State::kQueued);
  shop_.device->device().ClearFaults();
  shop_.Drain();
  EXPECT_EQ(shop_.Get(first.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(first.id).attempts, 1);
  EXPECT_EQ(shop_.Get(second.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.documents(), 2);
}

TEST_F(WorkerTest, AReportIsNotPrintedTwiceByGuess) {
  const Job job = shop_.Submit("k", {"REPORT"});
  shop_.KillAt(Step::kBehindLine);
  EXPECT_THROW(shop_.Drain(), Killed);
  shop_.Restart();
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kNeedsOperator);
  EXPECT_EQ(LastWhy(job.id), Why::kNotNumbered);
}

TEST_F(WorkerTest, WhatWasPrintedAheadOfAFailureIsForAnOperator) {
  const Job printed = shop_.Submit("a", {"REPORT", "PREP REP=9999, DES='A'"});
  const Job nothing = shop_.Submit("b", {"PREP REP=9999, DES='A'", "REPORT"});
  shop_.Drain();
  EXPECT_THAT(Way(printed.id),
              ElementsAre(State::kQueued, State::kRunning, State::kUnknown, State::kNeedsOperator));
  EXPECT_EQ(LastWhy(printed.id), Why::kNotNumbered);
  ASSERT_EQ(shop_.Get(printed.id).answers.size(), 2u);
  EXPECT_NE(shop_.Get(printed.id).answers[1].code, 0);
  EXPECT_EQ(shop_.Get(nothing.id).state, State::kRejected);
}

TEST_F(WorkerTest, WhatWasPrintedAheadOfATextThatIsLeftOpenIsForAnOperator) {
  const Job printed = shop_.Submit("a", {"REPORT", "NOFIS INIZIO"});
  const Job two_texts =
      shop_.Submit("b", {"NOFIS INIZIO", "NOFIS MSG='A'", "NOFIS FINE", "NOFIS INIZIO"});
  const Job failed = shop_.Submit("c", {"NOFIS INIZIO", "NOFIS MSG='A'", "REPORT"});
  shop_.Drain();
  for (const Job& job : {printed, two_texts}) {
    EXPECT_THAT(Way(job.id), ElementsAre(State::kQueued, State::kRunning, State::kUnknown,
                                         State::kNeedsOperator));
  }
  // Of a text that was not ended nothing stays.
  EXPECT_EQ(shop_.Get(failed.id).state, State::kRejected);
}

TEST_F(WorkerTest, AClosingIsMadeOnce) {
  shop_.Sell("s");
  shop_.Drain();
  const Job job = shop_.Submit("k", {"AZZGIO"});
  Strike("lost-answer", ClientOperation::kPrintZReportEx);
  shop_.Drain();
  const Job done = shop_.Get(job.id);
  EXPECT_EQ(done.state, State::kConfirmed);
  ASSERT_TRUE(done.document);
  EXPECT_EQ(done.document->closure, 1);
  EXPECT_EQ(done.document->total, 12000);
  EXPECT_EQ(shop_.device->Ask()->numbers.closure, 1);
}

TEST_F(WorkerTest, InvoicesCreditNotesAndVoidsAreDocuments) {
  const Job sale = shop_.Sell("s");
  const Job invoice = shop_.Submit(
      "i", {"FATTURA TIPO=2, RIGA1='ROSSI'", "VEND REP=1, PRE=5.00", "CHIU TEND=CONTANTI"});
  const Job credit = shop_.Submit(
      "c", {"NOTACRED DOC=00010001, DATA=221126", "VEND REP=1, PRE=0.20", "CHIU TEND=CONTANTI"});
  shop_.Drain();
  EXPECT_EQ(shop_.Get(sale.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(invoice.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(invoice.id).document->number, 1);
  EXPECT_EQ(shop_.Get(credit.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(credit.id).document->number, 2);
  EXPECT_EQ(shop_.Get(sale.id).document->kind, DocumentKind::kSale);
  EXPECT_EQ(shop_.Get(invoice.id).document->kind, DocumentKind::kInvoice);
  EXPECT_EQ(shop_.Get(credit.id).document->kind, DocumentKind::kRefund);
  EXPECT_EQ(shop_.documents(), 3);
}

// A kill at each step that a sale has: the register has it once, and the log knows it.
TEST_F(WorkerTest, AKillAtAnyStepLosesAndDoublesNothing) {
  int64_t sold = 0;
  int kills = 0;
  for (int step = 0; step <= static_cast<int>(Step::kLast); ++step) {
    for (int times = 1; times <= 4; ++times) {
      const Job job = shop_.Submit("k" + std::to_string(++sold),
                                   {"VEND REP=1, PRE=1.20", "SCONTO IMP=0.20", "CHIU"});
      const size_t sent_before = shop_.sent.size();
      shop_.KillAt(static_cast<Step>(step), times);
      const int64_t attempts = shop_.Get(job.id).attempts;
      EXPECT_EQ(shop_.DrainWithRestarts(), Worker::Did::kNothing);
      if (shop_.Get(job.id).history.size() > 3 || shop_.sent.size() > sent_before + 4) ++kills;
      EXPECT_EQ(attempts, 0);
      EXPECT_EQ(shop_.Get(job.id).state, State::kConfirmed) << StepName(static_cast<Step>(step));
      EXPECT_EQ(shop_.WithMark(job.mark), 1);
      EXPECT_EQ(shop_.documents(), sold);
    }
  }
  // Those that a job without trouble has, and the steps that it has several times.
  EXPECT_GE(kills, 8);
}

TEST(UnclearCode, IsWhatLeavesOpenWhatTheDeviceDid) {
  for (const long code : {512, 512 + 112, 512 + 111, 512 + 107, 1536, 1536 + 112}) {
    EXPECT_TRUE(IsUnclear(code)) << code;
  }
  for (const long code : {0, 257, 269, 1231, 1241, 618, 621, 9, 8193}) {
    EXPECT_FALSE(IsUnclear(code)) << code;
  }
}

}  // namespace
}  // namespace lorimat::door
