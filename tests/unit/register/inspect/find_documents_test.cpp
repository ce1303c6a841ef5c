// Registered documents looked for in a register's file: by their times, part by part, and by their
// numbers.
#include <utility>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// A day with a clock that goes back a little, and a second day:
//   10:30:00 sale 1   10:30:00 sale 2   10:10:05 invoice 1   10:20:00 sale 3   18:00 closing
//   16/01 09:00:00 sale 1
class FindDocumentsTest : public StoreTest {
 protected:
  FindDocumentsTest() {
    now = FixedTime();
    RegisterSettings settings = FileSettings();
    settings.clock = [] { return now; };
    VirtualRegister device(settings);
    Sell(device, 10000);
    Sell(device, 20000);
    At(15, 10, 10, 5);
    EXPECT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    Pay(device, 30000);
    At(15, 10, 20, 0);
    Sell(device, 40000);
    At(15, 18, 0, 0);
    EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
    At(16, 9, 0, 0);
    Sell(device, 50000);
  }

  static void At(int day, int hour, int minute, int second) {
    now.tm_mday = day;
    now.tm_hour = hour;
    now.tm_min = minute;
    now.tm_sec = second;
  }
  static void Sell(VirtualRegister& device, int64_t price) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    Pay(device, price);
  }
  static void Pay(VirtualRegister& device, int64_t price) {
    ASSERT_EQ(device.PrintRecItemEx(0, "PANE", price, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  // Their places among all, in the order in which they are found.
  static std::vector<int64_t> Places(const std::vector<StoredDocument>& documents) {
    std::vector<int64_t> places;
    for (const StoredDocument& document : documents) places.push_back(document.id);
    return places;
  }

  static inline std::tm now = {};
};

TEST_F(FindDocumentsTest, ByTheirTimesPartByPart) {
  const RegisterFile file(Path("shop.register"));
  // Time and place of each, in the order of the times.
  const std::vector<std::pair<int64_t, int64_t>> all = {{20240115101005, 3},
                                                        {20240115102000, 4},
                                                        {20240115103000, 1},
                                                        {20240115103000, 2},
                                                        {20240116090000, 5}};
  std::vector<int64_t> ends = {0, 99'999'999'999'999};
  for (const auto& [time, place] : all) {
    for (const int64_t end : {time - 1, time, time + 1}) ends.push_back(end);
  }
  for (const int64_t from : ends) {
    for (const int64_t to : ends) {
      for (int64_t behind = 0; behind <= 6; ++behind) {
        for (const size_t most : {size_t{0}, size_t{1}, size_t{2}, size_t{9}}) {
          std::vector<int64_t> wanted;
          bool passed = behind == 0;
          for (const auto& [time, place] : all) {
            if (passed && time >= from && time <= to && wanted.size() < most) {
              wanted.push_back(place);
            }
            passed = passed || place == behind;
          }
          EXPECT_EQ(Places(file.FindDocuments({from, to, behind, most})), wanted)
              << from << ' ' << to << ' ' << behind << ' ' << most;
        }
      }
    }
  }
}

TEST_F(FindDocumentsTest, ByDayAndNumber) {
  const RegisterFile file(Path("shop.register"));
  const struct {
    int closure;
    int number;
    std::vector<int64_t> places;
  } rows[] = {{1, 1, {1, 3}}, {1, 2, {2}}, {1, 3, {4}}, {1, 4, {}}, {1, 0, {}},
              {2, 1, {5}},    {2, 2, {}},  {3, 1, {}},  {0, 1, {}}};
  for (const auto& row : rows) {
    std::vector<int64_t> places;
    for (const KeptDocument& kept : file.FindKept(row.closure, row.number)) {
      places.push_back(kept.document.id);
      EXPECT_EQ(kept.entry.document, kept.document.id);
      ASSERT_EQ(kept.document.lines.size(), 1u);
      EXPECT_EQ(kept.document.lines[0].description, "PANE");
      ASSERT_EQ(kept.document.payments.size(), 1u);
      EXPECT_EQ(kept.document.payments[0].amount, kept.document.total);
    }
    EXPECT_EQ(places, row.places) << row.closure << ' ' << row.number;
  }
}

}  // namespace
}  // namespace lorimat
