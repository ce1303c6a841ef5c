#include "language/code_table.h"

#include <algorithm>
#include <array>

#include "language/message_text.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace language {
namespace {

constexpr int kClientSplit = 200;  // results from here on are extended ones
constexpr int kLastShortResult = 255;
// The library's own code that some commands pass on as if the device had given it.
constexpr int kStateNotRead = SyntaxError(ILLEGAL_VALUE);

constexpr CodeClass kClasses[] = {
    {0, 0, TR_TEXT("state and file errors of the translator")},
    {CLASS_SYNTAX, 1, TR_TEXT("syntax and command errors")},
    {CLASS_IO, 2, TR_TEXT("results of the device client below 200")},
    {CLASS_CRITICAL, 4, TR_TEXT("results of the device client of 200 and above")},
    {CLASS_DATA, 8, TR_TEXT("data errors of the device")},
    {CLASS_ECR, 16, TR_TEXT("errors of the device")},
    {CLASS_EM_LINK, 32, TR_TEXT("article exchange")},
    {CLASS_EM_SYNTAX, 64, TR_TEXT("lines of an article exchange file")},
    {CLASS_ECR_REPORT, 128, TR_TEXT("errors of the device at a report")},
    {CLASS_ANSWER, 256, TR_TEXT("wrong answers of the device; the index is a character")},
};

constexpr const char* kOfOlderProtocol =
    TR_TEXT("A code of the older protocol: the table has its text, this library never gives it.");

constexpr OwnCode kOwnCodes[] = {
    {1, true, TR_TEXT("The command SELEZ (opcode 5) answers this always; it has no effect.")},
    {2, true,
     TR_TEXT(
         "The definition file was not read: it is missing, or has a line that stops the reading. "
         "\"lorimat check\" names the line.")},
    {3, false, kOfOlderProtocol},
    {4, false, kOfOlderProtocol},
    {5, false, kOfOlderProtocol},
    {6, false, kOfOlderProtocol},
    {7, false, kOfOlderProtocol},
    {8, false, kOfOlderProtocol},
    {9, true,
     TR_TEXT(
         "FATTURA (opcode 23) wants 2 in its field 1; odd as the text reads, this is the answer to "
         "anything else.")},
    {10, true,
     TR_TEXT(
         "An \"@\" line names no file, has a quote in the wrong place, or stands inside a batch: "
         "batches do not nest.")},
    {11, true,
     TR_TEXT("A file cannot be opened: the batch file (its name is made small letters), or the "
             "file that "
             "a command is to write its answer or table to.")},
    {12, true,
     TR_TEXT(
         "The error file of an \"@\" line cannot be created, has the name of the batch file, or a "
         "name too long for \".tmp\" behind it.")},
    {13, false, kOfOlderProtocol},
    {14, false, TR_TEXT("A batch counts no errors, so its answer is 0; look into its error file.")},
    {15, false, kOfOlderProtocol},
    {16, false, TR_TEXT("No command gives it; its text is \"NON OK.\" alone.")},
    {17, false, kOfOlderProtocol},
    {18, false, kOfOlderProtocol},
    {19, false, kOfOlderProtocol},
    {20, false, kOfOlderProtocol},
    {21, false, kOfOlderProtocol},
    {22, false, kOfOlderProtocol},
    {23, true, TR_TEXT("SETP (opcode 48) got its working directory without a value.")},
    {24, true,
     TR_TEXT(
         "GETP (opcode 49) asked for the working directory with a value, or there is none, or its "
         "name is too long.")},
    {25, false, kOfOlderProtocol},
    {26, false, kOfOlderProtocol},
    {27, false, kOfOlderProtocol},
    {28, false, kOfOlderProtocol},
    {29, false, kOfOlderProtocol},
    {30, false, kOfOlderProtocol},
    {31, false, kOfOlderProtocol},
    {32, false, kOfOlderProtocol},
    {33, false, kOfOlderProtocol},
    {256, true,
     TR_TEXT("There is no device client: the host gave none when the library was initialised.")},
    {257, true,
     TR_TEXT("No command of the definition file has the name that the line begins with.")},
    {258, true,
     TR_TEXT(
         "The shortened command fits more than one name, or two commands have this very name.")},
    {259, true,
     TR_TEXT(
         "The command lacks a field, or joins fields that do not go together: a lottery or journal "
         "request without its file or documents, say.")},
    {260, true, TR_TEXT("The command has no field of this name, or of this number behind \"#\"."),
     TR_TEXT("A comma begins the next field: decimals stand behind a point.")},
    {261, true, TR_TEXT("The shortened field name fits more than one field of the command.")},
    {262, true,
     TR_TEXT("A quote stands in a field's name, ahead of the \"=\". Only values take quotes.")},
    {263, true,
     TR_TEXT("A value in bare letters is no word for a value. A text needs quotes; capitals count "
             "in the "
             "words for values.")},
    {264, true, TR_TEXT("A quote is not closed, or stands behind the beginning of a value.")},
    {265, true,
     TR_TEXT("A field has a value that the command does not take, or two fields exclude each "
             "other. Also "
             "a value of more than 2048 characters.")},
    {266, true, TR_TEXT("A field that the command needs is missing or empty."),
     TR_TEXT("For CHKSUB (opcode 73) it is no number, as '1,00' is none.")},
    {267, true, TR_TEXT("The line ends where a field is due.")},
    {268, true, TR_TEXT("The command's number has no command in this library.")},
    {269, true, TR_TEXT("A sale has neither a department nor an article, or has both.")},
    {270, false, kOfOlderProtocol},
    {271, true, TR_TEXT("There is no table of this number to read.")},
    {272, false, kOfOlderProtocol},
    {273, false, kOfOlderProtocol},
    {274, true, TR_TEXT("The line has more than 2046 characters. It was not run.")},
    {275, false, kOfOlderProtocol},
    {276, false, kOfOlderProtocol},
    {277, true, TR_TEXT("There is no report of this number.")},
    {278, false, kOfOlderProtocol},
    {279, false, kOfOlderProtocol},
    {280, false, kOfOlderProtocol},
    {1280, true,
     TR_TEXT("The device did not answer when the article table was to be emptied (EMLINK, opcode "
             "30).")},
    {8193, true,
     TR_TEXT("The device refused rows of an article upload; the others were sent. The error file "
             "has the "
             "rows.")},
    {8194, true, TR_TEXT("EMLINK (opcode 30) wants a direction: UA to send, DA to fetch.")},
    {8195, true,
     TR_TEXT("The file of the articles cannot be opened or written, or its name is too long.")},
    {8196, true,
     TR_TEXT("The error file of an article exchange cannot be created, its name is too long, or it "
             "is the "
             "file of the articles.")},
    {8197, false, kOfOlderProtocol},
    {8198, false, kOfOlderProtocol},
    {8199, false, kOfOlderProtocol},
    {8200, false, kOfOlderProtocol},
    {8201, false, kOfOlderProtocol},
    {8202, false, kOfOlderProtocol},
    {8203, false, kOfOlderProtocol},
    {8204, false, kOfOlderProtocol},
    {16385, false, kOfOlderProtocol},
    {16386, false, kOfOlderProtocol},
    {16387, false, kOfOlderProtocol},
    {16388, false, kOfOlderProtocol},
    {16389, false, kOfOlderProtocol},
    {16390, false, kOfOlderProtocol},
    {16391, false, kOfOlderProtocol},
    {16392, false, kOfOlderProtocol},
};

#define RESULT(name) name, #name
constexpr ClientResult kClientResults[] = {
    {RESULT(RTF_E_CLOSED), TR_TEXT("The device is closed; it has to be opened first.")},
    {RESULT(RTF_E_CLAIMED), TR_TEXT("Another program holds the device.")},
    {RESULT(RTF_E_NOTCLAIMED), TR_TEXT("The device has to be claimed before it is used.")},
    {RESULT(RTF_E_NOSERVICE), TR_TEXT("The driver of the device cannot be reached.")},
    {RESULT(RTF_E_DISABLED), TR_TEXT("The device is not enabled.")},
    {RESULT(RTF_E_ILLEGAL),
     TR_TEXT("The device does not know the operation, or one of its values is not allowed.")},
    {RESULT(RTF_E_NOHARDWARE), TR_TEXT("The device is not connected, or is switched off.")},
    {RESULT(RTF_E_OFFLINE), TR_TEXT("The device is off line.")},
    {RESULT(RTF_E_NOEXIST), TR_TEXT("What the command names does not exist on the device.")},
    {RESULT(RTF_E_EXISTS), TR_TEXT("What the command is to make exists already.")},
    {RESULT(RTF_E_FAILURE), TR_TEXT("The device is there but cannot do what it was asked.")},
    {RESULT(RTF_E_TIMEOUT), TR_TEXT("The device did not answer in time.")},
    {RESULT(RTF_E_BUSY), TR_TEXT("The device is busy with something else.")},
    {RESULT(RTF_E_EXTENDED), TR_TEXT("The device has a further code that says what went wrong.")},
    {RESULT(RTF_E_DEPRECATED), TR_TEXT("The operation is out of use and no longer offered.")},
    {RESULT(RTF_EFPTR_COVER_OPEN), TR_TEXT("The cover of the printer is open.")},
    {RESULT(RTF_EFPTR_JRN_EMPTY), TR_TEXT("The journal has no paper or no room.")},
    {RESULT(RTF_EFPTR_REC_EMPTY), TR_TEXT("The receipt paper is at its end.")},
    {RESULT(RTF_EFPTR_SLP_EMPTY), TR_TEXT("There is no form in the slip station.")},
    {RESULT(RTF_EFPTR_SLP_FORM), TR_TEXT("A form is still in the slip station.")},
    {RESULT(RTF_EFPTR_MISSING_DEVICES), TR_TEXT("A part of the device is missing.")},
    {RESULT(RTF_EFPTR_WRONG_STATE),
     TR_TEXT("The printer is in another state than the command needs: no receipt is open, say, or "
             "one is."),
     TR_TEXT("A sale that finds nothing open: behind DOCANNULLO AUTO, a CHKSUB that differed, a "
             "key that paid or voided, or a document that was refused, the translator counts one "
             "as open, and no sale opens a receipt until CLEAR (opcode 8), RESPRN (74) or CHIU "
             "(11). A sale behind a payment in part: pay the rest. With the key turned away: "
             "CHIAVE REG (15).")},
    {RESULT(RTF_EFPTR_TECHNICAL_ASSISTANCE), TR_TEXT("The printer needs the technical service.")},
    {RESULT(RTF_EFPTR_CLOCK_ERROR), TR_TEXT("The clock of the printer is wrong or broken.")},
    {RESULT(RTF_EFPTR_FISCAL_MEMORY_FULL), TR_TEXT("The fiscal memory is full.")},
    {RESULT(RTF_EFPTR_FISCAL_MEMORY_DISCONNECTED), TR_TEXT("The fiscal memory is not connected.")},
    {RESULT(RTF_EFPTR_FISCAL_TOTALS_ERROR),
     TR_TEXT("The totals do not agree with what was expected."),
     TR_TEXT("Behind CHKSUB (opcode 73) the receipt is given up, and no sale opens one until CLEAR "
             "(8), RESPRN (74) or CHIU (11).")},
    {RESULT(RTF_EFPTR_BAD_ITEM_QUANTITY), TR_TEXT("The quantity is not allowed.")},
    {RESULT(RTF_EFPTR_BAD_ITEM_AMOUNT), TR_TEXT("The amount is not allowed.")},
    {RESULT(RTF_EFPTR_BAD_ITEM_DESCRIPTION),
     TR_TEXT("The description is too long or not allowed.")},
    {RESULT(RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW), TR_TEXT("The total would become too high.")},
    {RESULT(RTF_EFPTR_BAD_VAT), TR_TEXT("The VAT entry or the department does not exist.")},
    {RESULT(RTF_EFPTR_BAD_PRICE), TR_TEXT("The price is not allowed.")},
    {RESULT(RTF_EFPTR_BAD_DATE), TR_TEXT("The date is not allowed.")},
    {RESULT(RTF_EFPTR_NEGATIVE_TOTAL), TR_TEXT("The total would become negative.")},
    {RESULT(RTF_EFPTR_WORD_NOT_ALLOWED), TR_TEXT("A text holds a word that must not be printed.")},
    {RESULT(RTF_EFPTR_BAD_LENGTH), TR_TEXT("A text has not the length that it needs.")},
    {RESULT(RTF_EFPTR_MISSING_SET_CURRENCY), TR_TEXT("The currency of the printer is not set.")},
    {RESULT(RTF_EFPTR_DAY_END_REQUIRED), TR_TEXT("The day has to be closed first.")},
    {RESULT(RTF_EFPTR_CASHMATIC_CONNECTION),
     TR_TEXT("The automatic cash drawer cannot be reached.")},
    {RESULT(RTF_EFPTR_CASHMATIC_ABORTED),
     TR_TEXT("The automatic cash drawer broke the payment off.")},
    {RESULT(RTF_EFPTR_CASHMATIC_UNAUTHORIZED),
     TR_TEXT("The automatic cash drawer does not allow it.")},
    {RESULT(RTF_EFPTR_TO_MANY_ZREPORT_PENDING), TR_TEXT("Too many day closings wait to be sent.")},
    {RESULT(RTF_EFPTR_NEGATIVE_VAT), TR_TEXT("The total of one VAT entry would become negative.")},
    {RESULT(RTF_EFPTR_TO_MANY_ZREPORT_PENDING_R2),
     TR_TEXT("Too many day closings wait to be sent; the newer devices' code.")},
    {RESULT(RTF_EFPTR_NEGATIVE_VAT_R2),
     TR_TEXT("The total of one VAT entry would become negative; the newer devices' code.")},
    {RESULT(RTF_ESTATS_ERROR), TR_TEXT("The statistics of the device cannot be reset or updated.")},
    {RESULT(RTF_ESTATS_DEPENDENCY), TR_TEXT("Statistics depend on others that were not named.")},
    {RESULT(RTF_EFIRMWARE_BAD_FILE),
     TR_TEXT("The firmware file is missing, damaged or not for this device.")},
    {RESULT(RTF_OR_ALREADYOPEN), TR_TEXT("The device is open already.")},
    {RESULT(RTF_OR_REGBADNAME), TR_TEXT("The device's name is not registered on this computer.")},
    {RESULT(RTF_OR_REGPROGID), TR_TEXT("The registered name of the driver cannot be read.")},
    {RESULT(RTF_OR_CREATE), TR_TEXT("The driver cannot be started.")},
    {RESULT(RTF_OR_BADIF), TR_TEXT("The driver lacks an operation that it must have.")},
    {RESULT(RTF_OR_FAILEDOPEN), TR_TEXT("The driver failed to open the device.")},
    {RESULT(RTF_OR_BADVERSION), TR_TEXT("The driver is of a version that does not fit.")},
    {RESULT(RTF_ORS_NOPORT), TR_TEXT("The port of the device cannot be opened.")},
    {RESULT(RTF_ORS_NOTSUPPORTED), TR_TEXT("The driver does not know this device.")},
    {RESULT(RTF_ORS_CONFIG), TR_TEXT("The configuration of the device is wrong.")},
    {RESULT(RTF_ORS_SPECIFIC),
     TR_TEXT("The driver failed to open the device for a reason of its own.")},
};
#undef RESULT

// What a client result becomes each time that it passes on its way up.
int Pass(int result) {
  if (result == 0) return 0;
  if (result == -1) return CLASS_IO;
  return result < kClientSplit ? result | CLASS_IO : result | CLASS_CRITICAL;
}

// The chain from a result to the code, in one pass or two; empty when it does not lead there.
std::vector<int> ChainTo(int result, int code) {
  const int once = Pass(result);
  if (once == code) return {result, once};
  const int twice = Pass(once);
  if (twice == code) return {result, once, twice};
  return {};
}

CodeReading Passed(CodeReading::Kind kind, std::vector<int> chain, const char* name,
                   const char* cause) {
  CodeReading reading;
  reading.kind = kind;
  reading.once_or_more = chain.size() == 2 && Pass(chain.back()) == chain.back();
  reading.chain = std::move(chain);
  reading.name = name;
  reading.cause = cause;
  return reading;
}

CodeReading Plain(CodeReading::Kind kind, int code, const char* cause, bool given = true) {
  CodeReading reading;
  reading.kind = kind;
  reading.chain = {code};
  reading.cause = cause;
  reading.given = given;
  return reading;
}

void AddUnnamedClient(int code, std::vector<CodeReading>* readings) {
  const int index = code & 0xFF;
  const int bits = code & ~0xFF;
  std::vector<int> chain;
  if (bits == CLASS_IO && index < kClientSplit) chain = ChainTo(index, code);
  if (bits == (CLASS_IO | CLASS_CRITICAL) && index < kClientSplit) chain = ChainTo(index, code);
  if (bits == CLASS_CRITICAL && index >= kClientSplit) chain = ChainTo(index, code);
  // A longer result keeps its own upper bits, the class bit perhaps among them.
  if (chain.empty() && code > 0 && (code & CLASS_CRITICAL) != 0) {
    const int without = code & ~int{CLASS_CRITICAL};
    chain = {without > kLastShortResult ? without : code, code};
  }
  if (chain.empty()) return;
  readings->push_back(Passed(CodeReading::kUnnamedClient, std::move(chain), "",
                             TR_TEXT("The device client's own result, which has no common name.")));
}

}  // namespace

std::span<const CodeClass> CodeClasses() { return kClasses; }
std::span<const OwnCode> OwnCodes() { return kOwnCodes; }
std::span<const ClientResult> ClientResults() { return kClientResults; }

bool ComesFrom(long code, int result) {
  return code == static_cast<int>(code) && !ChainTo(result, static_cast<int>(code)).empty();
}

std::vector<CodeReading> ReadCode(int code) {
  std::vector<CodeReading> readings;
  if (code == 0) {
    return {Plain(CodeReading::kSuccess, code, TR_TEXT("The line ran, or held nothing to run."))};
  }
  if (code == -1) {
    return {
        Plain(CodeReading::kInternal, code,
              TR_TEXT("The translator's sign for a batch request (\"@\"). A host never sees it."))};
  }
  if (code == -2) {
    return {Plain(
        CodeReading::kInternal, code,
        TR_TEXT("The translator's sign for a line that holds nothing: empty, blank or a comment. "
                "A host never sees it. A client result of -2 is taken for it, and reads as "
                "success."))};
  }
  if (code == kStoppedHere) {
    return {Plain(CodeReading::kConsole, code,
                  TR_TEXT("Ctrl-C or a signal has stopped the batch at this line, which the "
                          "register did not get."))};
  }
  if (code == kStoppedBehind) {
    return {Plain(CodeReading::kConsole, code,
                  TR_TEXT("The line stands behind the one at which Ctrl-C or a signal has stopped "
                          "the batch; the register did not get it."))};
  }
  for (const OwnCode& own : kOwnCodes) {
    if (own.code == code) {
      readings.push_back(Plain(CodeReading::kOwn, code, own.cause, own.given));
      readings.back().way_out = own.way_out;
    }
  }
  if (code < 0) {
    if ((code & CLASS_IO) != 0) {
      readings.push_back(
          Passed(CodeReading::kUnnamedClient, {code, code}, "",
                 TR_TEXT("A negative result of the device client, which passes as it is.")));
    }
    return readings;
  }
  const std::vector<int> unreachable = ChainTo(-1, code);
  if (!unreachable.empty()) {
    readings.push_back(Passed(CodeReading::kUnreachable, unreachable, "",
                              TR_TEXT("The device client gave no answer, or there is none.")));
  }
  for (const ClientResult& client : kClientResults) {
    std::vector<int> chain = ChainTo(client.result, code);
    if (chain.empty()) continue;
    readings.push_back(Passed(CodeReading::kClient, std::move(chain), client.name, client.cause));
    readings.back().way_out = client.way_out;
  }
  if (code == Pass(kStateNotRead)) {
    readings.push_back(Passed(
        CodeReading::kOwnAgain, {kStateNotRead, code}, "",
        TR_TEXT("The state of the device cannot be read, or INFO (opcode 71) was asked for a value "
                "that does not exist.")));
  }
  if (readings.empty()) AddUnnamedClient(code, &readings);
  return readings;
}

}  // namespace language
