// "journal verify" that a signal stops, also where it reads pages and no entries.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "bar_signal.h"
#include "shop.h"

using testing::ContainsRegex;
using testing::EndsWith;
using testing::IsEmpty;

TEST(VerifyStop, ASignalEndsItAndNothingIsSaidOfTheRest) {
  const Shop shop;
  std::string lines;
  for (int line = 0; line < 300; ++line) lines += "VEND REP=1, PRE=1.00\nCHIU\n";
  ASSERT_EQ(shop.Sell(lines).exit_code, 0);
  const ProgramRun whole = shop.Run({"journal", "verify"}, {.errors_to_terminal = true});
  EXPECT_EQ(whole.exit_code, 0);
  // The first bar is that of the pages, and the second one stands behind some entry.
  EXPECT_GE(BarsOf(whole), 3);
  const ProgramRun pages = shop.Run({"journal", "verify"}, WithSignalAtBar(SIGINT, 1));
  EXPECT_EQ(pages.exit_code, 130);
  EXPECT_THAT(pages.errors, EndsWith("lorimat: stopped by Ctrl-C behind entry 0\n"));
  EXPECT_THAT(pages.output, IsEmpty());
  const ProgramRun entries = shop.Run({"journal", "verify", "--json"}, WithSignalAtBar(SIGTERM, 2));
  EXPECT_EQ(entries.exit_code, 143);
  EXPECT_THAT(entries.errors,
              ContainsRegex("lorimat: stopped by SIGTERM behind entry [1-9][0-9]*\n$"));
  EXPECT_THAT(entries.output, IsEmpty());
}
