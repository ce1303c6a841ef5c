// What the paper tells ahead of a limit, and of a day that was left open.
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

TEST(ToldAhead, TheLastClosuresAreToldAhead) {
  RegisterSettings settings = TestSettings();
  settings.last_closure = 9898;
  VirtualRegister other(settings);
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(other.paper_text().find("RIMASTE"), std::string::npos);
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_NE(other.paper_text().find("           CHIUSURE RIMASTE: 99\n"), std::string::npos);
}

TEST(ToldAhead, ADayPastMidnightIsToldOnItsClosing) {
  std::tm time = FixedTime();
  RegisterSettings settings = TestSettings();
  settings.clock = [&time] { return time; };
  VirtualRegister other(settings);
  const auto sell = [&other] {
    other.BeginFiscalReceipt(false);
    other.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "");
    return other.PrintRecTotalEx(0, "0", true);
  };
  ASSERT_EQ(sell(), RTF_SUCCESS);
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(sell(), RTF_SUCCESS);
  EXPECT_EQ(other.paper_text().find("Giornata aperta"), std::string::npos);
  ++time.tm_mday;
  ASSERT_EQ(sell(), RTF_SUCCESS);
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_NE(other.paper_text().find("   Giornata aperta il 15/01/2024 10:30\n"), std::string::npos);
  // A day without a document is none.
  ++time.tm_mday;
  const size_t before = other.paper_text().size();
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(other.paper_text().find("Giornata aperta", before), std::string::npos);
}

}  // namespace
}  // namespace lorimat
