// The paper's files: drawn under a bar on a terminal, stopped by a signal at any place, and whole
// or what they were before.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "bar_signal.h"
#include "shop.h"

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

namespace fs = std::filesystem;

constexpr const char* kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";

// A shop with the roll of one receipt, and a folder for its papers.
class PaperStop : public testing::Test {
 protected:
  PaperStop() {
    fs::create_directory(papers_);
    EXPECT_EQ(shop_.Sell(kReceipt).exit_code, 0);
  }

  std::string Paper(const std::string& name) const { return papers_ + "/" + name; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(papers_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  void WriteOlder(const std::string& name) const {
    shop_.folder().Write("papers/" + name, "older");
  }
  ProgramRun Draw(const std::string& option, const std::string& file,
                  const ProgramSetting& setting = {}) const {
    return shop_.Run({"paper", option, file}, setting);
  }
  std::string Drawn(const std::string& option) const {
    const std::string file = shop_.folder().Path("whole");
    EXPECT_EQ(Draw(option, file).exit_code, 0);
    std::string content = ReadFile(file);
    fs::remove(file);
    return content;
  }

  Shop shop_;
  std::string papers_ = shop_.folder().Path("papers");
};

}  // namespace

TEST_F(PaperStop, APictureIsDrawnUnderABarWithItsLines) {
  const std::string text = shop_.Run({"paper"}).output;
  ASSERT_EQ(std::count(text.begin(), text.end(), '\n'), 20);
  for (const std::string option : {"--png", "--pdf"}) {
    const ProgramRun run = Draw(option, Paper("roll"),
                                {.environment = {{"NO_COLOR", "1"}}, .errors_to_terminal = true});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("\r[####................]  20%  4 of 20 lines")) << option;
    EXPECT_THAT(run.errors, EndsWith("\r\x1b[K[####################] 100%\r\x1b[K")) << option;
    EXPECT_THAT(Draw(option, Paper("roll")).errors, IsEmpty()) << option;
  }
}

TEST_F(PaperStop, ASignalStopsThePictureAtAnyPlaceAndTheOlderFileStays) {
  const struct {
    int signal;
    const char* name;
  } signals[] = {{SIGINT, "Ctrl-C"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};
  for (const std::string option : {"--png", "--pdf"}) {
    const std::string whole = Drawn(option);
    const int bars = BarsOf(Draw(option, Paper("x"), {.errors_to_terminal = true}));
    ASSERT_GE(bars, 10) << option;
    fs::remove(Paper("x"));
    for (int bar = 1; bar <= bars + 1; ++bar) {
      const auto& [signal, name] = signals[bar % 3];
      WriteOlder("roll");
      const ProgramRun run = Draw(option, Paper("roll"), WithSignalAtBar(signal, bar));
      if (bar > bars) {
        EXPECT_EQ(run.exit_code, 0) << option;
        EXPECT_TRUE(ReadFile(Paper("roll")) == whole) << option;
      } else {
        EXPECT_EQ(run.exit_code, 128 + signal) << option << bar;
        EXPECT_EQ(BarsOf(run), bar) << option;
        EXPECT_THAT(run.errors, EndsWith("\r\x1b[Klorimat: " + Paper("roll") +
                                         ": not written, stopped by " + name + "\n"))
            << option << bar;
        EXPECT_TRUE(ReadFile(Paper("roll")) == "older") << option << bar;
      }
      EXPECT_THAT(Names(), ElementsAre("roll")) << option << bar;
    }
  }
}

TEST_F(PaperStop, AKillAtAnyPlaceLeavesNothingHalfMade) {
  for (const std::string option : {"--png", "--pdf"}) {
    const int bars = BarsOf(Draw(option, Paper("x"), {.errors_to_terminal = true}));
    fs::remove(Paper("x"));
    for (int bar = 1; bar <= bars; ++bar) {
      for (const bool older : {true, false}) {
        if (older) WriteOlder("roll");
        const ProgramRun run = Draw(option, Paper("roll"), WithSignalAtBar(SIGKILL, bar));
        EXPECT_EQ(run.exit_code, -1) << option << bar;
        if (older) {
          EXPECT_THAT(Names(), ElementsAre("roll")) << option << bar;
          EXPECT_TRUE(ReadFile(Paper("roll")) == "older") << option << bar;
          fs::remove(Paper("roll"));
        } else {
          EXPECT_THAT(Names(), IsEmpty()) << option << bar;
        }
      }
    }
  }
}

// The second picture is not begun, and the text that was there first stays.
TEST_F(PaperStop, OneSignalStopsAllThePicturesAndNoText) {
  WriteOlder("roll.pdf");
  const ProgramRun run = shop_.Run({"paper", "--paper", Paper("roll.txt"), "--png",
                                    Paper("roll.png"), "--pdf", Paper("roll.pdf")},
                                   WithSignalAtBar(SIGINT, 2));
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.errors,
              EndsWith("lorimat: " + Paper("roll.png") + ": not written, stopped by Ctrl-C\n" +
                       "lorimat: " + Paper("roll.pdf") + ": not written, stopped by Ctrl-C\n"));
  EXPECT_THAT(Names(), UnorderedElementsAre("roll.txt", "roll.pdf"));
  EXPECT_EQ(ReadFile(Paper("roll.pdf")), "older");
  EXPECT_THAT(ReadFile(Paper("roll.txt")), HasSubstr("0001-0001"));
}

TEST_F(PaperStop, ARunKeepsItsTextAndTellsWhereThePaperIs) {
  WriteOlder("run.pdf");
  const std::string lines = shop_.folder().Write("more.cmd", kReceipt);
  const ProgramRun run = RunConsole({"run", lines, "--register", shop_.file(), "--clock",
                                     Shop::kClock, "--pdf", Paper("run.pdf")},
                                    WithSignalAtBar(SIGINT, 2));
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.output, HasSubstr("0001-0002"));
  EXPECT_THAT(run.errors, HasSubstr(Paper("run.pdf") + ": not written, stopped by Ctrl-C\n"));
  EXPECT_THAT(run.errors, HasSubstr("has what the lines did, and they are not to be run again"));
  EXPECT_EQ(ReadFile(Paper("run.pdf")), "older");
}

// The first one ends the lines and has the paper written, and the second one has no more of it.
TEST_F(PaperStop, OfARunThatASignalEndedTheNextOneStopsThePicture) {
  ProgramSetting setting = {.input = "VEND REP=1, PRE=1.50\nVEND REP=1, PR",
                            .interrupt_at = "standard input:1: answer"};
  const std::vector<std::string> arguments = {"run",        "-",       "--register",
                                              shop_.file(), "--clock", Shop::kClock,
                                              "-v",         "--pdf",   Paper("run.pdf")};
  const ProgramRun run = RunConsole(arguments, WithSignalAtBar(SIGTERM, 1, setting));
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.errors, HasSubstr("stopped by Ctrl-C behind line 1\n"));
  EXPECT_THAT(run.errors, HasSubstr(Paper("run.pdf") + ": not written, stopped by "));
  EXPECT_THAT(run.output, HasSubstr("1,50\n"));
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(PaperStop, AFileThatGrowsTooLargeIsWhatItWas) {
  for (const std::string option : {"--paper", "--png", "--pdf"}) {
    WriteOlder("roll");
    const ProgramRun run =
        RunProgram("/bin/sh", {"-c",
                               "trap '' XFSZ; ulimit -f 0; exec \"$0\" paper " + option + " " +
                                   Paper("roll") + " --register " + shop_.file(),
                               std::string(LORIMAT_BIN_FOLDER) + "/lorimat"});
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_EQ(run.errors,
              "lorimat: " + Paper("roll") + ": cannot write the paper: File too large\n");
    EXPECT_TRUE(ReadFile(Paper("roll")) == "older") << option;
    EXPECT_THAT(Names(), ElementsAre("roll")) << option;
  }
}

// On a small disk of its own, which goes with the program.
TEST_F(PaperStop, AFullDiskIsNamedAndLeavesTheOlderFile) {
  const std::string mount = "mount -t tmpfs -o size=12k tmpfs " + papers_;
  const auto on_disk = [&](const std::string& command) {
    return RunProgram("/usr/bin/unshare", {"-r", "-m", "/bin/sh", "-c", mount + " && " + command});
  };
  if (on_disk("true").exit_code != 0) GTEST_SKIP() << "no mount without root here";
  for (const std::string option : {"--png", "--pdf"}) {
    const ProgramRun run = on_disk(
        "echo older > " + Paper("roll") + " && head -c 6000 /dev/zero > " + Paper("other") + "; " +
        LORIMAT_BIN_FOLDER + "/lorimat paper " + option + " " + Paper("roll") + " --register " +
        shop_.file() + "; code=$?; ls -A " + papers_ + "; cat " + Paper("roll") + "; exit $code");
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_EQ(run.errors,
              "lorimat: " + Paper("roll") + ": cannot write the paper: No space left on device\n");
    EXPECT_EQ(run.output, "other\nroll\nolder\n") << option;
  }
}

TEST_F(PaperStop, ALinkAndTheModeOfAFileStay) {
  WriteOlder("roll");
  ASSERT_EQ(chmod(Paper("roll").c_str(), 0640), 0);
  fs::create_symlink("roll", Paper("link"));
  fs::create_symlink("new", Paper("to-nothing"));
  EXPECT_EQ(Draw("--pdf", Paper("link")).exit_code, 0);
  EXPECT_EQ(Draw("--pdf", Paper("to-nothing")).exit_code, 0);
  EXPECT_TRUE(fs::is_symlink(Paper("link")));
  EXPECT_TRUE(fs::is_symlink(Paper("to-nothing")));
  EXPECT_THAT(Names(), UnorderedElementsAre("roll", "link", "new", "to-nothing"));
  struct stat status;
  ASSERT_EQ(stat(Paper("roll").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
  for (const std::string name : {"roll", "new"}) {
    EXPECT_THAT(ReadFile(Paper(name)), StartsWith("%PDF-")) << name;
  }
}
