#include "console/terminal/shell_text.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {

TEST(ShellText, ACharacterOfUtf8TakesOneColumnAndAnyOtherByteToo) {
  EXPECT_EQ(0u, ColumnsOf(""));
  EXPECT_EQ(5u, ColumnsOf("caff\xC3\xA8"));
  EXPECT_EQ(2u, ColumnsOf("\xE2\x82\xAC\xF0\x9F\x98\x80"));
  EXPECT_EQ(5u, ColumnsOf("caff\xE8"));
  EXPECT_EQ(2u, ColumnsOf("\xC3x"));
  EXPECT_EQ(3u, ColumnsOf("\xE2\x82x"));
  EXPECT_EQ(1u, ColumnsOf("\xF0"));
}

TEST(ShellText, ATextIsCutBetweenCharacters) {
  EXPECT_EQ("abcdef", CutTo("abcdef", 0));
  EXPECT_EQ("abcdef", CutTo("abcdef", 6));
  EXPECT_EQ("ab...", CutTo("abcdef", 5));
  EXPECT_EQ("\xC3\xA8\xC3\xA8...", CutTo("\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8\xC3\xA8", 5));
  EXPECT_EQ("..", CutTo("abcdef", 2));
}

TEST(ShellText, ACutTextIsNeverWiderThanItsRoom) {
  for (const size_t columns : {1, 2, 3, 4, 5}) {
    EXPECT_EQ(ColumnsOf(CutTo("parola", columns)), columns);
  }
}

TEST(ShellText, ATextIsWrappedBetweenWords) {
  EXPECT_EQ("  one\n  two\n", Wrapped("one two", 2, 7));
  EXPECT_EQ("  one two\n", Wrapped("one two", 2, 9));
  EXPECT_EQ("one two three\n", Wrapped("one two three", 0, 0));
  EXPECT_EQ("longerthanthat\nx\n", Wrapped("longerthanthat x", 0, 5));
  EXPECT_EQ("- one\n  two\n", Wrapped("- one two", 0, 6));
  EXPECT_EQ("\n", Wrapped("", 0, 80));
}

TEST(ShellText, BlanksBetweenWordsStayWhereTheLineGoesOn) {
  EXPECT_EQ("a  b   c\n", Wrapped("a  b   c", 0, 8));
  EXPECT_EQ("a  b\nc\n", Wrapped("a  b   c", 0, 7));
  EXPECT_EQ("a  b   c  \n", Wrapped("a  b   c  ", 0, 0));
}

TEST(ShellText, AWordGoesBelowWhatStandsInTheLineAlready) {
  EXPECT_EQ("one two", Flowed("one two", 8, 0, 15));
  EXPECT_EQ("one\n  two", Flowed("one two", 8, 2, 14));
  EXPECT_EQ("\n  one two", Flowed("one two", 8, 2, 10));
  EXPECT_EQ("one two", Flowed("one two", 8, 2, 0));
  EXPECT_EQ("", Flowed("", 8, 2, 10));
}

TEST(ShellText, AnEntryHangsBehindItsHeading) {
  const std::string heading = "  name  ";
  EXPECT_EQ("  name  one two three four five six\n",
            Entry(heading, "one two three four five six", 0));
  EXPECT_EQ("  name  one two three four\n        five six\n",
            Entry(heading, "one two three four five six", 28));
  // Too narrow to stand beside it.
  EXPECT_EQ("  name\n    one two three four five\n    six\n",
            Entry(heading, "one two three four five six", 27));
  EXPECT_EQ("  name\n", Entry(heading, "", 27));
  EXPECT_EQ("  name\n", Entry(heading, "", 80));
}

TEST(ShellText, ALineIsBrokenWithEveryCharacterKept) {
  EXPECT_EQ("abcdef\n", Broken("abcdef", 6));
  EXPECT_EQ("abcd\nef\n", Broken("abcdef", 4));
  EXPECT_EQ("ab  \n  cd\n", Broken("ab    cd", 4));
  EXPECT_EQ("\xC3\xA8\xC3\xA8\n\xC3\xA8\n", Broken("\xC3\xA8\xC3\xA8\xC3\xA8", 2));
  EXPECT_EQ("\n", Broken("", 4));
  EXPECT_EQ("abcdef\n", Broken("abcdef", 0));
}

TEST(ShellText, WordsStandInAsManyColumnsAsFit) {
  EXPECT_EQ("a    bbb  c\nd\n", InColumns({"a", "bbb", "c", "d"}, 15));
  EXPECT_EQ("a\nbbb\n", InColumns({"a", "bbb"}, 4));
  EXPECT_EQ("\xC3\xA8  b\n", InColumns({"\xC3\xA8", "b"}, 80));
  EXPECT_EQ("", InColumns({}, 80));
}

}  // namespace lorimat::console
