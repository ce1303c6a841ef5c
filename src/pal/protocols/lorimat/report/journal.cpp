// Extracts of the electronic journal, and the telematic summary. The selection and its rules
// are made here; the extract comes from the device.

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

constexpr int kToPrinter = 1;
constexpr int kToFile = 2;

constexpr int kJournal = 1;  // source of FiscalReportMessageEx
constexpr int kAllDocuments = 65535;
constexpr int kByDateAndNumber = 4;  // criteria beside RTF_FPTR_RT_*
constexpr int kLastClosure = 9999;

// Bits of the document filter.
constexpr int kFilterField7 = 0x100;
constexpr int kFilterField8 = 4;
constexpr int kFilterField9 = 2;

constexpr int kIllegalValue = SyntaxError(ILLEGAL_VALUE);
constexpr int kIllegalInstruction = SyntaxError(ILLEGAL_INSTRUCTION);

bool IsClosure(int number) { return number >= 1 && number <= kLastClosure; }

}  // namespace

// What a journal line selects.
struct JournalSelection {
  bool by_closure = false;
  bool by_date = false;
  bool by_number = false;
  int from_closure = 0;
  int to_closure = 0;
  int from_given = 0;  // document numbers as given
  int to_given = 0;
  int from_number = 1;  // document numbers as sent
  int to_number = 9999;
  char from_time[5] = "0000";
  char to_time[5] = "2359";
  char from_date[15] = {};  // DDMMYYYYHHMM
  char to_date[15] = {};
  int filter = 0;
  int outputs = kToPrinter;
};

int EcrCmdCommand::TakeJournalPeriod(JournalSelection& selection) {
  constexpr size_t kTimeLength = 4;
  constexpr size_t kDateLength = 6;
  if (Given(*this, 18)) {
    selection.from_closure = TextToInt(szCampi[18]);
    if (!IsClosure(selection.from_closure)) return kIllegalValue;
    selection.by_closure = true;
  }
  if (Given(*this, 19)) {
    selection.to_closure = TextToInt(szCampi[19]);
    if (!IsClosure(selection.to_closure) || selection.to_closure < selection.from_closure) {
      return kIllegalValue;
    }
  } else {
    selection.to_closure = selection.from_closure;
  }
  if (Given(*this, 10)) {
    if (std::strlen(szCampi[10]) != kTimeLength) return kIllegalValue;
    CopyText(selection.from_time, szCampi[10]);
  }
  if (Given(*this, 11)) {
    if (std::strlen(szCampi[11]) != kTimeLength) return kIllegalValue;
    CopyText(selection.to_time, szCampi[11]);
  }
  if (Given(*this, 1)) {
    if (std::strlen(szCampi[1]) != kDateLength) return kIllegalValue;
    lorimatutility::zup_2_upos_datetime(selection.from_date, szCampi[1], selection.from_time);
    selection.by_date = true;
  }
  if (Given(*this, 2)) {
    if (!selection.by_date || std::strlen(szCampi[2]) != kDateLength) return kIllegalValue;
    lorimatutility::zup_2_upos_datetime(selection.to_date, szCampi[2], selection.to_time);
  } else if (selection.by_date) {
    // With its time: a day given alone ends where it begins, meant.
    CopyText(selection.to_date, selection.from_date);
  }
  return 0;
}

int EcrCmdCommand::TakeJournalDocuments(JournalSelection& selection) {
  if (Given(*this, 3)) {
    selection.from_given = selection.from_number = TextToInt(szCampi[3]);
    selection.by_number = true;
  }
  if (Given(*this, 4)) {
    selection.to_given = selection.to_number = TextToInt(szCampi[4]);
    if (selection.to_given < selection.from_given) return kIllegalValue;
  } else if (selection.from_given != 0) {
    selection.to_given = selection.to_number = selection.from_given;
  }
  if (Given(*this, 6)) {
    TakeReportFile(6, true);
    selection.outputs = kToFile;
    if (lorimatutility::CheckTrue(szCampi[5])) selection.outputs += kToPrinter;
  }
  if (lorimatutility::CheckTrue(szCampi[7])) selection.filter |= kFilterField7;
  if (lorimatutility::CheckTrue(szCampi[8])) selection.filter |= kFilterField8;
  if (lorimatutility::CheckTrue(szCampi[9])) selection.filter |= kFilterField9;
  if (Given(*this, 14)) {
    selection.filter = TextToInt(szCampi[14]);
    if (selection.filter < 0) return kIllegalValue;
  }
  if (Given(*this, 17)) {
    // Tested, and then without an effect.
    const int option = TextToInt(szCampi[17]);
    if (option < 0 || option > 3) return kIllegalValue;
  }
  return 0;
}

int EcrCmdCommand::Trad_DGFE() {
  JournalSelection selection;
  char format[5] = "txt";
  szFileReportOut[0] = 0;
  iSavePrintMon = 0;
  wReportHeaderLines = 0;
  if (Given(*this, 21)) CopyText(format, szCampi[21]);
  int refused = TakeJournalPeriod(selection);
  if (refused == 0) refused = TakeJournalDocuments(selection);
  if (refused != 0) return refused;

  if (selection.by_date == selection.by_closure) return kIllegalValue;
  if (selection.from_given != 0 || selection.to_given != 0) {
    // Document numbers begin again with each closure, and only make sense inside one day.
    constexpr size_t kDay = 8;
    if (selection.to_date[0] != 0 &&
        std::strncmp(selection.to_date, selection.from_date, kDay) != 0) {
      return kIllegalInstruction;
    }
    if (selection.from_closure != selection.to_closure) return kIllegalInstruction;
  }
  if (selection.filter == 0) selection.filter = kAllDocuments;
  if (Given(*this, 20)) CopyText(format, szCampi[20]);

  int criteria = selection.by_number ? kByDateAndNumber : RTF_FPTR_RT_DATE;
  uint32_t from_number = static_cast<uint32_t>(selection.from_number);
  uint32_t to_number = static_cast<uint32_t>(selection.to_number);
  if (selection.by_closure) {
    // One number carries both: the closure, and the document in the lower four digits.
    criteria = RTF_FPTR_RT_EOD_ORDINAL;
    from_number += static_cast<uint32_t>(selection.from_closure) * 10000u;
    to_number += static_cast<uint32_t>(selection.to_closure) * 10000u;
  }
  return checkResult(RTF_FP_INVOKE(FiscalReportMessageEx, kJournal, selection.filter, criteria, 0,
                                   0, from_number, to_number, selection.from_date,
                                   selection.to_date, format, szFileReportOut, selection.outputs));
}

int EcrCmdCommand::Trad_RTEJ() {
  szFileReportOut[0] = 0;
  // The name keeps its case here.
  if (Given(*this, 7)) TakeReportFile(7, false);
  if (Given(*this, 3) && !Given(*this, 4)) CopyText(szCampi[4], szCampi[3]);
  if (Given(*this, 6)) return checkResult(RTF_FP_INVOKE_NP(SendTelematicSummary));
  if (Given(*this, 5)) return checkResult(RTF_FP_INVOKE(ExportTelematicSummary, szFileReportOut));
  if (!Given(*this, 3) || !Given(*this, 4)) return kIllegalValue;
  const int from = TextToInt(szCampi[3]);
  const int to = TextToInt(szCampi[4]);
  if (Given(*this, 8)) {
    return checkResult(
        RTF_FP_INVOKE(SaveTelematicSummaryEx, from, to, szFileReportOut, TextToInt(szCampi[8])));
  }
  return checkResult(RTF_FP_INVOKE(SaveTelematicSummary, from, to, szFileReportOut));
}
