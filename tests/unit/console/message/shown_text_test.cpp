#include "console/message/shown_text.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {

TEST(ShownText, ControlCharactersAreBytesToReadAndActOnNothing) {
  EXPECT_EQ("\\x00\\x1B[2J\\x7F", Shown(std::string("\0\x1B[2J\x7F", 6)));
  // U+0080, U+009B, which begins a sequence as ESC [ does, U+009F; and beside them U+00A0.
  EXPECT_EQ("\\xC2\\x80\\xC2\\x9B2J\\xC2\\x9F\xC2\xA0", Shown("\xC2\x80\xC2\x9B"
                                                              "2J\xC2\x9F\xC2\xA0"));
  // As single bytes, for a terminal that is not in UTF-8.
  EXPECT_EQ(
      "\\x9B"
      "2J\xE8",
      Shown("\x9B"
            "2J\xE8"));
}

TEST(ShownText, MarksThatTurnTheDirectionOfWritingAreBytesToRead) {
  EXPECT_EQ("a\\xE2\\x80\\xAAb\\xE2\\x80\\xAE", Shown("a\u202Ab\u202E"));
  EXPECT_EQ("a\\xE2\\x81\\xA6b\\xE2\\x81\\xA9", Shown("a\u2066b\u2069"));
  EXPECT_EQ("\\xEF\\xBB\\xBFx", Shown("\uFEFFx"));
}

TEST(ShownText, WhatNobodySeesIsBytesToRead) {
  EXPECT_EQ("a\\xE2\\x80\\x8Bb", Shown("a\u200Bb"));
  EXPECT_EQ("a\\xC2\\xADb", Shown("a\u00ADb"));
  EXPECT_EQ(
      "a\xAD"
      "b",
      Shown("a\xAD"
            "b"));
  EXPECT_EQ("\\xE2\\x81\\xA0\\xE2\\x81\\xAF", Shown("\u2060\u206F"));
  EXPECT_EQ("\\xF3\\xA0\\x81\\x81x", Shown("\U000E0041x"));
  EXPECT_EQ("\\xEF\\xB8\\x8F", Shown("\uFE0F"));
}

TEST(ShownText, LinesKeepTheirEnds) {
  EXPECT_EQ("", ShownLines(""));
  EXPECT_EQ("a\n\n\\x1Bb\nc", ShownLines("a\n\n\x1B"
                                         "b\nc"));
}

TEST(ShownText, WhatIsBesideThemStaysAsItIs) {
  for (const std::string text : {" ~", "caff\u00E8", "\u2029\u202F", "\u2065\u2070", "\u20AC",
                                 "\U0001F600", "caff\xE8", "\xE2\x80", "\xF0"}) {
    EXPECT_EQ(text == "\xE2\x80" ? "\xE2\\x80" : text, Shown(text));
  }
}

TEST(ShownText, ATextIsCutBetweenCharacters) {
  EXPECT_EQ("abc", CutText("abc", 3));
  EXPECT_EQ("ab...", CutText("abc", 2));
  EXPECT_EQ("a...", CutText("a\u20ACb", 3));
  EXPECT_EQ("a\u20ACb", CutText("a\u20ACb", 0));
  EXPECT_EQ("\x1B...", CutText("\x1B[2J", 1));
  EXPECT_EQ("\\x1B...", Shown("\x1B[2J", 1));
}

}  // namespace lorimat::console
