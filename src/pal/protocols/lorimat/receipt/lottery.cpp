// The receipt lottery's documents. The customer's code itself is keyed (payment.cpp).

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

// Operations of TelematicDocument.
constexpr uint8_t kSaveAll = 2;
constexpr uint8_t kSaveRange = 3;
constexpr uint8_t kSend = 5;

constexpr uint8_t kLotteryDocument = 1;

constexpr int kLastClosure = 9999;

}  // namespace

int EcrCmdCommand::Trad_SENDLOTT() {
  return checkResult(RTF_FP_INVOKE(TelematicDocument, 0u, kSend, kLotteryDocument, 0, 0, 0, 0, ""));
}

int EcrCmdCommand::Trad_SAVELOTT() {
  szFileReportOut[0] = 0;
  iSavePrintMon = 0;
  wReportHeaderLines = 0;
  if (!Given(*this, 7)) return SyntaxError(ILLEGAL_INSTRUCTION);
  TakeReportFile(7, true);
  if (Given(*this, 5)) {
    return checkResult(RTF_FP_INVOKE(TelematicDocument, 0u, kSaveAll, kLotteryDocument, 0, 0, 0, 0,
                                     szFileReportOut));
  }

  int iFromZNum = 0;
  if (Given(*this, 1)) {
    iFromZNum = TextToInt(szCampi[1]);
    if (iFromZNum <= 0 || iFromZNum > kLastClosure) return SyntaxError(ILLEGAL_VALUE);
  }
  int iToZNum = iFromZNum;
  if (Given(*this, 2)) {
    iToZNum = TextToInt(szCampi[2]);
    if (iToZNum <= 0 || iToZNum > kLastClosure || iToZNum < iFromZNum) {
      return SyntaxError(ILLEGAL_VALUE);
    }
  }
  const int iFromNum = TextToInt(szCampi[3]);
  const int iToNum = Given(*this, 4) ? TextToInt(szCampi[4]) : iFromNum;
  if (!Given(*this, 1)) return SyntaxError(ILLEGAL_VALUE);
  if (!Given(*this, 3)) return SyntaxError(ILLEGAL_INSTRUCTION);
  return checkResult(RTF_FP_INVOKE(TelematicDocument, 0u, kSaveRange, kLotteryDocument, iFromZNum,
                                   iFromNum, iToZNum, iToNum, szFileReportOut));
}
