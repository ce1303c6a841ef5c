// "fault": the plan of faults in a register's file, and what it does to a run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const char* const kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";

}  // namespace

TEST(FaultCommand, ListsTheFaultsWithoutARegister) {
  const ProgramRun run = RunConsole({"fault"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  for (const char* name : {"paper-end", "cover-open", "off-line", "busy", "fiscal-memory-full",
                           "day-end-required", "wrong-totals", "code"}) {
    EXPECT_THAT(run.output, HasSubstr(std::string("\n  ") + name + " ")) << name;
  }
  const nlohmann::json json = nlohmann::json::parse(RunConsole({"fault", "--json"}).output);
  EXPECT_GE(json["kinds"].size(), 8u);
  EXPECT_FALSE(json.contains("waiting"));
}

TEST(FaultCommand, APlannedFaultStrikesTheNextRunOnce) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  const ProgramRun plan = shop.Run({"fault", "code", "123", "--on", "PrintRecTotalEx"});
  EXPECT_EQ(plan.exit_code, 0) << plan.errors;
  EXPECT_EQ(plan.output,
            "In " + shop.file() + " wait\n  code (123), at the next PrintRecTotalEx\n");
  const nlohmann::json status = nlohmann::json::parse(shop.Run({"status", "--json"}).output);
  EXPECT_EQ(
      status["faults"],
      nlohmann::json::array(
          {{{"name", "code"}, {"code", 123}, {"when", "next"}, {"operation", "PrintRecTotalEx"}}}));
  // 123 of the device reads 635: 512 and the code. The payment after it goes through.
  const ProgramRun run = shop.Sell(std::string(kReceipt) + "CHIU\n");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":2: code 635: "));
  EXPECT_THAT(run.errors, Not(HasSubstr(":3: ")));
  EXPECT_THAT(run.output, HasSubstr("DOCUMENTO N. 0001-0002\n"));
  EXPECT_THAT(shop.Run({"fault"}).output, HasSubstr("No fault waits in " + shop.file() + "\n"));
}

TEST(FaultCommand, EveryOneStrikesUntilThePlanIsCleared) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  ASSERT_EQ(shop.Run({"fault", "paper-end", "--every"}).exit_code, 0);
  EXPECT_EQ(shop.Sell(kReceipt).exit_code, 1);
  EXPECT_EQ(shop.Sell(kReceipt).exit_code, 1);
  const ProgramRun clear = shop.Run({"fault", "--clear"});
  EXPECT_EQ(clear.exit_code, 0);
  EXPECT_EQ(clear.output, "No fault waits in " + shop.file() + "\n");
  EXPECT_EQ(shop.Sell(kReceipt).exit_code, 0);
}

TEST(FaultCommand, FaultsAddUpAndAreListedInTheirOrder) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("").exit_code, 0);
  ASSERT_EQ(shop.Run({"fault", "busy", "--times", "3"}).exit_code, 0);
  const ProgramRun run = shop.Run({"fault", "code", "217", "--nth", "2", "--on", "PrintRecItemEx"});
  EXPECT_EQ(run.output, "In " + shop.file() +
                            " wait\n"
                            "  busy (113), at the next operations, 3 times\n"
                            "  code (217), at PrintRecItemEx number 2 from now\n");
  const nlohmann::json json = nlohmann::json::parse(shop.Run({"fault", "--json"}).output);
  ASSERT_EQ(json["waiting"].size(), 2u);
  EXPECT_EQ(json["waiting"][0]["when"], "times");
  EXPECT_EQ(json["waiting"][0]["count"], 3);
  EXPECT_EQ(json["waiting"][1]["when"], "nth");
  EXPECT_EQ(json["waiting"][1]["count"], 2);
}

TEST(FaultCommand, WrongFaultsAreNamedAndChangeNothing) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("").exit_code, 0);
  const struct {
    std::vector<std::string> arguments;
    const char* message;
  } cases[] = {
      {{"paper-ned"}, "paper-ned: no fault has this name; did you mean paper-end?"},
      {{"xyzxyzxyzxyz"}, "\"lorimat fault\" lists them"},
      {{"paper-end", "--on", "PrintRecItemxE"}, "did you mean PrintRecItemEx?"},
      {{"paper-end", "--on", "GetState"}, "GetState"},  // nothing prints there
      {{"code"}, "which?"},
      {{"code", "x"}, "CODE"},
      {{"code", "0"}, "0"},
      {{"code", "99999999999"}, "CODE"},
      {{"paper-end", "5"}, "only the fault \"code\" takes a number"},
      {{"paper-end", "--nth", "0"}, "0"},
      {{"paper-end", "--next", "--every"}, "--every"},
      {{"--every"}, "--every"},
      {{"--clear", "paper-end"}, "--clear"},
      {{"paper-end", "1", "2"}, "2"},
  };
  for (const auto& one : cases) {
    std::vector<std::string> arguments = {"fault"};
    arguments.insert(arguments.end(), one.arguments.begin(), one.arguments.end());
    const ProgramRun run = shop.Run(arguments);
    EXPECT_EQ(run.exit_code, 2) << testing::PrintToString(one.arguments);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(one.message)) << testing::PrintToString(one.arguments);
  }
  EXPECT_THAT(shop.Run({"fault"}).output, HasSubstr("No fault waits"));
}

TEST(FaultCommand, ThePlanHasAnEnd) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("").exit_code, 0);
  int added = 0;
  while (added < 200 && shop.Run({"fault", "paper-end", "--nth", "1000"}).exit_code == 0) ++added;
  EXPECT_EQ(added, 100);
  EXPECT_EQ(shop.Run({"fault", "paper-end"}).exit_code, 2);
}
