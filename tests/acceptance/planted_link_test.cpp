// A link of another user in a folder of all: nothing that the program writes goes through it, and
// what it leads to stays as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "shop.h"

using testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

class PlantedLink : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root makes a link another's";
    fs::create_directories(all_);
    ASSERT_EQ(chmod(all_.c_str(), 01777), 0);
    std::ofstream(mine_) << "mine";
    fs::create_directory(folder_ / "empty");
    Plant(mine_, "file");
    Plant(folder_ / "empty", "folder");
  }

  void Plant(const fs::path& target, const char* name) const {
    constexpr uid_t kOther = 65534;
    fs::create_symlink(target, all_ / name);
    ASSERT_EQ(lchown((all_ / name).c_str(), kOther, kOther), 0);
  }
  std::string link(const char* name) const { return (all_ / name).string(); }
  void ExpectRefused(const ProgramRun& run) const {
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(all_.string()));
    EXPECT_EQ(ReadFile(mine_.string()), "mine");
    EXPECT_TRUE(fs::is_empty(folder_ / "empty"));
  }

  const Shop shop_;
  const fs::path folder_ = shop_.folder().Path("links");
  const fs::path all_ = folder_ / "all";
  const fs::path mine_ = folder_ / "mine";
};

}  // namespace

TEST_F(PlantedLink, APaperIsRefused) {
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  ExpectRefused(shop_.Run({"paper", "--png", link("file")}));
}

TEST_F(PlantedLink, ATraceIsRefused) {
  std::ofstream(folder_ / "lines.cmd") << "VEND REP=1, PRE=1.00\n";
  ExpectRefused(shop_.Run({"run", (folder_ / "lines.cmd").string(), "--trace", link("file")}));
}

TEST_F(PlantedLink, ABackupIsRefused) {
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  ExpectRefused(shop_.Run({"backup", link("folder")}));
}

TEST_F(PlantedLink, ARegisterIsRefused) {
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  std::ofstream(folder_ / "lines.cmd") << "VEND REP=1, PRE=1.00\n";
  const std::string lines = (folder_ / "lines.cmd").string();
  Plant(shop_.file(), "register");
  Plant(folder_ / "new", "made");
  // Of links on the way one is enough.
  fs::create_symlink(link("register"), folder_ / "mine.register");
  Plant(mine_, "own.register-wal");
  const std::string names[] = {link("register"), link("made"), (folder_ / "mine.register").string(),
                               link("own.register")};
  for (const std::string& name : names) {
    const ProgramRun run = RunConsole({"run", lines, "--register", name});
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_THAT(run.errors, HasSubstr(name + ": cannot be opened: Too many levels")) << name;
  }
  ExpectRefused(RunConsole({"init", link("made")}));
  EXPECT_FALSE(fs::exists(folder_ / "new"));
  EXPECT_THAT(RunConsole({"status", "--register", shop_.file()}).output,
              HasSubstr("Documents       1\n"));
  // One's own link may be used there.
  fs::create_symlink(shop_.file(), all_ / "own");
  EXPECT_EQ(RunConsole({"status", "--register", link("own")}).exit_code, 0);
}

TEST_F(PlantedLink, AnOutputOfALineIsRefused) {
  std::ofstream(folder_ / "lines.cmd") << "INFO TIPO=1, FILE='" + link("file") + "'\n";
  const ProgramRun run = RunConsole({"run", (folder_ / "lines.cmd").string()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              HasSubstr("is a link of another user in a folder where everybody writes"));
  EXPECT_EQ(ReadFile(mine_.string()), "mine");
}
