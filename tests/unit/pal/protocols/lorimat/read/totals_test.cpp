// Counters and totalizers, one by one.

#include "unit/support/table_device.h"

namespace {

class CounterTotals : public TableTest {
 protected:
  // "total count" of a counter, or the code.
  std::string Counter(int number) {
    char total[32] = "untouched";
    char count[32] = "untouched";
    const int code = translator->getCounter(number, total, count);
    if (code != 0) {
      EXPECT_STREQ("untouched", total);
      EXPECT_STREQ("untouched", count);
      return std::to_string(code);
    }
    return std::string(total) + " " + count;
  }
};

TEST_F(CounterTotals, OtherCountersDoNotExist) {
  for (const int number :
       {0, -1, 6, 7, 9, 13, 21, 23, 26, 30, 32, 38, 40, 51, 57, 59, 63, 68, 99}) {
    EXPECT_EQ("-000000001 -00001", Counter(number)) << number;
  }
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(CounterTotals, ARefusedDataItemIsTheAnswer) {
  device.Refuse("GetDataInternal(372)", 107);
  EXPECT_EQ("1643", Counter(1));  // twice a class
  device.Refuse("GetDataInternal(373)", 207);
  EXPECT_EQ("1231", Counter(2));
  device.items = {{121, "1"}, {154, "1"}};
  device.Refuse("GetDataInternal(154)", 107);
  EXPECT_EQ("1643", Counter(31));
}

TEST_F(CounterTotals, LongNumbersStayWhole) {
  device.items = {{372, "12345678901234"}, {373, "-123456789012"}, {121, "0"}, {154, "1234567"}};
  EXPECT_EQ("12345678901234 -00001", Counter(1));
  EXPECT_EQ("-123456789012 -00001", Counter(2));
  EXPECT_EQ("0000000000 1234567", Counter(31));
  device.totals["0,2,112"] = "-99999999999999999999999";
  EXPECT_EQ("-92233720368547758 000000", Counter(64));  // the lowest number, by a hundred
}

TEST_F(CounterTotals, ATotalizerGivesTheClientsResultAsItIs) {
  char data[32] = "before";
  device.Refuse("GetTotalizerExtend(3", 107);
  EXPECT_EQ(107, translator->GetTotalizerExtendInternal(3, 2, 16, data, false));
  EXPECT_STREQ("before", data);
  device.totals["4,2,16"] = "-1999";
  EXPECT_EQ(0, translator->GetTotalizerExtendInternal(4, 2, 16, data, false));
  EXPECT_STREQ("-000000019", data);
  EXPECT_EQ(0, translator->GetTotalizerExtendInternal(4, 2, 16, data, true));
  EXPECT_STREQ("-000001999", data);
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(-1, translator->GetTotalizerExtendInternal(4, 2, 16, data, true));
}

}  // namespace
