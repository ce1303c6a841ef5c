// The sentences that are made of refusals.
#include "console/message/refusal_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

#include "register/document/printer_state.h"
#include "register/document/receipt.h"
#include "register/tables/device_setup.h"

namespace lorimat::console {
namespace {

using lorimat::Refusal;
using lorimat::Subject;
using Cause = lorimat::RefusalCause;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

Refusal MakeRefusal(Cause cause, const std::vector<int64_t>& numbers = {},
                    const std::string& text = {}) {
  Refusal made;
  made.code = 1;
  made.cause = cause;
  std::copy(numbers.begin(), numbers.end(), made.numbers.begin());
  std::copy(text.begin(), text.end(), made.characters.begin());
  made.size = static_cast<uint8_t>(text.size());
  return made;
}

int64_t Of(Subject subject) { return static_cast<int64_t>(subject); }

}  // namespace

TEST(RefusalText, EveryCauseHasOneSentenceWithAFieldForEachLetter) {
  std::set<int> seen;
  for (const RefusalSentence& row : RefusalSentences()) {
    EXPECT_TRUE(seen.insert(static_cast<int>(row.cause)).second) << row.text;
    const std::string text = row.text;
    size_t fields = 0;
    for (size_t at = text.find("{}"); at != text.npos; at = text.find("{}", at + 2)) ++fields;
    EXPECT_EQ(fields, std::string(row.fields).size()) << row.text;
    size_t numbers = 0;
    for (const char field : std::string(row.fields)) {
      numbers += field == 't' ? 0 : field == 'd' ? 2 : 1;
    }
    EXPECT_LE(numbers, Refusal::kNumbers) << row.text;
    EXPECT_THAT(RefusalText(MakeRefusal(row.cause)), Not(IsEmpty())) << row.text;
    EXPECT_THAT(RefusalText(MakeRefusal(row.cause)), Not(HasSubstr("{}"))) << row.text;
  }
  for (int cause = 1; cause <= static_cast<int>(Cause::kLast); ++cause) {
    const bool made_of_two = cause == static_cast<int>(Cause::kState);
    EXPECT_EQ(seen.count(cause), made_of_two ? 0u : 1u) << cause;
  }
}

TEST(RefusalText, EverySubjectHasAName) {
  for (int subject = 0; subject <= static_cast<int>(Subject::kLast); ++subject) {
    EXPECT_THAT(SubjectText(static_cast<Subject>(subject)), Not(IsEmpty())) << subject;
  }
}

TEST(RefusalText, AnUnknownCauseHasNone) { EXPECT_THAT(RefusalText(Refusal{}), IsEmpty()); }

TEST(RefusalText, AmountsQuantitiesAndPercentagesAreInTheFormOfTheTrade) {
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kPriceAboveLimit, {12345600, 1000000, 3})),
            "The price 1.234,56 is above 100,00, the limit of department 3.");
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kNoLineToVoid, {1500, 20000})),
            "No line that stands has this department or article, VAT entry and description, with "
            "1,5 at 2,00, to be taken back.");
  EXPECT_THAT(RefusalText(MakeRefusal(Cause::kPercentageSize, {1005000})),
              testing::StartsWith("100,5 % is no percentage here"));
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kNegativeQuantity, {-500})),
            "The quantity -0,5 is below zero.");
}

TEST(RefusalText, SubjectsTextsAndNumbersStandInTheirPlaces) {
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kCheckDigit, {Of(Subject::kBarcode), 0, 7})),
            "The check digit is wrong for the barcode: it is 0, and would have to be 7.");
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kOutOfRange, {Of(Subject::kHeaderLine), 7, 1, 6})),
            "Not allowed for the number of the header line: 7; it goes from 1 to 6.");
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kFileNotWritten, {ENOSPC}, "/dev/full")),
            "Writing failed (No space left on device): '/dev/full'.");
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kFileNotWritten, {0}, "x")),
            "Writing failed (the system does not tell why): 'x'.");
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kVoidedAlready, {1, 23})),
            "Receipt 0001-0023 is voided already.");
}

// Braces, control characters and what was cut.
TEST(RefusalText, AnyTextOfAHostCanBeShown) {
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kNoArticle, {}, "{0}{}%s\x1b")),
            "There is no article '{0}{}%s\\x1B'.");
  Refusal cut = MakeRefusal(Cause::kNoArticle, {}, "abc");
  cut.cut = true;
  EXPECT_EQ(RefusalText(cut), "There is no article 'abc...'.");
}

TEST(RefusalText, TheStateTellsWhatIsOpenAndWhatIsWanted) {
  using lorimat::Operation;
  using lorimat::PrinterState;
  const auto state = [](PrinterState now, Operation operation, int64_t lines, int64_t amount) {
    return RefusalText(MakeRefusal(
        Cause::kState,
        {static_cast<int64_t>(now), static_cast<int64_t>(operation), 0, lines, amount}));
  };
  EXPECT_EQ(state(PrinterState::kReceipt, Operation::kReport, 2, 45000),
            "Now a receipt is open, 2 lines, subtotal 4,50; a report wants that no document is "
            "open.");
  EXPECT_EQ(state(PrinterState::kTotal, Operation::kLine, 2, 35000),
            "Now a receipt is being paid, with 3,50 left to pay; a line wants an open document "
            "that is not being paid.");
  EXPECT_EQ(state(PrinterState::kMonitor, Operation::kTotal, 0, 0),
            "Now no document is open; a payment wants an open document that is not paid.");
  for (int operation = 0; operation <= static_cast<int>(Operation::kSelfTest); ++operation) {
    EXPECT_THAT(state(PrinterState::kMonitor, static_cast<Operation>(operation), 0, 0),
                HasSubstr("; "))
        << operation;
  }
}

TEST(RefusalText, TheOpenDocumentIsNamedInEveryState) {
  using lorimat::DocumentKind;
  using lorimat::PrinterState;
  const auto state = [](PrinterState now, DocumentKind kind) {
    const std::string text =
        RefusalText(MakeRefusal(Cause::kState, {static_cast<int64_t>(now),
                                                static_cast<int64_t>(lorimat::Operation::kReport),
                                                static_cast<int64_t>(kind), 1, 10000}));
    return text.substr(0, text.find(';'));
  };
  const struct {
    DocumentKind kind;
    const char* name;
  } kKinds[] = {{DocumentKind::kSale, "a receipt"},
                {DocumentKind::kInvoice, "an invoice"},
                {DocumentKind::kRefund, "a credit note"},
                {DocumentKind::kCancel, "a void document"}};
  for (const auto& [kind, name] : kKinds) {
    const std::string now = std::string("Now ") + name;
    EXPECT_EQ(state(PrinterState::kReceipt, kind), now + " is open, 1 line, subtotal 1,00");
    EXPECT_EQ(state(PrinterState::kTotal, kind), now + " is being paid, with 1,00 left to pay");
    EXPECT_EQ(state(PrinterState::kEnding, kind), now + " is paid, and waits to be ended");
  }
  EXPECT_EQ(state(PrinterState::kNonFiscal, DocumentKind::kSale),
            "Now a non-fiscal document is open");
  EXPECT_EQ(state(PrinterState::kItemList, DocumentKind::kSale), "Now a list of items is open");
}

// An operation that a later program brings: the state alone is told.
TEST(RefusalText, AnUnknownOperationWantsNothing) {
  EXPECT_EQ(RefusalText(MakeRefusal(Cause::kState, {0, 9999})), "Now no document is open.");
}

TEST(RefusalText, TheStepsIntoServiceAreNamed) {
  using lorimat::Commissioning;
  EXPECT_THAT(
      RefusalText(MakeRefusal(Cause::kSetUpOrder, {static_cast<int64_t>(Commissioning::kInService),
                                                   static_cast<int64_t>(Commissioning::kNew)})),
      testing::StartsWith("The register is in service, and this step wants one that is not "
                          "yet registered: "));
  EXPECT_THAT(RefusalText(MakeRefusal(Cause::kSetUpOrder,
                                      {static_cast<int64_t>(Commissioning::kRegistered),
                                       static_cast<int64_t>(Commissioning::kActivated)})),
              testing::StartsWith("The register is registered, and this step wants one that is "
                                  "activated: "));
}

}  // namespace lorimat::console
