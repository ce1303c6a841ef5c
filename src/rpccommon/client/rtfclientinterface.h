// RtfClientInterface: the abstract fiscal device client, the translator's only road
// to the cash register. The host constructs a client, owns it and hands its pointer
// to the library; the library calls it synchronously on the caller's thread and never
// deletes it. The operations follow the UnifiedPOS fiscal printer, with the extensions
// of a telematic register.
//
// The order of the operations is part of the contract: hosts are built apart from the
// library, and the two meet in the virtual table.
//
// Units: amounts are ten-thousandths of the currency (123400 is 12.34), percentages
// ten-thousandths of a percent (220000 is 22 %), quantities thousandths of a piece
// (1500 is 1.5).
//
// Results: 0 (RTF_SUCCESS), or one of the RTF_E_*, RTF_EFPTR_* and further codes of
// rtfconst.h and rtffptrconst.h. A client never answers -1: the translator takes that
// value for a missing client.
#pragma once

#include <cstdint>

class Event;

class RtfClientInterface {
 public:
  RtfClientInterface() = default;
  virtual ~RtfClientInterface() = default;

  // --- Device state and properties
  virtual bool GetClaimed() = 0;
  virtual bool GetDeviceEnabled() = 0;
  virtual int SetDeviceEnabled(bool enabled) = 0;
  // One of RTF_S_CLOSED, RTF_S_IDLE, RTF_S_BUSY, RTF_S_ERROR.
  virtual int GetState() = 0;
  virtual int GetIntProperty(int property, int* value) = 0;
  virtual int SetIntProperty(int property, int value) = 0;
  // The size of the buffer is not passed: the caller provides for the longest text.
  virtual int GetStringProperty(int property, char* value) = 0;
  virtual int SetStringProperty(int property, const char* value) = 0;
  // Reads a data item, one of the device's own parameters, as decimal text. At most
  // 50 characters with the closing NUL go into the buffer.
  virtual int GetDataInternal(int item, char* text) = 0;
  // Writes a data item.
  virtual int SetDataInternal(int item, const char* text) = 0;

  // --- Service control and statistics
  virtual int Close() = 0;
  virtual int Claim(int timeout) = 0;
  virtual int Release() = 0;
  virtual int CheckHealth(int level) = 0;
  virtual int ClearOutput() = 0;
  virtual int CompareFirmwareVersion(const char* firmware_file, int* result) = 0;
  virtual int ResetStatistics(const char* statistics) = 0;
  virtual int RetrieveStatistics(const char* statistics) = 0;
  virtual int UpdateFirmware(const char* firmware_file) = 0;
  virtual int UpdateStatistics(const char* statistics) = 0;

  // --- Extensions for printing, documents and the telematic summary
  virtual int GetVatEntryExtended(int vat_id, int optional_args, char* vat_rate) = 0;
  virtual int PrintBarcode(const char* tipo, const char* scale, const char* align, const char* textPosition, const char* data, uint8_t cutMode) = 0;
  virtual int PrintBarcodeEx(const char* tipo, const char* scale, const char* align, const char* textPosition, const char* data, uint8_t cutMode, bool code39checksum) = 0;
  virtual int InitJournal() = 0;
  virtual int BeginDocInvoice(const char* head1, const char* head2, const char* head3, const char* head4, const char* head5) = 0;
  virtual int BeginDocInvoiceOppositionJurisprudence(const char* head1, const char* head2, const char* head3, const char* head4, const char* head5, bool opposition) = 0;
  virtual int BeginDocRefund(int number, int zNumber, const char* date) = 0;
  virtual int BeginDocCancel(int number, int zNumber, const char* date, bool automatic) = 0;
  virtual int BeginDocTelematicRefund(int number, int zNumber, const char* date, const char* matricola) = 0;
  virtual int BeginDocTelematicCancel(int number, int zNumber, const char* date, bool automatic, const char* text) = 0;
  virtual int BeginDocRefundEx(int number, int zNumber, const char* date, bool automatic) = 0;
  virtual int SendTelematicSummary() = 0;
  virtual int ExportTelematicSummary(const char* file) = 0;
  virtual int SaveTelematicSummary(int from_z, int to_z, const char* file) = 0;
  virtual int SaveTelematicSummaryEx(int from_z, int to_z, const char* file, int options) = 0;
  virtual int PrintBitmap(int ngraex, int cutMode) = 0;
  virtual int SelectBitmap(int number, int position) = 0;
  virtual int ProcessEJournalReportByDate(const char* from_date, const char* to_date, const char* file, const char* format) = 0;
  virtual int ProcessEJournalReportByZNumber(int from_z, int to_z, const char* file, const char* format) = 0;
  virtual int ProcessEJournalReportByDateZNumber(const char* from_date, const char* to_date, int from_z, int to_z, const char* file, const char* format) = 0;
  virtual int ProcessEJournalReportByDateNumber(const char* from_date, const char* to_date, int from_number, int to_number, const char* file, const char* format) = 0;
  virtual int ProcessEJournalReportByDateNumberDocType(const char* from_date, const char* to_date, int from_number, int to_number, int document_type, const char* file, const char* format) = 0;
  virtual int ProcessEJournalReportGlobal(const char* file, const char* format) = 0;
  virtual int ProgramGRC(uint8_t ngraex, const char* file, bool permanent) = 0;
  virtual int EraseLogoArchive() = 0;
  // Opens the part of a receipt behind its trailer without closing the receipt.
  virtual int BeginAdditionalTrailer() = 0;
  virtual int PrintPaperCut() = 0;

  // --- Set-up
  virtual int SetCurrency(int currency) = 0;
  virtual int SetDate(const char* date) = 0;
  virtual int SetHeaderLine(int line, const char* text, bool double_width) = 0;
  virtual int SetPOSID(const char* pos_id, const char* cashier_id) = 0;
  virtual int SetStoreFiscalID(const char* fiscal_id) = 0;
  virtual int SetTrailerLine(int line, const char* text, bool double_width) = 0;
  // Commits the rates that SetVatValue announced.
  virtual int SetVatTable() = 0;
  virtual int SetVatValue(int vat_id, const char* vat_rate) = 0;

  // --- Fiscal receipt
  virtual int BeginFiscalReceipt(bool print_header) = 0;
  virtual int EndFiscalReceipt(bool print_header) = 0;
  virtual int PrintDuplicateReceipt() = 0;
  virtual int PrintRecCash(long amount) = 0;
  virtual int PrintRecItem(const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName) = 0;
  virtual int PrintRecItemVoid(const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName) = 0;
  virtual int PrintRecItemAdjustment(int adjustment_type, const char* description, int64_t amount, int vatInfo) = 0;
  virtual int PrintRecItemAdjustmentVoid(int adjustment_type, const char* description, int64_t amount, int vatInfo) = 0;
  virtual int PrintRecItemFuel(const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName, long special_tax, const char* special_tax_name) = 0;
  virtual int PrintRecItemFuelVoid(const char* description, long price, int vatInfo, long special_tax) = 0;
  virtual int PrintRecItemRefund(const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName) = 0;
  virtual int PrintRecItemRefundVoid(const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName) = 0;
  // A text line inside a receipt.
  virtual int PrintRecMessage(const char* message) = 0;
  virtual int PrintRecNotPaid(const char* description, long amount) = 0;
  virtual int PrintRecPackageAdjustment(int adjustment_type, const char* description, const char* vat_adjustment) = 0;
  virtual int PrintRecPackageAdjustVoid(int adjustment_type, const char* vat_adjustment) = 0;
  virtual int PrintRecRefund(const char* description, long amount, int vatInfo) = 0;
  virtual int PrintRecRefundVoid(const char* description, long amount, int vatInfo) = 0;
  virtual int PrintRecSubtotal(int64_t amount) = 0;
  // (0, false) prints a subtotal; (amount, true) compares the subtotal with the amount
  // and answers RTF_EFPTR_FISCAL_TOTALS_ERROR when they differ.
  virtual int PrintRecSubtotalEx(int64_t iSubTotal, bool check) = 0;
  virtual int PrintRecSubtotalAdjustment(int adjustment_type, const char* description, int64_t amount) = 0;
  virtual int PrintRecSubtotalAdjustVoid(int adjustment_type, int64_t amount) = 0;
  virtual int PrintRecTaxID(const char* tax_id) = 0;
  virtual int PrintRecTotal(int64_t total, int64_t payment, const char* description) = 0;
  virtual int PrintRecVoid(const char* description) = 0;
  virtual int PrintRecVoidItem(const char* description, long amount, int quantity, int adjustment_type, long adjustment, int vatInfo) = 0;

  // --- Telematic set-up and the pass-through line
  virtual int TelematicCensus() = 0;
  virtual int TelematicActivate(const char* vat_number, const char* tax_code, const char* user, const char* password, int32_t ateco, const char* date) = 0;
  virtual int TelematicCommissioning() = 0;
  virtual int ZupEcrCmd(const char* command, int* length, char* answer) = 0;

  // --- Extended receipt operations
  // A line of the receipt. pfl_item_type is a PflItemType::Enum. price -1 takes the
  // price from the department or article; with a quantity, unitPrice counts. vatInfo and
  // departmentInfo take -1 for not given and -2 for the one of the last line.
  virtual int PrintRecItemEx(int pfl_item_type, const char* description, int64_t price, int quantity, int vatInfo, int64_t unitPrice, const char* unitName, int departmentInfo, bool print_now, const char* pluCode) = 0;
  // adjustment_type is one of RTF_FPTR_AT_*; amount is an amount or a percentage.
  virtual int PrintRecItemAdjustmentEx(int adjustment_type, const char* description, int64_t amount, int vatInfo, int departmentInfo) = 0;
  virtual int PrintRecItemAdjustmentEx2(int adjustment_type, const char* description, int64_t amount, int vatInfo, int departmentInfo, bool is_void) = 0;
  // Pays. description is the tender; with auto_payment the amount is the rest to pay.
  // A payment that covers the total ends the receipt.
  virtual int PrintRecTotalEx(int64_t payment, const char* description, bool auto_payment) = 0;

  // --- Fiscal documents and item lists
  virtual int BeginFiscalDocument(int amount) = 0;
  virtual int EndFiscalDocument() = 0;
  virtual int PrintFiscalDocumentLine(const char* line) = 0;
  virtual int BeginItemList(int vat_id) = 0;
  virtual int EndItemList() = 0;
  virtual int VerifyItem(const char* item_name, int vat_id) = 0;

  // --- Reports
  virtual int PrintPeriodicTotalsReport(const char* from_date, const char* to_date) = 0;
  virtual int PrintPowerLossReport() = 0;
  virtual int PrintReport(int report_type, const char* from, const char* to) = 0;
  virtual int PrintXReport() = 0;
  virtual int PrintZReport() = 0;

  // --- Slip handling
  virtual int BeginInsertion(int timeout) = 0;
  virtual int BeginRemoval(int timeout) = 0;
  virtual int EndInsertion() = 0;
  virtual int EndRemoval() = 0;

  // --- Non-fiscal printing
  virtual int BeginFixedOutput(int station, int document_type) = 0;
  virtual int BeginNonFiscal() = 0;
  virtual int BeginNonFiscalJournal(bool saveOnJournal) = 0;
  virtual int BeginTraining() = 0;
  virtual int EndFixedOutput() = 0;
  virtual int EndNonFiscal() = 0;
  virtual int EndTraining() = 0;
  virtual int PrintFixedOutput(int document_type, int line, const char* data) = 0;
  // station is one of RTF_FPTR_S_*.
  virtual int PrintNormal(int station, const char* data) = 0;

  // --- Reading
  // selector is one of RTF_FPTR_GD_*.
  virtual int GetData(int selector, int* number, char* text) = 0;
  virtual int GetDate(char* date) = 0;
  virtual int GetTotalizer(int vat_id, int selector, char* text) = 0;
  virtual int GetVatEntry(int vat_id, int optional_args, int* vat_rate) = 0;

  // --- Recovery, drawer and display
  virtual int ClearError() = 0;
  // Brings the printer back to its idle state; an open receipt is abandoned.
  virtual int ResetPrn() = 0;
  virtual int OpenDrawer() = 0;
  virtual int WaitForDrawerClose(int32_t beep_timeout, int32_t beep_frequency, int32_t beep_duration, int32_t beep_delay) = 0;
  virtual int ClearText() = 0;
  virtual int DisplayText(const char* text, int attribute) = 0;
  virtual int DisplayTextAt(int row, int column, const char* text, int attribute) = 0;
  virtual int DisplayTextEx(const char* text, int attribute, int display, int timeout, bool clear) = 0;
  virtual int DisplayTextAtEx(int row, int column, const char* text, int attribute, int display, int timeout, bool clear) = 0;

  // --- Machine data, keyboard and device reports
  // totalizer_type is one of RTF_FPTR_TT_*, totalizer one of RTF_FPTR_GT_*.
  virtual int GetTotalizerExtend(int vat_id, int totalizer_type, int totalizer, char* data) = 0;
  virtual int ProgramFirmware(const char* file) = 0;
  // Empties a table.
  virtual int EraseTable(int table) = 0;
  // Rows travel from the device to the host; row types are those of
  // ManagerDownloadTableRowType.
  virtual int DownloadTable(int selector, int index, char* data_row) = 0;
  // Rows travel from the host to the device.
  virtual int UploadTable(int table, int row_type, const char* data_row) = 0;
  // Table access: with write false the record is read into the arguments, with write
  // true it is written from them.
  virtual int ConfigDepartment(bool write, int32_t dep_id, char* description, int64_t* price, int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id, bool* single_shoot, bool* allow_discount, bool* force_description) = 0;
  virtual int ConfigDepartmentEx(bool write, int32_t dep_id, char* description, int64_t* price, int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id, bool* single_shoot, bool* allow_discount, bool* force_description, bool* is_service) = 0;
  virtual int ConfigGroup(bool write, int index, char* description, char* operator_password, int* operator_flags, int* operator_options) = 0;
  virtual int ConfigKeyboard(bool write, uint8_t key_pos, uint8_t* key_code, int8_t* keyboard_type, char* macro, uint16_t* macro_size) = 0;
  virtual int ConfigSubtender(bool write, int32_t subtender_id, uint8_t* tender_type, char* description, uint8_t* flags, uint32_t* preset_value, uint8_t* max_digits) = 0;
  virtual int GetHeaderLine(int line, char* text) = 0;
  // Plays digits (kNumber... bytes of FunctionCode::Enum) and alphanumeric input for the
  // printer and the display, then the terminator key.
  virtual int KeyCodeInput(const char* keys_code_numerics, const char* keys_code_alfa_fp, const char* key_code_alfa_lcd, uint8_t key_code_terminator) = 0;
  // Closes the day; send also asks for the telematic summary to be sent.
  virtual int PrintZReportEx(bool send) = 0;
  virtual int DiagnosticsRequest(int test, bool start, int options) = 0;
  // data holds 513 characters; its text is both input and output.
  virtual int DirectIO(int cmd, int* optarg, char* data) = 0;
  // outputs: bit 1 sends a report to the printer, bit 2 to the file.
  virtual int PrintXReportEx(int32_t kind, bool option, const char* format, const char* file, int32_t outputs) = 0;
  // Extracts of the fiscal memory and of the journal. criteria is one of RTF_FPTR_RT_ORDINAL,
  // RTF_FPTR_RT_DATE, RTF_FPTR_RT_EOD_ORDINAL, or 4 for dates with numbers; filter 65535 lets
  // every document pass; dates are DDMMYYYYHHMM; outputs as in PrintXReportEx.
  virtual int FiscalReportMessageEx(int32_t source, int32_t filter, int32_t criteria, uint8_t option1, uint8_t option2, uint32_t from_number, uint32_t to_number, const char* from_date, const char* to_date, const char* format, const char* file, int32_t outputs) = 0;
  virtual int PeriodicReportMessageEx(int32_t kind, int32_t option, const char* format, const char* file, int32_t outputs, bool clear) = 0;
  virtual int TelematicDocument(uint32_t device, uint8_t operation, uint8_t document_type, int32_t from_z, int32_t from_number, int32_t to_z, int32_t to_number, const char* file) = 0;

  // --- Logging and waiting
  // Trace lines of the translator.
  virtual void LogTrace(const char* line) = 0;
  // Error lines of the translator.
  virtual void LogError(const char* line) = 0;
  // For clients whose host waits on an event; the translator does not call them.
  virtual void set_wait_event(Event* event) = 0;
  virtual void set_wait_result_code(int code) = 0;
};
