// Counters and totalizers, one by one and as dumps.

#include "unit/support/table_device.h"

namespace {

class CounterTotals : public TableTest {
 protected:
  // "total count" of a counter, or the code.
  std::string counter(int number) {
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

TEST_F(CounterTotals, CountersComeFromTheirDataItems) {
  const std::map<int, int> sources = {
      {1, 372},  {2, 373},  {3, 374},  {4, 375},  {5, 376},  {10, 377}, {11, 375},
      {12, 378}, {22, 32},  {24, 379}, {25, 380}, {33, 9},   {34, 29},  {35, 28},
      {36, 112}, {37, 12},  {41, 381}, {42, 382}, {43, 383}, {44, 384}, {45, 385},
      {46, 386}, {47, 387}, {48, 388}, {49, 389}, {50, 390}, {58, 58}};
  for (const auto& [number, item] : sources) {
    device.calls.clear();
    device.items = {{item, "12.34"}};
    EXPECT_EQ("0000001234 -00001", counter(number)) << number;
    EXPECT_EQ((Calls{"GetDataInternal(" + std::to_string(item) + ")"}), device.calls);
  }
  device.items = {{121, "500"}, {154, "7"}};
  EXPECT_EQ("0000000500 000007", counter(31));
}

TEST_F(CounterTotals, OtherCountersDoNotExist) {
  for (const int number :
       {0, -1, 6, 7, 9, 13, 21, 23, 26, 30, 32, 38, 40, 51, 57, 59, 63, 68, 99}) {
    EXPECT_EQ("-000000001 -00001", counter(number)) << number;
  }
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(CounterTotals, DailyTotalsAreAmountsAndDailyCountsAreNot) {
  device.totals = {{"0,2,112", "1234567"}, {"0,2,113", "42"},  {"0,2,109", "-50000"},
                   {"0,2,111", "99"},      {"0,2,114", "300"}, {"0,2,115", "5"}};
  EXPECT_EQ("0000012345 000042", counter(64));
  EXPECT_EQ("-000000500 -00001", counter(65));
  EXPECT_EQ("0000000000 -00001", counter(66));
  EXPECT_EQ("0000000003 000005", counter(67));
}

TEST_F(CounterTotals, ARefusedDailyTotalIsZero) {
  EXPECT_EQ("0000000000 000000", counter(64));
  EXPECT_EQ("0000000000 -00001", counter(65));
}

TEST_F(CounterTotals, ARefusedDataItemIsTheAnswer) {
  device.refuse("GetDataInternal(372)", 107);
  EXPECT_EQ("1643", counter(1));  // twice a class
  device.refuse("GetDataInternal(373)", 207);
  EXPECT_EQ("1231", counter(2));
  device.items = {{121, "1"}, {154, "1"}};
  device.refuse("GetDataInternal(154)", 107);
  EXPECT_EQ("1643", counter(31));
}

TEST_F(CounterTotals, LongNumbersStayWhole) {
  device.items = {{372, "12345678901234"}, {373, "-123456789012"}, {121, "0"}, {154, "1234567"}};
  EXPECT_EQ("12345678901234 -00001", counter(1));
  EXPECT_EQ("-123456789012 -00001", counter(2));
  EXPECT_EQ("0000000000 1234567", counter(31));
  device.totals["0,2,112"] = "-99999999999999999999999";
  EXPECT_EQ("-92233720368547758 000000", counter(64));  // the lowest number, by a hundred
}

TEST_F(CounterTotals, ATotalizerGivesTheClientsResultAsItIs) {
  char data[32] = "before";
  device.refuse("GetTotalizerExtend(3", 107);
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

// --- Dumps

TEST_F(CounterTotals, GeneralTotalsAreLinesInWords) {
  translator->pCurConf->iNumTOTG = 3;
  device.items = {{372, "1.50"}, {373, "0"}, {374, "-20"}};
  const std::string expected =
      "TOTG NUM=1, QTA=-00001, TOT=0000000150\r\n"
      "TOTG NUM=2, QTA=-00001, TOT=0000000000\r\n"
      "TOTG NUM=3, QTA=-00001, TOT=-000000020\r\n";
  EXPECT_EQ(0, run("LEGGI TAB=TOTALI, FILE='d'"));
  EXPECT_EQ(expected, file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=TOTALI, FILE='d', LISTA"));
  EXPECT_EQ(expected, file("d"));
}

TEST_F(CounterTotals, GeneralTotalsEndAtTheFirstRefusedItem) {
  translator->pCurConf->iNumTOTG = 67;
  device.items = {{372, "150"}, {374, "1"}};
  device.refuse("GetDataInternal(373)", 107);
  EXPECT_EQ(1643, run("LEGGI TAB=TOTALI, FILE='d'"));
  EXPECT_EQ("TOTG NUM=1, QTA=-00001, TOT=0000000150\r\n", file("d"));
}

TEST_F(CounterTotals, TotalsOfDepartmentsAreLinesInWords) {
  device.items[78] = "2";
  device.totals = {{"1,2,100", "3000"}, {"1,2,101", "1234567"}, {"1,2,102", "1200000"},
                   {"2,2,100", "0"},    {"2,2,101", "-100"},    {"2,2,102", "99"}};
  const std::string expected =
      "TOTREP REP=1, QTA=0000000030, VENDUTO=0000012345, TOT=0000012000\r\n"
      "TOTREP REP=2, QTA=0000000000, VENDUTO=-000000001, TOT=0000000000\r\n";
  EXPECT_EQ(0, run("LEGGI TAB=TOTREPARTI, FILE='d'"));
  EXPECT_EQ(expected, file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=TOTREPARTI, FILE='d', LISTA"));
  EXPECT_EQ(expected, file("d"));
  EXPECT_EQ(2, translator->pCurConf->iNumDPT);
}

TEST_F(CounterTotals, TotalsOfDepartmentsEndAtTheFirstRefusalUntold) {
  device.items[78] = "3";
  device.totals = {{"1,2,100", "0"}, {"1,2,101", "0"}, {"1,2,102", "0"}, {"2,2,100", "0"},
                   {"2,2,101", "0"}, {"3,2,100", "0"}, {"3,2,101", "0"}, {"3,2,102", "0"}};
  EXPECT_EQ(0, run("LEGGI TAB=TOTREPARTI, FILE='d'"));
  EXPECT_EQ("TOTREP REP=1, QTA=0000000000, VENDUTO=0000000000, TOT=0000000000\r\n", file("d"));
  EXPECT_EQ("GetTotalizerExtend(2,2,102)", device.calls.back());
}

}  // namespace
