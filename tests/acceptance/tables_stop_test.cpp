// "backup" and "restore" that a signal stops: no folder is left, and no row is half-restored.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "backup_shop.h"
#include "bar_signal.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// A table each.
constexpr int kTables = 9;

class TablesStop : public BackupShop {
 protected:
  // With a folder for what the program keeps meanwhile.
  ProgramSetting At(int bar) const {
    fs::create_directories(Scratch());
    return WithSignalAtBar(SIGINT, bar, {.environment = {{"TMPDIR", Scratch()}}});
  }
  std::string Scratch() const { return shop_.folder().Path("scratch"); }
};

}  // namespace

TEST_F(TablesStop, ABackupLeavesNoFolderWhereverItEnds) {
  for (int bar = 1; bar <= kTables; ++bar) {
    const ProgramRun run = shop_.Run({"backup", tables()}, At(bar));
    EXPECT_EQ(run.exit_code, 130) << bar;
    EXPECT_EQ(BarsOf(run), bar);
    EXPECT_THAT(run.errors, EndsWith("\r\x1b[Klorimat: stopped by Ctrl-C; there is no backup\n"));
    EXPECT_THAT(run.output, IsEmpty()) << bar;
    EXPECT_FALSE(fs::exists(tables())) << bar;
    EXPECT_FALSE(fs::exists(tables() + ".part")) << bar;
  }
  EXPECT_EQ(shop_.Run({"backup", tables()}, At(kTables + 1)).exit_code, 0);
}

TEST_F(TablesStop, ARestoreThatStillComparesChangesNothing) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='OTHER'\nENDPROG\n").exit_code, 0);
  const std::string before = shop_.Run({"restore", tables(), "--dry-run"}).output;
  EXPECT_THAT(before, HasSubstr("OTHER"));
  for (int bar = 1; bar <= kTables; ++bar) {
    const ProgramRun run = shop_.Run({"restore", tables()}, At(bar));
    EXPECT_EQ(run.exit_code, 130) << bar;
    EXPECT_EQ(BarsOf(run), bar);
    EXPECT_THAT(run.errors, EndsWith("\r\x1b[Klorimat: stopped by Ctrl-C; nothing was changed\n"));
    EXPECT_THAT(run.output, IsEmpty()) << bar;
    EXPECT_TRUE(fs::is_empty(Scratch())) << bar;
    EXPECT_EQ(shop_.Run({"restore", tables(), "--dry-run"}).output, before) << bar;
  }
  // What was loaded is told, though a signal comes while it is read back: one bar is that of the
  // row that was loaded.
  const ProgramRun run = shop_.Run({"restore", tables()}, At(kTables + 2));
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, EndsWith(": 1 row restored\n"));
}
