// What a check finds, as sentences. The tests Sentences run in English and in Italian (see
// tests/CMakeLists.txt): what they expect holds in the language that the process has.
#include "console/message/finding_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "console/check/finding.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Braces, signs of formats, bytes that are no UTF-8 and those that no terminal shows.
const std::string kHostile = "{0}{}{x}%s\xFF\xC3\x1B[2J\xC2\x9B";

constexpr size_t kMostArguments = 5;

std::string Argument(size_t place) { return "<" + std::to_string(place) + kHostile + ">"; }

Finding FindingOf(FindingCause cause) {
  Finding finding = MakeFinding(cause);
  for (size_t i = 0; i < kMostArguments; ++i) finding.arguments.emplace_back(Argument(i));
  return finding;
}

// The arguments that a pattern names, by their numbers or in their order.
std::vector<size_t> ArgumentsOf(const std::string& pattern) {
  std::vector<size_t> places;
  size_t next = 0;
  for (size_t at = pattern.find('{'); at != pattern.npos; at = pattern.find('{', at + 1)) {
    places.push_back(pattern[at + 1] == '}' ? next++ : static_cast<size_t>(pattern[at + 1] - '0'));
  }
  return places;
}

void ExpectArguments(const std::string& sentence, const std::string& pattern) {
  EXPECT_EQ(pattern.empty(), sentence.empty()) << pattern;
  for (const size_t place : ArgumentsOf(pattern)) {
    EXPECT_THAT(sentence, HasSubstr(Argument(place))) << pattern;
  }
}

}  // namespace

TEST(Sentences, EachCauseOfAFindingHasThemWithAllTheirArguments) {
  for (const FindingRow& row : FindingRows()) {
    SCOPED_TRACE(row.rule);
    const Finding finding = FindingOf(row.cause);
    EXPECT_EQ(row.severity, finding.severity());
    EXPECT_EQ(std::string(row.rule), finding.rule());
    EXPECT_EQ(row.code, finding.code);
    const FindingSentences sentences = SentencesOf(finding);
    EXPECT_THAT(sentences.what, Not(IsEmpty()));
    ExpectArguments(sentences.what, row.what);
    ExpectArguments(sentences.effect, row.effect);
    ExpectArguments(sentences.remedy, row.remedy);
    EXPECT_EQ(sentences.what, WhatText(finding));
  }
}

TEST(Sentences, OfAFindingAreEscapedOnATerminalAndAsTheyAreInJson) {
  Finding finding = FindingOf(FindingCause::kCommandNotFound);
  finding.suggestion = kHostile;
  EXPECT_THAT(FindingText("f", finding, false), HasSubstr(Shown(Argument(0))));
  EXPECT_THAT(FindingText("f", finding, false), Not(HasSubstr("\x1B")));
  const Json json = FindingJson(finding);
  const EnglishMessages english;
  EXPECT_EQ(WhatText(finding), json["what"].get<std::string>());
  EXPECT_EQ(kHostile, json["suggestion"].get<std::string>());
  // Bytes that are no UTF-8 alone are replaced.
  EXPECT_THAT(JsonLine(json),
              HasSubstr("\"suggestion\":\"{0}{}{x}%s\uFFFD\uFFFD\\u001b[2J\u009B\""));
}

TEST(Sentences, ASuggestionTakesThePlaceOfAnAdvice) {
  Finding finding = FindingOf(FindingCause::kNumberText);
  EXPECT_THAT(SentencesOf(finding).remedy, Not(IsEmpty()));
  finding.suggestion = "PRE=1.50";
  EXPECT_THAT(SentencesOf(finding).remedy, IsEmpty());
  EXPECT_THAT(WhatAndBetterWord(finding), HasSubstr("PRE=1.50"));
}

TEST(FindingText, AListTellsWhatItLeavesOut) {
  const auto words = [](FindingList list) {
    return WhatText(MakeFinding(FindingCause::kCommandNotUnique, {"P", std::move(list)}));
  };
  const std::string begin = "'P' fits more than one command: ";
  EXPECT_EQ(begin, words({}));
  EXPECT_EQ(begin + "PA, PB (line 7)", words({{{"PA"}, {"PB", 7}}}));
  EXPECT_EQ(begin + "PA and 3 more", words({{{"PA"}}, 3}));
  EXPECT_EQ(begin + "PA, PB and others", words({{{"PA"}, {"PB"}}, 0, true}));
}

TEST(FindingText, BehindTheFirstStopTheReaderWouldHaveStopped) {
  Finding finding = MakeFinding(FindingCause::kNoEquals);
  EXPECT_EQ("the library stops reading here and answers 2", SentencesOf(finding).effect);
  finding.stopped_before = true;
  EXPECT_EQ("the library would stop here, too", SentencesOf(finding).effect);
}

TEST(FindingText, TheRulesOfTrapsStandInTheirPage) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/docs/console.md");
  const std::string page{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  for (const FindingRow& row : FindingRows()) {
    if (row.cause < FindingCause::kDecimalComma) continue;
    EXPECT_THAT(page, HasSubstr("`" + std::string(row.rule) + "`"));
  }
}

}  // namespace lorimat::console
