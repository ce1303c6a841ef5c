// How a result code comes about: what one pass and two make of a client's result, and what cannot
// be.
#include "language/code_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace lorimat::console {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Chains of a client's result without a name; nothing for a code that none leads to. A pass adds
// 512 to results below 200 and 1024 from there on; what holds its bit already stays as it is.
struct Case {
  int code;
  std::vector<int> chain;
  bool once_or_more;
};

const Case kUnnamed[] = {
    {512 + 50, {50, 562}, false},
    {512 + 199, {199, 711}, false},
    // From 200 on the bit is another one.
    {512 + 210, {}, false},
    {1024 + 250, {250, 1274}, true},
    // A result below 200 does not get this bit: it came as it is.
    {1024 + 50, {1074, 1074}, true},
    {512 + 1024 + 50, {50, 562, 1586}, false},
    // 722 is a longer result of its own.
    {512 + 1024 + 210, {722, 1746}, true},
    {0x10000 + 1024 + 5, {0x10005, 0x10405}, true},
    {0x10000 + 512, {}, false},
    // A negative one passes if it has the bit of what it is: -3 is ...FD.
    {-3, {-3, -3}, true},
    {-1 - 512, {}, false},
};

}  // namespace

TEST(CodeTable, WhatALineOfAStoppedBatchIsAnsweredWithIsTheConsoles) {
  for (const int code : {language::kStoppedHere, language::kStoppedBehind}) {
    const std::vector<language::CodeReading> readings = language::ReadCode(code);
    ASSERT_THAT(readings, SizeIs(1));
    EXPECT_EQ(readings[0].kind, language::CodeReading::kConsole);
    EXPECT_THAT(readings[0].cause, testing::HasSubstr("stopped the batch"));
  }
}

TEST(CodeTable, AClientResultWithoutANameIsWhatThePassesCanHaveMadeOfIt) {
  for (const Case& row : kUnnamed) {
    SCOPED_TRACE(row.code);
    const std::vector<language::CodeReading> readings = language::ReadCode(row.code);
    if (row.chain.empty()) {
      EXPECT_THAT(readings, IsEmpty());
      continue;
    }
    ASSERT_THAT(readings, SizeIs(1));
    EXPECT_EQ(readings[0].kind, language::CodeReading::kUnnamedClient);
    EXPECT_EQ(readings[0].chain, row.chain);
    EXPECT_EQ(readings[0].once_or_more, row.once_or_more);
    EXPECT_THAT(readings[0].name, IsEmpty());
  }
}

TEST(CodeTable, AResultLeadsToWhatOnePassOrTwoMakeOfIt) {
  EXPECT_TRUE(language::ComesFrom(619, 107));
  EXPECT_TRUE(language::ComesFrom(1643, 107));
  EXPECT_FALSE(language::ComesFrom(107, 107));
  EXPECT_TRUE(language::ComesFrom(512, -1));
  EXPECT_TRUE(language::ComesFrom(0, 0));
  EXPECT_FALSE(language::ComesFrom(512, 0));
  // Wider than any code, with the same lower bits.
  if (sizeof(long) > sizeof(int)) {
    const long long wide = 619 + 2 * (static_cast<long long>(std::numeric_limits<int>::max()) + 1);
    EXPECT_FALSE(language::ComesFrom(static_cast<long>(wide), 107));
  }
}

}  // namespace lorimat::console
