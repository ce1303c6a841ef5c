#include "register/value/row_encoding.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace lorimat {
namespace {

TEST(RowEncoding, WhatIsWrittenIsReadBack) {
  constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
  constexpr int kLeastInt = std::numeric_limits<int>::min();
  constexpr int kMostInt = std::numeric_limits<int>::max();
  std::string every;
  for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
  RowEncoder writer;
  writer.Number(kLeast).Number(kLeastInt).Text(every).Text("").Number(kMostInt).Number(-1);
  const std::string text = writer.Take();
  RowDecoder reader(text);
  EXPECT_EQ(reader.Number(), kLeast);
  EXPECT_EQ(reader.Int(), kLeastInt);
  EXPECT_EQ(reader.Text(), every);
  EXPECT_EQ(reader.Text(), "");
  EXPECT_EQ(reader.Int(), kMostInt);
  EXPECT_FALSE(reader.done());
  EXPECT_EQ(reader.Number(), -1);
  EXPECT_TRUE(reader.done());
}

TEST(RowEncoding, FromTheFirstFaultOnEveryNumberIsZeroAndEveryTextEmpty) {
  for (const char* fault :
       {"2147483648 ", "-2147483649 ", "9223372036854775808 ", "x ", "1x ", "1:", " "}) {
    SCOPED_TRACE(fault);
    const std::string text = std::string(fault) + "7 1:a 7 ";
    RowDecoder reader(text);
    EXPECT_EQ(reader.Int(), 0);
    EXPECT_FALSE(reader.good());
    EXPECT_EQ(reader.Int(), 0);
    EXPECT_EQ(reader.Text(), "");
    EXPECT_EQ(reader.Number(), 0);
    EXPECT_FALSE(reader.done());
  }
  // Sizes of texts that are none, and texts that end somewhere else.
  for (const char* fault : {"-1:a ", "5:a ", "2:a ", "0:a ", "a "}) {
    SCOPED_TRACE(fault);
    RowDecoder reader(fault);
    EXPECT_EQ(reader.Text(), "");
    EXPECT_FALSE(reader.good());
    EXPECT_EQ(reader.Number(), 0);
  }
}

}  // namespace
}  // namespace lorimat
