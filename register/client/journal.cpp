// Extracts of the journal into files, and the older forms of the reports.
#include <charconv>

#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/report/reports.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

// A closure's number as digits; false for anything else.
bool ReadClosure(std::string_view text, uint32_t* number) {
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, *number);
  return result.ec == std::errc() && result.ptr == end && *number <= RegisterStore::kLastNumber;
}

}  // namespace

int VirtualRegister::ExtractJournal(ClientOperation operation, const JournalRequest& request,
                                    const char* file, const char* format) {
  return Perform(operation, [&] {
    return ReportDesk(core_).PrintJournal(request, {View(format), View(file), ReportTarget::kFile});
  });
}

int VirtualRegister::ProcessEJournalReportByDate(const char* from_date, const char* to_date,
                                                 const char* file, const char* format) {
  JournalRequest request;
  request.by_date = true;
  request.from_date = View(from_date);
  request.to_date = View(to_date);
  return ExtractJournal(ClientOperation::kProcessEJournalReportByDate, request, file, format);
}

int VirtualRegister::ProcessEJournalReportByZNumber(int from_z, int to_z, const char* file,
                                                    const char* format) {
  JournalRequest request;
  request.by_closure = true;
  request.from_closure = from_z;
  request.to_closure = to_z;
  return ExtractJournal(ClientOperation::kProcessEJournalReportByZNumber, request, file, format);
}

int VirtualRegister::ProcessEJournalReportByDateZNumber(const char* from_date, const char* to_date,
                                                        int from_z, int to_z, const char* file,
                                                        const char* format) {
  JournalRequest request;
  request.by_date = true;
  request.from_date = View(from_date);
  request.to_date = View(to_date);
  request.by_closure = true;
  request.from_closure = from_z;
  request.to_closure = to_z;
  return ExtractJournal(ClientOperation::kProcessEJournalReportByDateZNumber, request, file,
                        format);
}

int VirtualRegister::ProcessEJournalReportByDateNumber(const char* from_date, const char* to_date,
                                                       int from_number, int to_number,
                                                       const char* file, const char* format) {
  JournalRequest request;
  request.by_date = true;
  request.from_date = View(from_date);
  request.to_date = View(to_date);
  request.from_number = from_number;
  request.to_number = to_number;
  return ExtractJournal(ClientOperation::kProcessEJournalReportByDateNumber, request, file, format);
}

int VirtualRegister::ProcessEJournalReportByDateNumberDocType(const char* from_date,
                                                              const char* to_date, int from_number,
                                                              int to_number, int document_type,
                                                              const char* file,
                                                              const char* format) {
  JournalRequest request;
  request.by_date = true;
  request.from_date = View(from_date);
  request.to_date = View(to_date);
  request.from_number = from_number;
  request.to_number = to_number;
  request.filter = document_type;
  return ExtractJournal(ClientOperation::kProcessEJournalReportByDateNumberDocType, request, file,
                        format);
}

int VirtualRegister::ProcessEJournalReportGlobal(const char* file, const char* format) {
  return ExtractJournal(ClientOperation::kProcessEJournalReportGlobal, JournalRequest{}, file,
                        format);
}

// The journal of this register is ready from the start. One that holds something is not begun
// again: nothing erases an entry.
int VirtualRegister::InitJournal() {
  return Perform(ClientOperation::kInitJournal, [&] {
    if (!core_.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
    if (core_.store.journal_count() == 0) return RTF_SUCCESS;
    return Refuse(RTF_E_EXISTS, RefusalCause::kJournalInUse);
  });
}

int VirtualRegister::PrintReport(int report_type, const char* from, const char* to) {
  return Perform(ClientOperation::kPrintReport, [&] {
    if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
    FiscalRequest request;
    request.filter = kJournalAll;
    switch (report_type) {
      case RTF_FPTR_RT_DATE:
        request.criteria = RTF_FPTR_RT_DATE;
        request.from_date = View(from);
        request.to_date = View(to);
        break;
      case RTF_FPTR_RT_ORDINAL:
      case RTF_FPTR_RT_EOD_ORDINAL:
        // Closures are all that the fiscal memory numbers; an end of 0 is the last one.
        request.criteria = RTF_FPTR_RT_EOD_ORDINAL;
        if (!ReadClosure(View(from), &request.from_number) ||
            !ReadClosure(View(to), &request.to_number)) {
          return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotANumber, Subject::kClosure, {},
                             View(from));
        }
        if (request.to_number == 0) {
          request.to_number = static_cast<uint32_t>(core_.store.last_closure());
          if (request.to_number < request.from_number) {
            return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
          }
        }
        break;
      default:
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kCriterion,
                           {report_type});
    }
    return ReportDesk(core_).PrintFiscal(request, {});
  });
}

int VirtualRegister::PrintPowerLossReport() {
  return Perform(ClientOperation::kPrintPowerLossReport,
                 [&] { return ReportDesk(core_).PrintPowerLosses(); });
}

}  // namespace lorimat
