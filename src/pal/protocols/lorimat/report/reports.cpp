// Reports and the day closing. The device produces them, to the printer, to a file or to
// both; the translator asks, and for most kinds waits until the device has done.

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/threading/posix/thread.h"

namespace {

// Bits of the outputs of a report.
constexpr int kToPrinter = 1;
constexpr int kToFile = 2;

constexpr int kAllDocuments = 65535;  // filter of the fiscal memory
constexpr int kByDateAndNumber = 4;   // criteria beside RTF_FPTR_RT_*

enum class ReportCall { kReading, kPeriodic, kFiscal };
enum class Range { kNone, kNumbers, kDates, kDatesAndNumbers };

struct ReportKind {
  int code;
  ReportCall call;
  int kind;            // kind of the reading or periodic report, source of a fiscal one
  Range range;         // of a fiscal report
  const char* format;  // null for the format of the line
  bool waits;
};

constexpr ReportKind kReportKinds[] = {
    {1, ReportCall::kReading, 1, Range::kNone, nullptr, true},
    {2, ReportCall::kReading, 0, Range::kNone, nullptr, true},
    {3, ReportCall::kReading, 2, Range::kNone, nullptr, true},
    {4, ReportCall::kReading, 1, Range::kNone, nullptr, true},
    {10, ReportCall::kPeriodic, 3, Range::kNone, nullptr, true},
    {11, ReportCall::kPeriodic, 2, Range::kNone, nullptr, true},
    {12, ReportCall::kPeriodic, 1, Range::kNone, nullptr, true},
    {14, ReportCall::kPeriodic, 5, Range::kNone, nullptr, true},
    {17, ReportCall::kPeriodic, 4, Range::kNone, nullptr, true},
    {200, ReportCall::kFiscal, 0, Range::kNone, nullptr, false},
    {201, ReportCall::kFiscal, 0, Range::kNumbers, nullptr, false},
    {202, ReportCall::kFiscal, 0, Range::kDates, nullptr, false},
    {203, ReportCall::kFiscal, 0, Range::kNumbers, "stxt", false},
    {204, ReportCall::kFiscal, 0, Range::kDates, "stxt", false},
    {206, ReportCall::kFiscal, 2, Range::kDates, nullptr, true},
    {207, ReportCall::kFiscal, 4, Range::kDatesAndNumbers, nullptr, true},
};

const ReportKind* FindReport(int code) {
  for (const ReportKind& kind : kReportKinds) {
    if (kind.code == code) return &kind;
  }
  return nullptr;
}

// DDMMYY and a time of day as DDMM20YY and the time; any other length leaves the text empty.
void TakeDate(char (&date)[13], const char* field, const char* time) {
  if (std::strlen(field) == 6) lorimatutility::zup_2_upos_datetime(date, field, time);
}

constexpr int kReportNotSupported = SyntaxError(REPORT_NOT_SUPPORTED);

}  // namespace

// What a report line asks for.
struct ReportRequest {
  const ReportKind* kind = nullptr;
  bool closing = false;  // mode 1
  int outputs = 0;
  char format[13] = "txt";
  char from_number[8] = {};
  char to_number[8] = {};
  char from_date[13] = {};
  char to_date[13] = {};
};

int EcrCmdCommand::PollReportState(int res) {
  constexpr int kTimeOut = 120000;   // milliseconds
  constexpr int kTimeOutStep = 500;  // milliseconds
  constexpr long kReportBits = 0x800002;
  constexpr int kStateReport = 7;

  if (res != 0) return res;
  int printer_state = RTF_FPTR_PS_REPORT;
  const auto read_state = [&] {
    int state = 0;
    const int read = RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_PrinterState, &state);
    // A device out of reach counts as busy; any other failure keeps the last state.
    if (read == -1) printer_state = RTF_FPTR_PS_REPORT;
    if (read == 0) printer_state = state;
  };
  read_state();
  for (int time_out = kTimeOut; time_out > 0; time_out -= kTimeOutStep) {
    if (printer_state != RTF_FPTR_PS_REPORT && printer_state != RTF_FPTR_PS_LOCKED) break;
    if (printer_state == RTF_FPTR_PS_LOCKED) {
      // Locked because it is still at a report, or for another reason, which ends the wait.
      UpdateStatus();
      if ((fiscal_inner_state_ & kReportBits) == 0 || fiscal_functional_state_ != kStateReport) {
        break;
      }
    }
    Thread::Sleep(kTimeOutStep);
    read_state();
  }
  return res;
}

int EcrCmdCommand::CloseDay() {
  return checkResult(PollReportState(RTF_FP_INVOKE(PrintZReportEx, bSendZAE)));
}

void EcrCmdCommand::TakeReportFile(int field, bool lower_case) {
  NoteOutput();
  CopyText(szFileReportOut, szCampi[field]);
  if (filesettable_ == nullptr) return;
  if (lower_case) lorimatutility::toLower(szFileReportOut);
  GuardedClientCall([&] {
    filesettable_->set_filename(szFileReportOut);
    return 0;
  });
}

int EcrCmdCommand::Trad_REPORT() {
  ReportRequest request;
  szFileReportOut[0] = 0;
  if (Given(*this, 10)) {
    TakeReportFile(10, true);
    request.outputs |= kToFile;
  }
  if (Given(*this, 20)) CopyText(request.format, szCampi[20]);
  if (!Given(*this, 3) || TextToInt(szCampi[3]) > 0) request.outputs |= kToPrinter;
  if (request.outputs == 0) return kReportNotSupported;
  const int iCode = Given(*this, 1) ? TextToInt(szCampi[1]) : 1;
  const int iMode = Given(*this, 2) ? TextToInt(szCampi[2]) : 0;
  if (iMode != 0 && iMode != 1) return kReportNotSupported;
  request.closing = iMode == 1;
  CopyText(request.from_number, szCampi[6]);
  CopyText(request.to_number, szCampi[7]);
  TakeDate(request.from_date, szCampi[8], "0000");
  TakeDate(request.to_date, szCampi[9], "2359");

  PollReportState(0);  // a report may still be running
  request.kind = FindReport(iCode);
  if (request.kind == nullptr) return kReportNotSupported;
  switch (request.kind->call) {
    case ReportCall::kReading:
      return PrintReading(request);
    case ReportCall::kPeriodic:
      return checkResult(PollReportState(RTF_FP_INVOKE(PeriodicReportMessageEx, request.kind->kind,
                                                       0, request.format, szFileReportOut,
                                                       request.outputs, request.closing)));
    default:
      return PrintFiscalReport(request);
  }
}

int EcrCmdCommand::PrintReading(const ReportRequest& request) {
  const int result = PollReportState(RTF_FP_INVOKE(
      PrintXReportEx, request.kind->kind, false, request.format, szFileReportOut, request.outputs));
  if (result != 0 || !request.closing) return checkResult(result);
  PollReportState(0);
  return CloseDay();
}

int EcrCmdCommand::PrintFiscalReport(const ReportRequest& request) {
  const bool numbers_given = request.from_number[0] != 0 && request.to_number[0] != 0;
  const bool dates_given = request.from_date[0] != 0 && request.to_date[0] != 0;
  int criteria = RTF_FPTR_RT_EOD_ORDINAL;
  uint32_t from_number = 1;
  uint32_t to_number = 9999;
  const char* from_date = "";
  const char* to_date = "";
  switch (request.kind->range) {
    case Range::kNone:
      break;
    case Range::kNumbers:
      if (!numbers_given) return kReportNotSupported;
      from_number = static_cast<uint32_t>(TextToInt(request.from_number));
      to_number = static_cast<uint32_t>(TextToInt(request.to_number));
      break;
    case Range::kDates:
    case Range::kDatesAndNumbers:
      if (!dates_given) return kReportNotSupported;
      from_date = request.from_date;
      to_date = request.to_date;
      from_number = to_number = 0;
      criteria = RTF_FPTR_RT_DATE;
      if (request.kind->range == Range::kDatesAndNumbers) {
        criteria = kByDateAndNumber;
        from_number = static_cast<uint32_t>(TextToInt(request.from_number));
        to_number = static_cast<uint32_t>(TextToInt(request.to_number));
      }
      break;
  }
  const char* format = request.kind->format != nullptr ? request.kind->format : request.format;
  const int result = RTF_FP_INVOKE(FiscalReportMessageEx, request.kind->kind, kAllDocuments,
                                   criteria, 0, 0, from_number, to_number, from_date, to_date,
                                   format, szFileReportOut, request.outputs);
  return checkResult(request.kind->waits ? PollReportState(result) : result);
}

int EcrCmdCommand::Trad_AZZGIO() {
  // Readings ahead of the closing, by code. Not the table of Trad_REPORT: meant.
  static constexpr int kReadings[] = {0, 2, 0, 1};
  const int iCode = Given(*this, 1) ? TextToInt(szCampi[1]) : 1;
  if (iCode < 0 || iCode > 3) return SyntaxError(CAMPO_OBBLIGATORIO);
  szFileReportOut[0] = 0;
  if (iCode != 0) {
    const int result = PollReportState(
        RTF_FP_INVOKE(PrintXReportEx, kReadings[iCode], false, "txt", szFileReportOut, kToPrinter));
    // The day stays open.
    if (result != 0) return checkResult(result);
  }
  return CloseDay();
}
