// A device client that accepts everything and gives nothing: unit tests override the few
// operations that they are about.
#pragma once

#include "rpccommon/client/rtfclientinterface.h"

class NullClient : public RtfClientInterface {
 public:
  bool GetClaimed() override { return true; }
  bool GetDeviceEnabled() override { return true; }
  int SetDeviceEnabled(bool) override { return 0; }
  int GetState() override { return 0; }
  int GetIntProperty(int, int*) override { return 0; }
  int SetIntProperty(int, int) override { return 0; }
  int GetStringProperty(int, char*) override { return 0; }
  int SetStringProperty(int, const char*) override { return 0; }
  int GetDataInternal(int, char*) override { return 0; }
  int SetDataInternal(int, const char*) override { return 0; }
  int Close() override { return 0; }
  int Claim(int) override { return 0; }
  int Release() override { return 0; }
  int CheckHealth(int) override { return 0; }
  int ClearOutput() override { return 0; }
  int CompareFirmwareVersion(const char*, int*) override { return 0; }
  int ResetStatistics(const char*) override { return 0; }
  int RetrieveStatistics(const char*) override { return 0; }
  int UpdateFirmware(const char*) override { return 0; }
  int UpdateStatistics(const char*) override { return 0; }
  int GetVatEntryExtended(int, int, char*) override { return 0; }
  int PrintBarcode(const char*, const char*, const char*, const char*, const char*,
                   uint8_t) override {
    return 0;
  }
  int PrintBarcodeEx(const char*, const char*, const char*, const char*, const char*, uint8_t,
                     bool) override {
    return 0;
  }
  int InitJournal() override { return 0; }
  int BeginDocInvoice(const char*, const char*, const char*, const char*, const char*) override {
    return 0;
  }
  int BeginDocInvoiceOppositionJurisprudence(const char*, const char*, const char*, const char*,
                                             const char*, bool) override {
    return 0;
  }
  int BeginDocRefund(int, int, const char*) override { return 0; }
  int BeginDocCancel(int, int, const char*, bool) override { return 0; }
  int BeginDocTelematicRefund(int, int, const char*, const char*) override { return 0; }
  int BeginDocTelematicCancel(int, int, const char*, bool, const char*) override { return 0; }
  int BeginDocRefundEx(int, int, const char*, bool) override { return 0; }
  int SendTelematicSummary() override { return 0; }
  int ExportTelematicSummary(const char*) override { return 0; }
  int SaveTelematicSummary(int, int, const char*) override { return 0; }
  int SaveTelematicSummaryEx(int, int, const char*, int) override { return 0; }
  int PrintBitmap(int, int) override { return 0; }
  int SelectBitmap(int, int) override { return 0; }
  int ProcessEJournalReportByDate(const char*, const char*, const char*, const char*) override {
    return 0;
  }
  int ProcessEJournalReportByZNumber(int, int, const char*, const char*) override { return 0; }
  int ProcessEJournalReportByDateZNumber(const char*, const char*, int, int, const char*,
                                         const char*) override {
    return 0;
  }
  int ProcessEJournalReportByDateNumber(const char*, const char*, int, int, const char*,
                                        const char*) override {
    return 0;
  }
  int ProcessEJournalReportByDateNumberDocType(const char*, const char*, int, int, int, const char*,
                                               const char*) override {
    return 0;
  }
  int ProcessEJournalReportGlobal(const char*, const char*) override { return 0; }
  int ProgramGRC(uint8_t, const char*, bool) override { return 0; }
  int EraseLogoArchive() override { return 0; }
  int BeginAdditionalTrailer() override { return 0; }
  int PrintPaperCut() override { return 0; }
  int SetCurrency(int) override { return 0; }
  int SetDate(const char*) override { return 0; }
  int SetHeaderLine(int, const char*, bool) override { return 0; }
  int SetPOSID(const char*, const char*) override { return 0; }
  int SetStoreFiscalID(const char*) override { return 0; }
  int SetTrailerLine(int, const char*, bool) override { return 0; }
  int SetVatTable() override { return 0; }
  int SetVatValue(int, const char*) override { return 0; }
  int BeginFiscalReceipt(bool) override { return 0; }
  int EndFiscalReceipt(bool) override { return 0; }
  int PrintDuplicateReceipt() override { return 0; }
  int PrintRecCash(long) override { return 0; }
  int PrintRecItem(const char*, long, int, int, long, const char*) override { return 0; }
  int PrintRecItemVoid(const char*, long, int, int, long, const char*) override { return 0; }
  int PrintRecItemAdjustment(int, const char*, int64_t, int) override { return 0; }
  int PrintRecItemAdjustmentVoid(int, const char*, int64_t, int) override { return 0; }
  int PrintRecItemFuel(const char*, long, int, int, long, const char*, long, const char*) override {
    return 0;
  }
  int PrintRecItemFuelVoid(const char*, long, int, long) override { return 0; }
  int PrintRecItemRefund(const char*, long, int, int, long, const char*) override { return 0; }
  int PrintRecItemRefundVoid(const char*, long, int, int, long, const char*) override { return 0; }
  int PrintRecMessage(const char*) override { return 0; }
  int PrintRecNotPaid(const char*, long) override { return 0; }
  int PrintRecPackageAdjustment(int, const char*, const char*) override { return 0; }
  int PrintRecPackageAdjustVoid(int, const char*) override { return 0; }
  int PrintRecRefund(const char*, long, int) override { return 0; }
  int PrintRecRefundVoid(const char*, long, int) override { return 0; }
  int PrintRecSubtotal(int64_t) override { return 0; }
  int PrintRecSubtotalEx(int64_t, bool) override { return 0; }
  int PrintRecSubtotalAdjustment(int, const char*, int64_t) override { return 0; }
  int PrintRecSubtotalAdjustVoid(int, int64_t) override { return 0; }
  int PrintRecTaxID(const char*) override { return 0; }
  int PrintRecTotal(int64_t, int64_t, const char*) override { return 0; }
  int PrintRecVoid(const char*) override { return 0; }
  int PrintRecVoidItem(const char*, long, int, int, long, int) override { return 0; }
  int TelematicCensus() override { return 0; }
  int TelematicActivate(const char*, const char*, const char*, const char*, int32_t,
                        const char*) override {
    return 0;
  }
  int TelematicCommissioning() override { return 0; }
  int ZupEcrCmd(const char*, int*, char*) override { return 0; }
  int PrintRecItemEx(int, const char*, int64_t, int, int, int64_t, const char*, int, bool,
                     const char*) override {
    return 0;
  }
  int PrintRecItemAdjustmentEx(int, const char*, int64_t, int, int) override { return 0; }
  int PrintRecItemAdjustmentEx2(int, const char*, int64_t, int, int, bool) override { return 0; }
  int PrintRecTotalEx(int64_t, const char*, bool) override { return 0; }
  int BeginFiscalDocument(int) override { return 0; }
  int EndFiscalDocument() override { return 0; }
  int PrintFiscalDocumentLine(const char*) override { return 0; }
  int BeginItemList(int) override { return 0; }
  int EndItemList() override { return 0; }
  int VerifyItem(const char*, int) override { return 0; }
  int PrintPeriodicTotalsReport(const char*, const char*) override { return 0; }
  int PrintPowerLossReport() override { return 0; }
  int PrintReport(int, const char*, const char*) override { return 0; }
  int PrintXReport() override { return 0; }
  int PrintZReport() override { return 0; }
  int BeginInsertion(int) override { return 0; }
  int BeginRemoval(int) override { return 0; }
  int EndInsertion() override { return 0; }
  int EndRemoval() override { return 0; }
  int BeginFixedOutput(int, int) override { return 0; }
  int BeginNonFiscal() override { return 0; }
  int BeginNonFiscalJournal(bool) override { return 0; }
  int BeginTraining() override { return 0; }
  int EndFixedOutput() override { return 0; }
  int EndNonFiscal() override { return 0; }
  int EndTraining() override { return 0; }
  int PrintFixedOutput(int, int, const char*) override { return 0; }
  int PrintNormal(int, const char*) override { return 0; }
  int GetData(int, int*, char*) override { return 0; }
  int GetDate(char*) override { return 0; }
  int GetTotalizer(int, int, char*) override { return 0; }
  int GetVatEntry(int, int, int*) override { return 0; }
  int ClearError() override { return 0; }
  int ResetPrn() override { return 0; }
  int OpenDrawer() override { return 0; }
  int WaitForDrawerClose(int32_t, int32_t, int32_t, int32_t) override { return 0; }
  int ClearText() override { return 0; }
  int DisplayText(const char*, int) override { return 0; }
  int DisplayTextAt(int, int, const char*, int) override { return 0; }
  int DisplayTextEx(const char*, int, int, int, bool) override { return 0; }
  int DisplayTextAtEx(int, int, const char*, int, int, int, bool) override { return 0; }
  int GetTotalizerExtend(int, int, int, char*) override { return 0; }
  int ProgramFirmware(const char*) override { return 0; }
  int EraseTable(int) override { return 0; }
  int DownloadTable(int, int, char*) override { return 0; }
  int UploadTable(int, int, const char*) override { return 0; }
  int ConfigDepartment(bool, int32_t, char*, int64_t*, int64_t*, int32_t*, int32_t*, uint8_t*,
                       bool*, bool*, bool*) override {
    return 0;
  }
  int ConfigDepartmentEx(bool, int32_t, char*, int64_t*, int64_t*, int32_t*, int32_t*, uint8_t*,
                         bool*, bool*, bool*, bool*) override {
    return 0;
  }
  int ConfigGroup(bool, int, char*, char*, int*, int*) override { return 0; }
  int ConfigKeyboard(bool, uint8_t, uint8_t*, int8_t*, char*, uint16_t*) override { return 0; }
  int ConfigSubtender(bool, int32_t, uint8_t*, char*, uint8_t*, uint32_t*, uint8_t*) override {
    return 0;
  }
  int GetHeaderLine(int, char*) override { return 0; }
  int KeyCodeInput(const char*, const char*, const char*, uint8_t) override { return 0; }
  int PrintZReportEx(bool) override { return 0; }
  int DiagnosticsRequest(int, bool, int) override { return 0; }
  int DirectIO(int, int*, char*) override { return 0; }
  int PrintXReportEx(int32_t, bool, const char*, const char*, int32_t) override { return 0; }
  int FiscalReportMessageEx(int32_t, int32_t, int32_t, uint8_t, uint8_t, uint32_t, uint32_t,
                            const char*, const char*, const char*, const char*, int32_t) override {
    return 0;
  }
  int PeriodicReportMessageEx(int32_t, int32_t, const char*, const char*, int32_t, bool) override {
    return 0;
  }
  int TelematicDocument(uint32_t, uint8_t, uint8_t, int32_t, int32_t, int32_t, int32_t,
                        const char*) override {
    return 0;
  }
  void LogTrace(const char*) override {}
  void LogError(const char*) override {}
  void set_wait_event(Event*) override {}
  void set_wait_result_code(int) override {}
};
