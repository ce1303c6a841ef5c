#include "door/http/accept.h"

#include <gtest/gtest.h>

namespace lorimat::door {
namespace {

std::string_view Choose(std::string_view accept) {
  return ChooseType(accept, {"application/json", "text/plain", "image/png"});
}

TEST(Accept, TheFirstIsThatOfWhoeverDoesNotSay) {
  for (const char* accept : {"", "  ", "*/*", "application/*", "image/*;q=0.1, */*;q=0.2"}) {
    EXPECT_EQ(Choose(accept), "application/json") << accept;
  }
}

TEST(Accept, TheHighestQualityCountsAndTheClosestRange) {
  struct Row {
    const char* accept;
    const char* chosen;
  };
  constexpr Row kRows[] = {
      {"text/plain", "text/plain"},
      {"TEXT/Plain", "text/plain"},
      {"text/html, image/png", "image/png"},
      {"text/plain;q=0.4, image/png;q=0.5", "image/png"},
      {"text/plain; q=0.500 ,image/png;q=0.499", "text/plain"},
      {"*/*;q=0.1, image/*", "image/png"},
      {"application/json;q=0, */*", "text/plain"},
      {"*/*, application/json;q=0.1, text/*;q=0", "image/png"},
      {"text/plain;charset=utf-8", "text/plain"},
      {"text/plain;charset=utf-8;q=0.1, image/png;q=0.2", "image/png"},
      {"application/json;q=0.5, text/plain;Q=0.6", "text/plain"},
  };
  for (const Row& row : kRows) EXPECT_EQ(Choose(row.accept), row.chosen) << row.accept;
}

TEST(Accept, NoneWhereNoneIsWanted) {
  for (const char* accept :
       {"text/html", "*/*;q=0", "text/plain;q=0.000", "image/", "image", "*"}) {
    EXPECT_EQ(Choose(accept), "") << accept;
  }
}

TEST(Accept, WhatCannotBeReadCountsForNothing) {
  for (const char* bad :
       {"image/png;q=2", "image/png;q=1.001", "image/png;q=0.5.", "image/png;q=", "image/png;q=-1",
        "image/png;q=0.1234", "image/png;q=a", ";q=1", ",,;;"}) {
    EXPECT_EQ(Choose(bad), "") << bad;
    EXPECT_EQ(Choose(std::string(bad) + ", text/plain;q=0.1"), "text/plain") << bad;
  }
  EXPECT_EQ(Choose(std::string(20000, ',') + "text/plain"), "text/plain");
}

}  // namespace
}  // namespace lorimat::door
