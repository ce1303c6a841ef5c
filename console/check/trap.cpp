#include "console/check/trap.h"

#include <array>

#include "console/message/translate.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

constexpr int kWrongState = CLASS_CRITICAL | RTF_EFPTR_WRONG_STATE;
constexpr int kTotalsDiffer = CLASS_CRITICAL | RTF_EFPTR_FISCAL_TOTALS_ERROR;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kError = Severity::kError;

constexpr TrapSentences kSentences[] = {
    {Trap::kDecimalComma, kError, "decimal-comma", SyntaxError(FIELD_NAME_NOT_FOUND),
     TR_TEXT("a comma ends field {0}, and '{1}' is taken for the name of the next one; decimals "
             "stand behind a point"),
     TR_TEXT("the line is refused"), ""},
    {Trap::kNumberText, kWarning, "number-text", 0,
     TR_TEXT("field {0}: '{1}' is not written as a number"), TR_TEXT("the library reads {2}"),
     TR_TEXT("digits alone, with decimals behind a point")},
    {Trap::kNumberRefused, kError, "number-refused", SyntaxError(CAMPO_OBBLIGATORIO),
     TR_TEXT("field {0}: '{1}' is no number"), TR_TEXT("the line is refused, nothing is compared"),
     TR_TEXT("digits alone, with decimals behind a point")},
    {Trap::kNumberMisread, kWarning, "number-misread", 0,
     TR_TEXT("field {0} has more digits than the library takes, which reads {1}"), "",
     TR_TEXT("{2}")},
    {Trap::kNumberBare, kWarning, "number-bare", 0, TR_TEXT("field {0} has no value"),
     TR_TEXT("the library reads 0"), TR_TEXT("a number, or leave the field out")},
    {Trap::kNumberEmpty, kWarning, "number-empty", 0, TR_TEXT("field {0} is empty"),
     TR_TEXT("it counts as left out"), TR_TEXT("a number, or leave the field out")},
    {Trap::kNumberCut, kWarning, "number-cut", 0,
     TR_TEXT("field {0}: {1} is above 255, and its low 8 bits alone count"),
     TR_TEXT("the library takes {2}"), TR_TEXT("a number from 0 to 255")},
    {Trap::kWordAsNumber, kWarning, "word-as-number", 0,
     TR_TEXT("field {0} takes a number, and {1} stands for {2}"), TR_TEXT("the library reads {2}"),
     TR_TEXT("the number itself")},
    {Trap::kQuantityZero, kWarning, "quantity-zero", 0, TR_TEXT("the quantity in {0} reads 0"),
     TR_TEXT("it counts as missing, and one piece is sold"),
     TR_TEXT("0.001 at least, or no such line")},
    {Trap::kKeyedText, kWarning, "keyed-text", 0,
     TR_TEXT("field {0}: '{1}' holds more than digits and a point"),
     TR_TEXT("the keys end there, and '{2}' is keyed"),
     TR_TEXT("digits alone, with decimals behind a point")},
    {Trap::kFieldUnused, kWarning, "field-unused", 0, TR_TEXT("field {0} has no effect beside {1}"),
     TR_TEXT("{2} leaves it alone"), TR_TEXT("one of the two alone")},
    {Trap::kFieldUnusedWithout, kWarning, "field-unused-without", 0,
     TR_TEXT("field {0} has no effect without {1}"), TR_TEXT("{2} leaves it alone"),
     TR_TEXT("both, or none")},
    {Trap::kTextNotPrinted, kWarning, "text-not-printed", 0,
     TR_TEXT("the text of {0} is not printed beside {1}"),
     TR_TEXT("the line cuts or prints the logo alone"), TR_TEXT("the text in a line of its own")},
    {Trap::kDoesNothing, kWarning, "does-nothing", 0, TR_TEXT("{0} without {1} does nothing"),
     TR_TEXT("the answer is OK all the same"), TR_TEXT("{1} too, or no such line")},
    {Trap::kDepositQuantity, kWarning, "deposit-quantity", 0,
     TR_TEXT("field {0} turns the amount of {1} to 0"),
     TR_TEXT("a deposit or voucher has no quantity, and the device gets 0"),
     TR_TEXT("the whole amount as the price, without {0}")},
    {Trap::kDepositTooLarge, kWarning, "deposit-too-large", 0,
     TR_TEXT("field {0}: {1} has no room in 32 bits"), TR_TEXT("the device gets {2}"),
     TR_TEXT("214748.3647 at most")},
    {Trap::kTwoPrices, kWarning, "two-prices", 0, TR_TEXT("fields {0} and {1} are both given"),
     TR_TEXT("the device chooses; the virtual register takes {2}"), TR_TEXT("one price")},
    {Trap::kTenderQuoted, kWarning, "tender-quoted", 0,
     TR_TEXT("field {0}: the quotes make '{1}' a text, and not the word {2}"),
     TR_TEXT("the device gets a tender of that name; the virtual register has none (621)"), ""},
    {Trap::kTenderUnknown, kWarning, "tender-unknown", 0,
     TR_TEXT("field {0}: {1} is no tender of the table"),
     TR_TEXT("the device gets it as it stands; the virtual register has none (621)"),
     TR_TEXT("a tender of the table")},
    {Trap::kPaysNothing, kWarning, "pays-nothing", 0, TR_TEXT("field {0} reads 0"),
     TR_TEXT("a payment of 0 is sent; the virtual register refuses it (1238)"),
     TR_TEXT("no {0} to pay what is due")},
    {Trap::kFlagSetByNo, kWarning, "flag-set-by-no", 0,
     TR_TEXT("field {0} is a flag, and {1} sets it just as well"),
     TR_TEXT("only its presence counts"), TR_TEXT("no {0} at all to leave it off")},
    {Trap::kFlagNotSet, kWarning, "flag-not-set", 0,
     TR_TEXT("field {0} is set by its bare name only"), TR_TEXT("with a value it has no effect"),
     ""},
    {Trap::kYesNoOne, kWarning, "yes-no-one", 0, TR_TEXT("field {0}: 1 means no"),
     TR_TEXT("the library takes it for NO"), TR_TEXT("SI or NO")},
    {Trap::kTextBehindQuote, kWarning, "text-behind-quote", 0,
     TR_TEXT("'{1}' stands behind the closing quote of field {0}"),
     TR_TEXT("it becomes a part of the text, which is '{2}'"), TR_TEXT("a comma between fields")},
    {Trap::kTextCut, kWarning, "text-cut", 0,
     TR_TEXT("field {0} has {1} characters, more than {2}"), TR_TEXT("what goes on is '{3}'"),
     TR_TEXT("a shorter text")},
    {Trap::kFileNameLowered, kWarning, "file-name-lowered", 0,
     TR_TEXT("field {0}: the file's name is made small letters"), TR_TEXT("the file is {1}"), ""},
    {Trap::kMacroLastKey, kWarning, "macro-last-key", 0,
     TR_TEXT("field {0}: no blank stands behind the last key"), TR_TEXT("{1} is dropped"),
     TR_TEXT("a blank behind every key, also the last")},
    {Trap::kCheckDigitPrinted, kWarning, "check-digit-replaced", 0,
     TR_TEXT("field {0}: the check digit of '{1}' is wrong"),
     TR_TEXT("the device works it out by itself, and prints {2}"), ""},
    {Trap::kCheckDigitRefused, kWarning, "check-digit-refused", 1642,
     TR_TEXT("field {0}: the check digit of '{1}' is wrong"),
     TR_TEXT("the device refuses the barcode"), ""},
    {Trap::kDateCut, kWarning, "date-cut", 0, TR_TEXT("field {0}: '{1}' is no date DDMMYY"),
     TR_TEXT("its first six characters count: {2}"), TR_TEXT("six digits, DDMMYY")},
    {Trap::kDateIgnored, kWarning, "date-ignored", 0,
     TR_TEXT("field {0}: '{1}' has not six characters"), TR_TEXT("the date counts as missing"),
     TR_TEXT("six digits, DDMMYY")},
    {Trap::kDocumentNumber, kWarning, "document-number", 0,
     TR_TEXT("field {0}: '{1}' has neither eight digits nor four at most"),
     TR_TEXT("it reads as the number {2}"), TR_TEXT("eight digits ZZZZNNNN, closure and number")},
    {Trap::kNoReceiptOpens, kWarning, "no-receipt-opens", kWrongState,
     TR_TEXT("no sale opens a receipt here: behind {0} in line {1} the printer is ready, and the "
             "translator counts a document as open"),
     TR_TEXT("every sale is refused until {2}, {3} or {4}"), TR_TEXT("{2} ahead of it")},
    {Trap::kNextSaleLost, kWarning, "next-sale-lost", 0,
     TR_TEXT("behind {0} the file ends with the translator counting a document as open"),
     TR_TEXT("the next sale opens no receipt (1231)"), TR_TEXT("{1} behind it")},
    {Trap::kSaleBehindPayment, kWarning, "sale-behind-payment", kWrongState,
     TR_TEXT("a sale behind a payment: line {0} paid {1} of {2}"),
     TR_TEXT("the receipt is still open and takes no sale"),
     TR_TEXT("a {3} that pays the rest ahead of it")},
    {Trap::kPaidTooLittle, kWarning, "paid-too-little", 0,
     TR_TEXT("{0} pays {1} of {2}, and no line pays the rest"), TR_TEXT("the receipt stays open"),
     TR_TEXT("a further {0}")},
    {Trap::kReceiptNotEnded, kWarning, "receipt-not-ended", kWrongState,
     TR_TEXT("the receipt that line {0} paid has not been ended yet"),
     TR_TEXT("the sale is refused, and so are those behind the end of it"),
     TR_TEXT("the end of the receipt ({1}) ahead of it")},
    {Trap::kSaleInNonFiscal, kWarning, "sale-in-non-fiscal", kWrongState,
     TR_TEXT("a sale inside the document of line {0}, which is no receipt"),
     TR_TEXT("it is refused, and so are those behind the end of that document"),
     TR_TEXT("the end of the document ({1}) ahead of it")},
    {Trap::kKeyTurned, kWarning, "key-turned", kWrongState,
     TR_TEXT("{0} in line {1} turned the key away from registering"),
     TR_TEXT("every sale is refused"), TR_TEXT("{2} ahead of it")},
    {Trap::kSubtotalDiffers, kWarning, "subtotal-differs", kTotalsDiffer,
     TR_TEXT("the lines make {1}, and {0} expects {2}"),
     TR_TEXT("the receipt is given up, and the next sale opens none"),
     TR_TEXT("the sum of the lines")},
};

constexpr size_t kMostArguments = 5;

std::string Sentence(const char* english, const std::vector<std::string>& arguments) {
  if (*english == 0) return {};
  std::array<std::string, kMostArguments> filled;
  for (size_t i = 0; i < arguments.size() && i < filled.size(); ++i) filled[i] = arguments[i];
  return fmt::vformat(Translated(english),
                      fmt::make_format_args(filled[0], filled[1], filled[2], filled[3], filled[4]));
}

}  // namespace

std::span<const TrapSentences> SentencesOfTraps() { return kSentences; }

Finding TrapFinding(const FoundTrap& found) {
  Finding finding;
  for (const TrapSentences& row : kSentences) {
    if (row.trap != found.trap) continue;
    finding.severity = row.severity;
    finding.rule = row.rule;
    finding.code = row.code;
    finding.what = Sentence(row.what, found.arguments);
    finding.effect = Sentence(row.effect, found.arguments);
    finding.suggestion = found.instead;
    // A suggestion is shorter than any advice.
    if (found.instead.empty()) finding.remedy = Sentence(row.remedy, found.arguments);
  }
  return finding;
}

}  // namespace lorimat::console
