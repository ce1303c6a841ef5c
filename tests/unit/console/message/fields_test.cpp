// The fields that a translation must have.
#include "console/message/fields.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {

TEST(MessageFields, AreTheSameInAnyOrder) {
  EXPECT_TRUE(HasSameFields("", ""));
  EXPECT_TRUE(HasSameFields("no field", "nessun campo"));
  EXPECT_TRUE(HasSameFields("{} of {:04}", "{1:04} e {0}"));
  EXPECT_TRUE(HasSameFields("{entry}: {a:>8}", "{a:>8} {entry}"));
  EXPECT_TRUE(HasSameFields("{} and {}, 100%", "{} e {}, al 100%"));
}

TEST(MessageFields, CountAsOftenAsTheyStandThere) {
  EXPECT_FALSE(HasSameFields("{}", ""));
  EXPECT_FALSE(HasSameFields("", "{}"));
  EXPECT_FALSE(HasSameFields("{}", "{} {}"));
  EXPECT_FALSE(HasSameFields("{} {}", "{0} {0}"));
  EXPECT_FALSE(HasSameFields("{} {}", "{1}"));
  EXPECT_FALSE(HasSameFields("{entry}", "{voce}"));
  EXPECT_FALSE(HasSameFields("{}", "{entry}"));
}

TEST(MessageFields, AreWrittenAlike) {
  EXPECT_FALSE(HasSameFields("{}", "{:d}"));
  EXPECT_FALSE(HasSameFields("{:x}", "{}"));
  EXPECT_FALSE(HasSameFields("{}", "{:1000000000}"));
  EXPECT_FALSE(HasSameFields("{}", "{:}"));
  EXPECT_FALSE(HasSameFields("{}", "{ }"));
  EXPECT_FALSE(HasSameFields("{}", "{00}"));
}

TEST(MessageFields, DoubledBracesAreNone) {
  EXPECT_TRUE(HasSameFields("{{}}", "none"));
  EXPECT_TRUE(HasSameFields("{{{}}}", "{}"));
  EXPECT_FALSE(HasSameFields("{}", "{{}}"));
}

TEST(MessageFields, ABraceWithoutItsOtherFitsNothing) {
  for (const char* text : {"{", "}", "{} {", "{} }", "}{", "{}}", "{{}", "{:{}}", "{0", "a}b"}) {
    EXPECT_FALSE(HasSameFields("{}", text)) << text;
    EXPECT_FALSE(HasSameFields(text, text)) << text;
  }
}

TEST(MessageFields, AreEitherCountedOrNumbered) {
  EXPECT_FALSE(HasSameFields("{} {}", "{} {1}"));
  EXPECT_FALSE(HasSameFields("{} {}", "{0} {}"));
  EXPECT_TRUE(HasSameFields("{} {}", "{0} {1}"));
  EXPECT_TRUE(HasSameFields("{} {name}", "{name} {}"));
}

TEST(MessageFields, TooManyFitNothing) {
  std::string text;
  for (int i = 0; i < 16; ++i) text += "{}";
  EXPECT_TRUE(HasSameFields(text, text));
  text += "{}";
  EXPECT_FALSE(HasSameFields(text, text));
}

}  // namespace lorimat::console
