// What makes a sale void as a whole, in one line.
#include <gmock/gmock.h>

#include "door/job/worker.h"
#include "door_shop.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {
namespace {

using testing::ElementsAre;
using State = JobState;

class WorkerVoidTest : public testing::Test {
 protected:
  std::vector<State> Way(int64_t id) {
    std::vector<State> way;
    for (const JobStep& step : shop_.Get(id).history) way.push_back(step.state);
    return way;
  }
  Why LastWhy(int64_t id) { return shop_.Get(id).history.back().why; }
  // The next void.
  void Strike(const char* name) {
    shop_.device->device().AddFault(
        {.name = name, .operation = ClientOperation::kBeginDocTelematicCancel});
  }

  DoorShop shop_;
};

// A void of a whole sale in one line has no place for a mark; but it can be done once.
TEST_F(WorkerVoidTest, ALostAnswerOfAVoidIsFoundByTheSaleThatItMakesVoid) {
  const std::vector<std::string> ways = {"DOCANNULLO DOC=00010001, DATA=221126, AUTO",
                                         "DOCANNULLO DOC=3, ZETA=1, DATA=221126, AUTO",
                                         "DOCANNULLO AUTO"};
  int64_t documents = 0;
  for (const std::string& line : ways) {
    shop_.Sell(line);
    shop_.Drain();
    ++documents;
    const Job job = shop_.Submit(line + " void", {line});
    Strike("lost-answer");
    shop_.Drain();
    const Job done = shop_.Get(job.id);
    EXPECT_THAT(Way(job.id),
                ElementsAre(State::kQueued, State::kRunning, State::kUnknown, State::kConfirmed))
        << line;
    EXPECT_EQ(LastWhy(job.id), Why::kFoundDone);
    ASSERT_TRUE(done.document);
    EXPECT_EQ(done.document->number, ++documents);
    EXPECT_EQ(done.document->total, 12000);
    EXPECT_EQ(shop_.documents(), documents);
  }
}

TEST_F(WorkerVoidTest, AVoidThatGotLostIsMadeOnceByAskingToo) {
  shop_.Sell("s");
  const Job job = shop_.Submit("v", {"DOCANNULLO DOC=00010001, DATA=221126, AUTO"});
  Strike("no-answer");
  shop_.Drain();
  EXPECT_EQ(shop_.Get(job.id).state, State::kConfirmed);
  EXPECT_EQ(shop_.Get(job.id).attempts, 2);
  EXPECT_EQ(shop_.documents(), 2);
}

// What somebody sells or makes void in its place is not the void of the job.
TEST_F(WorkerVoidTest, AnotherDocumentInThePlaceOfAVoidIsForAnOperator) {
  shop_.Sell("s");
  shop_.Sell("t");
  shop_.Drain();
  const auto put_aside = [&](const std::string& key, const std::function<void()>& aside) {
    const Job job = shop_.Submit(key, {"DOCANNULLO DOC=00010001, DATA=221126, AUTO"});
    shop_.KillAt(Step::kBeforeFirstLine);
    EXPECT_THROW(shop_.Drain(), Killed);
    aside();
    shop_.Restart();
    shop_.Drain();
    EXPECT_EQ(shop_.Get(job.id).state, State::kNeedsOperator);
    EXPECT_EQ(LastWhy(job.id), Why::kOtherDocument);
  };
  put_aside("a", [this] { shop_.SellAside(12000); });
  put_aside("b", [this] {
    EXPECT_EQ(shop_.device->device().BeginDocTelematicCancel(2, 1, "22112026", true, ""),
              RTF_SUCCESS);
  });
}

}  // namespace
}  // namespace lorimat::door
