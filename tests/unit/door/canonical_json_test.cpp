#include "door/http/canonical_json.h"

#include <gtest/gtest.h>

#include <bit>

#include "door/http/target.h"

namespace lorimat::door {
namespace {

std::string Canonical(std::string_view text) {
  std::string fault;
  const std::optional<nlohmann::json> value = ReadJson(text, &fault);
  return value ? CanonicalJson(*value) : "fault: " + fault;
}

TEST(CanonicalJson, NamesAreInOrderAndNothingStandsBetween) {
  EXPECT_EQ(Canonical(R"( { "b" : [ 1 , true, null ], "a" : "x" } )"),
            R"({"a":"x","b":[1,true,null]})");
}

// The example of RFC 8785, 3.2.3: by units of UTF-16, where the smiling face goes before U+FB33.
TEST(CanonicalJson, NamesSortByUnitsOfUtf16) {
  EXPECT_EQ(Canonical("{\"\\u20ac\":1,\"\\r\":2,\"\\ufb33\":3,\"1\":4,\"\\ud83d\\ude00\":5,"
                      "\"\\u0080\":6,\"\\u00f6\":7}"),
            "{\"\\r\":2,\"1\":4,\"\xC2\x80\":6,\"\xC3\xB6\":7,\"\xE2\x82\xAC\":1,"
            "\"\xF0\x9F\x98\x80\":5,\"\xEF\xAC\xB3\":3}");
}

TEST(CanonicalJson, TextsAreEscapedAsLittleAsMayBe) {
  EXPECT_EQ(Canonical(R"("\u20ac$\u000F\u000aA'\u0042\u0022\u005c\\\"\/")"),
            "\"\xE2\x82\xAC$\\u000f\\nA'B\\\"\\\\\\\\\\\"/\"");
}

// The numbers of RFC 8785, appendix B.
TEST(CanonicalJson, NumbersAreThoseOfTheRfc) {
  const auto text = [](uint64_t bits) { return CanonicalNumber(std::bit_cast<double>(bits)); };
  EXPECT_EQ(text(0x0000000000000000), "0");
  EXPECT_EQ(text(0x8000000000000000), "0");
  EXPECT_EQ(text(0x0000000000000001), "5e-324");
  EXPECT_EQ(text(0x8000000000000001), "-5e-324");
  EXPECT_EQ(text(0x7fefffffffffffff), "1.7976931348623157e+308");
  EXPECT_EQ(text(0x4340000000000000), "9007199254740992");
  EXPECT_EQ(text(0x4430000000000000), "295147905179352830000");
  EXPECT_EQ(text(0x44b52d02c7e14af5), "9.999999999999997e+22");
  EXPECT_EQ(text(0x44b52d02c7e14af6), "1e+23");
  EXPECT_EQ(text(0x444b1ae4d6e2ef4e), "999999999999999700000");
  EXPECT_EQ(text(0x444b1ae4d6e2ef50), "1e+21");
  EXPECT_EQ(text(0x3eb0c6f7a0b5ed8c), "9.999999999999997e-7");
  EXPECT_EQ(text(0x3eb0c6f7a0b5ed8d), "0.000001");
  EXPECT_EQ(text(0x41b3de4355555555), "333333333.3333333");
  EXPECT_EQ(text(0xbecbf647612f3696), "-0.0000033333333333333333");
}

TEST(CanonicalJson, WhatIsNoGoodIsTold) {
  EXPECT_EQ(Canonical("{\"a\":1,\"a\":1}"), "fault: a name stands twice in an object: a");
  EXPECT_EQ(Canonical("{"), "fault: it is no JSON at byte 2");
  EXPECT_EQ(Canonical(""), "fault: it is no JSON at byte 1");
  EXPECT_EQ(Canonical("{} x"), "fault: it is no JSON at byte 4");
  EXPECT_EQ(Canonical("1e999"), "fault: it has a number that is too large");
  EXPECT_EQ(Canonical(std::string(17, '[') + std::string(17, ']')), "fault: it is deeper than 16");
  EXPECT_EQ(Canonical(std::string(100000, '[')), "fault: it is deeper than 16");
  EXPECT_EQ(Canonical("\"\\ud800\"").substr(0, 6), "fault:");
  EXPECT_EQ(Canonical("\"\xFF\"").substr(0, 6), "fault:");
}

TEST(Target, IsPathAndQuery) {
  const std::optional<Target> target = ReadTarget("/v1/jobs/7?key=a%20b&desk=");
  ASSERT_TRUE(target);
  EXPECT_EQ(target->segments, (std::vector<std::string>{"v1", "jobs", "7"}));
  EXPECT_EQ(target->query, (std::map<std::string, std::string>{{"desk", ""}, {"key", "a b"}}));
  EXPECT_TRUE(ReadTarget("/"));
  for (const char* bad : {"", "v1", "http://x/", "/%", "/%4", "/%zz", "/a?b=1&b=2", "/?%"}) {
    EXPECT_FALSE(ReadTarget(bad)) << bad;
  }
}

TEST(Target, ACountHasDigitsAlone) {
  EXPECT_EQ(ReadCount("0"), 0);
  EXPECT_EQ(ReadCount("999999999999999999"), 999999999999999999);
  for (const char* bad : {"", "-1", "+1", "1 ", "1.0", "1e3", "1000000000000000000"}) {
    EXPECT_FALSE(ReadCount(bad)) << bad;
  }
}

}  // namespace
}  // namespace lorimat::door
