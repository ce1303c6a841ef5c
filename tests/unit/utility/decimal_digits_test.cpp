// Digits counted, cut and written, held against the plain ways: division by ten, and the library's
// texts.
#include "utility/decimal_digits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

unsigned int CountByDivision(uint64_t magnitude) {
  unsigned int count = 1;
  for (; magnitude >= 10; magnitude /= 10) ++count;
  return count;
}

std::string Written(uint64_t magnitude) {
  char text[20];
  return {text, decimal_digits::Write(text, magnitude)};
}

TEST(DecimalDigits, AreCountedAroundEachPowerOfTenAndOfTwo) {
  for (const uint64_t ten : decimal_digits::kTens) {
    for (const uint64_t magnitude : {ten - 1, ten, ten + 1}) {
      EXPECT_EQ(decimal_digits::Count(magnitude), CountByDivision(magnitude)) << magnitude;
    }
  }
  for (int bit = 0; bit < 64; ++bit) {
    const uint64_t two = uint64_t{1} << bit;
    for (const uint64_t magnitude : {two - 1, two, two + 1}) {
      EXPECT_EQ(decimal_digits::Count(magnitude), CountByDivision(magnitude)) << magnitude;
    }
  }
  EXPECT_EQ(decimal_digits::Count(0), 1u);
  EXPECT_EQ(decimal_digits::Count(~uint64_t{0}), 20u);
}

TEST(DecimalDigits, AreCutAsByDivision) {
  std::mt19937_64 random(20261122);
  for (int i = 0; i < 10000; ++i) {
    const uint64_t magnitude = random() >> random() % 64;
    uint64_t cut = magnitude;
    for (unsigned int digits = 0; digits <= 4; ++digits, cut /= 10) {
      ASSERT_EQ(decimal_digits::WithoutLast(magnitude, digits), cut) << magnitude;
    }
  }
}

TEST(DecimalDigits, AreWrittenAsTheLibraryWritesThem) {
  std::mt19937_64 random(20261122);
  for (int i = 0; i < 10000; ++i) {
    const uint64_t magnitude = random() >> random() % 64;
    ASSERT_EQ(Written(magnitude), std::to_string(magnitude));
  }
  EXPECT_EQ(Written(0), "0");
  EXPECT_EQ(Written(~uint64_t{0}), "18446744073709551615");
}

TEST(DecimalDigits, ThatAreFewerGetZerosInFront) {
  char text[8];
  EXPECT_EQ(std::string(text, decimal_digits::WriteLast(text, 7, 3)), "007");
  EXPECT_EQ(std::string(text, decimal_digits::WriteLast(text, 1234, 3)), "234");
  EXPECT_EQ(std::string(text, decimal_digits::WriteLast(text, 5, 0)), "");
}

}  // namespace
