#include "console/terminal/shell_text.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {

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

TEST(ShellText, BlanksBetweenWordsStayWhereTheLineGoesOn) {
  EXPECT_EQ("a  b   c\n", wrapped("a  b   c", 0, 8));
  EXPECT_EQ("a  b\nc\n", wrapped("a  b   c", 0, 7));
  EXPECT_EQ("a  b   c  \n", wrapped("a  b   c  ", 0, 0));
}

TEST(ShellText, AWordGoesBelowWhatStandsInTheLineAlready) {
  EXPECT_EQ("one two", flowed("one two", 8, 0, 15));
  EXPECT_EQ("one\n  two", flowed("one two", 8, 2, 14));
  EXPECT_EQ("\n  one two", flowed("one two", 8, 2, 10));
  EXPECT_EQ("one two", flowed("one two", 8, 2, 0));
  EXPECT_EQ("", flowed("", 8, 2, 10));
}

TEST(ShellText, AnEntryHangsBehindItsHeading) {
  const std::string heading = "  name  ";
  EXPECT_EQ("  name  one two three four five six\n",
            entry(heading, "one two three four five six", 0));
  EXPECT_EQ("  name  one two three four\n        five six\n",
            entry(heading, "one two three four five six", 28));
  // Too narrow to stand beside it.
  EXPECT_EQ("  name\n    one two three four five\n    six\n",
            entry(heading, "one two three four five six", 27));
  EXPECT_EQ("  name\n", entry(heading, "", 27));
  EXPECT_EQ("  name\n", entry(heading, "", 80));
}

TEST(ShellText, ALineIsBrokenWithEveryCharacterKept) {
  EXPECT_EQ("abcdef\n", broken("abcdef", 6));
  EXPECT_EQ("abcd\nef\n", broken("abcdef", 4));
  EXPECT_EQ("ab  \n  cd\n", broken("ab    cd", 4));
  EXPECT_EQ("\xC3\xA8\xC3\xA8\n\xC3\xA8\n", broken("\xC3\xA8\xC3\xA8\xC3\xA8", 2));
  EXPECT_EQ("\n", broken("", 4));
  EXPECT_EQ("abcdef\n", broken("abcdef", 0));
}

TEST(ShellText, WordsStandInAsManyColumnsAsFit) {
  EXPECT_EQ("a    bbb  c\nd\n", in_columns({"a", "bbb", "c", "d"}, 15));
  EXPECT_EQ("a\nbbb\n", in_columns({"a", "bbb"}, 4));
  EXPECT_EQ("\xC3\xA8  b\n", in_columns({"\xC3\xA8", "b"}, 80));
  EXPECT_EQ("", in_columns({}, 80));
}

}  // namespace lorimat::console
