#include "console/message/refusal_text.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/document/printer_state.h"
#include "register/document/receipt.h"
#include "register/tables/device_setup.h"
#include "register/tables/keyboards.h"
#include "register/value/money.h"
#include "register/value/row_encoding.h"

namespace lorimat::console {
namespace {

using lorimat::DocumentKind;
using lorimat::Operation;
using lorimat::PrinterState;
using lorimat::Refusal;
using lorimat::Subject;
using Cause = lorimat::RefusalCause;

constexpr RefusalSentence kSentences[] = {
    // --- The state of the register
    {Cause::kKeyForDocument, "k",
     TR_TEXT("The key is at {}: documents are begun with it at position 1, registering.")},
    {Cause::kKeyForProgramming, "k",
     TR_TEXT("The key is at {}: this register is programmed with it at position 4.")},
    {Cause::kTraining, "",
     TR_TEXT("The register is in training: nothing is reported or programmed before that ends.")},
    {Cause::kNotTraining, "", TR_TEXT("The register is not in training.")},
    {Cause::kMovesCash, "",
     TR_TEXT("The open document moves cash into the drawer or out of it, and sells nothing.")},
    {Cause::kMovesNoCash, "", TR_TEXT("The open document is none that moves cash.")},
    {Cause::kNothingSold, "", TR_TEXT("The document has no line yet.")},
    {Cause::kNoCashMoved, "", TR_TEXT("The document has no amount yet.")},
    {Cause::kTrailerPrinted, "", TR_TEXT("The end of the document is printed already.")},
    {Cause::kNoLotteryHere, "", TR_TEXT("A lottery code goes with the receipt of a sale alone.")},
    {Cause::kLotteryNotAnnounced, "",
     TR_TEXT("No lottery code was announced by the key for it, or another key came between.")},
    {Cause::kSetUpOrder, "cc",
     TR_TEXT("The register is {}, and this step wants one that is {}: census, activation and "
             "commissioning follow each other, each once.")},
    {Cause::kUploadNotBegun, "", TR_TEXT("The upload of articles was not begun.")},
    {Cause::kDayOpen, "", TR_TEXT("A day is open: it has to be closed first.")},
    {Cause::kDayFull, "n",
     TR_TEXT("The day has the document {}, its last number: it has to be closed first.")},
    {Cause::kClosuresFull, "", TR_TEXT("The fiscal memory has no room for another closing.")},
    {Cause::kMemoryFull, "", TR_TEXT("The totals have no room for another document.")},
    {Cause::kJournalInUse, "", TR_TEXT("The journal holds entries, and nothing erases them.")},
    {Cause::kNothingBuffered, "",
     TR_TEXT("There is no document to copy: documents are not kept for a copy, or it was printed "
             "already.")},
    {Cause::kFixedByDocuments, "s",
     TR_TEXT("Fixed since the register's first document, which bears it: {}.")},
    // --- Lines
    {Cause::kLineKind, "n", TR_TEXT("There is no kind of line {}.")},
    {Cause::kNoArticle, "t", TR_TEXT("There is no article '{}'.")},
    {Cause::kNoLineBefore, "",
     TR_TEXT("There is no line before, whose department or VAT entry it could have.")},
    {Cause::kNoDepartment, "nn", TR_TEXT("There is no department {}: they are 1 to {}.")},
    {Cause::kNoVatEntry, "nn", TR_TEXT("There is no VAT entry {}: they are 1 to {}.")},
    {Cause::kNeitherDepartmentNorVat, "",
     TR_TEXT("The line has neither a department nor a VAT entry.")},
    {Cause::kNegativeQuantity, "q", TR_TEXT("The quantity {} is below zero.")},
    {Cause::kNoPrice, "a",
     TR_TEXT("The price is {}: no price was given, and department or article have none.")},
    {Cause::kNegativePrice, "a", TR_TEXT("The price {} is below zero.")},
    {Cause::kComesToNothing, "qa", TR_TEXT("{} at {} come to less than a cent.")},
    {Cause::kPriceAboveLimit, "aan",
     TR_TEXT("The price {} is above {}, the limit of department {}.")},
    {Cause::kLineTooHigh, "a", TR_TEXT("The line comes to more than {}, the most of a document.")},
    {Cause::kTotalTooHigh, "aa",
     TR_TEXT("The total is {} so far, and would become more than {}, the most of a document.")},
    {Cause::kTotalBelowZero, "aa", TR_TEXT("The total is {}, and {} would take it below zero.")},
    {Cause::kVatBelowZero, "na",
     TR_TEXT("The document's sum of VAT entry {} would go below zero by the change of {}.")},
    {Cause::kTaxAboveLine, "aa",
     TR_TEXT("The tax of {} is below zero, or above the line's amount of {}.")},
    {Cause::kOtherVatEntry, "n",
     TR_TEXT("The article is sold under VAT entry {}, and that is not the entry of the list or of "
             "the call.")},
    {Cause::kDescriptionMissing, "n", TR_TEXT("Department {} wants a description.")},
    {Cause::kNoLineToVoid, "qa",
     TR_TEXT("No line that stands has this department or article, VAT entry and description, with "
             "{} at {}, to be taken back.")},
    {Cause::kNoLineToRestore, "qa",
     TR_TEXT("No line that was taken back has this department or article and VAT entry, with {} at "
             "{}.")},
    {Cause::kNoOpenLine, "",
     TR_TEXT("There is no line for it: none was sold, or the last one was taken back.")},
    {Cause::kDepartmentBelowZero, "n",
     TR_TEXT("With that, department {} would have sold less than nothing on this document.")},
    {Cause::kNoDiscountThere, "", TR_TEXT("The department takes no discounts.")},
    {Cause::kAdjustmentKind, "n", TR_TEXT("There is no discount or surcharge of kind {} here.")},
    {Cause::kAdjustmentSize, "a",
     TR_TEXT("The discount or surcharge of {} is not above zero, or more than a document holds.")},
    {Cause::kPercentageSize, "p",
     TR_TEXT("{} % is no percentage here: it is not above zero, a discount of more than 100 %, or "
             "comes to less than a cent.")},
    {Cause::kDiscountAboveBase, "aa", TR_TEXT("The discount of {} is more than the {} it is on.")},
    {Cause::kNoAdjustmentToVoid, "",
     TR_TEXT("No discount or surcharge of this kind and size stands, to be taken back.")},
    {Cause::kDiscountStandsOnIt, "",
     TR_TEXT("A discount on the line counts on this surcharge, and has to be taken back first.")},
    {Cause::kShares, "t",
     TR_TEXT("'{}' are no shares: VAT entries and amounts are wanted, as 1,10000;2,5000.")},
    {Cause::kSubtotalDiffers, "aa", TR_TEXT("{} was given, and the document comes to {}.")},
    // --- Payment
    {Cause::kNoTender, "t", TR_TEXT("There is no tender '{}'.")},
    {Cause::kPaymentSize, "a",
     TR_TEXT("The amount of {} is below zero, or more than a document holds.")},
    {Cause::kNothingPaid, "a", TR_TEXT("Nothing was paid, and {} is left to pay.")},
    {Cause::kNoChange, "aa",
     TR_TEXT("{} was paid where {} is left to pay, and this tender gives no change.")},
    {Cause::kOnlyCash, "t", TR_TEXT("Cash moves as cash: tender '{}' is none.")},
    {Cause::kCashNotExact, "aa", TR_TEXT("{} was given, and the document moves {}.")},
    {Cause::kVoidTotalDiffers, "aa",
     TR_TEXT("The lines come to {}, and the document that is voided to {}.")},
    // --- Documents that refer to another
    {Cause::kReference, "nn",
     TR_TEXT("Closure {} and document {}: numbers go to 9999, and are not below zero.")},
    {Cause::kNotNamedWhole, "nn",
     TR_TEXT("Closing {} and document {}: it takes both to name a document of this register.")},
    {Cause::kNoSuchDocument, "d", TR_TEXT("The register has no receipt {}.")},
    {Cause::kNoLastDocument, "",
     TR_TEXT("There is no document, or the last one is no receipt of a sale.")},
    {Cause::kVoidedAlready, "d", TR_TEXT("Receipt {} is voided already.")},
    {Cause::kPaidBackAlready, "d", TR_TEXT("Receipt {} was paid back by a credit note already.")},
    {Cause::kMoreThanSold, "aad",
     TR_TEXT("The document comes to {}, and {} is left of the receipt {} to pay back.")},
    {Cause::kMoreThanSoldOfVat, "naad",
     TR_TEXT("Under VAT entry {} the document has {}, and {} is left of the receipt {} to pay "
             "back.")},
    {Cause::kOfAnotherDay, "dt", TR_TEXT("Receipt {} is not of {}, the date that was given.")},
    // --- Values and texts
    {Cause::kOutOfRange, "snnn", TR_TEXT("Not allowed for {}: {}; it goes from {} to {}.")},
    {Cause::kAmountOutOfRange, "saaa",
     TR_TEXT("Not allowed for {}: {}; it goes from {} up to {}.")},
    {Cause::kNotOneOf, "sn", TR_TEXT("Not known for {}: {}.")},
    {Cause::kUnknownName, "st", TR_TEXT("Not known for {}: '{}'.")},
    {Cause::kTooLong, "snn", TR_TEXT("Too long for {}: {} characters, of {} at most.")},
    {Cause::kWrongLength, "snnn",
     TR_TEXT("Wrong length for {}: {} characters, and it takes {} to {}.")},
    {Cause::kEitherLength, "snnn",
     TR_TEXT("Wrong length for {}: {} characters, and it takes {} or {}.")},
    {Cause::kCharacters, "st", TR_TEXT("Not allowed for {}: a character of '{}'.")},
    {Cause::kCheckDigit, "snn",
     TR_TEXT("The check digit is wrong for {}: it is {}, and would have to be {}.")},
    {Cause::kNotANumber, "st", TR_TEXT("No number, or too high for {}: '{}'.")},
    {Cause::kNotAFlag, "st", TR_TEXT("Not 0 or 1 for {}: '{}'.")},
    {Cause::kMissing, "s", TR_TEXT("Missing: {}.")},
    {Cause::kDate, "t", TR_TEXT("'{}' is no date.")},
    {Cause::kDatesReversed, "", TR_TEXT("The range of dates ends before it begins.")},
    {Cause::kRangeReversed, "nn", TR_TEXT("The range from {} to {} ends before it begins.")},
    {Cause::kOddDigits, "n", TR_TEXT("The barcode takes digits in pairs, and has {}.")},
    {Cause::kFixedKey, "n", TR_TEXT("The key with code {} cannot be moved.")},
    {Cause::kNoMacroKey, "n", TR_TEXT("The key with code {} is none of those that hold a macro.")},
    {Cause::kMacroKey, "n", TR_TEXT("A macro cannot hold key code {}.")},
    {Cause::kPresetAboveLimit, "aa",
     TR_TEXT("The price {} is above the limit {}, so that nothing could be sold at it.")},
    {Cause::kArticleRow, "t", TR_TEXT("'{}' is no row of an article.")},
    {Cause::kTableFull, "n", TR_TEXT("The table has its {} rows, and no room for another.")},
    // --- Reports and files
    {Cause::kReadingClears, "", TR_TEXT("A reading clears nothing.")},
    {Cause::kNoClosingYet, "", TR_TEXT("No day was closed yet.")},
    {Cause::kNothingInRange, "", TR_TEXT("There is nothing in the range that was asked for.")},
    {Cause::kNothingWaits, "", TR_TEXT("There is nothing of the kind to be written.")},
    {Cause::kNoFile, "t", TR_TEXT("There is no file '{}'.")},
    {Cause::kNoFolder, "t", TR_TEXT("'{}' is no folder, or none in which files can be made.")},
    {Cause::kFileNotRead, "et", TR_TEXT("Reading failed ({}): '{}'.")},
    {Cause::kFileNotWritten, "et", TR_TEXT("Writing failed ({}): '{}'.")},
    {Cause::kNotAFirmware, "t",
     TR_TEXT("'{}' holds no firmware of this register, or a damaged one.")},
    // --- The clock
    {Cause::kClockBehind, "ww",
     TR_TEXT("The clock shows {}, more than an hour before the last document or closing, {}: put "
             "the computer's clock right, or set the register's own with DIRECTIO CMD=2, OPT=149, "
             "DATI='DDMMYYYYHHMM', which the journal keeps.")},
    {Cause::kComputersClock, "", TR_TEXT("The computer's clock shows no year up to 9999.")},
    // --- Others
    {Cause::kNotModelled, "", TR_TEXT("The virtual register does not have this operation.")},
    {Cause::kNoKey, "n", TR_TEXT("The keyboard has no key of code {}.")},
    {Cause::kReadOnly, "n", TR_TEXT("Item {} can be read only.")},
    {Cause::kFault, "", TR_TEXT("A planned fault struck.")},
    {Cause::kNotKept, "", TR_TEXT("The register could not store it, and nothing was changed.")},
};

struct SubjectName {
  Subject subject;
  const char* name;
};

constexpr SubjectName kSubjects[] = {
    {Subject::kTaxCode, TR_TEXT("the tax code")},
    {Subject::kVatNumber, TR_TEXT("the VAT number")},
    {Subject::kLotteryCode, TR_TEXT("the lottery code")},
    {Subject::kBarcode, TR_TEXT("the barcode")},
    {Subject::kBarcodeType, TR_TEXT("the type of the barcode")},
    {Subject::kHeaderLine, TR_TEXT("the number of the header line")},
    {Subject::kHeaderText, TR_TEXT("the header line")},
    {Subject::kTrailerLine, TR_TEXT("the number of the trailer line")},
    {Subject::kTrailerText, TR_TEXT("the trailer line")},
    {Subject::kDepartment, TR_TEXT("the department")},
    {Subject::kDepartmentName, TR_TEXT("the name of the department")},
    {Subject::kGroup, TR_TEXT("the group")},
    {Subject::kGroupText, TR_TEXT("the description of the group")},
    {Subject::kSubtender, TR_TEXT("the subtender")},
    {Subject::kSubtenderText, TR_TEXT("the description of the subtender")},
    {Subject::kSubtenderKind, TR_TEXT("the kind of the subtender")},
    {Subject::kSubtenderFlags, TR_TEXT("the flags of the subtender")},
    {Subject::kPresetValue, TR_TEXT("the preset value")},
    {Subject::kPaymentDigits, TR_TEXT("an amount of this tender")},
    {Subject::kVatRate, TR_TEXT("the VAT rate")},
    {Subject::kPrice, TR_TEXT("the price")},
    {Subject::kPriceLimit, TR_TEXT("the limit of the price")},
    {Subject::kQuantity, TR_TEXT("the quantity")},
    {Subject::kArticleCode, TR_TEXT("the code of the article")},
    {Subject::kArticleText, TR_TEXT("the description of the article")},
    {Subject::kLogo, TR_TEXT("the logo")},
    {Subject::kLogoFile, TR_TEXT("the name of the logo's file")},
    {Subject::kLogoPlace, TR_TEXT("the place of the logo")},
    {Subject::kOperator, TR_TEXT("the operator")},
    {Subject::kKeyLock, TR_TEXT("the position of the key")},
    {Subject::kKeyPlace, TR_TEXT("the place on the keyboard")},
    {Subject::kKeyCode, TR_TEXT("the code of the key")},
    {Subject::kMacro, TR_TEXT("the macro")},
    {Subject::kDigits, TR_TEXT("the digits that were keyed")},
    {Subject::kAmount, TR_TEXT("the amount")},
    {Subject::kDescription, TR_TEXT("the description")},
    {Subject::kCourtesyText, TR_TEXT("the courtesy text")},
    {Subject::kOption, TR_TEXT("the option")},
    {Subject::kDataItem, TR_TEXT("the data item")},
    {Subject::kProperty, TR_TEXT("the property")},
    {Subject::kPropertyValue, TR_TEXT("the value of the property")},
    {Subject::kStation, TR_TEXT("the station of the printer")},
    {Subject::kPosId, TR_TEXT("the identifier of the till or the cashier")},
    {Subject::kCredential, TR_TEXT("the user or the password")},
    {Subject::kActivity, TR_TEXT("the code of the activity")},
    {Subject::kInvoiceNumber, TR_TEXT("the number of the invoice")},
    {Subject::kReading, TR_TEXT("the kind of reading")},
    {Subject::kPeriod, TR_TEXT("the kind of period")},
    {Subject::kSource, TR_TEXT("the source of the report")},
    {Subject::kCriterion, TR_TEXT("the way to choose")},
    {Subject::kFormat, TR_TEXT("the format of the file")},
    {Subject::kPlaces, TR_TEXT("the places that the report goes to")},
    {Subject::kClosure, TR_TEXT("the number of the closing")},
    {Subject::kDocumentNumber, TR_TEXT("the number of the document")},
    {Subject::kDocumentKinds, TR_TEXT("the kinds of documents")},
    {Subject::kSummaries, TR_TEXT("the choice of summaries")},
    {Subject::kTable, TR_TEXT("the table")},
    {Subject::kTableRow, TR_TEXT("the row of the table")},
    {Subject::kTotal, TR_TEXT("the total")},
    {Subject::kDisplay, TR_TEXT("the display or the place on it")},
    {Subject::kTest, TR_TEXT("the test")},
    {Subject::kReportFile, TR_TEXT("the name of the file")},
    {Subject::kYear, TR_TEXT("the year")},
    {Subject::kSerialNumber, TR_TEXT("the serial number")},
};
static_assert(std::size(kSubjects) == static_cast<size_t>(Subject::kLast) + 1);

// --- The state: what is going on, and what the operation wants.

struct OperationNeed {
  Operation operation;
  const char* need;
};

constexpr OperationNeed kNeeds[] = {
    {Operation::kBeginDocument, TR_TEXT("a document is begun where none is open")},
    {Operation::kLine, TR_TEXT("a line wants an open document that is not being paid")},
    {Operation::kAdjustment,
     TR_TEXT("a discount or surcharge wants an open document that is not being paid")},
    {Operation::kSubtotal, TR_TEXT("a subtotal wants an open document that is not being paid")},
    {Operation::kTotal, TR_TEXT("a payment wants an open document that is not paid")},
    {Operation::kVoidReceipt, TR_TEXT("only an open document that is not paid can be voided")},
    {Operation::kTaxId, TR_TEXT("a tax code wants an open document that is not being paid")},
    {Operation::kLottery, TR_TEXT("a lottery code wants an open receipt that is not being paid")},
    {Operation::kMessage, TR_TEXT("a text line wants an open document")},
    {Operation::kGraphics, TR_TEXT("a barcode or logo wants an open document")},
    {Operation::kAdditionalTrailer,
     TR_TEXT("this text wants a document that is paid and not ended")},
    {Operation::kEndReceipt, TR_TEXT("only a document that is paid and waits can be ended")},
    {Operation::kPrintNormal, TR_TEXT("this text wants an open non-fiscal document")},
    {Operation::kEndNonFiscal, TR_TEXT("only a non-fiscal document can be ended so")},
    {Operation::kCut, TR_TEXT("the paper is not cut inside a document")},
    {Operation::kReport, TR_TEXT("a report wants that no document is open")},
    {Operation::kTurnKey, TR_TEXT("key and operator change where no document is open")},
    {Operation::kProgram, TR_TEXT("programming wants that no document is open")},
    {Operation::kCash, TR_TEXT("this amount wants an open document that moves cash")},
    {Operation::kTraining, TR_TEXT("training begins and ends where no document is open")},
    {Operation::kDuplicate, TR_TEXT("this wants that no document is open")},
    {Operation::kItemList, TR_TEXT("this wants an open list of items")},
    {Operation::kSelfTest, TR_TEXT("a test that prints wants that no document is open")},
};

std::string KindName(int64_t kind) {
  switch (static_cast<DocumentKind>(kind)) {
    case DocumentKind::kInvoice:
      return DocumentKindText(lorimat::InterruptedKind::kInvoice);
    case DocumentKind::kRefund:
      return DocumentKindText(lorimat::InterruptedKind::kCreditNote);
    case DocumentKind::kCancel:
      return DocumentKindText(lorimat::InterruptedKind::kVoid);
    case DocumentKind::kSale:
      break;
  }
  return DocumentKindText(lorimat::InterruptedKind::kReceipt);
}

std::string GoingOn(const Refusal& refusal) {
  const auto& [state, operation, kind, lines, amount] = refusal.numbers;
  switch (static_cast<PrinterState>(state)) {
    case PrinterState::kReceipt:
      return Tr("{} is open, {}, subtotal {}", KindName(kind),
                TrCount(static_cast<uint64_t>(lines), "{} line", "{} lines"), AmountText(amount));
    case PrinterState::kTotal:
      return Tr("{} is being paid, with {} left to pay", KindName(kind), AmountText(amount));
    case PrinterState::kEnding:
      return Tr("{} is paid, and waits to be ended", KindName(kind));
    case PrinterState::kNonFiscal:
      return Tr("{} is open", DocumentKindText(lorimat::InterruptedKind::kNonFiscal));
    case PrinterState::kItemList:
      return Tr("a list of items is open");
    case PrinterState::kMonitor:
      break;
  }
  return Tr("no document is open");
}

std::string StateSentence(const Refusal& refusal) {
  const auto operation = static_cast<Operation>(refusal.numbers[1]);
  for (const OperationNeed& row : kNeeds) {
    if (row.operation == operation) {
      return Tr("Now {}; {}.", GoingOn(refusal), Translated(row.need));
    }
  }
  return Tr("Now {}.", GoingOn(refusal));
}

// --- The fields.

std::string KeyName(int64_t position) {
  static constexpr const char* kNames[] = {
      TR_TEXT("position 1, registering"), TR_TEXT("position 2, reading"),
      TR_TEXT("position 3, closing"), TR_TEXT("position 4, programming")};
  if (position < 1 || position > static_cast<int64_t>(std::size(kNames))) {
    return std::to_string(position);
  }
  return std::string(Translated(kNames[position - 1]));
}

std::string CommissioningName(int64_t step) {
  switch (static_cast<lorimat::Commissioning>(step)) {
    case lorimat::Commissioning::kNew:
      return Tr("not yet registered");
    case lorimat::Commissioning::kRegistered:
      return Tr("registered");
    case lorimat::Commissioning::kActivated:
      return Tr("activated");
    case lorimat::Commissioning::kInService:
      break;
  }
  return Tr("in service");
}

// A decimal number with as few digits behind the comma as it has.
std::string DecimalText(int64_t value, int64_t one) {
  std::string digits = std::to_string(one + value % one * (value < 0 ? -1 : 1)).substr(1);
  while (!digits.empty() && digits.back() == '0') digits.pop_back();
  const std::string whole =
      (value < 0 && value / one == 0 ? "-" : "") + std::to_string(value / one);
  return digits.empty() ? whole : whole + (PointedNumbers::wanted() ? "." : ",") + digits;
}

std::string FieldText(char field, const int64_t*& number, const Refusal& refusal) {
  switch (field) {
    case 'a':
      return AmountText(*number++);
    case 'q':
      return DecimalText(*number++, lorimat::kOnePiece);
    case 'p':
      return DecimalText(*number++, 10000);
    case 's':
      return SubjectText(static_cast<Subject>(*number++));
    case 'k':
      return KeyName(*number++);
    case 'c':
      return CommissioningName(*number++);
    case 'd': {
      const int closure = static_cast<int>(*number++);
      return DocumentNumberText(closure, static_cast<int>(*number++));
    }
    case 'e': {
      const int error = static_cast<int>(*number++);
      return error != 0 ? SystemMessage(error) : Tr("the system does not tell why");
    }
    case 'w':
      return TimeText(lorimat::NumberTime(*number++));
    case 't':
      return Shown(refusal.text()) + (refusal.cut ? "..." : "");
    default:
      return std::to_string(*number++);
  }
}

}  // namespace

std::span<const RefusalSentence> RefusalSentences() { return kSentences; }

std::string SubjectText(Subject subject) {
  for (const SubjectName& row : kSubjects) {
    if (row.subject == subject) return std::string(Translated(row.name));
  }
  return {};
}

std::string RefusalText(const Refusal& refusal) {
  if (refusal.cause == Cause::kState) return StateSentence(refusal);
  for (const RefusalSentence& row : kSentences) {
    if (row.cause != refusal.cause) continue;
    if (row.cause == Cause::kWrongLength && refusal.numbers[2] == refusal.numbers[3]) {
      return Tr("Wrong length for {}: {} characters, and it takes {}.",
                SubjectText(static_cast<Subject>(refusal.numbers[0])), refusal.numbers[1],
                refusal.numbers[2]);
    }
    fmt::dynamic_format_arg_store<fmt::format_context> fields;
    const int64_t* number = refusal.numbers.data();
    for (const char* field = row.fields; *field != 0; ++field) {
      fields.push_back(FieldText(*field, number, refusal));
    }
    return fmt::vformat(Translated(row.text), fields);
  }
  return {};
}

}  // namespace lorimat::console
