// The register's totals and reports, as the device client's operations ask for them.
#include "register/report/reports.h"

#include <utility>

#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/fault/fault_operations.h"
#include "register/report/firmware.h"
#include "register/report/telematic.h"
#include "register/report/totalizer.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

// The buffer that callers have for a total.
constexpr size_t kTotalSize = 50;

// The last kind that GetTotalizer knows; those above are GetTotalizerExtend's.
constexpr int kLastPlainTotalizer = RTF_FPTR_GT_SURCHARGE_VOID;

constexpr int kFilterAll = 65535;

// What TelematicDocument carries out, on the device 0 and the document type 1.
constexpr uint8_t kLotterySaveAll = 2;
constexpr uint8_t kLotterySaveRange = 3;
constexpr uint8_t kLotterySend = 5;

}  // namespace

int VirtualRegister::GetTotalizer(int vat_id, int selector, char* text) {
  return Perform(ClientOperation::kGetTotalizer, [&] {
    if (selector > kLastPlainTotalizer) {
      return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTotal, {selector});
    }
    return GiveTotalizer(vat_id, core_.options.totalizer_scope, selector, text);
  });
}

int VirtualRegister::GetTotalizerExtend(int vat_id, int totalizer_type, int totalizer, char* data) {
  return Perform(ClientOperation::kGetTotalizerExtend,
                 [&] { return GiveTotalizer(vat_id, totalizer_type, totalizer, data); });
}

int VirtualRegister::GiveTotalizer(int vat_id, int scope, int totalizer, char* text) const {
  if (text == nullptr) return RTF_E_ILLEGAL;
  std::string value;
  if (const int code = ReadTotalizer(core_, vat_id, scope, totalizer, &value)) return code;
  Give(value, text, kTotalSize);
  return RTF_SUCCESS;
}

// --- Readings and the day closing

int VirtualRegister::PrintXReport() {
  return Perform(ClientOperation::kPrintXReport, [&] {
    return ReportDesk(core_).PrintX(1, false, {"txt", "", ReportTarget::kPrinter});
  });
}

int VirtualRegister::PrintXReportEx(int32_t kind, bool clear, const char* format, const char* file,
                                    int32_t outputs) {
  return Perform(ClientOperation::kPrintXReportEx, EffectsOfReport(outputs), [&] {
    return ReportDesk(core_).PrintX(kind, clear, {View(format), View(file), outputs});
  });
}

int VirtualRegister::PrintZReport() { return CloseDay(ClientOperation::kPrintZReport, false); }
int VirtualRegister::PrintZReportEx(bool send) {
  return CloseDay(ClientOperation::kPrintZReportEx, send);
}

// The day is closed, whatever becomes of the sending.
int VirtualRegister::CloseDay(ClientOperation operation, bool send) {
  return Perform(
      operation, 0, [&] { return ReportDesk(core_).CloseDay(); },
      [&] { ReportDesk(core_).SendBehindClosing(send); });
}

// --- Periods, fiscal memory, journal

// `option` is kept for the device; this register has none.
int VirtualRegister::PeriodicReportMessageEx(int32_t kind, int32_t, const char* format,
                                             const char* file, int32_t outputs, bool clear) {
  return Perform(ClientOperation::kPeriodicReportMessageEx, EffectsOfReport(outputs), [&] {
    return ReportDesk(core_).PrintPeriodic(kind, clear, {View(format), View(file), outputs});
  });
}

int VirtualRegister::FiscalReportMessageEx(int32_t source, int32_t filter, int32_t criteria,
                                           uint8_t, uint8_t, uint32_t from_number,
                                           uint32_t to_number, const char* from_date,
                                           const char* to_date, const char* format,
                                           const char* file, int32_t outputs) {
  return Perform(ClientOperation::kFiscalReportMessageEx, EffectsOfReport(outputs), [&] {
    return ReportDesk(core_).PrintFiscal(
        {source, filter, criteria, from_number, to_number, View(from_date), View(to_date)},
        {View(format), View(file), outputs});
  });
}

// The sums of a range of dates, DDMMYYYYHHMM, on paper.
int VirtualRegister::PrintPeriodicTotalsReport(const char* from_date, const char* to_date) {
  return Perform(ClientOperation::kPrintPeriodicTotalsReport, [&] {
    return ReportDesk(core_).PrintFiscal(
        {2, kFilterAll, RTF_FPTR_RT_DATE, 0, 0, View(from_date), View(to_date)},
        {"txt", "", ReportTarget::kPrinter});
  });
}

// --- Telematic summary, lottery, firmware

int VirtualRegister::SendTelematicSummary() {
  return Perform(ClientOperation::kSendTelematicSummary,
                 [&] { return TelematicDesk(core_).SendSummaries(); });
}

int VirtualRegister::ExportTelematicSummary(const char* file) {
  return Perform(ClientOperation::kExportTelematicSummary,
                 [&] { return TelematicDesk(core_).ExportSummaries(View(file)); });
}

int VirtualRegister::SaveTelematicSummary(int from_z, int to_z, const char* file) {
  return Perform(ClientOperation::kSaveTelematicSummary,
                 [&] { return TelematicDesk(core_).SaveSummaries(from_z, to_z, View(file), 0); });
}

int VirtualRegister::SaveTelematicSummaryEx(int from_z, int to_z, const char* file, int options) {
  return Perform(ClientOperation::kSaveTelematicSummaryEx, [&] {
    return TelematicDesk(core_).SaveSummaries(from_z, to_z, View(file), options);
  });
}

int VirtualRegister::TelematicDocument(uint32_t device, uint8_t operation, uint8_t document_type,
                                       int32_t from_z, int32_t from_number, int32_t to_z,
                                       int32_t to_number, const char* file) {
  return Perform(ClientOperation::kTelematicDocument, [&] {
    if (device != 0 || document_type != 1) return RTF_E_ILLEGAL;
    TelematicDesk desk(core_);
    switch (operation) {
      case kLotterySend:
        return desk.SendLottery();
      case kLotterySaveAll:
        return desk.SavePendingLottery(View(file));
      case kLotterySaveRange:
        return desk.SaveLottery(from_z, from_number, to_z, to_number, View(file));
      default:
        return RTF_E_ILLEGAL;
    }
  });
}

int VirtualRegister::ProgramFirmware(const char* file) {
  return Perform(ClientOperation::kProgramFirmware, [&] { return LoadFirmware(file); });
}

int VirtualRegister::LoadFirmware(const char* file) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  std::string version;
  if (const int code = CheckFirmware(View(file), &version)) return code;
  core_.firmware_version = std::move(version);
  return RTF_SUCCESS;
}

}  // namespace lorimat
