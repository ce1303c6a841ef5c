// Requests of a program: what is read, and where it is wrong.
#include "console/shell/json_request.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {

using namespace std::string_literals;

namespace {

JsonRequest Read(const std::string& text) {
  SourceLine line;
  line.text = text;
  line.length = text.size();
  return ReadRequest(line);
}

// "not-json:5", or "good".
std::string Fault(const std::string& text) {
  const JsonRequest request = Read(text);
  if (!request.error) return "good";
  EXPECT_FALSE(request.error->cause.empty());
  return RequestErrorName(request.error->kind) + (":" + std::to_string(request.error->column));
}

}  // namespace

TEST(JsonRequest, HasAnIdAndALine) {
  const JsonRequest text = Read(R"( {"line" : "VEND REP=1", "id":"a\u00e8" } )");
  EXPECT_FALSE(text.error);
  EXPECT_EQ(text.id, Json("a\u00e8"));
  EXPECT_EQ(text.line, "VEND REP=1");
  EXPECT_EQ(Read(R"({"id":-7,"line":""})").id, Json(-7));
  EXPECT_EQ(Read(R"({"id":18446744073709551615,"line":""})").id.dump(), "18446744073709551615");
  EXPECT_EQ(Read(R"({"id":1,"line":"DES='\"\\'\t"})").line, "DES='\"\\'\t");
  EXPECT_EQ(Fault("{\"id\":1,\"line\":\"\"}\r"), "good");
}

TEST(JsonRequest, NamesTheColumnWhereItIsNoJson) {
  EXPECT_EQ(Fault(""), "not-json:1");
  EXPECT_EQ(Fault("   "), "not-json:4");
  EXPECT_EQ(Fault("CHIU"), "not-json:1");
  EXPECT_EQ(Fault(R"({"id" 8})"), "not-json:7");
  EXPECT_EQ(Fault(R"({"id":8,})"), "not-json:9");
  EXPECT_EQ(Fault(R"({"id":1,"line":"abc})"), "not-json:21");
  EXPECT_EQ(Fault(R"({"id":1,"line":"abc")"), "not-json:21");
  EXPECT_EQ(Fault(R"({"id":1,"line":"a"} {"id":2,"line":"b"})"), "not-json:21");
  EXPECT_EQ(Fault("{\"id\":1,\"line\":\"ab\xFFz\"}"), "not-json:19");
  EXPECT_EQ(Fault("{\"id\":1,\"line\":\"ab\0z\"}"s), "not-json:19");
  EXPECT_EQ(Fault(R"({"id":1e999,"line":""})"), "not-json:7");
  EXPECT_EQ(Fault(R"({"id":1,"line":"\ud800"})").substr(0, 9), "not-json:");
}

TEST(JsonRequest, TellsWhyItIsNoJson) {
  const struct {
    std::string text;
    const char* cause;
    uint64_t column;
  } cases[] = {
      {" \t", "the line is blank, and no JSON", 3},
      {"{\"id\":1", "the JSON is not whole", 8},
      {"{\"id\":\"a\\", "the JSON is not whole", 10},
      {"{\"id\":\"\\u00", "the JSON is not whole", 12},
      {"{\"id\":tru", "this is no JSON", 9},
      {"{\"id\":1.", "this is no JSON", 8},
      {"{\"id\":1,,", "this is no JSON", 9},
      {"{\"id\"::1}", "this is no JSON", 7},
      {"{\"id\":1line}", "this is no JSON", 8},
      {"{\"id\":01}", "this is no JSON", 8},
      {"{\"id\":1]", "this is no JSON", 8},
      {"{\"id\":\"\\q\"}", "this is no JSON", 9},
      {"{\"id\":\"\x01\"}", "this is no JSON", 8},
      {std::string("{\0}", 3), "this is no JSON", 2},
      {"\xC3\xA8", "this is no JSON", 1},
      {"{\"id\":1}\xFF", "a byte is no UTF-8", 9},
      {"{\"id\":\"\xED\xA0\x80\"}", "a byte is no UTF-8", 9},
      {"{\"id\":\"\xF4\x90\x80\x80\"}", "a byte is no UTF-8", 9},
      {"{\"id\":\"\xE0\x80\x80\"}", "a byte is no UTF-8", 9},
      {"{\"id\":\"\xC1\x80\"}", "a byte is no UTF-8", 8},
      {"{\"id\":\"\xF0\x9F\x98\x80\", x}", "this is no JSON", 15},
      {"{\"id\":\"\xC3", "a byte is no UTF-8", 8},
  };
  for (const auto& one : cases) {
    const JsonRequest request = Read(one.text);
    ASSERT_TRUE(request.error) << one.text;
    EXPECT_EQ(request.error->kind, RequestError::kNotJson) << one.text;
    EXPECT_EQ(request.error->cause, one.cause) << one.text;
    EXPECT_EQ(request.error->column, one.column) << one.text;
  }
}

TEST(JsonRequest, WhatIsNoJsonHasNoId) {
  EXPECT_TRUE(Read(R"({"id":1,"line":"CHIU"} x)").id.is_null());
  EXPECT_TRUE(Read(R"({"id":1,"line":"CHIU")").id.is_null());
}

TEST(JsonRequest, NamesTheMemberThatIsWrong) {
  EXPECT_EQ(Fault("[1]"), "not-an-object:1");
  EXPECT_EQ(Fault(" 7 "), "not-an-object:2");
  EXPECT_EQ(Fault("\"CHIU\""), "not-an-object:1");
  EXPECT_EQ(Fault(R"({"line":"CHIU"})"), "member-missing:15");
  EXPECT_EQ(Fault(R"({"id":1})"), "member-missing:8");
  EXPECT_EQ(Fault("{}"), "member-missing:2");
  EXPECT_EQ(Fault(R"({"id":1,"id":2,"line":""})"), "member-twice:9");
  EXPECT_EQ(Fault(R"({"id":1,"line":"a","line":"b"})"), "member-twice:20");
  EXPECT_EQ(Fault(R"({"id":1,"line":"","dry":true})"), "member-unknown:19");
  EXPECT_EQ(Fault(R"({"id":1,"Line":""})"), "member-unknown:9");
  for (const char* value : {"null", "true", "1.5", "1e2", "[1]", "{\"id\":1}"}) {
    EXPECT_EQ(Fault("{\"id\":"s + value + ",\"line\":\"\"}"), "wrong-type:7") << value;
  }
  for (const char* value : {"null", "false", "1", "[\"a\"]", "{\"line\":\"a\"}"}) {
    EXPECT_EQ(Fault("{\"id\":1,\"line\": "s + value + "}"), "wrong-type:17") << value;
  }
  EXPECT_EQ(Fault(R"({"id":1,"line":"a\u0000b"})"), "nul-byte:16");
  EXPECT_EQ(Fault(R"({"id":1,"line":"a\nb"})"), "line-feed:16");
}

TEST(JsonRequest, KeepsTheIdWhereItCanBeTold) {
  EXPECT_EQ(Read(R"({"line":7,"id":5})").id, Json(5));
  EXPECT_EQ(Read(R"({"id":5})").id, Json(5));
  EXPECT_TRUE(Read(R"({"id":5,"id":5,"line":""})").id.is_null());
  EXPECT_TRUE(Read(R"({"id":[5],"line":""})").id.is_null());
}

TEST(JsonRequest, ANestedIdOrLineIsNone) {
  EXPECT_EQ(Fault(R"([{"id":1,"line":"CHIU"}])"), "not-an-object:1");
  EXPECT_EQ(Read(R"({"x":{"id":1,"line":"CHIU"},"id":2,"line":"SUBT"})").id, Json(2));
  EXPECT_EQ(Fault(R"({"x":{"id":1,"line":"CHIU"}})"), "member-unknown:2");
  EXPECT_TRUE(Read(R"({"x":{"id":1}})").id.is_null());
}

TEST(JsonRequest, TakesAnyDepthUpToItsLength) {
  const std::string half(kLongestRequest / 2 - 20, '[');
  const std::string other(half.size(), ']');
  EXPECT_EQ(Fault("{\"id\":1,\"line\":" + half + other + "}"), "wrong-type:16");
  EXPECT_EQ(Fault(std::string(kLongestRequest, '[')), "not-json:65537");
  std::string objects;
  for (int i = 0; i < 10000; ++i) objects += "{\"id\":";
  EXPECT_EQ(Fault(objects), "not-json:60001");
}

TEST(JsonRequest, OneByteTooManyIsRefusedUnread) {
  const std::string begin = "{\"id\":1,\"line\":\"";
  const std::string end = "\"}";
  const std::string most(kLongestRequest - begin.size() - end.size(), 'x');
  EXPECT_EQ(Fault(begin + most + end), "good");
  EXPECT_EQ(Fault(begin + most + "x" + end), "too-long:65537");
}

}  // namespace lorimat::console
