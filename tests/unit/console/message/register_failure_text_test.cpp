// Failures, findings and refusals as sentences. These tests run in English and in Italian (see
// tests/CMakeLists.txt): what they expect holds in the language that the process has.
#include "console/message/register_failure_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <system_error>

#include "console/message/catalogs.h"
#include "console/message/fault_text.h"
#include "console/message/journal_finding.h"
#include "console/message/refusal_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/fault/faults.h"
#include "register/storage/finding.h"
#include "register/value/register_error.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

using lorimat::FailureCause;
using lorimat::FailurePlace;
using lorimat::Finding;
using lorimat::FindingKind;
using lorimat::RegisterError;
using lorimat::RegisterFailure;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// Braces, signs of formats, quotes, bytes that are no UTF-8 and those that no terminal shows.
const std::string kHostile = "{0}{}{x}%s%n'\"\\\xFF\xC3\x1B[2J";

// A value of each cause with all its arguments.
RegisterFailure FailureOf(FailureCause cause, const std::string& text) {
  RegisterFailure failure;
  failure.cause = cause;
  failure.text = text;
  size_t at = 0;
  for (const char field : lorimat::FailureFields(cause)) {
    if (field == 't') continue;
    failure.numbers.at(at) = field == 'e'   ? ENOSPC
                             : field == 'o' ? static_cast<int>(ClientOperation::kPrintRecItemEx)
                                            : static_cast<int>(1234567 + at);
    ++at;
  }
  return failure;
}

template <typename Visit>
void ForEachCause(Visit visit) {
  for (int cause = 1; cause <= static_cast<int>(FailureCause::kLast); ++cause) {
    SCOPED_TRACE(cause);
    visit(static_cast<FailureCause>(cause));
  }
}

Finding FindingOf(FindingKind kind) {
  Finding finding;
  finding.kind = kind;
  finding.text = kHostile;
  finding.failure = FailureOf(FailureCause::kCutOffBySystem, "");
  return finding;
}

// Of this run; empty for English.
std::string WantedLanguage() {
  const char* const wanted = std::getenv("LORIMAT_TEST_LANGUAGE");
  return wanted != nullptr ? wanted : "";
}

#ifdef LORIMAT_CATALOGS
// Ahead of the first message. Other runs stay English, whatever the language of who starts them.
class Catalogs : public testing::Environment {
  void SetUp() override {
    if (!WantedLanguage().empty()) OpenCatalogs(LORIMAT_CATALOGS);
  }
};
[[maybe_unused]] const testing::Environment* const catalogs =
    testing::AddGlobalTestEnvironment(new Catalogs);
#endif

std::string InEnglish(const auto& make) {
  const EnglishMessages english;
  return make();
}

}  // namespace

TEST(Sentences, AreOfTheLanguageThatTheRunIsFor) {
  EXPECT_EQ(LanguageOfMessages(), WantedLanguage());
}

TEST(Sentences, EachCauseOfAFailureHasOneWithAllItsArguments) {
  std::set<std::string> seen;
  ForEachCause([&seen](FailureCause cause) {
    const RegisterFailure failure = FailureOf(cause, kHostile);
    const std::string text = RegisterFailureText(failure);
    EXPECT_THAT(text, Not(IsEmpty()));
    EXPECT_TRUE(seen.insert(text).second) << text;
    size_t number = 0;
    for (const char field : lorimat::FailureFields(cause)) {
      switch (field) {
        case 't':
          EXPECT_THAT(text, HasSubstr(Shown(kHostile)));
          break;
        case 'e':
          EXPECT_THAT(text, HasSubstr(SystemMessage(ENOSPC)));
          ++number;
          break;
        case 'o':
          EXPECT_THAT(text, HasSubstr("PrintRecItemEx"));
          ++number;
          break;
        case 'n':
          EXPECT_THAT(text, HasSubstr(std::to_string(failure.numbers.at(number++))));
          break;
        default:
          ADD_FAILURE() << field;
      }
    }
    EXPECT_THAT(text, Not(HasSubstr("\x1B")));
  });
}

// The register's own sentences are for hosts in English; the console's say the same.
TEST(Sentences, InEnglishTheyAreThoseOfTheRegister) {
  const EnglishMessages english;
  ForEachCause([](FailureCause cause) {
    if (cause == FailureCause::kForeign) return;
    RegisterFailure failure = FailureOf(cause, "text");
    EXPECT_EQ(RegisterFailureText(failure), EnglishFailure(failure));
    EXPECT_EQ(RegisterError(failure).what(), EnglishFailure(failure));
    failure.place = FailurePlace::kFile;
    failure.file = "{} 100%";
    failure.doubtful = true;
    EXPECT_EQ(RegisterFailureText(failure), EnglishFailure(failure));
    EXPECT_THAT(EnglishFailure(failure), StartsWith("{} 100%: "));
    EXPECT_THAT(EnglishFailure(failure), EndsWith(lorimat::kDoubtfulEnglish));
    failure.place = FailurePlace::kMemory;
    EXPECT_EQ(RegisterFailureText(failure), EnglishFailure(failure));
  });
}

TEST(Sentences, TheRegistersOwnTakeAnyBytesAndEndAtNone) {
  ForEachCause([](FailureCause cause) {
    RegisterFailure failure = FailureOf(cause, "a" + std::string(1, '\0') + kHostile);
    failure.place = FailurePlace::kFile;
    failure.file = kHostile + std::string(1, '\0') + "b";
    const std::string text = RegisterError(failure).what();
    EXPECT_THAT(text, StartsWith(kHostile + "?b: "));
    for (const char field : lorimat::FailureFields(cause)) {
      if (field == 't') {
        EXPECT_THAT(text, HasSubstr("a?" + kHostile));
      }
    }
  });
}

// A sentence that is the same in both languages has been left out of the Italian one.
TEST(Sentences, AreWhollyOfOneLanguage) {
  if (LanguageOfMessages() != "it") GTEST_SKIP() << "for the Italian run";
  ForEachCause([](FailureCause cause) {
    const RegisterFailure failure = FailureOf(cause, "");
    EXPECT_NE(RegisterFailureText(failure), EnglishFailure(failure));
  });
  RegisterFailure failure = FailureOf(FailureCause::kDiskFull, "");
  failure.doubtful = true;
  EXPECT_EQ(RegisterFailureText(failure),
            "il disco è pieno; se sia stato memorizzato si saprà solo al prossimo avvio");
  failure.place = FailurePlace::kMemory;
  EXPECT_THAT(RegisterFailureText(failure), StartsWith("registratore in memoria: il disco"));
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    EXPECT_NE(FaultKindText(kind.name), kind.what);
    EXPECT_NE(FaultStrikesText(kind.name), kind.strikes);
  }
  for (int kind = 0; kind <= static_cast<int>(FindingKind::kLast); ++kind) {
    const Finding finding = FindingOf(static_cast<FindingKind>(kind));
    EXPECT_NE(JournalFindingText(finding), InEnglish([&] { return JournalFindingText(finding); }));
  }
  EXPECT_EQ(JournalFindingText({.kind = FindingKind::kStrangeRow, .text = "document_line"}),
            "file: una riga di «righe dei documenti» non appartiene a niente");
  EXPECT_EQ(JournalFindingText({.kind = FindingKind::kProgrammed, .text = "vat_rate"}),
            "«aliquote IVA»: non è come è stato programmato");
  for (const RefusalSentence& row : RefusalSentences()) {
    lorimat::Refusal refusal;
    refusal.cause = row.cause;
    EXPECT_NE(RefusalText(refusal), InEnglish([&] { return RefusalText(refusal); }));
  }
}

TEST(Sentences, EachFindingHasOneWithItsTextAndItsFailure) {
  for (int kind = 0; kind <= static_cast<int>(FindingKind::kLast); ++kind) {
    const Finding finding = FindingOf(static_cast<FindingKind>(kind));
    const std::string text = JournalFindingText(finding);
    EXPECT_THAT(text, Not(IsEmpty())) << kind;
    EXPECT_THAT(JournalFindingCode(finding), Not(IsEmpty())) << kind;
    switch (finding.kind) {
      case FindingKind::kUnreadable:
        EXPECT_EQ(text, RegisterFailureWords(finding.failure));
        break;
      case FindingKind::kDamagedPage:
      case FindingKind::kStrangeRow:
      case FindingKind::kStrangeValue:
      case FindingKind::kStrangeTable:
      case FindingKind::kProgrammedBefore:
      case FindingKind::kProgrammed:
        EXPECT_THAT(text, HasSubstr(kHostile));
        break;
      default:
        EXPECT_THAT(text, Not(HasSubstr(kHostile))) << kind;
    }
  }
}

TEST(Sentences, EachPositionOfTheKeyHasAName) {
  std::set<std::string> names;
  for (int position = 1; position <= 4; ++position) names.insert(KeyPositionText(position));
  EXPECT_EQ(4U, names.size());
  EXPECT_EQ("closing", InEnglish([] { return KeyPositionText(3); }));
  EXPECT_EQ("0", KeyPositionText(0));
  EXPECT_EQ("5", KeyPositionText(5));
}

TEST(Sentences, EachFaultHasTwo) {
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    EXPECT_EQ(InEnglish([&] { return FaultKindText(kind.name); }), kind.what) << kind.name;
    EXPECT_EQ(InEnglish([&] { return FaultStrikesText(kind.name); }), kind.strikes) << kind.name;
    EXPECT_THAT(FaultKindText(kind.name), Not(IsEmpty()));
  }
  EXPECT_THAT(FaultKindText("none"), IsEmpty());
}

TEST(Sentences, EachKindOfExceptionHasOne) {
  RegisterFailure failure = FailureOf(FailureCause::kInUse, "");
  failure.place = FailurePlace::kFile;
  failure.file = kHostile;
  EXPECT_EQ(ErrorText(RegisterError(failure)), RegisterFailureText(failure));
  EXPECT_EQ(ErrorText(std::bad_alloc()),
            RegisterFailureText(FailureOf(FailureCause::kNoMemory, "")));
  // By the number, whatever the words are.
  EXPECT_EQ(ErrorText(std::system_error(ENOSPC, std::generic_category(), "words")),
            SystemMessage(ENOSPC));
  EXPECT_EQ(ErrorText(std::filesystem::filesystem_error(
                "words", kHostile, std::error_code(ENOSPC, std::system_category()))),
            Shown(kHostile) + ": " + SystemMessage(ENOSPC));
  try {
    static_cast<void>(nlohmann::json(7).at("x"));
    ADD_FAILURE() << "a number has no members";
  } catch (const std::exception& error) {
    EXPECT_THAT(ErrorText(error), HasSubstr("304"));
    EXPECT_THAT(ErrorText(error), Not(HasSubstr("cannot use")));
  }
  EXPECT_THAT(ErrorText(std::runtime_error(kHostile)), EndsWith(": " + Shown(kHostile)));
  EXPECT_THAT(RegisterFailureText(RegisterFailure{}), IsEmpty());
}

TEST(Sentences, AnErrorOfTheSystemIsToldByItsNumber) {
  EXPECT_EQ(InEnglish([] { return SystemMessage(EACCES); }), "Permission denied");
  EXPECT_EQ(InEnglish([] { return SystemMessage(ENOTTY); }),
            std::generic_category().message(ENOTTY));
  for (const int error : {ENOENT, EACCES, ENOSPC, EROFS, EIO, ENOMEM, EFBIG, ELOOP}) {
    EXPECT_EQ(InEnglish([&] { return SystemMessage(error); }),
              std::generic_category().message(error));
    if (LanguageOfMessages() == "it") {
      EXPECT_NE(SystemMessage(error), std::generic_category().message(error));
    }
  }
}

}  // namespace lorimat::console
