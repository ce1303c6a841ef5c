// What can be planned, what is refused, and the plan as text.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "register/fault/fault_operations.h"
#include "register/fault/faults.h"
#include "register/value/register_error.h"
#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

TEST(FaultPlanTest, ANamedFaultGetsTheCodeOfItsKind) {
  FaultPlan plan;
  plan.Add({.name = "cover-open"});
  plan.Add({.name = "cover-open", .code = 201});
  ASSERT_EQ(plan.faults().size(), 2u);
  EXPECT_EQ(plan.faults()[0], plan.faults()[1]);
  EXPECT_EQ(plan.faults()[0].code, 201);
}

TEST(FaultPlanTest, NumbersCountOnlyWhereTheyMeanSomething) {
  FaultPlan plan;
  plan.Add({.name = "busy", .when = FaultWhen::kNext, .count = -5});
  plan.Add({.name = "busy", .when = FaultWhen::kEvery, .count = 0});
  EXPECT_EQ(plan.faults()[0].count, 1);
  EXPECT_EQ(plan.faults()[1].count, 1);
}

TEST(FaultPlanTest, RefusesWhatCannotBeAndTellsWhy) {
  struct {
    Fault fault;
    const char* cause;
  } const rows[] = {
      {{.name = ""}, "unknown fault: "},
      {{.name = "paper"}, "unknown fault: paper"},
      {{.name = "Paper-End"}, "unknown fault: Paper-End"},
      {{.name = "paper\n\x1b\xe8"}, "unknown fault: paper???"},
      {{.name = "!~ \x7f\x1f"}, "unknown fault: !~ ??"},
      {{.name = "code"}, "a result code is 1 to 999999, not 0"},
      {{.name = "code", .code = -1}, "a result code is 1 to 999999, not -1"},
      {{.name = "code", .code = 1000000}, "a result code is 1 to 999999, not 1000000"},
      {{.name = "paper-end", .code = 204}, "paper-end answers 203, not 204"},
      {{.name = "paper-near-end", .code = 1}, "paper-near-end answers 0, not 1"},
      {{.name = "busy", .operation = static_cast<ClientOperation>(kClientOperationCount)},
       "unknown operation"},
      {{.name = "code", .code = 5, .operation = static_cast<ClientOperation>(255)},
       "unknown operation"},
      {{.name = "busy", .operation = ClientOperation::kGetState},
       "GetState answers no result code"},
      {{.name = "code", .code = 5, .operation = ClientOperation::kLogTrace},
       "LogTrace answers no result code"},
      {{.name = "paper-end", .operation = ClientOperation::kGetDate},
       "paper-end cannot strike GetDate"},
      {{.name = "paper-end", .operation = ClientOperation::kOpenDrawer},
       "paper-end cannot strike OpenDrawer"},
      {{.name = "lost-answer", .operation = ClientOperation::kGetDate},
       "lost-answer cannot strike GetDate"},
      {{.name = "off-line", .operation = ClientOperation::kSetIntProperty},
       "off-line cannot strike SetIntProperty"},
      {{.name = "wrong-totals", .operation = ClientOperation::kPrintRecItemEx},
       "wrong-totals cannot strike PrintRecItemEx"},
      {{.name = "busy", .when = FaultWhen::kNth, .count = 0},
       "a number of operations is 1 to 1000000, not 0"},
      {{.name = "busy", .when = FaultWhen::kTimes, .count = -1},
       "a number of operations is 1 to 1000000, not -1"},
      {{.name = "busy", .when = FaultWhen::kTimes, .count = 1000001},
       "a number of operations is 1 to 1000000, not 1000001"},
      {{.name = "busy", .when = static_cast<FaultWhen>(4)}, "unknown occasion"},
      {{.name = "busy", .when = static_cast<FaultWhen>(-1)}, "unknown occasion"},
  };
  VirtualRegister device(TestSettings());
  for (const auto& row : rows) {
    SCOPED_TRACE(row.cause);
    EXPECT_EQ(EnglishFailure(FaultPlan::Refusal(row.fault).value()), row.cause);
    try {
      device.AddFault(row.fault);
      ADD_FAILURE() << "was added";
    } catch (const RegisterError& error) {
      EXPECT_STREQ(error.what(), row.cause);
    }
    EXPECT_TRUE(device.faults().empty());
  }
}

TEST(FaultPlanTest, ALongNameIsShownInPart) {
  const std::optional<RegisterFailure> refusal =
      FaultPlan::Refusal({.name = std::string(100000, 'x')});
  EXPECT_EQ(EnglishFailure(refusal.value()), "unknown fault: " + std::string(60, 'x') + "...");
}

TEST(FaultPlanTest, TakesAHundredFaultsAndNoMore) {
  VirtualRegister device(TestSettings());
  for (int i = 0; i < 100; ++i) device.AddFault({.name = "code", .code = 300 + i});
  try {
    device.AddFault({.name = "busy"});
    ADD_FAILURE() << "was added";
  } catch (const RegisterError& error) {
    EXPECT_STREQ(error.what(), "100 faults wait already");
  }
  for (int i = 0; i < 100; ++i) EXPECT_EQ(device.OpenDrawer(), 300 + i);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
}

TEST(FaultPlanTest, ChangesAreCounted) {
  FaultPlan plan;
  uint64_t changes = plan.changes();
  const auto changed = [&] {
    const bool result = plan.changes() > changes;  // what was there before is never again
    changes = plan.changes();
    return result;
  };
  plan.Add({.name = "paper-end", .when = FaultWhen::kNth, .count = 2});
  plan.Add({.name = "cover-open",
            .operation = ClientOperation::kPrintRecMessage,
            .when = FaultWhen::kEvery});
  EXPECT_TRUE(changed());
  EXPECT_EQ(plan.Begin(ClientOperation::kOpenDrawer, false).before, 0);
  EXPECT_FALSE(changed());
  EXPECT_EQ(plan.Begin(ClientOperation::kBeginFiscalReceipt, false).before, 0);
  EXPECT_TRUE(changed());
  EXPECT_EQ(plan.Begin(ClientOperation::kPrintRecMessage, true).before, 203);
  EXPECT_TRUE(changed());
  EXPECT_EQ(plan.Begin(ClientOperation::kPrintRecMessage, true).before, 201);
  EXPECT_FALSE(changed());
  EXPECT_EQ(plan.PollState(), RTF_S_ERROR);
  EXPECT_FALSE(changed());
  plan.Clear();
  EXPECT_TRUE(changed());
  ASSERT_TRUE(FaultPlan::FromText("", &plan));
  EXPECT_TRUE(changed());
}

TEST(FaultPlanTest, WhatAnswersNoCodeIsNotStruck) {
  FaultPlan plan;
  plan.Add({.name = "code", .code = 111, .when = FaultWhen::kEvery});
  EXPECT_EQ(plan.Begin(std::nullopt, false).before, 0);
  for (const ClientOperation operation :
       {ClientOperation::kGetState, ClientOperation::kGetClaimed, ClientOperation::kLogTrace}) {
    EXPECT_EQ(plan.Begin(operation, false).before, 0) << ClientOperationName(operation);
  }
  EXPECT_EQ(plan.Begin(ClientOperation::kOpenDrawer, false).before, 111);
}

// --- In a register's file

TEST(FaultPlanTest, WaitsThroughTheSwitchingOffAndIsUsedUpOnce) {
  const std::string folder = MakeTemporaryFolder().string();
  RegisterSettings settings = TestSettings();
  settings.file = folder + "/register";
  {
    VirtualRegister device(settings);
    device.AddFault({.name = "code", .code = 777, .when = FaultWhen::kNth, .count = 3});
    device.AddFault({.name = "busy", .when = FaultWhen::kTimes, .count = 2});
    EXPECT_EQ(device.OpenDrawer(), RTF_E_BUSY);
  }
  {
    VirtualRegister device(settings);
    EXPECT_EQ(device.GetState(), RTF_S_BUSY);
    EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  }
  {
    VirtualRegister device(settings);
    EXPECT_EQ(device.OpenDrawer(), 777);
  }
  {
    VirtualRegister device(settings);
    EXPECT_TRUE(device.faults().empty());
    EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
    EXPECT_EQ(device.drawer_count(), 2);
    device.AddFault({.name = "off-line", .when = FaultWhen::kEvery});
    device.ClearFaults();
  }
  {
    VirtualRegister device(settings);
    EXPECT_TRUE(device.faults().empty());
  }
  std::filesystem::remove_all(folder);
}

TEST(FaultPlanTest, AReceiptWhoseAnswerIsLostIsInTheFile) {
  const std::string folder = MakeTemporaryFolder().string();
  RegisterSettings settings = TestSettings();
  settings.file = folder + "/register";
  {
    VirtualRegister device(settings);
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    device.AddFault({.name = "lost-answer"});
    EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_E_TIMEOUT);
  }
  VirtualRegister device(settings);
  char total[50] = "";
  EXPECT_EQ(device.GetDataInternal(89, total), RTF_SUCCESS);
  EXPECT_STREQ(total, "10000");
  EXPECT_TRUE(device.faults().empty());
  std::filesystem::remove_all(folder);
}

// --- As text

TEST(FaultPlanTest, TheTextHasOneFaultALine) {
  FaultPlan plan;
  EXPECT_EQ(plan.ToText(), "");
  plan.Add({.name = "paper-end"});
  plan.Add({.name = "code",
            .code = 1213,
            .operation = ClientOperation::kGetDate,
            .when = FaultWhen::kNth,
            .count = 7});
  plan.Add({.name = "busy", .when = FaultWhen::kTimes, .count = 3});
  plan.Add({.name = "off-line", .when = FaultWhen::kEvery});
  EXPECT_EQ(plan.ToText(),
            "paper-end 203 next 1 -\n"
            "code 1213 nth 7 GetDate\n"
            "busy 113 times 3 -\n"
            "off-line 108 every 1 -\n");
}

TEST(FaultPlanTest, ComesBackFromItsText) {
  std::mt19937 random(1);
  const auto pick = [&](size_t size) {
    return std::uniform_int_distribution<size_t>(0, size - 1)(random);
  };
  size_t restricted = 0;
  for (int round = 0; round < 200; ++round) {
    FaultPlan plan;
    const size_t size = pick(FaultPlan::kMostFaults + 1);
    while (plan.faults().size() < size) {
      Fault fault;
      const size_t kind = pick(FaultKinds().size() + 1);
      fault.name = kind < FaultKinds().size() ? FaultKinds()[kind].name : "code";
      if (fault.name == "code") fault.code = 1 + static_cast<int>(pick(FaultPlan::kMostCode));
      fault.when = static_cast<FaultWhen>(pick(4));
      fault.count = 1 + static_cast<int>(pick(FaultPlan::kMostCount));
      if (pick(2) == 0) {
        fault.operation = static_cast<ClientOperation>(pick(kClientOperationCount));
      }
      if (FaultPlan::Refusal(fault)) continue;
      if (fault.operation) ++restricted;
      plan.Add(fault);
    }
    FaultPlan read;
    read.Add({.name = "busy"});
    ASSERT_TRUE(FaultPlan::FromText(plan.ToText(), &read));
    EXPECT_EQ(read.faults(), plan.faults());
  }
  EXPECT_GT(restricted, 1000u);
}

TEST(FaultPlanTest, WhatIsHalfUsedUpComesBackSo) {
  FaultPlan plan;
  plan.Add({.name = "paper-end", .when = FaultWhen::kNth, .count = 3});
  plan.Begin(ClientOperation::kBeginFiscalReceipt, false);
  FaultPlan read;
  ASSERT_TRUE(FaultPlan::FromText(plan.ToText(), &read));
  EXPECT_EQ(read.Begin(ClientOperation::kPrintRecMessage, true).before, 0);
  EXPECT_EQ(read.Begin(ClientOperation::kPrintRecMessage, true).before, 203);
}

TEST(FaultPlanTest, TakesNoTextThatIsNoPlan) {
  FaultPlan plan;
  plan.Add({.name = "busy"});
  const std::string line = "paper-end 203 next 1 -\n";
  std::string many;
  for (int i = 0; i < 101; ++i) many += line;
  const std::string texts[] = {
      "\n",
      " ",
      "paper-end",
      "paper-end 203 next 1 -",  // without its end
      "paper-end 203 next 1 -\r\n",
      "paper-end 203 next 1 - \n",
      "paper-end 203 next 1 -\n\n",
      " paper-end 203 next 1 -\n",
      "paper-end  203 next 1 -\n",
      "paper-end 203 next 1 \n",
      "paper-end 203 next 1\n",
      "paper-end 203 next\n",
      "paper-end 204 next 1 -\n",
      "paper-end +203 next 1 -\n",
      "paper-end 203x next 1 -\n",
      "paper-end 0xCB next 1 -\n",
      "paper-end 99999999999999999999 next 1 -\n",
      "paper-end 203 later 1 -\n",
      "paper-end 203 NEXT 1 -\n",
      "paper-end 203 nth 0 -\n",
      "paper-end 203 nth -1 -\n",
      "paper-end 203 times 1000001 -\n",
      "paper-end 203 next 1 GetDate\n",
      "paper-end 203 next 1 Unknown\n",
      "paper-end 203 next 1 --\n",
      "code 0 next 1 -\n",
      "code -1 every 1 -\n",
      std::string("paper-end 203 next 1 -\0\n", 24),
      std::string("paper-end\0 203 next 1 -\n", 24),
      line + "x\n",
      many,
      std::string(1'000'000, '\n'),
      std::string(1'000'000, ' '),
      std::string(1'000'000, 'x') + "\n",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 60));
    EXPECT_FALSE(FaultPlan::FromText(text, &plan));
    EXPECT_EQ(plan.ToText(), "busy 113 next 1 -\n");
  }
  EXPECT_TRUE(FaultPlan::FromText("", &plan));
  EXPECT_TRUE(plan.empty());
  EXPECT_TRUE(FaultPlan::FromText(many.substr(line.size()), &plan));
  EXPECT_EQ(plan.faults().size(), 100u);
}

// Whatever is read comes back the same: damage is refused, or it makes another plan.
TEST(FaultPlanTest, StandsAnyByteInItsText) {
  const std::string good = "code 1213 nth 7 GetDate\nlost-answer 112 times 12 PrintRecTotalEx\n";
  FaultPlan plan;
  ASSERT_TRUE(FaultPlan::FromText(good, &plan));
  int taken = 0;
  const auto stands = [&](const std::string& text) {
    FaultPlan read;
    if (!FaultPlan::FromText(text, &read)) {
      EXPECT_TRUE(read.empty());
      return;
    }
    ++taken;
    FaultPlan again;
    EXPECT_TRUE(FaultPlan::FromText(read.ToText(), &again));
    EXPECT_EQ(read.faults(), again.faults());
  };
  for (size_t at = 0; at < good.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text = good;
      text[at] = static_cast<char>(byte);
      stands(text);
    }
    stands(good.substr(0, at));
  }
  // The text itself once for each place, and other digits: not everything was refused.
  EXPECT_GT(taken, static_cast<int>(good.size()));
}

TEST(FaultPlanTest, OccasionsHaveNames) {
  for (const FaultWhen when :
       {FaultWhen::kNext, FaultWhen::kNth, FaultWhen::kEvery, FaultWhen::kTimes}) {
    EXPECT_EQ(FindFaultWhen(FaultWhenName(when)), when);
  }
  EXPECT_EQ(FindFaultWhen(""), std::nullopt);
  EXPECT_EQ(FindFaultWhen("always"), std::nullopt);
}

TEST(FaultDocumentation, ListsEveryFaultAsTheTableHasIt) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/docs/register.md");
  std::stringstream text;
  text << file.rdbuf();
  std::string expected = "| Fault | Answer | Strikes | What |\n|---|---|---|---|\n";
  for (const FaultKind& kind : FaultKinds()) {
    expected += "| `" + std::string(kind.name) + "` | " +
                (kind.code == 0 ? "-" : std::to_string(kind.code)) + " | " +
                std::string(kind.strikes) + " | " + std::string(kind.what) + " |\n";
  }
  expected += "| `code` | 1 to " + std::to_string(FaultPlan::kMostCode) +
              " | everything | any result code |\n";
  EXPECT_NE(text.str().find(expected + "\n"), std::string::npos) << expected;
}

}  // namespace
}  // namespace lorimat
