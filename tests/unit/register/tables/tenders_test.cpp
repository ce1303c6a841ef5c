// The table of tenders holds together: who looks a row up by one of its columns finds that one.
#include "register/tables/tenders.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "register/desk/data_items.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

TEST(TendersTest, NoTwoHaveAnIdentifierAKeyOrATotalizer) {
  std::set<std::string> ids;
  std::set<int> keys;
  std::set<int> totalizers;
  for (int number = 1; number <= Tables::kSubtenders; ++number) {
    ids.insert(Tables::SubtenderId(number));
  }
  for (const TenderRow& row : kTenders) {
    EXPECT_TRUE(ids.insert(std::string(row.id)).second) << row.id;
    if (row.key != 0) {
      EXPECT_TRUE(keys.insert(row.key).second) << row.id;
    }
    for (const int totalizer : {row.totalizer, row.count_totalizer}) {
      if (totalizer == 0) continue;
      EXPECT_TRUE(totalizers.insert(totalizer).second) << row.id;
    }
    if (row.data_item != 0) {
      EXPECT_NE(FindDataItem(row.data_item), nullptr) << row.id;
    }
  }
}

// Each tender has a row in the page's table, in this order; the row "10 to 29" is the subtenders'.
TEST(TendersTest, ThePageTellsOfEach) {
  std::ifstream page(LORIMAT_SOURCE_DIR "/docs/register.md");
  ASSERT_TRUE(page);
  std::string line;
  while (std::getline(page, line) && line != "## Tenders") continue;
  std::vector<std::string> told;
  while (std::getline(page, line) && line.rfind("## ", 0) != 0) {
    if (line.rfind("| ", 0) != 0 || line.rfind("| Identifier ", 0) == 0) continue;
    if (line.rfind("| 10 to 29 ", 0) == 0) continue;
    told.push_back(line.substr(0, line.find(" |", line.find(" |") + 2)));
  }
  std::vector<std::string> rows;
  for (const TenderRow& row : kTenders) {
    rows.push_back("| " + std::string(row.id) + " | " + std::string(row.name));
  }
  EXPECT_EQ(told, rows);
}

using TenderPaymentTest = RegisterTest;

// Each pays an amount of its own, in ten-thousandths.
TEST_F(TenderPaymentTest, DataItemsHaveTheDaysSums) {
  const struct {
    const char* tender;
    int64_t amount;
  } payments[] = {{"1", 20000},  {"2", 40000},   {"3", 80000},   {"4", 160000},  {"5", 320000},
                  {"6", 640000}, {"7", 1280000}, {"8", 2560000}, {"9", 5120000}, {"30", 10240000},
                  {"10", 700},   {"19", 900},    {"0", 10000}};
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20471600), RTF_SUCCESS);
  for (const auto& payment : payments) {
    ASSERT_EQ(device.PrintRecTotalEx(payment.amount, payment.tender, false), RTF_SUCCESS)
        << payment.tender;
  }
  EXPECT_EQ(Item(372), "10000");
  EXPECT_EQ(Item(373), "5120000");
  EXPECT_EQ(Item(374), "20000");
  EXPECT_EQ(Item(375), "120000");
  EXPECT_EQ(Item(376), "160000");
  EXPECT_EQ(Item(381), "700");
  EXPECT_EQ(Item(390), "900");
}

}  // namespace
}  // namespace lorimat
