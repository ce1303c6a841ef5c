// Why the register refuses: a value with its arguments, from which the one who asks makes a
// sentence. The client interface has room for a code alone; the cause stands beside it.
//
//   if (price > limit) {
//     return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kPriceAboveLimit, {price, limit, number});
//   }
//
// Refuse() answers its code and notes the cause with the operation that is at work on this thread;
// outside of one nothing is noted. Nothing here throws or needs memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace lorimat {

// Behind each what its numbers and its text are. Amounts are in ten-thousandths of the currency,
// percentages in ten-thousandths of a percent, quantities in thousandths.
enum class RefusalCause : uint8_t {
  kUnknown,
  // --- The state of the register
  kState,           // PrinterState, Operation, DocumentKind, lines, subtotal or what is left to pay
  kKeyForDocument,  // the position of the key, a KeyPosition
  kKeyForProgramming,  // the same
  kTraining,
  kNotTraining,
  kMovesCash,
  kMovesNoCash,
  kNothingSold,
  kNoCashMoved,
  kTrailerPrinted,
  kNoLotteryHere,  // DocumentKind
  kLotteryNotAnnounced,
  kSetUpOrder,  // the Commissioning that it has, the one that it needs
  kUploadNotBegun,
  kDayOpen,
  kDayFull,  // the last number of a day
  kClosuresFull,
  kMemoryFull,
  kJournalInUse,
  kNothingBuffered,
  kFixedByDocuments,  // subject
  // --- Lines
  kLineKind,   // the kind asked for
  kNoArticle,  // its code
  kNoLineBefore,
  kNoDepartment,  // number, the highest there is
  kNoVatEntry,    // number, the highest there is
  kNeitherDepartmentNorVat,
  kNegativeQuantity,    // quantity
  kNoPrice,             // price
  kNegativePrice,       // price
  kComesToNothing,      // quantity, price
  kPriceAboveLimit,     // price, limit, department
  kLineTooHigh,         // the highest amount
  kTotalTooHigh,        // total so far, the highest
  kTotalBelowZero,      // total so far, change
  kVatBelowZero,        // VAT entry, change
  kTaxAboveLine,        // tax, amount of the line
  kOtherVatEntry,       // the entry that it is sold under
  kDescriptionMissing,  // department
  kNoLineToVoid,        // quantity, price
  kNoLineToRestore,     // quantity, price
  kNoOpenLine,
  kDepartmentBelowZero,  // department
  kNoDiscountThere,      // department
  kAdjustmentKind,       // the kind asked for
  kAdjustmentSize,       // value
  kPercentageSize,       // percentage
  kDiscountAboveBase,    // discount, what it is taken from
  kNoAdjustmentToVoid,
  kDiscountStandsOnIt,
  kShares,           // the text of the shares
  kSubtotalDiffers,  // given, true
  // --- Payment
  kNoTender,          // its identifier
  kPaymentSize,       // payment
  kNothingPaid,       // what is left to pay
  kNoChange,          // payment, what is left to pay
  kOnlyCash,          // the tender
  kCashNotExact,      // payment, total
  kVoidTotalDiffers,  // total, that of the voided document
  // --- Documents that refer to another
  kReference,       // closure, number
  kNotNamedWhole,   // closure, number
  kNoSuchDocument,  // closure, number
  kNoLastDocument,
  kVoidedAlready,      // closure, number
  kPaidBackAlready,    // closure, number
  kMoreThanSold,       // total, what is left of the sale, its closure, its number
  kMoreThanSoldOfVat,  // VAT entry, amount, what is left of the sale, its closure, its number
  kOfAnotherDay,       // closure, number; the date
  // --- Values and texts; the first number is the Subject
  kOutOfRange,        // subject, value, lowest, highest
  kAmountOutOfRange,  // subject, amount, lowest, highest
  kNotOneOf,          // subject, value
  kUnknownName,       // subject; the name
  kTooLong,           // subject, length, the longest
  kWrongLength,       // subject, length, the shortest, the longest
  kEitherLength,      // subject, length, one, the other
  kCharacters,        // subject; the text
  kCheckDigit,        // subject, the digit that it has, the right one
  kNotANumber,        // subject; the text
  kNotAFlag,          // subject; the text
  kMissing,           // subject
  kDate,              // the text
  kDatesReversed,
  kRangeReversed,     // first, last
  kOddDigits,         // length
  kFixedKey,          // key code
  kNoMacroKey,        // key code
  kMacroKey,          // key code in a macro
  kPresetAboveLimit,  // price, limit
  kArticleRow,        // the row
  kTableFull,         // the most rows
  // --- Reports and files
  kReadingClears,
  kNoClosingYet,
  kNothingInRange,
  kNothingWaits,
  kNoFile,          // its name
  kNoFolder,        // its name
  kFileNotRead,     // an errno value; its name
  kFileNotWritten,  // an errno value; its name
  kNotAFirmware,
  // --- The clock
  kClockBehind,  // the clock, the time that it is behind; both YYYYMMDDHHMMSS
  kComputersClock,
  // --- Others
  kNotModelled,
  kNoKey,     // key code
  kReadOnly,  // data item
  kFault,     // a planned one
  kNotKept,   // VirtualRegister::last_failure tells why
  kLast = kNotKept,
};

// What a value or a text is of.
enum class Subject : uint8_t {
  kTaxCode,
  kVatNumber,
  kLotteryCode,
  kBarcode,
  kBarcodeType,
  kHeaderLine,
  kHeaderText,
  kTrailerLine,
  kTrailerText,
  kDepartment,
  kDepartmentName,
  kGroup,
  kGroupText,
  kSubtender,
  kSubtenderText,
  kSubtenderKind,
  kSubtenderFlags,
  kPresetValue,
  kPaymentDigits,
  kVatRate,
  kPrice,
  kPriceLimit,
  kQuantity,
  kArticleCode,
  kArticleText,
  kLogo,
  kLogoFile,
  kLogoPlace,
  kOperator,
  kKeyLock,
  kKeyPlace,
  kKeyCode,
  kMacro,
  kDigits,
  kAmount,
  kDescription,
  kCourtesyText,
  kOption,
  kDataItem,
  kProperty,
  kPropertyValue,
  kStation,
  kPosId,
  kCredential,
  kActivity,
  kInvoiceNumber,
  kReading,
  kPeriod,
  kSource,
  kCriterion,
  kFormat,
  kPlaces,
  kClosure,
  kDocumentNumber,
  kDocumentKinds,
  kSummaries,
  kTable,
  kTableRow,
  kTotal,
  kDisplay,
  kTest,
  kReportFile,
  kYear,
  kSerialNumber,
  kLast = kSerialNumber,
};

struct Refusal {
  static constexpr size_t kNumbers = 5;
  static constexpr size_t kTextSize = 100;

  int code = 0;  // that the operation answered; 0 as long as none was refused
  RefusalCause cause = RefusalCause::kUnknown;
  std::array<int64_t, kNumbers> numbers{};
  // A key was refused, and the operation that pressed it answered success.
  bool by_key = false;
  // A text of the host's, any bytes; cut when it is longer.
  std::string_view text() const { return {characters.data(), size}; }
  bool cut = false;

  std::array<char, kTextSize> characters{};
  uint8_t size = 0;
};

// The refusals of one register.
class RefusalNote {
 public:
  // An operation at work. Another register's may begin inside of it.
  class Operation {
   public:
    explicit Operation(RefusalNote& note) noexcept;
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    // What the operation answers. A code other than 0 is noted, with the cause if it was that of
    // the last Refuse().
    void End(int code) noexcept;

   private:
    friend int Refuse(int code, RefusalCause cause, std::initializer_list<int64_t> numbers,
                      std::string_view text) noexcept;
    friend void KeepRefusal(int code) noexcept;

    RefusalNote& note_;
    Operation* outer_;
    Refusal latest_;
  };

  // Of the last operation that was refused.
  const Refusal& last() const { return last_; }
  // How many were, so that one can tell whether another was.
  uint64_t count() const { return count_; }

 private:
  Refusal last_;
  uint64_t count_ = 0;
};

// Notes the cause, and answers the code. A text for a cause that says so.
int Refuse(int code, RefusalCause cause, std::initializer_list<int64_t> numbers = {},
           std::string_view text = {}) noexcept;

// The same for a cause whose first number is a subject.
int RefuseValue(int code, RefusalCause cause, Subject subject,
                std::initializer_list<int64_t> numbers = {}, std::string_view text = {}) noexcept;

// Something was refused by an operation that answers success: a key that was pressed.
void KeepRefusal(int code) noexcept;

}  // namespace lorimat
