// A transfer of articles: each row is in the file before it is answered, the disk is waited for at
// the end, and a disk that does not take them is told of.
#include <fmt/format.h>

#include "unit/register/file_calls.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class ArticleTransferTest : public StoredRegisterTest {
 protected:
  static std::string Code(int number) { return fmt::format("T{:06}", number); }
  int Open() { return device->UploadTable(1, 0, ""); }
  int Send(int number) {
    return device->UploadTable(1, 1, fmt::format("'{}','RIGA',4,1.50", Code(number)).c_str());
  }
  int Close() { return device->UploadTable(1, 2, ""); }

  // How many of the rows that were sent, from the first on, a register has; it has no others.
  static int RowsOf(const VirtualRegister& shop) {
    const std::vector<Article>& articles = shop.tables().settings().articles;
    const size_t before = TestSettings().articles.size();
    int rows = 0;
    for (size_t at = before; at < articles.size(); ++at) EXPECT_EQ(articles[at].code, Code(rows++));
    return rows;
  }
  int RowsOfCopy() {
    CopyAsCut("shop.register", "cut");
    return RowsOf(VirtualRegister(FileSettings("cut")));
  }
  FailureCause Cause() const { return device->failure().cause; }
};

TEST_F(ArticleTransferTest, EachAnsweredRowOutlastsTheProcess) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  for (int row = 0; row < 20; ++row) {
    ASSERT_EQ(Send(row), RTF_SUCCESS);
    EXPECT_EQ(RowsOfCopy(), row + 1);
  }
}

TEST_F(ArticleTransferTest, TheDiskIsWaitedForOnceAtTheEnd) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  for (int row = 0; row < 20; ++row) ASSERT_EQ(Send(row), RTF_SUCCESS);
  ASSERT_FALSE(disk.failed());
  EXPECT_EQ(Close(), RTF_E_FAILURE);
  EXPECT_TRUE(disk.failed());
  EXPECT_EQ(Cause(), FailureCause::kCutOff);
}

TEST_F(ArticleTransferTest, AClosedOneOutlastsAPowerCut) {
  FailingDisk::Remember();
  Restart();
  ASSERT_EQ(Open(), RTF_SUCCESS);
  for (int row = 0; row < 20; ++row) ASSERT_EQ(Send(row), RTF_SUCCESS);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kPower, 1, true);
  EXPECT_EQ(device->SetHeaderLine(1, "ALTRO", false), RTF_E_FAILURE);
  device.reset();
  disk.Heal();
  EXPECT_EQ(RowsOf(VirtualRegister(FileSettings())), 20);
}

// The log is taken over into the file on the way.
TEST_F(ArticleTransferTest, APowerCutLeavesTheFirstRows) {
  constexpr int kRows = 1500;
  int cut_short = 0;
  for (int place = 1; place < 9000; place = place * 5 / 3 + 1) {
    SCOPED_TRACE(place);
    const std::string name = fmt::format("shop{}.register", place);
    int answered = 0;
    {
      FailingDisk::Remember();
      VirtualRegister shop(FileSettings(name));
      ASSERT_EQ(shop.UploadTable(1, 0, ""), RTF_SUCCESS);
      disk.FailAt(FailingDisk::Fault::kPower, place, true);
      while (answered < kRows) {
        const std::string row = fmt::format("'{}','RIGA',4,1.50", Code(answered));
        if (shop.UploadTable(1, 1, row.c_str()) != RTF_SUCCESS) break;
        ++answered;
      }
    }
    const bool failed = disk.failed();
    disk.Heal();
    const int left = RowsOf(VirtualRegister(FileSettings(name)));
    EXPECT_LE(left, answered);
    if (failed && left < answered) ++cut_short;
    const JournalCheck check = RegisterFile(Path(name)).VerifyJournal(nullptr);
    EXPECT_TRUE(check.good());
  }
  EXPECT_GT(cut_short, 5);
}

TEST_F(ArticleTransferTest, MoneyIsWaitedForWhileOneIsOpen) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  ASSERT_EQ(Send(0), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  EXPECT_TRUE(disk.failed());
  disk.Heal();
  // The rows were in the part of the log that the disk did not take.
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  EXPECT_EQ(Cause(), FailureCause::kNotOnDisk);
  EXPECT_EQ(Pay(), RTF_SUCCESS);
  EXPECT_EQ(RowsOfCopy(), 1);
}

TEST_F(ArticleTransferTest, OtherProgrammingIsWaitedForWhileOneIsOpen) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  EXPECT_EQ(device->SetHeaderLine(1, "ALTRO", false), RTF_E_FAILURE);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  EXPECT_EQ(device->EraseTable(1), RTF_E_FAILURE);
}

// Hosts hardly look at the answer to the closing.
TEST_F(ArticleTransferTest, AnEndThatIsNotOnTheDiskFailsWhatIsStoredNext) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  ASSERT_EQ(Send(0), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  ASSERT_EQ(Close(), RTF_E_FAILURE);
  disk.Heal();
  EXPECT_EQ(Begin(), RTF_E_FAILURE);
  EXPECT_EQ(Cause(), FailureCause::kNotOnDisk);
  EXPECT_EQ(
      device->last_failure(),
      Path("shop.register") +
          ": the disk did not take what was transferred last, and a cut of the power may take "
          "it away: transfer it again");
  EXPECT_EQ(device->printer_state(), RTF_FPTR_PS_MONITOR);
  // Once: the log has been taken over, so that what follows rests on nothing that the disk lacks.
  EXPECT_EQ(Bytes("shop.register-wal"), "");
  EXPECT_EQ(Begin(), RTF_SUCCESS);
  EXPECT_EQ(device->ResetPrn(), RTF_SUCCESS);
  // The transfer is still open, and can be made again.
  ASSERT_EQ(Send(0), RTF_SUCCESS);
  ASSERT_EQ(Send(1), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
  Restart();
  EXPECT_EQ(RowsOf(*device), 2);
}

TEST_F(ArticleTransferTest, NothingIsStoredWhileTheDiskDoesNotTakeThem) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  ASSERT_EQ(Send(0), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, true);
  ASSERT_EQ(Close(), RTF_E_FAILURE);
  for (int again = 0; again < 3; ++again) {
    EXPECT_EQ(Begin(), RTF_E_FAILURE);
    EXPECT_EQ(Cause(), FailureCause::kNotOnDisk);
    EXPECT_EQ(Close(), RTF_E_FAILURE);
  }
  disk.Heal();
  EXPECT_EQ(Begin(), RTF_E_FAILURE);
  EXPECT_EQ(Begin(), RTF_SUCCESS);
}

// The system tells a failed sync once: the end would not hear of it.
TEST_F(ArticleTransferTest, ASyncThatFailsOnTheWayIsToldOf) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  int row = 0;
  while (!disk.failed() && row < 2000) ASSERT_EQ(Send(row++), RTF_SUCCESS);
  ASSERT_TRUE(disk.failed()) << "the log is never taken over";
  EXPECT_EQ(Close(), RTF_E_FAILURE);
  EXPECT_EQ(Cause(), FailureCause::kNotOnDisk);
  EXPECT_EQ(Send(row), RTF_E_FAILURE);
  EXPECT_EQ(Cause(), FailureCause::kNotOnDisk);
  EXPECT_EQ(Send(row++), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
  EXPECT_EQ(RowsOfCopy(), row);
}

// A row that finds no room costs a write, a cut of the log and a sync.
TEST_F(ArticleTransferTest, AFullDiskIsTriedAgainWhenThereIsMoreRoom) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  ASSERT_EQ(Send(0), RTF_SUCCESS);
  RoomLeft room(2);
  for (const long blocks : {2, 3}) {
    room.Set(blocks);
    disk.FailAt(FailingDisk::Fault::kFull, 1, true);
    EXPECT_EQ(Send(1), RTF_E_FAILURE);
    EXPECT_TRUE(disk.failed());
    for (int row = 1; row < 5; ++row) {
      disk.FailAt(FailingDisk::Fault::kFull, 1, true);
      EXPECT_EQ(Send(row), RTF_E_FAILURE);
      EXPECT_EQ(device->last_failure(), Path("shop.register") + ": the disk is full");
      EXPECT_FALSE(disk.failed());
    }
    // What is wrong with a row is told all the same.
    EXPECT_EQ(device->UploadTable(1, 1, "no row"), RTF_E_ILLEGAL);
  }
  disk.Heal();
  // The disk would take it now, and the file system has no more room than before.
  EXPECT_EQ(Send(1), RTF_E_FAILURE);
  room.Set(4);
  EXPECT_EQ(Send(1), RTF_SUCCESS);
  EXPECT_EQ(Send(2), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
  EXPECT_EQ(RowsOfCopy(), 3);
}

TEST_F(ArticleTransferTest, MoneyIsTriedHoweverFullTheDiskIs) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  const RoomLeft room(0);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(Send(0), RTF_E_FAILURE);
  disk.Heal();
  EXPECT_EQ(Begin(), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 10000), RTF_SUCCESS);
  EXPECT_EQ(Pay(), RTF_SUCCESS);
  // And what was stored shows that there is room.
  EXPECT_EQ(Send(0), RTF_SUCCESS);
}

TEST_F(ArticleTransferTest, AMegabyteThatIsLeftIsLittleRoom) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  RoomLeft room(256);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(Send(0), RTF_E_FAILURE);
  disk.Heal();
  EXPECT_EQ(Send(0), RTF_E_FAILURE);
  room.Set(257);
  EXPECT_EQ(Send(0), RTF_SUCCESS);
}

TEST_F(ArticleTransferTest, ALimitThatIsNotTheDisksIsTriedWithEachRow) {
  ASSERT_EQ(Open(), RTF_SUCCESS);
  const RoomLeft room(257);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(Send(0), RTF_E_FAILURE);
  disk.Heal();
  EXPECT_EQ(Send(0), RTF_SUCCESS);
}

TEST_F(ArticleTransferTest, AnEmptyOneWaitsForNothing) {
  disk.FailAt(FailingDisk::Fault::kSync, 1, true);
  EXPECT_EQ(Open(), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
  EXPECT_FALSE(disk.failed());
}

}  // namespace
}  // namespace lorimat
