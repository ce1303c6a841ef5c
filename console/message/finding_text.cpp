#include "console/message/finding_text.h"

#include <fmt/args.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>

#include "console/message/translate.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

using Cause = FindingCause;

constexpr int kWrongState = CLASS_CRITICAL | RTF_EFPTR_WRONG_STATE;
constexpr int kTotalsDiffer = CLASS_CRITICAL | RTF_EFPTR_FISCAL_TOTALS_ERROR;
constexpr Severity kError = Severity::kError;
constexpr Severity kWarning = Severity::kWarning;
constexpr Severity kNote = Severity::kNote;

// What several causes share.
constexpr const char* kStops = TR_TEXT("the library stops reading here and answers 2");
constexpr const char* kWouldStop = TR_TEXT("the library would stop here, too");
constexpr const char* kCutThere = TR_TEXT("the library cuts it there");
constexpr const char* kSameLine = TR_TEXT("what follows belongs to the same line");
constexpr const char* kNoEffect = TR_TEXT("it has no effect");
constexpr const char* kEntryLost = TR_TEXT("the entry has no effect");
constexpr const char* kEntriesLost = TR_TEXT("its entries have no effect");
constexpr const char* kReads1 = TR_TEXT("the library reads {1}");
constexpr const char* kReads2 = TR_TEXT("the library reads {2}");
constexpr const char* kReadsZero = TR_TEXT("the library reads 0");
constexpr const char* kTakenAsNumber =
    TR_TEXT("the library takes it for the number itself as far as there is one");
constexpr const char* kKeepsThis = TR_TEXT("the library keeps this one");
constexpr const char* kRowTwice = TR_TEXT("row {} was given in line {} already, as {}");
constexpr const char* kRowTwiceUnnamed = TR_TEXT("row {} was given in line {} already, as nothing");
constexpr const char* kNeverFound = TR_TEXT("this row is never found");
constexpr const char* kNoCommandOfNumber =
    TR_TEXT("{} has the number {}, which is no command of the library");
constexpr const char* kOtherName = TR_TEXT("{} is another name of {}");
constexpr const char* kOtherRow = TR_TEXT("{} stands in row {} and has the number {}");
constexpr const char* kNoCommandSection =
    TR_TEXT("[{}] is the section of a command without a word");
constexpr const char* kMisread =
    TR_TEXT("field {0} has more digits than the library takes, which reads {1}");
constexpr const char* kPlainDigits = TR_TEXT("digits alone, with decimals behind a point");
constexpr const char* kNumberOrNone = TR_TEXT("a number, or leave the field out");
constexpr const char* kLeavesAlone = TR_TEXT("{2} leaves it alone");
constexpr const char* kWrongCheckDigit = TR_TEXT("field {0}: the check digit of '{1}' is wrong");
constexpr const char* kWritesOver = TR_TEXT("the line would write over it");
constexpr const char* kRemoves = TR_TEXT("the library would remove it");
constexpr const char* kSixDigits = TR_TEXT("six digits, DDMMYY");

constexpr FindingRow kRows[] = {
    // --- Files
    {Cause::kUtf16, kError, "utf-16", 0, TR_TEXT("the file is UTF-16"),
     TR_TEXT("the library cannot read it; save it as UTF-8 without a byte order mark"), ""},
    {Cause::kFileMark, kError, "byte-order-mark", 0,
     TR_TEXT("the file begins with a byte order mark"),
     TR_TEXT("the library takes it for a part of the first line"), ""},
    {Cause::kNulByte, kError, "nul-byte", 0, TR_TEXT("a NUL byte in column {}"),
     TR_TEXT("the library reads the line only up to there"), ""},
    {Cause::kCarriageReturn, kError, "bare-carriage-return", 0,
     TR_TEXT("a carriage return in column {} ends no line"), kSameLine, ""},
    {Cause::kLineCut, kError, "line-too-long", 0,
     TR_TEXT("the line has {} characters, more than {}"), kCutThere, ""},
    // --- Definition files: what stops the library's reading
    {Cause::kNoEquals, kError, "stops-reading", 0, TR_TEXT("an entry needs a '='"), kStops, ""},
    {Cause::kNothingInFront, kError, "stops-reading", 0, TR_TEXT("nothing stands before the '='"),
     kStops, ""},
    {Cause::kNoRowNumber, kError, "stops-reading", 0,
     TR_TEXT("'{}' is no row number (section [{}] needs one above 0)"), kStops, ""},
    {Cause::kRowAboveLast, kError, "stops-reading", 0,
     TR_TEXT("row {} is above {}, the last command row"), kStops, ""},
    // --- Definition files: headers
    {Cause::kHeaderNotClosed, kError, "header-not-closed", 0,
     TR_TEXT("'{}' is not closed by a ']'"),
     TR_TEXT("its last character is dropped, so that it names the section '{1}'"), ""},
    {Cause::kNoMessageSection, kError, "unknown-section", 0,
     TR_TEXT("[{}] is no section of messages; they are ERRMSG0 to ERRMSG9"),
     TR_TEXT("its lines have no effect or go to another table"), ""},
    {Cause::kNoSection, kError, "unknown-section", 0, TR_TEXT("there is no section [{}]"),
     kEntriesLost, ""},
    {Cause::kSectionAsNumber, kError, "unknown-section", 0, TR_TEXT("there is no section [{}]"),
     TR_TEXT("its entries count as fields of the command {1}"), ""},
    {Cause::kSectionOutOfRange, kError, "section-out-of-range", 0,
     TR_TEXT("[{}] is no command's number; they go from 1 to {}"), kEntriesLost, ""},
    {Cause::kSectionTwice, kWarning, "section-twice", 0,
     TR_TEXT("[{}] was opened in line {} already"),
     TR_TEXT("only rows up to the highest one below this header can be found"), ""},
    {Cause::kEntryBeforeSection, kError, "entry-before-section", 0,
     TR_TEXT("an entry in front of the first section"), kNoEffect, ""},
    // --- Definition files: entries
    {Cause::kPartCut, kError, "part-too-long", 0,
     TR_TEXT("a side of the '=' has {} characters, more than {}"), kCutThere, ""},
    {Cause::kRowNotANumber, kWarning, "not-a-number", 0, TR_TEXT("the row '{}' is no number"),
     kReads1, ""},
    {Cause::kRowOutOfRange, kError, "row-out-of-range", 0, TR_TEXT("row {} is not in 1 to {}"),
     kEntryLost, ""},
    {Cause::kMessageOutOfRange, kError, "row-out-of-range", 0,
     TR_TEXT("row {} of [{}] is not in 0 to {}"), kEntryLost, ""},
    {Cause::kRowOutOfReach, kError, "row-out-of-reach", 0,
     TR_TEXT("row {} is behind the last that is searched"),
     TR_TEXT("the library reads it and never finds it"), ""},
    {Cause::kNameMissing, kError, "name-missing", 0, TR_TEXT("the row has no name"),
     TR_TEXT("no word finds it"), ""},
    {Cause::kNameCut, kError, "name-too-long", 0, TR_TEXT("'{}' has {} characters, more than {}"),
     TR_TEXT("the library keeps '{3}'"), ""},
    {Cause::kSymbolCut, kError, "name-too-long", 0, TR_TEXT("'{}' has {} characters, more than {}"),
     TR_TEXT("the library keeps '{3}', which is another word"), ""},
    {Cause::kCommandHasQuote, kError, "name-never-found", 0, TR_TEXT("the name {} holds a quote"),
     TR_TEXT("a line cannot be cleaned of comments behind it"), ""},
    {Cause::kFieldHasQuote, kError, "name-never-found", 0, TR_TEXT("the name {} holds a quote"),
     TR_TEXT("a line with it answers 262"), ""},
    {Cause::kNameBeginsWithComma, kError, "name-never-found", 0,
     TR_TEXT("the name '{}' begins with a comma"),
     TR_TEXT("the comma belongs to the name, and no line can write it"), ""},
    {Cause::kCommandHasBlank, kError, "name-never-found", 0, TR_TEXT("the name '{}' holds a blank"),
     TR_TEXT("a command's word ends there"), ""},
    {Cause::kCommandBeginsWithAt, kError, "name-never-found", 0,
     TR_TEXT("the name '{}' begins with '@'"), TR_TEXT("such a line names a batch file"), ""},
    {Cause::kNameIsNumber, kError, "name-never-found", 0, TR_TEXT("the name '{}' is a number"),
     kTakenAsNumber, ""},
    {Cause::kMarkIgnored, kWarning, "mark-without-effect", 0,
     TR_TEXT("a command cannot be mandatory"), TR_TEXT("the ',O' has no effect"), ""},
    {Cause::kNumberNotANumber, kWarning, "not-a-number", 0,
     TR_TEXT("behind the comma '{}' is no number and no 'O'"), kReads1, ""},
    {Cause::kNumberFromRow, kWarning, "not-a-number", 0,
     TR_TEXT("behind the comma '{}' is no number and no 'O'"),
     TR_TEXT("the library reads the row's own number"), ""},
    {Cause::kOpcodeOutOfRange, kError, "number-out-of-range", 0,
     TR_TEXT("number {} is not in 1 to {}"), TR_TEXT("a line with it answers 268"), ""},
    {Cause::kFieldOutOfRange, kError, "number-out-of-range", 0,
     TR_TEXT("number {} is not in 1 to {}"), TR_TEXT("a line with it answers 260"), ""},
    {Cause::kRowTwice, kError, "row-twice", 0, kRowTwice, kKeepsThis, ""},
    {Cause::kRowTwiceAlike, kWarning, "row-twice", 0, kRowTwice, kKeepsThis, ""},
    {Cause::kRowTwiceUnnamed, kError, "row-twice", 0, kRowTwiceUnnamed, kKeepsThis, ""},
    {Cause::kUnnamedRowTwice, kWarning, "row-twice", 0, kRowTwiceUnnamed, kKeepsThis, ""},
    {Cause::kValueNotANumber, kError, "not-a-number", 0,
     TR_TEXT("the value '{}' of {} is no number"), kReads2, ""},
    {Cause::kTooManySymbols, kError, "too-many-symbols", 0, TR_TEXT("more than {} symbols"),
     TR_TEXT("this one and those behind it have no effect"), ""},
    {Cause::kTextTooLong, kError, "text-too-long", 0,
     TR_TEXT("the text has more than {} characters"), kEntryLost, ""},
    {Cause::kTextBadlyQuoted, kError, "bad-quote", 0,
     TR_TEXT("a quote is not closed, or stands behind the text's begin"), kEntryLost, ""},
    {Cause::kSymbolIsNumber, kError, "name-never-found", 0, TR_TEXT("the symbol '{}' is a number"),
     TR_TEXT("the library takes it for the number itself"), ""},
    {Cause::kSymbolUnwritable, kError, "name-never-found", 0,
     TR_TEXT("the symbol {} holds a comma or a quote"), TR_TEXT("no line can write it"), ""},
    {Cause::kKeyHasBlank, kWarning, "name-never-found", 0, TR_TEXT("the key '{}' holds a blank"),
     TR_TEXT("a macro takes it for two keys"), ""},
    {Cause::kKeyOutOfRange, kWarning, "key-out-of-range", 0,
     TR_TEXT("key code {} is not in 0 to {}"),
     TR_TEXT("no command plays it, and a key programmed with it gets the code {2}"), ""},
    {Cause::kSymbolTwice, kError, "symbol-twice", 0,
     TR_TEXT("the symbol {} was given in line {} already"),
     TR_TEXT("the library finds the first one"), ""},
    {Cause::kKeyTwice, kWarning, "key-twice", 0,
     TR_TEXT("key code {} has a word already, in line {}"),
     TR_TEXT("dumps are written with this one"), ""},
    {Cause::kTextTwice, kWarning, "row-twice", 0, TR_TEXT("row {} was given in line {} already"),
     kKeepsThis, ""},
    // --- Definition files: words
    {Cause::kNoCommands, kError, "no-commands", 0,
     TR_TEXT("the file names no commands (section [OPCOD])"), TR_TEXT("every line fails"), ""},
    {Cause::kCommandsUnbound, kWarning, "commands-not-bound", 0,
     TR_TEXT("{} of the library's commands have no word: {}"), "", ""},
    {Cause::kOpcodeUnknown, kWarning, "command-not-supported", 0, kNoCommandOfNumber,
     TR_TEXT("its lines answer 268"), ""},
    {Cause::kAlias, kNote, "alias", 0, kOtherName, "", ""},
    {Cause::kCommandInOtherRow, kWarning, "row-not-number", 0, kOtherRow,
     TR_TEXT("'#{1}' finds the command {1}, and dumps take their words from row {1}"), ""},
    {Cause::kCommandShadowed, kError, "name-shadowed", 0,
     TR_TEXT("{} in full finds the command {}"), kNeverFound, ""},
    {Cause::kNameAmbiguous, kError, "name-ambiguous", 0, TR_TEXT("{} in full is ambiguous with {}"),
     TR_TEXT("a line with it answers {2}"), ""},
    {Cause::kNameBeginsAnother, kNote, "name-begins-another", 0, TR_TEXT("{} (line {}) begins {}"),
     TR_TEXT("{2} has to be written in full"), ""},
    {Cause::kRowAboveHighest, kError, "row-out-of-reach", 0,
     TR_TEXT("row {} is above {}, the highest row below the last header of [{}] (line {})"),
     TR_TEXT("the library never finds it"), ""},
    {Cause::kFieldOfNoCommand, kWarning, "field-not-read", 0,
     TR_TEXT("no command reads field {} of [{}], {}"), TR_TEXT("it has no effect in a line"), ""},
    {Cause::kFieldInOtherRow, kWarning, "row-not-number", 0, kOtherRow,
     TR_TEXT("'#{1}' means field {1}, which the command reads, and dumps write {0} for it"), ""},
    {Cause::kFieldShadowed, kError, "name-shadowed", 0, TR_TEXT("{} in full finds field {}, {}"),
     kNeverFound, ""},
    {Cause::kFieldsUnbound, kWarning, "fields-not-bound", 0,
     TR_TEXT("{} (command {}) reads fields that have no word: {}"), "", ""},
    {Cause::kSectionByNumberOnly, kWarning, "section-without-command", 0, kNoCommandSection,
     TR_TEXT("only '#{}' reaches it"), ""},
    {Cause::kSectionUnreached, kWarning, "section-without-command", 0, kNoCommandSection,
     TR_TEXT("no line reaches it"), ""},
    {Cause::kFlagNotReadBack, kWarning, "flag-not-read-back", 0,
     TR_TEXT("dumps write a flag as {} (INTMSG {}), which is no symbol of value {}"),
     TR_TEXT("such a dump does not load back"), ""},
    // --- Lines that the library refuses
    {Cause::kNestedBatch, kError, "nested-batch", INVALID_BATCH_LINE,
     TR_TEXT("a batch does not run inside a batch"), "", ""},
    {Cause::kCommandUnsupported, kError, "command-not-supported",
     SyntaxError(INSTRUCTION_NOT_SUPPORTED), kNoCommandOfNumber, "", ""},
    {Cause::kCommandNotUnique, kError, "command-not-unique", SyntaxError(INSTRUCTION_NOT_UNIC),
     TR_TEXT("'{}' fits more than one command: {}"), "", ""},
    {Cause::kCommandNotFound, kError, "command-not-found", SyntaxError(INSTRUCTION_NOT_FOUND),
     TR_TEXT("no command is called '{}'"), "", ""},
    {Cause::kFieldMissing, kError, "field-missing", SyntaxError(CAMPO_OBBLIGATORIO),
     TR_TEXT("{} lacks a field that must be given: {}"), "", ""},
    {Cause::kFieldWithoutName, kError, "field-without-name", 0, TR_TEXT("a field without a name"),
     "", ""},
    {Cause::kFieldNotUnique, kError, "field-not-unique", SyntaxError(FIELD_NAME_NOT_UNIC),
     TR_TEXT("'{}' fits more than one field of {}: {}"), "", ""},
    {Cause::kFieldNotFound, kError, "field-not-found", SyntaxError(FIELD_NAME_NOT_FOUND),
     TR_TEXT("{} has no field '{}'"), "", ""},
    {Cause::kTakesNoFields, kError, "field-not-found", SyntaxError(FIELD_NAME_NOT_FOUND),
     TR_TEXT("{} takes no fields"), "", ""},
    {Cause::kQuoteInName, kError, "quote-in-name", SyntaxError(ILLEGAL_FIELD_NAME),
     TR_TEXT("a quote in a field's name; is the '=' missing?"), "", ""},
    {Cause::kBadQuote, kError, "bad-quote", SyntaxError(ALFA_VALUE_INVALID),
     TR_TEXT("this quote is not closed, or stands behind the beginning of the value"), "", ""},
    {Cause::kLineEnds, kError, "line-ends", SyntaxError(UNEXPECTED_END_OF_LINE),
     TR_TEXT("the line ends where a field is due"), "", ""},
    {Cause::kValueTooLong, kError, "bad-value", 0, TR_TEXT("the value is too long"), "", ""},
    {Cause::kCommaMissing, kError, "value-not-found", SyntaxError(LABEL_VALUE_NOT_FOUND),
     TR_TEXT("'{}' is no word for a value; is a comma missing?"), "", ""},
    {Cause::kCapitalsCount, kError, "value-not-found", SyntaxError(LABEL_VALUE_NOT_FOUND),
     TR_TEXT("'{}' is no word for a value; capitals count"), "", ""},
    {Cause::kQuotesMissing, kError, "value-not-found", SyntaxError(LABEL_VALUE_NOT_FOUND),
     TR_TEXT("'{}' is no word for a value; a text needs quotes"), "", ""},
    {Cause::kLineMark, kError, "byte-order-mark", SyntaxError(INSTRUCTION_NOT_FOUND),
     TR_TEXT("the line begins with a byte order mark"),
     TR_TEXT("the library takes it for a part of the line, and finds no command"), ""},
    {Cause::kLineTooLong, kError, "line-too-long", SyntaxError(SOURCE_LINE_TOO_LONG),
     TR_TEXT("the line has {} characters, more than {}"), "", ""},
    {Cause::kNulInLine, kError, "nul-byte", 0,
     TR_TEXT("a NUL byte: the library reads the line only up to there"), "", ""},
    {Cause::kReturnInLine, kError, "bare-carriage-return", 0,
     TR_TEXT("a carriage return that ends no line: what follows belongs to the same line"), "", ""},
    // --- Fields that say less than they seem to
    {Cause::kFieldTwice, kWarning, "field-twice", 0,
     TR_TEXT("field {} is given twice; the last value counts"), "", ""},
    {Cause::kFieldNotRead, kWarning, "field-not-read", 0,
     TR_TEXT("{} does not read field {}: it has no effect"), "", ""},
    // --- Traps
    {Cause::kDecimalComma, kError, "decimal-comma", SyntaxError(FIELD_NAME_NOT_FOUND),
     TR_TEXT("a comma ends field {0}, and '{1}' is taken for the name of the next one; decimals "
             "stand behind a point"),
     TR_TEXT("the line is refused"), ""},
    {Cause::kNumberText, kWarning, "number-text", 0,
     TR_TEXT("field {0}: '{1}' is not written as a number"), kReads2, kPlainDigits},
    {Cause::kNumberRefused, kError, "number-refused", SyntaxError(CAMPO_OBBLIGATORIO),
     TR_TEXT("field {0}: '{1}' is no number"), TR_TEXT("the line is refused, nothing is compared"),
     kPlainDigits},
    {Cause::kQuantityMisread, kWarning, "number-misread", 0, kMisread, "",
     TR_TEXT("three decimals at most, and no more than 2147483.647")},
    {Cause::kPriceMisread, kWarning, "number-misread", 0, kMisread, "",
     TR_TEXT("fewer digits, four of them decimals at most")},
    {Cause::kNumberMisread, kWarning, "number-misread", 0, kMisread, "",
     TR_TEXT("a whole number, no more than 2147483647")},
    {Cause::kNumberBare, kWarning, "number-bare", 0, TR_TEXT("field {0} has no value"), kReadsZero,
     kNumberOrNone},
    {Cause::kNumberEmpty, kWarning, "number-empty", 0, TR_TEXT("field {0} is empty"),
     TR_TEXT("it counts as left out"), kNumberOrNone},
    {Cause::kNumberCut, kWarning, "number-cut", 0,
     TR_TEXT("field {0}: {1} is above 255, and its low 8 bits alone count"),
     TR_TEXT("the library takes {2}"), TR_TEXT("a number from 0 to 255")},
    {Cause::kWordAsNumber, kWarning, "word-as-number", 0,
     TR_TEXT("field {0} takes a number, and {1} stands for {2}"), kReads2,
     TR_TEXT("the number itself")},
    {Cause::kQuantityZero, kWarning, "quantity-zero", 0, TR_TEXT("the quantity in {0} reads 0"),
     TR_TEXT("it counts as missing, and one piece is sold"),
     TR_TEXT("0.001 at least, or no such line")},
    {Cause::kKeyedText, kWarning, "keyed-text", 0,
     TR_TEXT("field {0}: '{1}' holds more than digits and a point"),
     TR_TEXT("the keys end there, and '{2}' is keyed"), kPlainDigits},
    {Cause::kFieldUnused, kWarning, "field-unused", 0,
     TR_TEXT("field {0} has no effect beside {1}"), kLeavesAlone, TR_TEXT("one of the two alone")},
    {Cause::kFieldUnusedWithout, kWarning, "field-unused-without", 0,
     TR_TEXT("field {0} has no effect without {1}"), kLeavesAlone, TR_TEXT("both, or none")},
    {Cause::kTextNotPrinted, kWarning, "text-not-printed", 0,
     TR_TEXT("the text of {0} is not printed beside {1}"),
     TR_TEXT("the line cuts or prints the logo alone"), TR_TEXT("the text in a line of its own")},
    {Cause::kDoesNothing, kWarning, "does-nothing", 0, TR_TEXT("{0} without {1} does nothing"),
     TR_TEXT("the answer is OK all the same"), TR_TEXT("{1} too, or no such line")},
    {Cause::kDepositQuantity, kWarning, "deposit-quantity", 0,
     TR_TEXT("field {0} turns the amount of {1} to 0"),
     TR_TEXT("a deposit or voucher has no quantity, and the device gets 0"),
     TR_TEXT("the whole amount as the price, without {0}")},
    {Cause::kDepositTooLarge, kWarning, "deposit-too-large", 0,
     TR_TEXT("field {0}: {1} has no room in 32 bits"), TR_TEXT("the device gets {2}"),
     TR_TEXT("214748.3647 at most")},
    {Cause::kTwoPrices, kWarning, "two-prices", 0, TR_TEXT("fields {0} and {1} are both given"),
     TR_TEXT("the device chooses; the virtual register takes {2}"), TR_TEXT("one price")},
    {Cause::kTenderQuoted, kWarning, "tender-quoted", 0,
     TR_TEXT("field {0}: the quotes make '{1}' a text, and not the word {2}"),
     TR_TEXT("the device gets a tender of that name; the virtual register has none (621)"), ""},
    {Cause::kTenderUnknown, kWarning, "tender-unknown", 0,
     TR_TEXT("field {0}: {1} is no tender of the table"),
     TR_TEXT("the device gets it as it stands; the virtual register has none (621)"),
     TR_TEXT("a tender of the table")},
    {Cause::kPaysNothing, kWarning, "pays-nothing", 0, TR_TEXT("field {0} reads 0"),
     TR_TEXT("a payment of 0 is sent; the virtual register refuses it (1238)"),
     TR_TEXT("no {0} to pay what is due")},
    {Cause::kFlagSetByNo, kWarning, "flag-set-by-no", 0,
     TR_TEXT("field {0} is a flag, and {1} sets it just as well"),
     TR_TEXT("only its presence counts"), TR_TEXT("no {0} at all to leave it off")},
    {Cause::kFlagNotSet, kWarning, "flag-not-set", 0,
     TR_TEXT("field {0} is set by its bare name only"), TR_TEXT("with a value it has no effect"),
     ""},
    {Cause::kYesNoOne, kWarning, "yes-no-one", 0, TR_TEXT("field {0}: 1 means no"),
     TR_TEXT("the library takes it for NO"), TR_TEXT("SI or NO")},
    {Cause::kTextBehindQuote, kWarning, "text-behind-quote", 0,
     TR_TEXT("'{1}' stands behind the closing quote of field {0}"),
     TR_TEXT("it becomes a part of the text, which is '{2}'"), TR_TEXT("a comma between fields")},
    {Cause::kTextCut, kWarning, "text-cut", 0,
     TR_TEXT("field {0} has {1} characters, more than {2}"), TR_TEXT("what goes on is '{3}'"),
     TR_TEXT("a shorter text")},
    {Cause::kFileNameLowered, kWarning, "file-name-lowered", 0,
     TR_TEXT("field {0}: the file's name is made small letters"), TR_TEXT("the file is {1}"), ""},
    {Cause::kMacroLastKey, kWarning, "macro-last-key", 0,
     TR_TEXT("field {0}: no blank stands behind the last key"), TR_TEXT("{1} is dropped"),
     TR_TEXT("a blank behind every key, also the last")},
    {Cause::kCheckDigitPrinted, kWarning, "check-digit-replaced", 0, kWrongCheckDigit,
     TR_TEXT("the device works it out by itself, and prints {2}"), ""},
    {Cause::kCheckDigitRefused, kWarning, "check-digit-refused", 1642, kWrongCheckDigit,
     TR_TEXT("the device refuses the barcode"), ""},
    {Cause::kDateCut, kWarning, "date-cut", 0, TR_TEXT("field {0}: '{1}' is no date DDMMYY"),
     TR_TEXT("its first six characters count: {2}"), kSixDigits},
    {Cause::kDateIgnored, kWarning, "date-ignored", 0,
     TR_TEXT("field {0}: '{1}' has not six characters"), TR_TEXT("the date counts as missing"),
     kSixDigits},
    {Cause::kDocumentNumber, kWarning, "document-number", 0,
     TR_TEXT("field {0}: '{1}' has neither eight digits nor four at most"),
     TR_TEXT("it reads as the number {2}"), TR_TEXT("eight digits ZZZZNNNN, closure and number")},
    {Cause::kNoReceiptOpens, kWarning, "no-receipt-opens", kWrongState,
     TR_TEXT("no sale opens a receipt here: behind {0} in line {1} the printer is ready, and the "
             "translator counts a document as open"),
     TR_TEXT("every sale is refused until {2}, {3} or {4}"), TR_TEXT("{2} ahead of it")},
    {Cause::kNextSaleLost, kWarning, "next-sale-lost", 0,
     TR_TEXT("behind {0} the file ends with the translator counting a document as open"),
     TR_TEXT("the next sale opens no receipt (1231)"), TR_TEXT("{1} behind it")},
    {Cause::kSaleBehindPayment, kWarning, "sale-behind-payment", kWrongState,
     TR_TEXT("a sale behind a payment: line {0} paid {1} of {2}"),
     TR_TEXT("the receipt is still open and takes no sale"),
     TR_TEXT("a {3} that pays the rest ahead of it")},
    {Cause::kPaidTooLittle, kWarning, "paid-too-little", 0,
     TR_TEXT("{0} pays {1} of {2}, and no line pays the rest"), TR_TEXT("the receipt stays open"),
     TR_TEXT("a further {0}")},
    {Cause::kReceiptNotEnded, kWarning, "receipt-not-ended", kWrongState,
     TR_TEXT("the receipt that line {0} paid has not been ended yet"),
     TR_TEXT("the sale is refused, and so are those behind the end of it"),
     TR_TEXT("the end of the receipt ({1}) ahead of it")},
    {Cause::kSaleInNonFiscal, kWarning, "sale-in-non-fiscal", kWrongState,
     TR_TEXT("a sale inside the document of line {0}, which is no receipt"),
     TR_TEXT("it is refused, and so are those behind the end of that document"),
     TR_TEXT("the end of the document ({1}) ahead of it")},
    {Cause::kKeyTurned, kWarning, "key-turned", kWrongState,
     TR_TEXT("{0} in line {1} turned the key away from registering"),
     TR_TEXT("every sale is refused"), TR_TEXT("{2} ahead of it")},
    {Cause::kSubtotalDiffers, kWarning, "subtotal-differs", kTotalsDiffer,
     TR_TEXT("the lines make {1}, and {0} expects {2}"),
     TR_TEXT("the receipt is given up, and the next sale opens none"),
     TR_TEXT("the sum of the lines")},
    {Cause::kWritesKept, kError, "writes-kept-file", 0, TR_TEXT("field {0}: '{1}' is {2}"),
     kWritesOver, TR_TEXT("the name of another file")},
    {Cause::kWritesPlantedLink, kError, "writes-planted-link", 0,
     TR_TEXT("field {0}: '{1}' is a link of another user in a folder where everybody writes"),
     TR_TEXT("the line would write where that user wants"), TR_TEXT("the name of another file")},
    {Cause::kWritesDisk, kError, "writes-kept-file", 0, TR_TEXT("field {0}: '{1}' is a disk"),
     kWritesOver, TR_TEXT("the name of another file")},
    {Cause::kRemovesNoFile, kError, "removes-no-file", 0,
     TR_TEXT("field {0}: '{1}' is no regular file"), kRemoves, TR_TEXT("the name of another file")},
    {Cause::kErrorFileKept, kError, "writes-kept-file", 0, TR_TEXT("the error file '{0}' is {1}"),
     kRemoves, TR_TEXT("the name of another file")},
    {Cause::kErrorFileNoFile, kError, "removes-no-file", 0,
     TR_TEXT("the error file '{0}' is no regular file of ours"),
     TR_TEXT("the failures of the batch would be lost"), TR_TEXT("the name of another file")},
};

// In the order of the enumeration, so that a cause is its row's number.
consteval bool AreInOrder() {
  for (size_t i = 0; i < std::size(kRows); ++i) {
    if (kRows[i].cause != static_cast<Cause>(i)) return false;
  }
  return std::size(kRows) == static_cast<size_t>(Cause::kLast) + 1;
}
static_assert(AreInOrder());

const FindingRow& RowOf(Cause cause) { return kRows[static_cast<size_t>(cause)]; }

std::string ListText(const FindingList& list) {
  std::vector<std::string> names;
  for (const FindingList::Name& name : list.names) {
    names.push_back(name.line == 0 ? name.text : Tr("{} (line {})", name.text, name.line));
  }
  const std::string text = fmt::format("{}", fmt::join(names, ", "));
  if (list.uncounted) return text + Tr(" and others");
  return list.more == 0 ? text : Tr("{} and {} more", text, list.more);
}

struct AsField {
  fmt::dynamic_format_arg_store<fmt::format_context>& fields;

  void operator()(int64_t number) const { fields.push_back(number); }
  void operator()(const std::string& text) const { fields.push_back(text); }
  void operator()(const FindingList& list) const { fields.push_back(ListText(list)); }
};

std::string Sentence(const char* english, const std::vector<FindingArgument>& arguments) {
  if (*english == 0) return {};
  fmt::dynamic_format_arg_store<fmt::format_context> fields;
  for (const FindingArgument& argument : arguments) std::visit(AsField{fields}, argument.value);
  return fmt::vformat(Translated(english), fields);
}

}  // namespace

std::span<const FindingRow> FindingRows() { return kRows; }

Severity Finding::severity() const { return RowOf(cause).severity; }

const char* Finding::rule() const { return RowOf(cause).rule; }

Finding MakeFinding(FindingCause cause, std::vector<FindingArgument> arguments) {
  return {.cause = cause, .arguments = std::move(arguments), .code = RowOf(cause).code};
}

FindingSentences SentencesOf(const Finding& finding) {
  const FindingRow& row = RowOf(finding.cause);
  const char* effect = finding.stopped_before ? kWouldStop : row.effect;
  return {Sentence(row.what, finding.arguments), Sentence(effect, finding.arguments),
          finding.suggestion.empty() ? Sentence(row.remedy, finding.arguments) : ""};
}

std::string WhatText(const Finding& finding) {
  return Sentence(RowOf(finding.cause).what, finding.arguments);
}

std::string WhatAndBetterWord(const Finding& finding) {
  const std::string what = WhatText(finding);
  if (finding.suggestion.empty()) return what;
  return what + Tr("; did you mean {}?", finding.suggestion);
}

}  // namespace lorimat::console
