// The roll of paper that is kept: its last 20000 lines, whatever was printed at once; and the lines
// that somebody still wants.
#include <algorithm>

#include "register/inspect/register_file.h"
#include "register/paper/barcode.h"
#include "register/storage/schema.h"
#include "register/storage/store_tables.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class RollTest : public StoredRegisterTest {
 protected:
  // A non-fiscal document whose texts fill this number of lines, a thousand with each operation.
  static void Print(VirtualRegister& device, int lines, int* number) {
    ASSERT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
    while (lines > 0) {
      std::string text;
      for (int line = 0; line < std::min(lines, 1000); ++line) {
        // As wide as the paper: each on a line of its own.
        text += fmt::format("RIGA {:037}", (*number)++);
      }
      ASSERT_EQ(device.PrintNormal(RTF_FPTR_S_RECEIPT, text.c_str()), RTF_SUCCESS);
      lines -= 1000;
    }
    ASSERT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  }
  // The whole journal on paper, as one operation.
  static int Extract(VirtualRegister& device) {
    return device.FiscalReportMessageEx(1, 65535, RTF_FPTR_RT_DATE, 0, 0, 0, 0, "010120240000",
                                        "311220242359", "txt", "", 1);
  }
  // The lines of a roll are the last ones of another, and 20000 or up to 3000 more.
  static void ExpectEndOf(const Paper& whole, const Paper& roll) {
    ASSERT_GE(roll.lines().size(), 20000u);
    EXPECT_LE(roll.lines().size(), 23000u);
    ASSERT_GE(whole.lines().size(), roll.lines().size());
    EXPECT_TRUE(std::equal(roll.lines().rbegin(), roll.lines().rend(), whole.lines().rbegin()));
    EXPECT_EQ(whole.dropped() + whole.lines().size(), roll.dropped() + roll.lines().size());
  }
};

TEST_F(RollTest, AReportLongerThanTheRollLeavesItsEnd) {
  VirtualRegister whole(TestSettings());
  whole.HoldPaper(0);
  VirtualRegister memory(TestSettings());
  for (VirtualRegister* each : {&whole, &memory, device.get()}) {
    int number = 1;
    Print(*each, 21000, &number);
    ASSERT_EQ(Extract(*each), RTF_SUCCESS);
    ASSERT_EQ(Extract(*each), RTF_SUCCESS);
  }
  // 21000 lines and some more, three times.
  EXPECT_GT(whole.paper_lines().size(), 63000u);
  EXPECT_EQ(whole.paper().dropped(), 0u);
  ExpectEndOf(whole.paper(), device->paper());
  ExpectEndOf(whole.paper(), memory.paper());
  EXPECT_EQ(device->paper_lines().back(), std::string(42, '-'));
  Restart();
  ExpectEndOf(whole.paper(), device->paper());
  device.reset();
  ExpectEndOf(whole.paper(), RegisterFile(Path("shop.register")).Roll(0));
}

TEST_F(RollTest, ARegisterInMemoryKeepsTheEndOfItsRollToo) {
  VirtualRegister memory(TestSettings());
  VirtualRegister whole(TestSettings());
  whole.HoldPaper(0);
  for (VirtualRegister* each : {&whole, &memory}) {
    int number = 1;
    for (int document = 0; document < 60; ++document) Print(*each, 1000, &number);
  }
  EXPECT_GT(whole.paper_lines().size(), 60000u);
  ExpectEndOf(whole.paper(), memory.paper());
}

TEST_F(RollTest, LinesThatAreHeldStayUntilTheyAreLetGo) {
  int number = 1;
  Print(*device, 1000, &number);
  const size_t first = device->paper_lines().size();
  device->HoldPaper(first);
  for (int document = 0; document < 30; ++document) Print(*device, 1000, &number);
  EXPECT_EQ(device->paper().dropped(), first);
  EXPECT_GT(device->paper_lines().size(), 30000u);
  device->HoldPaper(device->paper().dropped() + device->paper_lines().size());
  Print(*device, 1, &number);
  EXPECT_GE(device->paper_lines().size(), 20000u);
  EXPECT_LE(device->paper_lines().size(), 23000u);
  // Taken back with an operation that fails, as always.
  const std::string before = PaperImage(device->paper());
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_EQ(Extract(*device), RTF_E_FAILURE);
  disk.Heal();
  EXPECT_EQ(PaperImage(device->paper()), before);
}

// A barcode of 30 lines behind 990 others, in one operation.
TEST_F(RollTest, APieceOfTheRollEndsBehindAWholeBarcode) {
  Paper paper;
  for (int line = 0; line < 990; ++line) paper.Text(fmt::format("PRIMA {}", line));
  paper.Barcode({FindBarcode("09")->id, std::string(1250, 'A'), 1, false, Alignment::kLeft},
                "PDF417");
  const size_t behind = paper.lines().size();
  ASSERT_GT(behind, 1015u);
  for (int line = 0; line < 1500; ++line) paper.Text(fmt::format("DOPO {}", line));
  paper.Cut();

  Database database(Path("roll"), Database::Open::kCreate, kRegisterKind);
  database.Begin(true);
  MakeSchema(database);
  StoreRoll(database, paper, {});
  database.Commit();
  EXPECT_EQ(PaperImage(LoadRoll(database)), PaperImage(paper));
  // Three pieces: up to behind the barcode, a thousand lines, the rest.
  database.Begin(true);
  EXPECT_EQ(TrimRoll(database, paper, paper.lines().size()), 0u);
  EXPECT_EQ(TrimRoll(database, paper, paper.lines().size() - behind + 1), 0u);
  EXPECT_EQ(TrimRoll(database, paper, paper.lines().size() - behind), behind);
  database.Commit();
  const Paper rest = LoadRoll(database);
  EXPECT_EQ(rest.dropped(), behind);
  ASSERT_FALSE(rest.lines().empty());
  EXPECT_EQ(rest.lines()[0], "DOPO 0");
  EXPECT_EQ(rest.rows().size(), 1u);
}

// The roll that a row of these numbers makes, as it is read back; nothing where it is damage.
TEST_F(RollTest, ARowsNumbersHaveTheirEnds) {
  device.reset();
  const auto read = [this](int scale, int alignment) {
    Paper paper;
    paper.Barcode(
        {FindBarcode("02")->id, "800123456789", scale, false, static_cast<Alignment>(alignment)},
        "EAN");
    const std::string file = Path(fmt::format("roll{}.{}", scale, alignment));
    Database database(file, Database::Open::kCreate, kRegisterKind);
    database.Begin(true);
    MakeSchema(database);
    StoreRoll(database, paper, {});
    database.Commit();
    try {
      return PaperImage(LoadRoll(database)) == PaperImage(paper);
    } catch (const RegisterError&) {
      return false;
    }
  };
  for (const int scale : {0, 1, 2, 9, 10}) EXPECT_EQ(read(scale, 0), scale > 0 && scale < 10);
  for (const int alignment : {-1, 0, 1, 2, 3}) {
    EXPECT_EQ(read(3, alignment), alignment >= 0 && alignment <= 2) << alignment;
  }
}

}  // namespace
}  // namespace lorimat
