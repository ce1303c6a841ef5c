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
