#include "console/shell_text.h"

#include <gtest/gtest.h>

TEST(ShellText, ACharacterOfUtf8TakesOneColumnAndAnyOtherByteToo) {
  EXPECT_EQ(0u, columns_of(""));
  EXPECT_EQ(5u, columns_of("caff\xC3\xA8"));
  EXPECT_EQ(2u, columns_of("\xE2\x82\xAC\xF0\x9F\x98\x80"));
  EXPECT_EQ(5u, columns_of("caff\xE8"));
  EXPECT_EQ(2u, columns_of("\xC3x"));
  EXPECT_EQ(3u, columns_of("\xE2\x82x"));
  EXPECT_EQ(1u, columns_of("\xF0"));
}

TEST(ShellText, ATextIsCutBetweenCharacters) {
  EXPECT_EQ("abcdef", cut_to("abcdef", 0));
  EXPECT_EQ("abcdef", cut_to("abcdef", 6));
  EXPECT_EQ("ab...", cut_to("abcdef", 5));
  EXPECT_EQ("\xC3\xA8\xC3\xA8...", cut_to("\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8", 5));
  EXPECT_EQ("...", cut_to("abcdef", 2));
}

TEST(ShellText, ATextIsWrappedBetweenWords) {
  EXPECT_EQ("  one\n  two\n", wrapped("one two", 2, 7));
  EXPECT_EQ("  one two\n", wrapped("one two", 2, 9));
  EXPECT_EQ("one two three\n", wrapped("one two three", 0, 0));
  EXPECT_EQ("longerthanthat\nx\n", wrapped("longerthanthat x", 0, 5));
  EXPECT_EQ("- one\n  two\n", wrapped("- one two", 0, 6));
  EXPECT_EQ("\n", wrapped("", 0, 80));
}

TEST(ShellText, WordsStandInAsManyColumnsAsFit) {
  EXPECT_EQ("a    bbb  c\nd\n", in_columns({"a", "bbb", "c", "d"}, 15));
  EXPECT_EQ("a\nbbb\n", in_columns({"a", "bbb"}, 4));
  EXPECT_EQ("\xC3\xA8  b\n", in_columns({"\xC3\xA8", "b"}, 80));
  EXPECT_EQ("", in_columns({}, 80));
}
