// The files that a register writes: whole and waited for, or not there; and nobody else's file
// touched.
#include "register/report/report_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <set>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/as_nobody.h"
#include "unit/register/file_calls.h"
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class ReportFileTest : public ReportTest {
 protected:
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }
  std::string PartName(int number) const {
    return ".lorimat-" + std::to_string(getpid()) + "-" + std::to_string(number) + ".part";
  }
  // The n-th call of this name on the test's folder or a file in it fails; 0: none does. The calls
  // are noted, with whether the report's file stands by then.
  FileCalls::Watcher Failing(const std::string& call, int n) {
    calls_.clear();
    return [this, call, n, count = 0](const char* name, const std::string& file) mutable {
      if (file.rfind(folder_.string(), 0) != 0) return 0;
      const std::string what = std::string(name) +
                               (file == folder_.string() ? " folder" : " file") +
                               (std::filesystem::exists(folder_ / "report.txt") ? ", stands" : "");
      calls_.push_back(what);
      return name == call && ++count == n ? EIO : 0;
    };
  }

  std::vector<std::string> calls_;
};

TEST_F(ReportFileTest, AFileStandsWhenItAndItsNameAreOnTheDisk) {
  const FileCalls watched(Failing("", 0));
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_EQ(calls_, (std::vector<std::string>{"fsync file", "close file", "fsync folder, stands",
                                              "close folder, stands"}));
}

TEST_F(ReportFileTest, AFileThatCouldNotBeWaitedForIsNotThere) {
  WriteText("report.txt", "older");
  for (const char* call : {"fsync", "close"}) {
    const FileCalls failing(Failing(call, 1));
    EXPECT_EQ(WriteFile(Path("report.txt"), "newer"), RTF_E_FAILURE) << call;
    EXPECT_EQ(WriteFile(Path("report.txt"), "newer"), RTF_SUCCESS) << call;
    EXPECT_EQ(Names(), std::set<std::string>{"report.txt"});
    WriteText("report.txt", "older");
  }
  const FileCalls failing(Failing("fsync", 1));
  EXPECT_EQ(WriteFile(Path("report.txt"), "newer"), RTF_E_FAILURE);
  EXPECT_EQ(ReadText("report.txt"), "older");
}

TEST_F(ReportFileTest, ANameThatCouldNotBeWaitedForIsAFailure) {
  for (const char* call : {"fsync", "close"}) {
    const FileCalls failing(Failing(call, 2));
    EXPECT_EQ(WriteFile(Path("report.txt"), "newer"), RTF_E_FAILURE) << call;
    // Nothing half is left: it is the whole file, under its own name alone.
    EXPECT_EQ(Names(), std::set<std::string>{"report.txt"});
    EXPECT_EQ(ReadText("report.txt"), "newer");
  }
}

TEST_F(ReportFileTest, AnInterruptedWaitGoesOn) {
  int left = 3;
  const FileCalls interrupted([&left](const char* call, const std::string&) {
    return std::string(call) == "fsync" && left-- > 0 ? EINTR : 0;
  });
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_LE(left, 0);
}

// A folder may be written and not read: its names cannot be waited for by themselves, and all of
// its file system is.
TEST_F(ReportFileTest, AFolderThatMayNotBeReadIsWrittenInto) {
  ASSERT_EQ(chmod(folder_.c_str(), 0333), 0);
  int made = 0;
  int secret = 0;
  {
    const AsNobody nobody;
    made = WriteFile(Path("report.txt"), "text");
    const mode_t before = umask(0777);
    secret = WriteFile(Path("secret.txt"), "text");
    umask(before);
  }
  ASSERT_EQ(chmod(folder_.c_str(), 0777), 0);
  EXPECT_EQ(made, RTF_SUCCESS);
  EXPECT_EQ(ReadText("report.txt"), "text");
  // One that cannot be opened again cannot be waited for.
  EXPECT_EQ(secret, RTF_E_FAILURE);
}

TEST_F(ReportFileTest, AReportIsPrintedOnlyWhenItsFileStands) {
  Receipt(1, 10000);
  const std::string before = Snapshot();
  {
    const FileCalls failing(Failing("fsync", 1));
    EXPECT_EQ(device.PrintXReportEx(1, false, "txt", Path("report.txt").c_str(), 3), RTF_E_FAILURE);
  }
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(FileCount(), 0u);
  EXPECT_EQ(device.PrintXReportEx(1, false, "txt", Path("report.txt").c_str(), 3), RTF_SUCCESS);
}

TEST_F(ReportFileTest, AHostsOwnFilesStay) {
  WriteText("report.txt.part", "of the host");
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_EQ(WriteFile(Path("missing/report.txt"), "text"), RTF_E_FAILURE);
  EXPECT_EQ(ReadText("report.txt.part"), "of the host");
  EXPECT_EQ(ReadText("report.txt"), "text");
  EXPECT_EQ(FileCount(), 2u);
}

TEST_F(ReportFileTest, NamesThatAreTakenAreLeftAlone) {
  WriteText(PartName(0), "of somebody");
  std::filesystem::create_symlink("nowhere", folder_ / PartName(1));
  std::filesystem::create_directory(folder_ / PartName(2));
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_EQ(ReadText("report.txt"), "text");
  EXPECT_EQ(ReadText(PartName(0)), "of somebody");
  EXPECT_FALSE(HasFile("nowhere"));
  EXPECT_EQ(FileCount(), 4u);
}

// Once a file has its own name, the one that it was made under is free for another thread's.
TEST_F(ReportFileTest, ANameThatIsFreeAgainIsAnothers) {
  const FileCalls watched([this](const char*, const std::string&) {
    if (HasFile("report.txt")) std::ofstream(folder_ / PartName(0)) << "of another thread";
    return 0;
  });
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_EQ(ReadText(PartName(0)), "of another thread");
}

TEST_F(ReportFileTest, ANameOfAnyLengthThatTheSystemTakesIsWritten) {
  EXPECT_EQ(WriteFile(Path(std::string(255, 'n')), "text"), RTF_SUCCESS);
  EXPECT_EQ(WriteFile(Path(std::string(256, 'n')), "text"), RTF_E_FAILURE);
  EXPECT_EQ(Names(), std::set<std::string>{std::string(255, 'n')});
}

TEST_F(ReportFileTest, AHostWithoutStandardInputGetsItsReportToo) {
  const int input = dup(STDIN_FILENO);
  ASSERT_NE(input, -1);
  close(STDIN_FILENO);  // the file becomes number 0
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "the file is left open";
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_EQ(ReadText("report.txt"), "text");
}

// A host's file in memory, by its descriptor.
TEST_F(ReportFileTest, AFileWithoutANameIsWritten) {
  const int memory = memfd_create("report", MFD_CLOEXEC);
  ASSERT_GE(memory, 0);
  EXPECT_EQ(WriteFile("/proc/self/fd/" + std::to_string(memory), "lines\n"), RTF_SUCCESS);
  char text[8] = {};
  EXPECT_EQ(pread(memory, text, sizeof text, 0), 6);
  EXPECT_STREQ(text, "lines\n");
  close(memory);
}

TEST_F(ReportFileTest, TheModeIsThatOfANewFile) {
  const mode_t before = umask(027);
  EXPECT_EQ(WriteFile(Path("report.txt"), "text"), RTF_SUCCESS);
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat(Path("report.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(ReportFileTest, TheModeOfTheFileThatIsReplacedStays) {
  const std::string report = (folder_ / "report.txt").string();
  for (const mode_t mode : {0600u, 0640u, 0666u}) {
    std::ofstream(report) << "older";
    ASSERT_EQ(chmod(report.c_str(), mode), 0);
    ASSERT_EQ(WriteFile(report, "newer"), RTF_SUCCESS);
    struct stat status = {};
    ASSERT_EQ(stat(report.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, mode);
  }
}

TEST_F(ReportFileTest, ALinkThatSomebodyElsePlantedIsNotFollowed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root makes a link another's";
  constexpr uid_t kOther = 65534;
  const auto all = folder_ / "all";
  std::filesystem::create_directory(all);
  ASSERT_EQ(chmod(all.c_str(), 01777), 0);
  std::ofstream(folder_ / "mine") << "older";
  std::filesystem::create_symlink(folder_ / "mine", all / "link");
  ASSERT_EQ(lchown((all / "link").c_str(), kOther, kOther), 0);
  EXPECT_EQ(WriteFile((all / "link").string(), "newer"), RTF_E_FAILURE);
  // Where others may not write, the folder's owner has put it.
  ASSERT_EQ(chmod(all.c_str(), 01755), 0);
  EXPECT_EQ(WriteFile((all / "link").string(), "new"), RTF_SUCCESS);
  ASSERT_EQ(chmod(all.c_str(), 01777), 0);
  ASSERT_EQ(lchown((all / "link").c_str(), 0, 0), 0);
  EXPECT_EQ(WriteFile((all / "link").string(), "newer"), RTF_SUCCESS);
  std::ifstream mine(folder_ / "mine");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(mine), {}), "newer");
}

TEST_F(ReportFileTest, ALinkStaysAndItsFileIsWritten) {
  WriteText("target.txt", "older");
  std::filesystem::create_symlink("target.txt", folder_ / "link.txt");
  std::filesystem::create_symlink("new.txt", folder_ / "dangling.txt");
  EXPECT_EQ(WriteFile(Path("link.txt"), "newer"), RTF_SUCCESS);
  EXPECT_EQ(WriteFile(Path("dangling.txt"), "newer"), RTF_SUCCESS);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.txt"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "dangling.txt"));
  EXPECT_EQ(ReadText("target.txt"), "newer");
  EXPECT_EQ(ReadText("new.txt"), "newer");
  EXPECT_EQ(WriteFile("/dev/null", "text"), RTF_SUCCESS);
}

// --- What counts as sent

class SentTest : public ReportFileTest {
 protected:
  SentTest() {
    RegisterSettings settings = TestSettings();
    settings.outbox = folder_.string();
    shop = std::make_unique<VirtualRegister>(settings);
  }
  void LotteryReceipt() {
    ASSERT_EQ(shop->BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(shop->PrintRecItemEx(0, "", 20000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(shop->KeyCodeInput("", "", "", FunctionCode::kLotteryCode), RTF_SUCCESS);
    ASSERT_EQ(shop->KeyCodeInput("", "AB12CD34", "AB12CD34", FunctionCode::kConfirm), RTF_SUCCESS);
    ASSERT_EQ(shop->PrintRecTotalEx(0, "2", true), RTF_SUCCESS);
  }

  std::unique_ptr<VirtualRegister> shop;
};

TEST_F(SentTest, ASummaryWaitsUntilItsFileIsOnTheDisk) {
  ASSERT_EQ(shop->PrintZReport(), RTF_SUCCESS);
  for (const char* call : {"fsync", "close"}) {
    for (const int n : {1, 2}) {
      const FileCalls failing(Failing(call, n));
      EXPECT_EQ(shop->SendTelematicSummary(), RTF_E_FAILURE) << call << n;
      EXPECT_EQ(shop->store().pending_closures(), 1) << call << n;
    }
  }
  EXPECT_EQ(shop->SendTelematicSummary(), RTF_SUCCESS);
  EXPECT_EQ(shop->store().pending_closures(), 0);
  EXPECT_EQ(Names(), std::set<std::string>{"corrispettivi_0001.xml"});
}

TEST_F(SentTest, LotteryDocumentsWaitUntilTheirFileIsOnTheDisk) {
  LotteryReceipt();
  for (const int n : {1, 2}) {
    const FileCalls failing(Failing("fsync", n));
    EXPECT_EQ(shop->TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_E_FAILURE) << n;
    EXPECT_FALSE(shop->store().documents()[0].lottery_sent) << n;
  }
  EXPECT_EQ(shop->TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
  EXPECT_TRUE(shop->store().documents()[0].lottery_sent);
  EXPECT_EQ(Names(), std::set<std::string>{"lotteria_0001_0001.xml"});
}

}  // namespace
}  // namespace lorimat
