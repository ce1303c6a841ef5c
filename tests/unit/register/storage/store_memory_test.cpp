// Memory that runs out in the middle of an operation, at every place where it can: an answer of 0
// means stored, any other that nothing has changed, here and in the file; and the register goes on
// as soon as there is memory.
#include "unit/register/failing_memory.h"
#include "unit/register/store_day.h"

namespace lorimat {
namespace {

class StoreMemoryTest : public StoreDayTest {
 protected:
  // Lives through the day. Each operation is tried with the memory failing so many times in a row,
  // first at `first` and then `stride` allocations later each time, until it succeeds.
  void Run(int in_a_row, int first, int stride);

  int failures_ = 0;
};

void StoreMemoryTest::Run(int in_a_row, int first, int stride) {
  std::unique_ptr<VirtualRegister> held = std::make_unique<VirtualRegister>(FileSettings());
  for (const DayStep& step : Day()) {
    SCOPED_TRACE(step.name);
    if (step.restart) {
      held.reset();
      held = std::make_unique<VirtualRegister>(FileSettings());
    }
    VirtualRegister& device = *held;
    const std::string memory = All(device);
    const std::string stored = Stored();
    for (int n = first;; n += stride) {
      FailingMemory::FailAt(n, in_a_row);
      const int code = step.call(device);
      FailingMemory::Heal();
      if (code == RTF_SUCCESS) break;
      ++failures_;
      ASSERT_TRUE(FailingMemory::failed());
      ASSERT_EQ(code, RTF_E_FAILURE) << "at allocation " << n;
      EXPECT_EQ(device.last_failure(), "there is not enough memory") << "at allocation " << n;
      ASSERT_EQ(All(device), memory) << "in memory, at allocation " << n;
      ASSERT_EQ(Stored(), stored) << "in the file, at allocation " << n;
    }
    // What was answered with 0 is what a fresh register finds.
    if (device.printer_state() != RTF_FPTR_PS_MONITOR) continue;
    CopyAsCut("shop.register", "fresh.register");
    const VirtualRegister fresh(FileSettings("fresh.register"));
    ASSERT_EQ(PaperImage(fresh.paper()), PaperImage(device.paper()));
    ASSERT_EQ(StoreImage(fresh.store()), StoreImage(device.store()));
    ASSERT_EQ(TableImage(fresh.tables()), TableImage(device.tables()));
  }
  const std::string image = Image(*held);
  VirtualRegister good(FileSettings("good.register"));
  for (const DayStep& step : Day()) ASSERT_EQ(step.call(good), RTF_SUCCESS) << step.name;
  EXPECT_EQ(image, Image(good));
}

TEST_F(StoreMemoryTest, AnAllocationThatFails) {
  Run(1, 1, 4);
  EXPECT_GT(failures_, 500);
}
TEST_F(StoreMemoryTest, TwoInARow) {
  Run(2, 3, 9);
  EXPECT_GT(failures_, 300);
}
TEST_F(StoreMemoryTest, FiveInARow) {
  Run(5, 2, 9);
  EXPECT_GT(failures_, 300);
}
TEST_F(StoreMemoryTest, TwentyInARow) {
  Run(20, 4, 9);
  EXPECT_GT(failures_, 300);
}
TEST_F(StoreMemoryTest, NoMemoryAnyMore) {
  Run(FailingMemory::kForGood, 5, 9);
  EXPECT_GT(failures_, 300);
}

}  // namespace
}  // namespace lorimat
