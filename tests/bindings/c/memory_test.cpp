// No memory, at one allocation after the other: the C face answers so, and goes on behind it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "lorimatrt/lorimat_register.h"

namespace {

// How many allocations still succeed; below 0: all of them.
thread_local long allocations_left = -1;

}  // namespace

void* operator new(size_t size) {
  if (allocations_left == 0) throw std::bad_alloc();
  if (allocations_left > 0) --allocations_left;
  void* memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace {

// Lets each allocation of a call fail in turn, until it has all that it wants: `work` makes the
// call by what it is handed, and says whether it was carried out. Answers how often it failed.
template <typename Work>
long FailInTurn(Work work) {
  constexpr long kMost = 100000;
  for (long place = 0; place < kMost; ++place) {
    bool failed = false;
    const auto limited = [&](auto call) {
      allocations_left = place;
      const auto result = call();
      failed = allocations_left == 0;
      allocations_left = -1;
      return result;
    };
    const bool done = work(limited);
    if (done && !failed) return place;
    if (testing::Test::HasFailure()) return place;
  }
  ADD_FAILURE() << "it never has enough";
  return kMost;
}

void ExpectNamed(int result) {
  EXPECT_TRUE(result == LORIMAT_NO_MEMORY || result == LORIMAT_REGISTER_FAULT) << result;
  EXPECT_STRNE(lorimat_register_error(), "");
}

TEST(CFaceMemory, AClientIsMadeOrNot) {
  lorimat_device table = {};
  table.size = sizeof table;
  table.abi = LORIMAT_ABI;
  const long places = FailInTurn([&](auto limited) {
    lorimat_client* client = nullptr;
    const int result = limited([&] { return lorimat_client_new(&table, &client); });
    EXPECT_EQ(result == LORIMAT_OK, client != nullptr);
    if (result != LORIMAT_OK) {
      EXPECT_EQ(result, LORIMAT_NO_MEMORY);
    }
    lorimat_client_free(client);
    return result == LORIMAT_OK;
  });
  EXPECT_GE(places, 1);
}

TEST(CFaceMemory, ACodeIsExplainedOrNot) {
  const std::string whole = lorimat_explain(1643, "it");
  const long places = FailInTurn([&](auto limited) {
    const char* text = limited([] { return lorimat_explain(1643, "it"); });
    if (text != nullptr) {
      EXPECT_EQ(text, whole);
    }
    return text != nullptr;
  });
  EXPECT_GE(places, 5);
}

TEST(CFaceMemory, ARegisterIsOpenedOrNot) {
  const long places = FailInTurn([&](auto limited) {
    lorimat_register* device = nullptr;
    const int result = limited([&] { return lorimat_register_open(nullptr, &device); });
    EXPECT_EQ(result == LORIMAT_OK, device != nullptr);
    if (result != LORIMAT_OK) ExpectNamed(result);
    lorimat_register_close(device);
    return result == LORIMAT_OK;
  });
  EXPECT_GE(places, 50);
}

TEST(CFaceMemory, ItsPaperAndStateComeOrNot) {
  lorimat_register* device = nullptr;
  ASSERT_EQ(lorimat_register_open(nullptr, &device), LORIMAT_OK);
  long places = FailInTurn([&](auto limited) {
    lorimat_bytes paper = {};
    const int result = limited([&] { return lorimat_register_paper(device, &paper); });
    EXPECT_EQ(result == LORIMAT_OK, paper.data != nullptr);
    if (result != LORIMAT_OK) ExpectNamed(result);
    lorimat_bytes_free(&paper);
    return result == LORIMAT_OK;
  });
  places += FailInTurn([&](auto limited) {
    const int result = limited([&] {
      return lorimat_register_add_fault(device, "code", 777, "PrintRecItemAdjustmentEx2",
                                        LORIMAT_FAULT_EVERY, 1);
    });
    if (result != LORIMAT_OK) ExpectNamed(result);
    return result == LORIMAT_OK;
  });
  EXPECT_GE(places, 1);
  lorimat_register_close(device);
}

}  // namespace
