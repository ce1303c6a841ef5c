// The operations that this register does not model. Each answers RTF_E_ILLEGAL, so that no
// host takes a missing service for one that worked.
#include "register/virtual_register.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

int VirtualRegister::SetDeviceEnabled(bool) { return RTF_E_ILLEGAL; }
int VirtualRegister::Close() { return RTF_E_ILLEGAL; }
int VirtualRegister::Claim(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::Release() { return RTF_E_ILLEGAL; }
int VirtualRegister::CheckHealth(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::ClearOutput() { return RTF_E_ILLEGAL; }
int VirtualRegister::CompareFirmwareVersion(const char*, int*) { return RTF_E_ILLEGAL; }
int VirtualRegister::ResetStatistics(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::RetrieveStatistics(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::UpdateFirmware(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::UpdateStatistics(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::GetVatEntryExtended(int, int, char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::InitJournal() { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginDocRefund(int, int, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginDocCancel(int, int, const char*, bool) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginDocRefundEx(int, int, const char*, bool) { return RTF_E_ILLEGAL; }
int VirtualRegister::SelectBitmap(int, int) { return RTF_E_ILLEGAL; }
int VirtualRegister::ProcessEJournalReportByDate(const char*, const char*, const char*,
                                                 const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::ProcessEJournalReportByZNumber(int, int, const char*, const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::ProcessEJournalReportByDateZNumber(const char*, const char*, int, int,
                                                        const char*, const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::ProcessEJournalReportByDateNumber(const char*, const char*, int, int,
                                                       const char*, const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::ProcessEJournalReportByDateNumberDocType(const char*, const char*, int, int,
                                                              int, const char*, const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::ProcessEJournalReportGlobal(const char*, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::SetCurrency(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::SetDate(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::SetPOSID(const char*, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::SetStoreFiscalID(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::SetTrailerLine(int, const char*, bool) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintDuplicateReceipt() { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintRecCash(long) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintRecItemFuel(const char*, long, int, int, long, const char*, long,
                                      const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::PrintRecItemFuelVoid(const char*, long, int, long) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintRecNotPaid(const char*, long) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintRecPackageAdjustment(int, const char*, const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::PrintRecPackageAdjustVoid(int, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintRecVoidItem(const char*, long, int, int, long, int) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::TelematicCensus() { return RTF_E_ILLEGAL; }
int VirtualRegister::TelematicActivate(const char*, const char*, const char*, const char*, int32_t,
                                       const char*) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::TelematicCommissioning() { return RTF_E_ILLEGAL; }
int VirtualRegister::ZupEcrCmd(const char*, int*, char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginFiscalDocument(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::EndFiscalDocument() { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintFiscalDocumentLine(const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginItemList(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::EndItemList() { return RTF_E_ILLEGAL; }
int VirtualRegister::VerifyItem(const char*, int) { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintPowerLossReport() { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintReport(int, const char*, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginInsertion(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginRemoval(int) { return RTF_E_ILLEGAL; }
int VirtualRegister::EndInsertion() { return RTF_E_ILLEGAL; }
int VirtualRegister::EndRemoval() { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginFixedOutput(int, int) { return RTF_E_ILLEGAL; }
int VirtualRegister::BeginTraining() { return RTF_E_ILLEGAL; }
int VirtualRegister::EndFixedOutput() { return RTF_E_ILLEGAL; }
int VirtualRegister::EndTraining() { return RTF_E_ILLEGAL; }
int VirtualRegister::PrintFixedOutput(int, int, const char*) { return RTF_E_ILLEGAL; }
int VirtualRegister::ClearError() { return RTF_E_ILLEGAL; }
int VirtualRegister::WaitForDrawerClose(int32_t, int32_t, int32_t, int32_t) {
  return RTF_E_ILLEGAL;
}
int VirtualRegister::DiagnosticsRequest(int, bool, int) { return RTF_E_ILLEGAL; }

}  // namespace lorimat
