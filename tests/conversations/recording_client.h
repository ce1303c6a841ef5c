// The device client of the conversations: every operation of RtfClientInterface, each
// written down with its arguments and answered by a CallBook.
//
// What travels from the library to the client is shown as an argument; what a pointer
// takes back is an out-parameter of the answer, in the order of the declaration. GetData,
// DirectIO and ZupEcrCmd have pointers that are read too: these are both. The fields of the
// Config operations are arguments when they write, out-parameters when they read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

#include "call_slip.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace conversation {

// Makes the call that was taken down on another device; its result, 0 without one.
using Forward = std::function<int(RtfClientInterface& device)>;

// Takes down calls and answers them.
class CallBook {
 public:
  virtual ~CallBook() = default;
  // The operation's result; the slip's pointers are filled from the answer, or by the device
  // that the call is forwarded to. Operations without a result drop it.
  virtual int Answer(const std::string& name, const CallSlip& slip, const Forward& forward) = 0;
};

class RecordingClient : public RtfClientInterface {
 public:
  // The book outlives the client.
  explicit RecordingClient(CallBook& book) : book_(book) {}

  bool GetClaimed() override { return Call("GetClaimed", &RtfClientInterface::GetClaimed) != 0; }
  bool GetDeviceEnabled() override {
    return Call("GetDeviceEnabled", &RtfClientInterface::GetDeviceEnabled) != 0;
  }
  int SetDeviceEnabled(bool enabled) override {
    return Call("SetDeviceEnabled", &RtfClientInterface::SetDeviceEnabled, enabled);
  }
  int GetState() override { return Call("GetState", &RtfClientInterface::GetState); }
  int GetIntProperty(int property, int* value) override {
    return Call("GetIntProperty", &RtfClientInterface::GetIntProperty, property, value);
  }
  int SetIntProperty(int property, int value) override {
    return Call("SetIntProperty", &RtfClientInterface::SetIntProperty, property, value);
  }
  int GetStringProperty(int property, char* value) override {
    return Call("GetStringProperty", &RtfClientInterface::GetStringProperty, property, value);
  }
  int SetStringProperty(int property, const char* value) override {
    return Call("SetStringProperty", &RtfClientInterface::SetStringProperty, property, value);
  }
  int GetDataInternal(int item, char* text) override {
    return Call("GetDataInternal", &RtfClientInterface::GetDataInternal, item, text);
  }
  int SetDataInternal(int item, const char* text) override {
    return Call("SetDataInternal", &RtfClientInterface::SetDataInternal, item, text);
  }
  int Close() override { return Call("Close", &RtfClientInterface::Close); }
  int Claim(int timeout) override { return Call("Claim", &RtfClientInterface::Claim, timeout); }
  int Release() override { return Call("Release", &RtfClientInterface::Release); }
  int CheckHealth(int level) override {
    return Call("CheckHealth", &RtfClientInterface::CheckHealth, level);
  }
  int ClearOutput() override { return Call("ClearOutput", &RtfClientInterface::ClearOutput); }
  int CompareFirmwareVersion(const char* firmware_file, int* result) override {
    return Call("CompareFirmwareVersion", &RtfClientInterface::CompareFirmwareVersion,
                firmware_file, result);
  }
  int ResetStatistics(const char* statistics) override {
    return Call("ResetStatistics", &RtfClientInterface::ResetStatistics, statistics);
  }
  int RetrieveStatistics(const char* statistics) override {
    return Call("RetrieveStatistics", &RtfClientInterface::RetrieveStatistics, statistics);
  }
  int UpdateFirmware(const char* firmware_file) override {
    return Call("UpdateFirmware", &RtfClientInterface::UpdateFirmware, firmware_file);
  }
  int UpdateStatistics(const char* statistics) override {
    return Call("UpdateStatistics", &RtfClientInterface::UpdateStatistics, statistics);
  }
  int GetVatEntryExtended(int vat_id, int optional_args, char* vat_rate) override {
    return Call("GetVatEntryExtended", &RtfClientInterface::GetVatEntryExtended, vat_id,
                optional_args, vat_rate);
  }
  int PrintBarcode(const char* tipo, const char* scale, const char* align, const char* textPosition,
                   const char* data, uint8_t cutMode) override {
    return Call("PrintBarcode", &RtfClientInterface::PrintBarcode, tipo, scale, align, textPosition,
                data, cutMode);
  }
  int PrintBarcodeEx(const char* tipo, const char* scale, const char* align,
                     const char* textPosition, const char* data, uint8_t cutMode,
                     bool code39checksum) override {
    return Call("PrintBarcodeEx", &RtfClientInterface::PrintBarcodeEx, tipo, scale, align,
                textPosition, data, cutMode, code39checksum);
  }
  int InitJournal() override { return Call("InitJournal", &RtfClientInterface::InitJournal); }
  int BeginDocInvoice(const char* head1, const char* head2, const char* head3, const char* head4,
                      const char* head5) override {
    return Call("BeginDocInvoice", &RtfClientInterface::BeginDocInvoice, head1, head2, head3, head4,
                head5);
  }
  int BeginDocInvoiceOppositionJurisprudence(const char* head1, const char* head2,
                                             const char* head3, const char* head4,
                                             const char* head5, bool opposition) override {
    return Call("BeginDocInvoiceOppositionJurisprudence",
                &RtfClientInterface::BeginDocInvoiceOppositionJurisprudence, head1, head2, head3,
                head4, head5, opposition);
  }
  int BeginDocRefund(int number, int zNumber, const char* date) override {
    return Call("BeginDocRefund", &RtfClientInterface::BeginDocRefund, number, zNumber, date);
  }
  int BeginDocCancel(int number, int zNumber, const char* date, bool automatic) override {
    return Call("BeginDocCancel", &RtfClientInterface::BeginDocCancel, number, zNumber, date,
                automatic);
  }
  int BeginDocTelematicRefund(int number, int zNumber, const char* date,
                              const char* matricola) override {
    return Call("BeginDocTelematicRefund", &RtfClientInterface::BeginDocTelematicRefund, number,
                zNumber, date, matricola);
  }
  int BeginDocTelematicCancel(int number, int zNumber, const char* date, bool automatic,
                              const char* text) override {
    return Call("BeginDocTelematicCancel", &RtfClientInterface::BeginDocTelematicCancel, number,
                zNumber, date, automatic, text);
  }
  int BeginDocRefundEx(int number, int zNumber, const char* date, bool automatic) override {
    return Call("BeginDocRefundEx", &RtfClientInterface::BeginDocRefundEx, number, zNumber, date,
                automatic);
  }
  int SendTelematicSummary() override {
    return Call("SendTelematicSummary", &RtfClientInterface::SendTelematicSummary);
  }
  int ExportTelematicSummary(const char* file) override {
    return Call("ExportTelematicSummary", &RtfClientInterface::ExportTelematicSummary, file);
  }
  int SaveTelematicSummary(int from_z, int to_z, const char* file) override {
    return Call("SaveTelematicSummary", &RtfClientInterface::SaveTelematicSummary, from_z, to_z,
                file);
  }
  int SaveTelematicSummaryEx(int from_z, int to_z, const char* file, int options) override {
    return Call("SaveTelematicSummaryEx", &RtfClientInterface::SaveTelematicSummaryEx, from_z, to_z,
                file, options);
  }
  int PrintBitmap(int ngraex, int cutMode) override {
    return Call("PrintBitmap", &RtfClientInterface::PrintBitmap, ngraex, cutMode);
  }
  int SelectBitmap(int number, int position) override {
    return Call("SelectBitmap", &RtfClientInterface::SelectBitmap, number, position);
  }
  int ProcessEJournalReportByDate(const char* from_date, const char* to_date, const char* file,
                                  const char* format) override {
    return Call("ProcessEJournalReportByDate", &RtfClientInterface::ProcessEJournalReportByDate,
                from_date, to_date, file, format);
  }
  int ProcessEJournalReportByZNumber(int from_z, int to_z, const char* file,
                                     const char* format) override {
    return Call("ProcessEJournalReportByZNumber",
                &RtfClientInterface::ProcessEJournalReportByZNumber, from_z, to_z, file, format);
  }
  int ProcessEJournalReportByDateZNumber(const char* from_date, const char* to_date, int from_z,
                                         int to_z, const char* file, const char* format) override {
    return Call("ProcessEJournalReportByDateZNumber",
                &RtfClientInterface::ProcessEJournalReportByDateZNumber, from_date, to_date, from_z,
                to_z, file, format);
  }
  int ProcessEJournalReportByDateNumber(const char* from_date, const char* to_date, int from_number,
                                        int to_number, const char* file,
                                        const char* format) override {
    return Call("ProcessEJournalReportByDateNumber",
                &RtfClientInterface::ProcessEJournalReportByDateNumber, from_date, to_date,
                from_number, to_number, file, format);
  }
  int ProcessEJournalReportByDateNumberDocType(const char* from_date, const char* to_date,
                                               int from_number, int to_number, int document_type,
                                               const char* file, const char* format) override {
    return Call("ProcessEJournalReportByDateNumberDocType",
                &RtfClientInterface::ProcessEJournalReportByDateNumberDocType, from_date, to_date,
                from_number, to_number, document_type, file, format);
  }
  int ProcessEJournalReportGlobal(const char* file, const char* format) override {
    return Call("ProcessEJournalReportGlobal", &RtfClientInterface::ProcessEJournalReportGlobal,
                file, format);
  }
  int ProgramGRC(uint8_t ngraex, const char* file, bool permanent) override {
    return Call("ProgramGRC", &RtfClientInterface::ProgramGRC, ngraex, file, permanent);
  }
  int EraseLogoArchive() override {
    return Call("EraseLogoArchive", &RtfClientInterface::EraseLogoArchive);
  }
  int BeginAdditionalTrailer() override {
    return Call("BeginAdditionalTrailer", &RtfClientInterface::BeginAdditionalTrailer);
  }
  int PrintPaperCut() override { return Call("PrintPaperCut", &RtfClientInterface::PrintPaperCut); }
  int SetCurrency(int currency) override {
    return Call("SetCurrency", &RtfClientInterface::SetCurrency, currency);
  }
  int SetDate(const char* date) override {
    return Call("SetDate", &RtfClientInterface::SetDate, date);
  }
  int SetHeaderLine(int line, const char* text, bool double_width) override {
    return Call("SetHeaderLine", &RtfClientInterface::SetHeaderLine, line, text, double_width);
  }
  int SetPOSID(const char* pos_id, const char* cashier_id) override {
    return Call("SetPOSID", &RtfClientInterface::SetPOSID, pos_id, cashier_id);
  }
  int SetStoreFiscalID(const char* fiscal_id) override {
    return Call("SetStoreFiscalID", &RtfClientInterface::SetStoreFiscalID, fiscal_id);
  }
  int SetTrailerLine(int line, const char* text, bool double_width) override {
    return Call("SetTrailerLine", &RtfClientInterface::SetTrailerLine, line, text, double_width);
  }
  int SetVatTable() override { return Call("SetVatTable", &RtfClientInterface::SetVatTable); }
  int SetVatValue(int vat_id, const char* vat_rate) override {
    return Call("SetVatValue", &RtfClientInterface::SetVatValue, vat_id, vat_rate);
  }
  int BeginFiscalReceipt(bool print_header) override {
    return Call("BeginFiscalReceipt", &RtfClientInterface::BeginFiscalReceipt, print_header);
  }
  int EndFiscalReceipt(bool print_header) override {
    return Call("EndFiscalReceipt", &RtfClientInterface::EndFiscalReceipt, print_header);
  }
  int PrintDuplicateReceipt() override {
    return Call("PrintDuplicateReceipt", &RtfClientInterface::PrintDuplicateReceipt);
  }
  int PrintRecCash(long amount) override {
    return Call("PrintRecCash", &RtfClientInterface::PrintRecCash, amount);
  }
  int PrintRecItem(const char* description, long price, int quantity, int vatInfo, long unitPrice,
                   const char* unitName) override {
    return Call("PrintRecItem", &RtfClientInterface::PrintRecItem, description, price, quantity,
                vatInfo, unitPrice, unitName);
  }
  int PrintRecItemVoid(const char* description, long price, int quantity, int vatInfo,
                       long unitPrice, const char* unitName) override {
    return Call("PrintRecItemVoid", &RtfClientInterface::PrintRecItemVoid, description, price,
                quantity, vatInfo, unitPrice, unitName);
  }
  int PrintRecItemAdjustment(int adjustment_type, const char* description, int64_t amount,
                             int vatInfo) override {
    return Call("PrintRecItemAdjustment", &RtfClientInterface::PrintRecItemAdjustment,
                adjustment_type, description, amount, vatInfo);
  }
  int PrintRecItemAdjustmentVoid(int adjustment_type, const char* description, int64_t amount,
                                 int vatInfo) override {
    return Call("PrintRecItemAdjustmentVoid", &RtfClientInterface::PrintRecItemAdjustmentVoid,
                adjustment_type, description, amount, vatInfo);
  }
  int PrintRecItemFuel(const char* description, long price, int quantity, int vatInfo,
                       long unitPrice, const char* unitName, long special_tax,
                       const char* special_tax_name) override {
    return Call("PrintRecItemFuel", &RtfClientInterface::PrintRecItemFuel, description, price,
                quantity, vatInfo, unitPrice, unitName, special_tax, special_tax_name);
  }
  int PrintRecItemFuelVoid(const char* description, long price, int vatInfo,
                           long special_tax) override {
    return Call("PrintRecItemFuelVoid", &RtfClientInterface::PrintRecItemFuelVoid, description,
                price, vatInfo, special_tax);
  }
  int PrintRecItemRefund(const char* description, long price, int quantity, int vatInfo,
                         long unitPrice, const char* unitName) override {
    return Call("PrintRecItemRefund", &RtfClientInterface::PrintRecItemRefund, description, price,
                quantity, vatInfo, unitPrice, unitName);
  }
  int PrintRecItemRefundVoid(const char* description, long price, int quantity, int vatInfo,
                             long unitPrice, const char* unitName) override {
    return Call("PrintRecItemRefundVoid", &RtfClientInterface::PrintRecItemRefundVoid, description,
                price, quantity, vatInfo, unitPrice, unitName);
  }
  int PrintRecMessage(const char* message) override {
    return Call("PrintRecMessage", &RtfClientInterface::PrintRecMessage, message);
  }
  int PrintRecNotPaid(const char* description, long amount) override {
    return Call("PrintRecNotPaid", &RtfClientInterface::PrintRecNotPaid, description, amount);
  }
  int PrintRecPackageAdjustment(int adjustment_type, const char* description,
                                const char* vat_adjustment) override {
    return Call("PrintRecPackageAdjustment", &RtfClientInterface::PrintRecPackageAdjustment,
                adjustment_type, description, vat_adjustment);
  }
  int PrintRecPackageAdjustVoid(int adjustment_type, const char* vat_adjustment) override {
    return Call("PrintRecPackageAdjustVoid", &RtfClientInterface::PrintRecPackageAdjustVoid,
                adjustment_type, vat_adjustment);
  }
  int PrintRecRefund(const char* description, long amount, int vatInfo) override {
    return Call("PrintRecRefund", &RtfClientInterface::PrintRecRefund, description, amount,
                vatInfo);
  }
  int PrintRecRefundVoid(const char* description, long amount, int vatInfo) override {
    return Call("PrintRecRefundVoid", &RtfClientInterface::PrintRecRefundVoid, description, amount,
                vatInfo);
  }
  int PrintRecSubtotal(int64_t amount) override {
    return Call("PrintRecSubtotal", &RtfClientInterface::PrintRecSubtotal, amount);
  }
  int PrintRecSubtotalEx(int64_t iSubTotal, bool check) override {
    return Call("PrintRecSubtotalEx", &RtfClientInterface::PrintRecSubtotalEx, iSubTotal, check);
  }
  int PrintRecSubtotalAdjustment(int adjustment_type, const char* description,
                                 int64_t amount) override {
    return Call("PrintRecSubtotalAdjustment", &RtfClientInterface::PrintRecSubtotalAdjustment,
                adjustment_type, description, amount);
  }
  int PrintRecSubtotalAdjustVoid(int adjustment_type, int64_t amount) override {
    return Call("PrintRecSubtotalAdjustVoid", &RtfClientInterface::PrintRecSubtotalAdjustVoid,
                adjustment_type, amount);
  }
  int PrintRecTaxID(const char* tax_id) override {
    return Call("PrintRecTaxID", &RtfClientInterface::PrintRecTaxID, tax_id);
  }
  int PrintRecTotal(int64_t total, int64_t payment, const char* description) override {
    return Call("PrintRecTotal", &RtfClientInterface::PrintRecTotal, total, payment, description);
  }
  int PrintRecVoid(const char* description) override {
    return Call("PrintRecVoid", &RtfClientInterface::PrintRecVoid, description);
  }
  int PrintRecVoidItem(const char* description, long amount, int quantity, int adjustment_type,
                       long adjustment, int vatInfo) override {
    return Call("PrintRecVoidItem", &RtfClientInterface::PrintRecVoidItem, description, amount,
                quantity, adjustment_type, adjustment, vatInfo);
  }
  int TelematicCensus() override {
    return Call("TelematicCensus", &RtfClientInterface::TelematicCensus);
  }
  int TelematicActivate(const char* vat_number, const char* tax_code, const char* user,
                        const char* password, int32_t ateco, const char* date) override {
    return Call("TelematicActivate", &RtfClientInterface::TelematicActivate, vat_number, tax_code,
                user, password, ateco, date);
  }
  int TelematicCommissioning() override {
    return Call("TelematicCommissioning", &RtfClientInterface::TelematicCommissioning);
  }
  int ZupEcrCmd(const char* command, int* length, char* answer) override {
    return Call("ZupEcrCmd", &RtfClientInterface::ZupEcrCmd, command, InOut(length), answer);
  }
  int PrintRecItemEx(int pfl_item_type, const char* description, int64_t price, int quantity,
                     int vatInfo, int64_t unitPrice, const char* unitName, int departmentInfo,
                     bool print_now, const char* pluCode) override {
    return Call("PrintRecItemEx", &RtfClientInterface::PrintRecItemEx, pfl_item_type, description,
                price, quantity, vatInfo, unitPrice, unitName, departmentInfo, print_now, pluCode);
  }
  int PrintRecItemAdjustmentEx(int adjustment_type, const char* description, int64_t amount,
                               int vatInfo, int departmentInfo) override {
    return Call("PrintRecItemAdjustmentEx", &RtfClientInterface::PrintRecItemAdjustmentEx,
                adjustment_type, description, amount, vatInfo, departmentInfo);
  }
  int PrintRecItemAdjustmentEx2(int adjustment_type, const char* description, int64_t amount,
                                int vatInfo, int departmentInfo, bool is_void) override {
    return Call("PrintRecItemAdjustmentEx2", &RtfClientInterface::PrintRecItemAdjustmentEx2,
                adjustment_type, description, amount, vatInfo, departmentInfo, is_void);
  }
  int PrintRecTotalEx(int64_t payment, const char* description, bool auto_payment) override {
    return Call("PrintRecTotalEx", &RtfClientInterface::PrintRecTotalEx, payment, description,
                auto_payment);
  }
  int BeginFiscalDocument(int amount) override {
    return Call("BeginFiscalDocument", &RtfClientInterface::BeginFiscalDocument, amount);
  }
  int EndFiscalDocument() override {
    return Call("EndFiscalDocument", &RtfClientInterface::EndFiscalDocument);
  }
  int PrintFiscalDocumentLine(const char* line) override {
    return Call("PrintFiscalDocumentLine", &RtfClientInterface::PrintFiscalDocumentLine, line);
  }
  int BeginItemList(int vat_id) override {
    return Call("BeginItemList", &RtfClientInterface::BeginItemList, vat_id);
  }
  int EndItemList() override { return Call("EndItemList", &RtfClientInterface::EndItemList); }
  int VerifyItem(const char* item_name, int vat_id) override {
    return Call("VerifyItem", &RtfClientInterface::VerifyItem, item_name, vat_id);
  }
  int PrintPeriodicTotalsReport(const char* from_date, const char* to_date) override {
    return Call("PrintPeriodicTotalsReport", &RtfClientInterface::PrintPeriodicTotalsReport,
                from_date, to_date);
  }
  int PrintPowerLossReport() override {
    return Call("PrintPowerLossReport", &RtfClientInterface::PrintPowerLossReport);
  }
  int PrintReport(int report_type, const char* from, const char* to) override {
    return Call("PrintReport", &RtfClientInterface::PrintReport, report_type, from, to);
  }
  int PrintXReport() override { return Call("PrintXReport", &RtfClientInterface::PrintXReport); }
  int PrintZReport() override { return Call("PrintZReport", &RtfClientInterface::PrintZReport); }
  int BeginInsertion(int timeout) override {
    return Call("BeginInsertion", &RtfClientInterface::BeginInsertion, timeout);
  }
  int BeginRemoval(int timeout) override {
    return Call("BeginRemoval", &RtfClientInterface::BeginRemoval, timeout);
  }
  int EndInsertion() override { return Call("EndInsertion", &RtfClientInterface::EndInsertion); }
  int EndRemoval() override { return Call("EndRemoval", &RtfClientInterface::EndRemoval); }
  int BeginFixedOutput(int station, int document_type) override {
    return Call("BeginFixedOutput", &RtfClientInterface::BeginFixedOutput, station, document_type);
  }
  int BeginNonFiscal() override {
    return Call("BeginNonFiscal", &RtfClientInterface::BeginNonFiscal);
  }
  int BeginNonFiscalJournal(bool saveOnJournal) override {
    return Call("BeginNonFiscalJournal", &RtfClientInterface::BeginNonFiscalJournal, saveOnJournal);
  }
  int BeginTraining() override { return Call("BeginTraining", &RtfClientInterface::BeginTraining); }
  int EndFixedOutput() override {
    return Call("EndFixedOutput", &RtfClientInterface::EndFixedOutput);
  }
  int EndNonFiscal() override { return Call("EndNonFiscal", &RtfClientInterface::EndNonFiscal); }
  int EndTraining() override { return Call("EndTraining", &RtfClientInterface::EndTraining); }
  int PrintFixedOutput(int document_type, int line, const char* data) override {
    return Call("PrintFixedOutput", &RtfClientInterface::PrintFixedOutput, document_type, line,
                data);
  }
  int PrintNormal(int station, const char* data) override {
    return Call("PrintNormal", &RtfClientInterface::PrintNormal, station, data);
  }
  int GetData(int selector, int* number, char* text) override {
    return Call("GetData", &RtfClientInterface::GetData, selector, InOut(number), text);
  }
  int GetDate(char* date) override { return Call("GetDate", &RtfClientInterface::GetDate, date); }
  int GetTotalizer(int vat_id, int selector, char* text) override {
    return Call("GetTotalizer", &RtfClientInterface::GetTotalizer, vat_id, selector, text);
  }
  int GetVatEntry(int vat_id, int optional_args, int* vat_rate) override {
    return Call("GetVatEntry", &RtfClientInterface::GetVatEntry, vat_id, optional_args, vat_rate);
  }
  int ClearError() override { return Call("ClearError", &RtfClientInterface::ClearError); }
  int ResetPrn() override { return Call("ResetPrn", &RtfClientInterface::ResetPrn); }
  int OpenDrawer() override { return Call("OpenDrawer", &RtfClientInterface::OpenDrawer); }
  int WaitForDrawerClose(int32_t beep_timeout, int32_t beep_frequency, int32_t beep_duration,
                         int32_t beep_delay) override {
    return Call("WaitForDrawerClose", &RtfClientInterface::WaitForDrawerClose, beep_timeout,
                beep_frequency, beep_duration, beep_delay);
  }
  int ClearText() override { return Call("ClearText", &RtfClientInterface::ClearText); }
  int DisplayText(const char* text, int attribute) override {
    return Call("DisplayText", &RtfClientInterface::DisplayText, text, attribute);
  }
  int DisplayTextAt(int row, int column, const char* text, int attribute) override {
    return Call("DisplayTextAt", &RtfClientInterface::DisplayTextAt, row, column, text, attribute);
  }
  int DisplayTextEx(const char* text, int attribute, int display, int timeout,
                    bool clear) override {
    return Call("DisplayTextEx", &RtfClientInterface::DisplayTextEx, text, attribute, display,
                timeout, clear);
  }
  int DisplayTextAtEx(int row, int column, const char* text, int attribute, int display,
                      int timeout, bool clear) override {
    return Call("DisplayTextAtEx", &RtfClientInterface::DisplayTextAtEx, row, column, text,
                attribute, display, timeout, clear);
  }
  int GetTotalizerExtend(int vat_id, int totalizer_type, int totalizer, char* data) override {
    return Call("GetTotalizerExtend", &RtfClientInterface::GetTotalizerExtend, vat_id,
                totalizer_type, totalizer, data);
  }
  int ProgramFirmware(const char* file) override {
    return Call("ProgramFirmware", &RtfClientInterface::ProgramFirmware, file);
  }
  int EraseTable(int table) override {
    return Call("EraseTable", &RtfClientInterface::EraseTable, table);
  }
  int DownloadTable(int selector, int index, char* data_row) override {
    return Call("DownloadTable", &RtfClientInterface::DownloadTable, selector, index, data_row);
  }
  int UploadTable(int table, int row_type, const char* data_row) override {
    return Call("UploadTable", &RtfClientInterface::UploadTable, table, row_type, data_row);
  }
  int ConfigDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                       bool* single_shoot, bool* allow_discount, bool* force_description) override {
    return Call("ConfigDepartment", &RtfClientInterface::ConfigDepartment, write, dep_id,
                Field(write, description), Field(write, price), Field(write, max_price),
                Field(write, quantity), Field(write, vat_id), Field(write, group_id),
                Field(write, single_shoot), Field(write, allow_discount),
                Field(write, force_description));
  }
  int ConfigDepartmentEx(bool write, int32_t dep_id, char* description, int64_t* price,
                         int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                         bool* single_shoot, bool* allow_discount, bool* force_description,
                         bool* is_service) override {
    return Call("ConfigDepartmentEx", &RtfClientInterface::ConfigDepartmentEx, write, dep_id,
                Field(write, description), Field(write, price), Field(write, max_price),
                Field(write, quantity), Field(write, vat_id), Field(write, group_id),
                Field(write, single_shoot), Field(write, allow_discount),
                Field(write, force_description), Field(write, is_service));
  }
  int ConfigGroup(bool write, int index, char* description, char* operator_password,
                  int* operator_flags, int* operator_options) override {
    return Call("ConfigGroup", &RtfClientInterface::ConfigGroup, write, index,
                Field(write, description), Field(write, operator_password),
                Field(write, operator_flags), Field(write, operator_options));
  }
  int ConfigKeyboard(bool write, uint8_t key_pos, uint8_t* key_code, int8_t* keyboard_type,
                     char* macro, uint16_t* macro_size) override {
    return Call("ConfigKeyboard", &RtfClientInterface::ConfigKeyboard, write, key_pos,
                Field(write, key_code), Field(write, keyboard_type), Field(write, macro),
                Field(write, macro_size));
  }
  int ConfigSubtender(bool write, int32_t subtender_id, uint8_t* tender_type, char* description,
                      uint8_t* flags, uint32_t* preset_value, uint8_t* max_digits) override {
    return Call("ConfigSubtender", &RtfClientInterface::ConfigSubtender, write, subtender_id,
                Field(write, tender_type), Field(write, description), Field(write, flags),
                Field(write, preset_value), Field(write, max_digits));
  }
  int GetHeaderLine(int line, char* text) override {
    return Call("GetHeaderLine", &RtfClientInterface::GetHeaderLine, line, text);
  }
  int KeyCodeInput(const char* keys_code_numerics, const char* keys_code_alfa_fp,
                   const char* key_code_alfa_lcd, uint8_t key_code_terminator) override {
    return Call("KeyCodeInput", &RtfClientInterface::KeyCodeInput, keys_code_numerics,
                keys_code_alfa_fp, key_code_alfa_lcd, key_code_terminator);
  }
  int PrintZReportEx(bool send) override {
    return Call("PrintZReportEx", &RtfClientInterface::PrintZReportEx, send);
  }
  int DiagnosticsRequest(int test, bool start, int options) override {
    return Call("DiagnosticsRequest", &RtfClientInterface::DiagnosticsRequest, test, start,
                options);
  }
  int DirectIO(int cmd, int* optarg, char* data) override {
    return Call("DirectIO", &RtfClientInterface::DirectIO, cmd, InOut(optarg), InOut(data));
  }
  int PrintXReportEx(int32_t report_type, bool clear, const char* from, const char* to,
                     int32_t options) override {
    return Call("PrintXReportEx", &RtfClientInterface::PrintXReportEx, report_type, clear, from, to,
                options);
  }
  int FiscalReportMessageEx(int32_t report_type, int32_t from_number, int32_t to_number,
                            uint8_t document_type, uint8_t outputs, uint32_t from_z, uint32_t to_z,
                            const char* from_date, const char* to_date, const char* file,
                            const char* format, int32_t options) override {
    return Call("FiscalReportMessageEx", &RtfClientInterface::FiscalReportMessageEx, report_type,
                from_number, to_number, document_type, outputs, from_z, to_z, from_date, to_date,
                file, format, options);
  }
  int PeriodicReportMessageEx(int32_t report_type, int32_t options, const char* from,
                              const char* to, int32_t output, bool clear) override {
    return Call("PeriodicReportMessageEx", &RtfClientInterface::PeriodicReportMessageEx,
                report_type, options, from, to, output, clear);
  }
  int TelematicDocument(uint32_t device, uint8_t operation, uint8_t document_type, int32_t from_z,
                        int32_t from_number, int32_t to_z, int32_t to_number,
                        const char* file) override {
    return Call("TelematicDocument", &RtfClientInterface::TelematicDocument, device, operation,
                document_type, from_z, from_number, to_z, to_number, file);
  }
  void LogTrace(const char* line) override {
    Call("LogTrace", &RtfClientInterface::LogTrace, line);
  }
  void LogError(const char* line) override {
    Call("LogError", &RtfClientInterface::LogError, line);
  }
  void set_wait_event(Event* event) override {
    Call("set_wait_event", &RtfClientInterface::set_wait_event, event);
  }
  void set_wait_result_code(int code) override {
    Call("set_wait_result_code", &RtfClientInterface::set_wait_result_code, code);
  }

 private:
  template <typename Result, typename... Parameters, typename... Arguments>
  int Call(const char* name, Result (RtfClientInterface::*operation)(Parameters...),
           Arguments... arguments) {
    return book_.Answer(name, CallSlip(arguments...), [&](RtfClientInterface& device) {
      if constexpr (std::is_void_v<Result>) {
        (device.*operation)(Plain(arguments)...);
        return 0;
      } else {
        return static_cast<int>((device.*operation)(Plain(arguments)...));
      }
    });
  }

  CallBook& book_;
};

}  // namespace conversation
