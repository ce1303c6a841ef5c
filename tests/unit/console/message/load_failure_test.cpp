// Why a library is not loaded, as sentences. These tests run in English and in Italian (see
// tests/CMakeLists.txt): what they expect holds in the language that the process has.
#include "console/message/load_failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <set>
#include <string>
#include <vector>

#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Signs of formats, a byte that is no UTF-8 and what no terminal shows.
const std::string kFile = "/lib/{0}%s\xFF\x1B[2J.so";
const std::string kText = "<{}%n\xC3\x1B[1m>";

struct Case {
  LoadFailure failure;
  std::vector<std::string> parts;  // beside the file's name
  bool names_file = true;
};

std::vector<Case> Cases() {
  return {
      {{LoadCause::kUnreadable, {EACCES}}, {SystemMessage(EACCES)}},
      {{LoadCause::kNoRegularFile}, {}},
      {{LoadCause::kNoSharedObject}, {}},
      {{LoadCause::kCutShort, {70001, 70002}}, {"70001", "70002"}},
      {{LoadCause::kOtherMachine}, {}},
      // The loader's own words begin with the name.
      {{LoadCause::kLoader, {}, kText}, {Shown(kText)}, false},
      {{LoadCause::kLacks, {}, kText}, {Shown(kText)}},
      {{LoadCause::kDiesAtLoad}, {}},
      {{LoadCause::kDiesAtLoad, {SIGSEGV}}, {"(SIGSEGV)"}},
      // No signal of the system has this number, and so none has a name.
      {{LoadCause::kDiesAtLoad, {9999}}, {"(9999)"}},
      {{LoadCause::kDiesAtWork}, {}},
      {{LoadCause::kDiesAtWork, {SIGABRT}}, {"(SIGABRT)"}},
      {{LoadCause::kDiesAtEnd}, {}},
      {{LoadCause::kDiesAtEnd, {SIGTERM}}, {"(SIGTERM)"}},
      {{LoadCause::kHangs, {20}}, {"20"}},
      {{LoadCause::kStopped}, {}},
      {{LoadCause::kNotTried, {EAGAIN}}, {SystemMessage(EAGAIN)}},
  };
}

}  // namespace

void ExpectSentences(LoadedFile loaded) {
  std::set<std::string> seen;
  std::set<LoadCause> causes;
  const bool is_english = LanguageOfMessages().empty();
  for (const Case& row : Cases()) {
    SCOPED_TRACE(static_cast<int>(row.failure.cause));
    const std::string text = LoadFailureText(kFile, row.failure, loaded);
    EXPECT_TRUE(seen.insert(text).second) << text;
    causes.insert(row.failure.cause);
    if (row.names_file) {
      EXPECT_THAT(text, HasSubstr(Shown(kFile)));
    }
    for (const std::string& part : row.parts) EXPECT_THAT(text, HasSubstr(part));
    if (row.parts.empty()) {
      EXPECT_THAT(text, Not(HasSubstr("(")));
    }
    EXPECT_THAT(text, Not(HasSubstr("\x1B")));
    const EnglishMessages english;
    const std::string in_english = LoadFailureText(kFile, row.failure, loaded);
    EXPECT_EQ(text == in_english, is_english) << text;
  }
  EXPECT_EQ(causes.size(), static_cast<size_t>(LoadCause::kNotTried));
}

TEST(Sentences, EachCauseOfALibraryThatIsNotLoadedHasOneWithAllItsArguments) {
  ExpectSentences(LoadedFile::kLibrary);
}

TEST(Sentences, EachCauseOfADeviceThatIsNotLoadedHasOneWithAllItsArguments) {
  ExpectSentences(LoadedFile::kDevice);
}

// Where it hung is named.
TEST(Sentences, ADeviceThatHangsSaysInWhichFunction) {
  const std::string functions[] = {"dlopen", "lorimat_device_open", "lorimat_device_close"};
  for (const int64_t place : {0, 1, 2}) {
    EXPECT_THAT(LoadFailureText(kFile, {LoadCause::kHangs, {20, place}}, LoadedFile::kDevice),
                HasSubstr(functions[place]));
  }
}

TEST(Sentences, ALibraryThatIsLoadedHasNone) {
  EXPECT_FALSE(LoadFailure());
  EXPECT_THAT(LoadFailureText(kFile, {}), IsEmpty());
}

}  // namespace lorimat::console
