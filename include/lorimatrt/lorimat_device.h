/* Made from src/rpccommon/client/rtfclientoperations.inc by script/make-bindings: change it there.
 *
 * The device client as a table of C functions. The operations are those of RtfClientInterface,
 * which tells what each does: amounts in ten-thousandths of the currency, percentages in
 * ten-thousandths of a percent, quantities in thousandths. What a function takes and gives is told
 * in lorimat.h. */
#ifndef LORIMATRT_LORIMAT_DEVICE_H
#define LORIMATRT_LORIMAT_DEVICE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

/* clang-format off */
typedef struct lorimat_device {
  size_t size;  /* sizeof(lorimat_device) as the host was compiled */
  uint32_t abi; /* LORIMAT_ABI as the host was compiled */
  void* user_data; /* handed to each function as it is */

  /* Device state and properties */
  bool (*GetClaimed)(void* user_data);
  bool (*GetDeviceEnabled)(void* user_data);
  int (*SetDeviceEnabled)(void* user_data, bool enabled);
  int (*GetState)(void* user_data);
  int (*GetIntProperty)(void* user_data, int property, int* value);
  int (*SetIntProperty)(void* user_data, int property, int value);
  int (*GetStringProperty)(void* user_data, int property, char* value, size_t value_room);
  int (*SetStringProperty)(void* user_data, int property, const char* value);
  int (*GetDataInternal)(void* user_data, int item, char* text, size_t text_room);
  int (*SetDataInternal)(void* user_data, int item, const char* text);

  /* Service control and statistics */
  int (*Close)(void* user_data);
  int (*Claim)(void* user_data, int timeout);
  int (*Release)(void* user_data);
  int (*CheckHealth)(void* user_data, int level);
  int (*ClearOutput)(void* user_data);
  int (*CompareFirmwareVersion)(void* user_data, const char* firmware_file, int* result);
  int (*ResetStatistics)(void* user_data, const char* statistics);
  int (*RetrieveStatistics)(void* user_data, const char* statistics);
  int (*UpdateFirmware)(void* user_data, const char* firmware_file);
  int (*UpdateStatistics)(void* user_data, const char* statistics);

  /* Extensions for printing, documents and the telematic summary */
  int (*GetVatEntryExtended)(void* user_data, int vat_id, int optional_args, char* vat_rate, size_t vat_rate_room);
  int (*PrintBarcode)(void* user_data, const char* tipo, const char* scale, const char* align, const char* textPosition, const char* data, uint8_t cutMode);
  int (*PrintBarcodeEx)(void* user_data, const char* tipo, const char* scale, const char* align, const char* textPosition, const char* data, uint8_t cutMode, bool code39checksum);
  int (*InitJournal)(void* user_data);
  int (*BeginDocInvoice)(void* user_data, const char* head1, const char* head2, const char* head3, const char* head4, const char* head5);
  int (*BeginDocInvoiceOppositionJurisprudence)(void* user_data, const char* head1, const char* head2, const char* head3, const char* head4, const char* head5, bool opposition);
  int (*BeginDocRefund)(void* user_data, int number, int zNumber, const char* date);
  int (*BeginDocCancel)(void* user_data, int number, int zNumber, const char* date, bool automatic);
  int (*BeginDocTelematicRefund)(void* user_data, int number, int zNumber, const char* date, const char* matricola);
  int (*BeginDocTelematicCancel)(void* user_data, int number, int zNumber, const char* date, bool automatic, const char* text);
  int (*BeginDocRefundEx)(void* user_data, int number, int zNumber, const char* date, bool automatic);
  int (*SendTelematicSummary)(void* user_data);
  int (*ExportTelematicSummary)(void* user_data, const char* file);
  int (*SaveTelematicSummary)(void* user_data, int from_z, int to_z, const char* file);
  int (*SaveTelematicSummaryEx)(void* user_data, int from_z, int to_z, const char* file, int options);
  int (*PrintBitmap)(void* user_data, int ngraex, int cutMode);
  int (*SelectBitmap)(void* user_data, int number, int position);
  int (*ProcessEJournalReportByDate)(void* user_data, const char* from_date, const char* to_date, const char* file, const char* format);
  int (*ProcessEJournalReportByZNumber)(void* user_data, int from_z, int to_z, const char* file, const char* format);
  int (*ProcessEJournalReportByDateZNumber)(void* user_data, const char* from_date, const char* to_date, int from_z, int to_z, const char* file, const char* format);
  int (*ProcessEJournalReportByDateNumber)(void* user_data, const char* from_date, const char* to_date, int from_number, int to_number, const char* file, const char* format);
  int (*ProcessEJournalReportByDateNumberDocType)(void* user_data, const char* from_date, const char* to_date, int from_number, int to_number, int document_type, const char* file, const char* format);
  int (*ProcessEJournalReportGlobal)(void* user_data, const char* file, const char* format);
  int (*ProgramGRC)(void* user_data, uint8_t ngraex, const char* file, bool permanent);
  int (*EraseLogoArchive)(void* user_data);
  int (*BeginAdditionalTrailer)(void* user_data);
  int (*PrintPaperCut)(void* user_data);

  /* Set-up */
  int (*SetCurrency)(void* user_data, int currency);
  int (*SetDate)(void* user_data, const char* date);
  int (*SetHeaderLine)(void* user_data, int line, const char* text, bool double_width);
  int (*SetPOSID)(void* user_data, const char* pos_id, const char* cashier_id);
  int (*SetStoreFiscalID)(void* user_data, const char* fiscal_id);
  int (*SetTrailerLine)(void* user_data, int line, const char* text, bool double_width);
  int (*SetVatTable)(void* user_data);
  int (*SetVatValue)(void* user_data, int vat_id, const char* vat_rate);

  /* Fiscal receipt */
  int (*BeginFiscalReceipt)(void* user_data, bool print_header);
  int (*EndFiscalReceipt)(void* user_data, bool print_header);
  int (*PrintDuplicateReceipt)(void* user_data);
  int (*PrintRecCash)(void* user_data, long amount);
  int (*PrintRecItem)(void* user_data, const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName);
  int (*PrintRecItemVoid)(void* user_data, const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName);
  int (*PrintRecItemAdjustment)(void* user_data, int adjustment_type, const char* description, int64_t amount, int vatInfo);
  int (*PrintRecItemAdjustmentVoid)(void* user_data, int adjustment_type, const char* description, int64_t amount, int vatInfo);
  int (*PrintRecItemFuel)(void* user_data, const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName, long special_tax, const char* special_tax_name);
  int (*PrintRecItemFuelVoid)(void* user_data, const char* description, long price, int vatInfo, long special_tax);
  int (*PrintRecItemRefund)(void* user_data, const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName);
  int (*PrintRecItemRefundVoid)(void* user_data, const char* description, long price, int quantity, int vatInfo, long unitPrice, const char* unitName);
  int (*PrintRecMessage)(void* user_data, const char* message);
  int (*PrintRecNotPaid)(void* user_data, const char* description, long amount);
  int (*PrintRecPackageAdjustment)(void* user_data, int adjustment_type, const char* description, const char* vat_adjustment);
  int (*PrintRecPackageAdjustVoid)(void* user_data, int adjustment_type, const char* vat_adjustment);
  int (*PrintRecRefund)(void* user_data, const char* description, long amount, int vatInfo);
  int (*PrintRecRefundVoid)(void* user_data, const char* description, long amount, int vatInfo);
  int (*PrintRecSubtotal)(void* user_data, int64_t amount);
  int (*PrintRecSubtotalEx)(void* user_data, int64_t iSubTotal, bool check);
  int (*PrintRecSubtotalAdjustment)(void* user_data, int adjustment_type, const char* description, int64_t amount);
  int (*PrintRecSubtotalAdjustVoid)(void* user_data, int adjustment_type, int64_t amount);
  int (*PrintRecTaxID)(void* user_data, const char* tax_id);
  int (*PrintRecTotal)(void* user_data, int64_t total, int64_t payment, const char* description);
  int (*PrintRecVoid)(void* user_data, const char* description);
  int (*PrintRecVoidItem)(void* user_data, const char* description, long amount, int quantity, int adjustment_type, long adjustment, int vatInfo);

  /* Telematic set-up and the pass-through line */
  int (*TelematicCensus)(void* user_data);
  int (*TelematicActivate)(void* user_data, const char* vat_number, const char* tax_code, const char* user, const char* password, int32_t ateco, const char* date);
  int (*TelematicCommissioning)(void* user_data);
  int (*ZupEcrCmd)(void* user_data, const char* command, int* length, char* answer, size_t answer_room);

  /* Extended receipt operations */
  int (*PrintRecItemEx)(void* user_data, int pfl_item_type, const char* description, int64_t price, int quantity, int vatInfo, int64_t unitPrice, const char* unitName, int departmentInfo, bool print_now, const char* pluCode);
  int (*PrintRecItemAdjustmentEx)(void* user_data, int adjustment_type, const char* description, int64_t amount, int vatInfo, int departmentInfo);
  int (*PrintRecItemAdjustmentEx2)(void* user_data, int adjustment_type, const char* description, int64_t amount, int vatInfo, int departmentInfo, bool is_void);
  int (*PrintRecTotalEx)(void* user_data, int64_t payment, const char* description, bool auto_payment);

  /* Fiscal documents and item lists */
  int (*BeginFiscalDocument)(void* user_data, int amount);
  int (*EndFiscalDocument)(void* user_data);
  int (*PrintFiscalDocumentLine)(void* user_data, const char* line);
  int (*BeginItemList)(void* user_data, int vat_id);
  int (*EndItemList)(void* user_data);
  int (*VerifyItem)(void* user_data, const char* item_name, int vat_id);

  /* Reports */
  int (*PrintPeriodicTotalsReport)(void* user_data, const char* from_date, const char* to_date);
  int (*PrintPowerLossReport)(void* user_data);
  int (*PrintReport)(void* user_data, int report_type, const char* from, const char* to);
  int (*PrintXReport)(void* user_data);
  int (*PrintZReport)(void* user_data);

  /* Slip handling */
  int (*BeginInsertion)(void* user_data, int timeout);
  int (*BeginRemoval)(void* user_data, int timeout);
  int (*EndInsertion)(void* user_data);
  int (*EndRemoval)(void* user_data);

  /* Non-fiscal printing */
  int (*BeginFixedOutput)(void* user_data, int station, int document_type);
  int (*BeginNonFiscal)(void* user_data);
  int (*BeginNonFiscalJournal)(void* user_data, bool saveOnJournal);
  int (*BeginTraining)(void* user_data);
  int (*EndFixedOutput)(void* user_data);
  int (*EndNonFiscal)(void* user_data);
  int (*EndTraining)(void* user_data);
  int (*PrintFixedOutput)(void* user_data, int document_type, int line, const char* data);
  int (*PrintNormal)(void* user_data, int station, const char* data);

  /* Reading */
  int (*GetData)(void* user_data, int selector, int* number, char* text, size_t text_room);
  int (*GetDate)(void* user_data, char* date, size_t date_room);
  int (*GetTotalizer)(void* user_data, int vat_id, int selector, char* text, size_t text_room);
  int (*GetVatEntry)(void* user_data, int vat_id, int optional_args, int* vat_rate);

  /* Recovery, drawer and display */
  int (*ClearError)(void* user_data);
  int (*ResetPrn)(void* user_data);
  int (*OpenDrawer)(void* user_data);
  int (*WaitForDrawerClose)(void* user_data, int32_t beep_timeout, int32_t beep_frequency, int32_t beep_duration, int32_t beep_delay);
  int (*ClearText)(void* user_data);
  int (*DisplayText)(void* user_data, const char* text, int attribute);
  int (*DisplayTextAt)(void* user_data, int row, int column, const char* text, int attribute);
  int (*DisplayTextEx)(void* user_data, const char* text, int attribute, int display, int timeout, bool clear);
  int (*DisplayTextAtEx)(void* user_data, int row, int column, const char* text, int attribute, int display, int timeout, bool clear);

  /* Machine data, keyboard and device reports */
  int (*GetTotalizerExtend)(void* user_data, int vat_id, int totalizer_type, int totalizer, char* data, size_t data_room);
  int (*ProgramFirmware)(void* user_data, const char* file);
  int (*EraseTable)(void* user_data, int table);
  int (*DownloadTable)(void* user_data, int selector, int index, char* data_row, size_t data_row_room);
  int (*UploadTable)(void* user_data, int table, int row_type, const char* data_row);
  int (*ConfigDepartment)(void* user_data, bool write, int32_t dep_id, char* description, size_t description_room, int64_t* price, int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id, bool* single_shoot, bool* allow_discount, bool* force_description);
  int (*ConfigDepartmentEx)(void* user_data, bool write, int32_t dep_id, char* description, size_t description_room, int64_t* price, int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id, bool* single_shoot, bool* allow_discount, bool* force_description, bool* is_service);
  int (*ConfigGroup)(void* user_data, bool write, int index, char* description, size_t description_room, char* operator_password, size_t operator_password_room, int* operator_flags, int* operator_options);
  int (*ConfigKeyboard)(void* user_data, bool write, uint8_t key_pos, uint8_t* key_code, int8_t* keyboard_type, char* macro, size_t macro_room, uint16_t* macro_size);
  int (*ConfigSubtender)(void* user_data, bool write, int32_t subtender_id, uint8_t* tender_type, char* description, size_t description_room, uint8_t* flags, uint32_t* preset_value, uint8_t* max_digits);
  int (*GetHeaderLine)(void* user_data, int line, char* text, size_t text_room);
  int (*KeyCodeInput)(void* user_data, const char* keys_code_numerics, const char* keys_code_alfa_fp, const char* key_code_alfa_lcd, uint8_t key_code_terminator);
  int (*PrintZReportEx)(void* user_data, bool send);
  int (*DiagnosticsRequest)(void* user_data, int test, bool start, int options);
  int (*DirectIO)(void* user_data, int cmd, int* argument, char* data, size_t data_room);
  int (*PrintXReportEx)(void* user_data, int32_t kind, bool option, const char* format, const char* file, int32_t outputs);
  int (*FiscalReportMessageEx)(void* user_data, int32_t source, int32_t filter, int32_t criteria, uint8_t option1, uint8_t option2, uint32_t from_number, uint32_t to_number, const char* from_date, const char* to_date, const char* format, const char* file, int32_t outputs);
  int (*PeriodicReportMessageEx)(void* user_data, int32_t kind, int32_t option, const char* format, const char* file, int32_t outputs, bool clear);
  int (*TelematicDocument)(void* user_data, uint32_t device, uint8_t operation, uint8_t document_type, int32_t from_z, int32_t from_number, int32_t to_z, int32_t to_number, const char* file);

  /* Logging and waiting */
  void (*LogTrace)(void* user_data, const char* line);
  void (*LogError)(void* user_data, const char* line);
  void (*set_wait_event)(void* user_data, void* event);
  void (*set_wait_result_code)(void* user_data, int code);
} lorimat_device;
/* clang-format on */

#endif
