// What "run", "shell" and "status" tell of a register's day: that it was left open, that nothing
// was registered, and that a limit is near.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char* kSale = "VEND REP=1, PRE=1.00\nCHIU\n";

size_t Times(const std::string& text, const std::string& what) {
  size_t count = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

TEST(DayNotes, ADayThatWasLeftOpenIsToldAtTheStart) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kSale).exit_code, 0);
  EXPECT_THAT(shop.Sell(kSale, "2024-03-15 23:59").errors, IsEmpty());
  const std::string note =
      "lorimat: note: " + shop.file() + ": the day of 15/03/2024 has not been closed\n";
  EXPECT_EQ(shop.Sell(kSale, "2024-03-16 00:01").errors, note);
  EXPECT_EQ(shop.Run({"shell", "--clock", "2024-03-16 00:02"}, {.input = ".quit\n"}).errors, note);
  const ProgramRun json = shop.Run({"shell", "--json", "--clock", "2024-03-16 00:02"});
  EXPECT_EQ(json.errors, note);
  const ProgramRun inside =
      shop.Run({"shell", "--clock", "2024-03-16 00:02"}, {.input = ".status\n"});
  EXPECT_THAT(inside.output, HasSubstr("the day of 15/03/2024 has not been closed\n"));
  // The computer's clock is far behind that, whatever it shows.
  EXPECT_THAT(shop.Run({"status"}).output,
              HasSubstr("\nNote            the day of 15/03/2024 has not been closed\n"));
  const nlohmann::json notices =
      nlohmann::json::parse(shop.Run({"status", "--json"}).output)["notices"];
  EXPECT_EQ(notices["day_left_open_since"], "2024-03-15");
  EXPECT_TRUE(notices["idle_from"].is_null());
  const ProgramRun italian = RunConsole({"run", shop.folder().Write("z.cmd", "AZZGIO\n"),
                                         "--register", shop.file(), "--clock", "2024-03-16 00:03"},
                                        {.environment = {{"LANG", "it_IT.UTF-8"}}});
  EXPECT_THAT(italian.errors, HasSubstr("la giornata del 15/03/2024 non è stata chiusa\n"));
  EXPECT_THAT(italian.output, HasSubstr("Giornata aperta il 15/03/2024 10:30\n"));
}

TEST(DayNotes, DatesWithoutADocumentAreTold) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("AZZGIO\n").exit_code, 0);
  EXPECT_THAT(shop.Sell("LEGGI STATO\n", "2024-03-16 10:30").errors, Not(HasSubstr("nothing")));
  const ProgramRun run = shop.Sell(std::string(kSale) + "AZZGIO\n", "2024-03-18 10:30");
  EXPECT_EQ(run.errors, "lorimat: note: " + shop.file() +
                            ": nothing was registered from 16/03/2024 to 17/03/2024\n");
  EXPECT_THAT(run.output, HasSubstr("Inattivo dal 16/03/2024 al 17/03/2024\n"));
  const nlohmann::json notices =
      nlohmann::json::parse(shop.Run({"status", "--json"}).output)["notices"];
  EXPECT_EQ(notices["idle_from"], "2024-03-19");
}

TEST(DayNotes, TheLastDocumentsOfADayAreToldOnceAndTheOneBehindThemIsRefused) {
  TestFolder folder;
  std::string lines;
  for (int sale = 0; sale < 9999; ++sale) lines += "VEND REP=1, PRE=0.01\nCHIU\n";
  const ProgramRun run =
      RunConsole({"run", folder.Write("lines.cmd", lines + "VEND REP=1, PRE=0.01\n"), "--paper",
                  folder.Path("paper"), "--clock", Shop::kClock});
  EXPECT_EQ(Times(run.errors, "lorimat: note: the day takes 99 documents more\n"), 1u)
      << run.errors;
  EXPECT_EQ(Times(run.errors, "note"), 1u);
  EXPECT_THAT(run.errors, HasSubstr("lines.cmd:19999"));
  EXPECT_EQ(run.exit_code, 1);
}

}  // namespace
