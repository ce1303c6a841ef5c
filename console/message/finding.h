// What a check finds in a definition file or in lines: a value with its cause, its arguments and
// its place. finding_text.h makes sentences of it.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lorimat::console {

enum class Severity : uint8_t { kError, kWarning, kNote };

// Behind each what its arguments are. A list is of names; sizes and columns are in bytes.
enum class FindingCause : uint8_t {
  // --- Files
  kUtf16,
  kFileMark,        // a byte order mark
  kNulByte,         // column
  kCarriageReturn,  // column
  kLineCut,         // characters, the most
  // --- Definition files: what stops the library's reading
  kNoEquals,
  kNothingInFront,
  kNoRowNumber,   // the text in its place, the section's name
  kRowAboveLast,  // row, the last
  // --- Definition files: headers
  kHeaderNotClosed,    // as written, the name as read
  kNoMessageSection,   // name
  kNoSection,          // name
  kSectionAsNumber,    // name, the command whose fields are meant
  kSectionOutOfRange,  // name, the last command's number
  kSectionTwice,       // name, line of the one before
  kEntryBeforeSection,
  // --- Definition files: entries
  kPartCut,            // characters, the most
  kRowNotANumber,      // the text in its place, the number read
  kRowOutOfRange,      // row, the last
  kMessageOutOfRange,  // row, the section's name, the last
  kRowOutOfReach,      // row
  kNameMissing,
  kNameCut,              // name, characters, the most, what is left
  kSymbolCut,            // the same
  kCommandHasQuote,      // name
  kFieldHasQuote,        // name
  kNameBeginsWithComma,  // name
  kCommandHasBlank,      // name
  kCommandBeginsWithAt,  // name
  kNameIsNumber,         // name
  kMarkIgnored,
  kNumberNotANumber,  // the text in its place, the number read
  kNumberFromRow,     // the text in its place
  kOpcodeOutOfRange,  // number, the last
  kFieldOutOfRange,   // number, the last
  kRowTwice,          // row, line of the one before, its name
  kRowTwiceAlike,     // the same
  kRowTwiceUnnamed,   // row, line of the one before
  kUnnamedRowTwice,   // the same
  kValueNotANumber,   // the text in its place, the symbol, the number read
  kTooManySymbols,    // the most
  kTextTooLong,       // the most characters
  kTextBadlyQuoted,
  kSymbolIsNumber,    // symbol
  kSymbolUnwritable,  // symbol
  kKeyHasBlank,       // symbol
  kKeyOutOfRange,     // code, the last, the code that a key gets
  kSymbolTwice,       // symbol, line of the one before
  kKeyTwice,          // code, line of the one before
  kTextTwice,         // row, line of the one before
  // --- Definition files: words
  kNoCommands,
  kCommandsUnbound,      // how many, list of opcodes
  kOpcodeUnknown,        // name, opcode
  kAlias,                // name, the other name
  kCommandInOtherRow,    // name, row, opcode
  kCommandShadowed,      // name, the name found
  kNameAmbiguous,        // name, list with lines, the library's answer
  kNameBeginsAnother,    // name, line, the other name
  kRowAboveHighest,      // row, the highest, the section's number, line of its last header
  kFieldOfNoCommand,     // number, the section's number, name
  kFieldInOtherRow,      // name, row, number
  kFieldShadowed,        // name, the number found, its name
  kFieldsUnbound,        // command, opcode, list of numbers
  kSectionByNumberOnly,  // the section's number
  kSectionUnreached,     // the section's number
  kFlagNotReadBack,      // word, row, value
  // --- Lines that the library refuses
  kNestedBatch,
  kCommandUnsupported,  // as written, opcode
  kCommandNotUnique,    // as written, list
  kCommandNotFound,     // as written
  kFieldMissing,        // command, list
  kFieldWithoutName,
  kFieldNotUnique,  // as written, command, list
  kFieldNotFound,   // command, as written
  kTakesNoFields,   // command
  kQuoteInName,
  kBadQuote,
  kLineEnds,
  kValueTooLong,
  kCommaMissing,   // the value
  kCapitalsCount,  // the value
  kQuotesMissing,  // the value
  kLineMark,       // a byte order mark
  kLineTooLong,    // characters, the most
  kNulInLine,
  kReturnInLine,
  // --- Fields that say less than they seem to
  kFieldTwice,    // key
  kFieldNotRead,  // command, key
  // --- Traps: lines that the library takes, answers with OK more often than not, and understands
  // otherwise than they read. First the numbers; the first argument is the field's key.
  kDecimalComma,     // key, the key behind the comma
  kNumberText,       // key, value, what is read
  kNumberRefused,    // key, value
  kQuantityMisread,  // key, what is read
  kPriceMisread,     // the same, of a price or percentage
  kNumberMisread,    // the same
  kNumberBare,       // key
  kNumberEmpty,      // key
  kNumberCut,        // key, value, what is taken
  kWordAsNumber,     // key, word, its number
  kQuantityZero,     // key
  kKeyedText,        // key, value, what is keyed
  // Fields that the command leaves alone
  kFieldUnused,         // key, the key beside it, command
  kFieldUnusedWithout,  // key, list of fields, command
  kTextNotPrinted,      // key, the key beside it
  kDoesNothing,         // command, list of fields
  // Sales and payments
  kDepositQuantity,  // key, key of the kind
  kDepositTooLarge,  // key, amount, the amount sent
  kTwoPrices,        // key, the other key, which one the register takes
  kTenderQuoted,     // key, value, the word meant
  kTenderUnknown,    // key, as written
  kPaysNothing,      // key
  // Flags and texts
  kFlagSetByNo,        // key, as written
  kFlagNotSet,         // key
  kYesNoOne,           // key
  kTextBehindQuote,    // key, what stands there, the text as read
  kTextCut,            // key, characters, the most, what is left
  kFileNameLowered,    // key, name as used
  kMacroLastKey,       // key, what is dropped
  kCheckDigitPrinted,  // key, value, the right one
  kCheckDigitRefused,  // the same
  // References
  kDateCut,         // key, value, what counts
  kDateIgnored,     // key, value
  kDocumentNumber,  // key, value, what is read
  // Sequences of lines; amounts are texts
  kNoReceiptOpens,     // command, its line, the words of CLEAR, RESPRN and CHIU
  kNextSaleLost,       // command, the word of CLEAR
  kSaleBehindPayment,  // line, amount paid, total, the word of CHIU
  kPaidTooLittle,      // command, amount paid, total
  kReceiptNotEnded,    // line, the word that ends it
  kSaleInNonFiscal,    // line, the word that ends it
  kKeyTurned,          // command, its line, the word that turns it back
  kSubtotalDiffers,    // command, sum of the lines, the sum expected
  // Files that a line would write; the console does not send it
  kWritesKept,         // key, name, what the file is
  kWritesPlantedLink,  // key, name
  kWritesDisk,         // key, name
  kRemovesNoFile,      // key, name
  kErrorFileKept,      // name, what the file is
  kErrorFileNoFile,    // name
  kLast = kErrorFileNoFile,
};

// The first so many of some names.
struct FindingList {
  struct Name {
    std::string text;
    uint64_t line = 0;  // where it stands; 0 for none
  };

  std::vector<Name> names;
  uint64_t more = 0;       // that are left out
  bool uncounted = false;  // there are others, and nobody has counted them
};

// Made of what a check has at hand; a number above the range of int64_t does not come.
struct FindingArgument {
  template <std::integral Number>
  FindingArgument(Number number) : value(static_cast<int64_t>(number)) {}
  FindingArgument(std::string text) : value(std::move(text)) {}
  FindingArgument(std::string_view text) : value(std::string(text)) {}
  FindingArgument(const char* text) : value(std::string(text)) {}
  FindingArgument(FindingList list) : value(std::move(list)) {}

  std::variant<int64_t, std::string, FindingList> value;
};

struct Finding {
  FindingCause cause = FindingCause::kUtf16;
  std::vector<FindingArgument> arguments = {};  // texts hold any bytes
  uint64_t line = 0;                            // 0 for the file as a whole
  uint64_t column = 0;                          // in bytes, from 1; 0 when there is no one place
  int code = 0;  // what the library answers to the line; 0 for OK, or where it depends
  std::string suggestion = {};  // a better word or value; may be empty
  std::string source = {};      // the line, to be shown with a caret under the column; may be empty
  bool stopped_before = false;  // of what stops the reading: it has stopped in a line before

  Severity severity() const;
  // A fixed name, for programs; several causes may share one.
  const char* rule() const;
};

// A finding with the code of its cause.
Finding MakeFinding(FindingCause cause, std::vector<FindingArgument> arguments = {});

}  // namespace lorimat::console
