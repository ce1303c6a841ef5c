// "copy" and "init", stopped or killed at counted places: a register stands under its name whole,
// or nothing does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "bar_signal.h"
#include "shop.h"

using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

constexpr int kReceipts = 30;

class CopyStop : public testing::Test {
 protected:
  void SetUp() override {
    std::string lines;
    for (int n = 0; n < kReceipts; ++n) lines += "VEND REP=1, PRE=1.00\nCHIU\n";
    ASSERT_EQ(shop_.Sell(lines).exit_code, 0);
    fs::remove(shop_.folder().Path("lines.cmd"));
    ASSERT_THAT(shop_.folder().names(), ElementsAre("shop.register"));
    register_ = shop_.folder().Read("shop.register");
  }

  std::string To() const { return shop_.folder().Path("to.register"); }
  ProgramRun Copy(const ProgramSetting& setting) const {
    return RunConsole({"copy", shop_.file(), To()}, setting);
  }
  static ProgramSetting WithKillAtCall(int call) {
    ProgramSetting setting = WithPreload(LORIMAT_CALL_KILL);
    setting.environment["LORIMAT_TEST_CALL_KILL"] = std::to_string(call);
    return setting;
  }
  // Of the copy; a reader that is killed leaves the empty log of the register and its index.
  void ExpectNothingLeft(int place) const {
    EXPECT_THAT(shop_.folder().names(), Each(StartsWith("shop.register"))) << place;
    EXPECT_TRUE(shop_.folder().Read("shop.register") == register_) << place;
  }
  void ExpectWhole(const std::string& journal, int place) const {
    const ProgramRun run = RunConsole({"journal", "verify", "--register", To()});
    EXPECT_EQ(run.output, To() + ": the journal is good: " + journal + "\n") << place;
    EXPECT_THAT(shop_.folder().names(), Each(AnyOf(StartsWith("shop.register"), "to.register")))
        << place;
  }
  // Kills at one call after the other, until the program comes to its end; answers the calls. Once
  // the name is there, it is that of a whole register.
  template <typename Run>
  int KillAtEachCall(const std::string& journal, const Run& run) const {
    for (int call = 1;; ++call) {
      const ProgramRun killed = run(WithKillAtCall(call));
      if (fs::exists(To())) {
        ExpectWhole(journal, call);
      } else {
        ExpectNothingLeft(call);
      }
      if (killed.exit_code != -1 || HasFailure()) {
        EXPECT_EQ(killed.exit_code, 0) << killed.errors;
        EXPECT_TRUE(fs::exists(To()));
        return call - 1;
      }
      fs::remove(To());
    }
  }

  Shop shop_;
  std::string register_;
};

}  // namespace

TEST_F(CopyStop, CtrlCAtAnyBarLeavesNothing) {
  const int bars = BarsOf(Copy({.errors_to_terminal = true}));
  // One of the copying and one of the verifying at least.
  ASSERT_GE(bars, 2);
  fs::remove(To());
  for (int bar = 1; bar <= bars; ++bar) {
    const ProgramRun run = Copy(WithSignalAtBar(SIGINT, bar));
    EXPECT_EQ(run.exit_code, 130) << bar;
    EXPECT_EQ(BarsOf(run), bar);
    EXPECT_THAT(run.errors, EndsWith("lorimat: stopped by Ctrl-C; there is no copy\n")) << bar;
    ExpectNothingLeft(bar);
  }
}

TEST_F(CopyStop, AKillOfACopyAtAnyCallLeavesAWholeOneOrNone) {
  const int calls = KillAtEachCall("30 entries, 30 documents",
                                   [this](const ProgramSetting& setting) { return Copy(setting); });
  EXPECT_GT(calls, 10);
}

TEST_F(CopyStop, AKillOfAnInitAtAnyCallLeavesAWholeRegisterOrNone) {
  const int calls = KillAtEachCall("0 entries, 0 documents", [this](const ProgramSetting& setting) {
    return RunConsole({"init", To()}, setting);
  });
  EXPECT_GT(calls, 10);
}
