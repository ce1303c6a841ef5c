// VirtualRegister: a fiscal register, in memory or in a file, the whole device client with
// virtual paper.
// It sells, pays, opens and closes documents, counts and prints as a telematic register does,
// and refuses what such a device refuses: RTF_EFPTR_WRONG_STATE in the wrong state, with
// nothing changed. Operations that it does not model answer RTF_E_ILLEGAL; docs/register.md
// lists them.
//
//   lorimat::RegisterSettings settings;
//   settings.clock = [] { return fixed_time; };
//   lorimat::VirtualRegister device(settings);   // a RtfClientInterface for TradInit
//   ...
//   std::cout << device.paper_text();
//
// No operation throws, and none answers -1. Texts may be null (read as empty) and may hold any
// byte. A null pointer for a result answers RTF_E_ILLEGAL. One operation at a time: another
// that begins meanwhile, from whichever thread, answers RTF_E_BUSY.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "register/core/core.h"
#include "register/desk/articles.h"
#include "register/desk/clock_check.h"
#include "register/desk/keyboard.h"
#include "register/desk/receipt_desk.h"
#include "register/inspect/register_file.h"
#include "register/report/reports.h"
#include "register/value/cancellation.h"
#include "register/value/refusal.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

class VirtualRegister : public RtfClientInterface {
 public:
  // The last trace and error lines that are kept.
  static constexpr size_t kLogLines = 1000;

  // Throws RegisterError when the register's file cannot be opened.
  explicit VirtualRegister(RegisterSettings settings = {});
  ~VirtualRegister();
  // The parts refer to each other.
  VirtualRegister(const VirtualRegister&) = delete;
  VirtualRegister& operator=(const VirtualRegister&) = delete;

  // --- What the register shows
  // The roll of paper, line by line of at most 42 columns, without line ends: the last 20000 or
  // some more, Paper::dropped counts the others.
  const std::vector<std::string>& paper_lines() const { return core_.paper.lines(); }
  // The same in one text, each line ended by a line feed.
  std::string paper_text() const { return core_.paper.text(); }
  // The roll with its barcodes and logos, to be drawn (register/paper/picture.h).
  const Paper& paper() const { return core_.paper; }
  // One of RTF_FPTR_PS_*.
  int printer_state() const { return static_cast<int>(core_.state); }
  KeyPosition key_position() const { return core_.key; }
  // Whether its documents are for practice.
  bool training() const { return core_.setup.training; }
  // How often the drawer has been opened.
  int drawer_count() const { return core_.drawer_count; }
  // A row (0 or 1) of a display (0 and 1 the operator's, 2 the customer's); empty for others.
  std::string display_text(int display, int row) const;
  // The translator's trace and error lines, oldest first.
  const std::deque<std::string>& trace_lines() const { return trace_lines_; }
  const std::deque<std::string>& error_lines() const { return error_lines_; }
  // Registered documents, counters and totals.
  const RegisterStore& store() const { return core_.store; }
  // Departments, VAT entries and what else is programmed.
  const Tables& tables() const { return core_.tables; }
  // The document in progress.
  const Receipt& receipt() const { return core_.document.receipt; }
  // The document that was open when the register was switched off the last time, and has been
  // ended at this start (register/desk/recovery.h).
  const std::optional<CutOffDocument>& cut_off() const { return cut_off_; }
  // What was registered last before a switching off without order, when nothing was stored behind
  // it: its answer may not have gone out.
  const std::optional<UnansweredDocument>& unanswered() const { return unanswered_; }
  // Whether the clock was too far behind the last document or closing at this start.
  const std::optional<ClockBehind>& clock_behind() const { return clock_behind_; }
  // All of that in sentences; empty when all is well.
  std::string start_notice() const;
  // The number, as Paper::dropped counts, of the first line that was printed since the start; the
  // lines before it are those of earlier times.
  size_t first_line() const { return first_line_; }
  // For those who take the paper along as it is printed: the lines from this number on stay on the
  // roll, however many they get, until a higher number is given. To be called between operations.
  void HoldPaper(size_t line) { core_.paper.Hold(line); }
  // Why the last operation that failed could not be stored: "FILE: database or disk is full".
  // Empty as long as none has. To be read between operations.
  const std::string& last_failure() const { return core_.last_failure; }
  // Why the last operation that was refused was, and how many were. To be read between operations.
  const Refusal& last_refusal() const { return refusals_.last(); }
  uint64_t refusal_count() const { return refusals_.count(); }

  // --- Faults on demand (register/fault/faults.h), between operations
  // Throws RegisterError, with the cause, for a fault that cannot be: a name or an operation that
  // does not exist, an operation that it cannot strike, a code or a number out of range, more
  // than FaultPlan::kMostFaults; or when the register's file cannot be written. Then nothing is
  // added.
  void AddFault(Fault fault);
  // Takes away all that wait; what the device shows of them goes with them. Throws RegisterError
  // when the register's file cannot be written.
  void ClearFaults();
  const FaultPlan& faults() const { return core_.faults; }

  // The device client; what the operations do is told in rtfclientinterface.h.

  // --- Device state and properties
  bool GetClaimed() override;
  bool GetDeviceEnabled() override;
  int SetDeviceEnabled(bool enabled) override;
  int GetState() override;
  int GetIntProperty(int property, int* value) override;
  int SetIntProperty(int property, int value) override;
  int GetStringProperty(int property, char* value) override;
  int SetStringProperty(int property, const char* value) override;
  int GetDataInternal(int item, char* text) override;
  int SetDataInternal(int item, const char* text) override;

  // --- Service control and statistics
  int Close() override;
  int Claim(int timeout) override;
  int Release() override;
  int CheckHealth(int level) override;
  int ClearOutput() override;
  int CompareFirmwareVersion(const char* firmware_file, int* result) override;
  int ResetStatistics(const char* statistics) override;
  int RetrieveStatistics(const char* statistics) override;
  int UpdateFirmware(const char* firmware_file) override;
  int UpdateStatistics(const char* statistics) override;

  // --- Extensions for printing, documents and the telematic summary
  int GetVatEntryExtended(int vat_id, int optional_args, char* vat_rate) override;
  int PrintBarcode(const char* tipo, const char* scale, const char* align, const char* textPosition,
                   const char* data, uint8_t cutMode) override;
  int PrintBarcodeEx(const char* tipo, const char* scale, const char* align,
                     const char* textPosition, const char* data, uint8_t cutMode,
                     bool code39checksum) override;
  int InitJournal() override;
  int BeginDocInvoice(const char* head1, const char* head2, const char* head3, const char* head4,
                      const char* head5) override;
  int BeginDocInvoiceOppositionJurisprudence(const char* head1, const char* head2,
                                             const char* head3, const char* head4,
                                             const char* head5, bool opposition) override;
  int BeginDocRefund(int number, int zNumber, const char* date) override;
  int BeginDocCancel(int number, int zNumber, const char* date, bool automatic) override;
  int BeginDocTelematicRefund(int number, int zNumber, const char* date,
                              const char* matricola) override;
  int BeginDocTelematicCancel(int number, int zNumber, const char* date, bool automatic,
                              const char* text) override;
  int BeginDocRefundEx(int number, int zNumber, const char* date, bool automatic) override;
  int SendTelematicSummary() override;
  int ExportTelematicSummary(const char* file) override;
  int SaveTelematicSummary(int from_z, int to_z, const char* file) override;
  int SaveTelematicSummaryEx(int from_z, int to_z, const char* file, int options) override;
  int PrintBitmap(int ngraex, int cutMode) override;
  int SelectBitmap(int number, int position) override;
  int ProcessEJournalReportByDate(const char* from_date, const char* to_date, const char* file,
                                  const char* format) override;
  int ProcessEJournalReportByZNumber(int from_z, int to_z, const char* file,
                                     const char* format) override;
  int ProcessEJournalReportByDateZNumber(const char* from_date, const char* to_date, int from_z,
                                         int to_z, const char* file, const char* format) override;
  int ProcessEJournalReportByDateNumber(const char* from_date, const char* to_date, int from_number,
                                        int to_number, const char* file,
                                        const char* format) override;
  int ProcessEJournalReportByDateNumberDocType(const char* from_date, const char* to_date,
                                               int from_number, int to_number, int document_type,
                                               const char* file, const char* format) override;
  int ProcessEJournalReportGlobal(const char* file, const char* format) override;
  int ProgramGRC(uint8_t ngraex, const char* file, bool permanent) override;
  int EraseLogoArchive() override;
  int BeginAdditionalTrailer() override;
  int PrintPaperCut() override;

  // --- Set-up
  int SetCurrency(int currency) override;
  int SetDate(const char* date) override;
  int SetHeaderLine(int line, const char* text, bool double_width) override;
  int SetPOSID(const char* pos_id, const char* cashier_id) override;
  int SetStoreFiscalID(const char* fiscal_id) override;
  int SetTrailerLine(int line, const char* text, bool double_width) override;
  int SetVatTable() override;
  int SetVatValue(int vat_id, const char* vat_rate) override;

  // --- Fiscal receipt
  int BeginFiscalReceipt(bool print_header) override;
  int EndFiscalReceipt(bool print_header) override;
  int PrintDuplicateReceipt() override;
  int PrintRecCash(long amount) override;
  int PrintRecItem(const char* description, long price, int quantity, int vatInfo, long unitPrice,
                   const char* unitName) override;
  int PrintRecItemVoid(const char* description, long price, int quantity, int vatInfo,
                       long unitPrice, const char* unitName) override;
  int PrintRecItemAdjustment(int adjustment_type, const char* description, int64_t amount,
                             int vatInfo) override;
  int PrintRecItemAdjustmentVoid(int adjustment_type, const char* description, int64_t amount,
                                 int vatInfo) override;
  int PrintRecItemFuel(const char* description, long price, int quantity, int vatInfo,
                       long unitPrice, const char* unitName, long special_tax,
                       const char* special_tax_name) override;
  int PrintRecItemFuelVoid(const char* description, long price, int vatInfo,
                           long special_tax) override;
  int PrintRecItemRefund(const char* description, long price, int quantity, int vatInfo,
                         long unitPrice, const char* unitName) override;
  int PrintRecItemRefundVoid(const char* description, long price, int quantity, int vatInfo,
                             long unitPrice, const char* unitName) override;
  int PrintRecMessage(const char* message) override;
  int PrintRecNotPaid(const char* description, long amount) override;
  int PrintRecPackageAdjustment(int adjustment_type, const char* description,
                                const char* vat_adjustment) override;
  int PrintRecPackageAdjustVoid(int adjustment_type, const char* vat_adjustment) override;
  int PrintRecRefund(const char* description, long amount, int vatInfo) override;
  int PrintRecRefundVoid(const char* description, long amount, int vatInfo) override;
  int PrintRecSubtotal(int64_t amount) override;
  int PrintRecSubtotalEx(int64_t iSubTotal, bool check) override;
  int PrintRecSubtotalAdjustment(int adjustment_type, const char* description,
                                 int64_t amount) override;
  int PrintRecSubtotalAdjustVoid(int adjustment_type, int64_t amount) override;
  int PrintRecTaxID(const char* tax_id) override;
  int PrintRecTotal(int64_t total, int64_t payment, const char* description) override;
  int PrintRecVoid(const char* description) override;
  int PrintRecVoidItem(const char* description, long amount, int quantity, int adjustment_type,
                       long adjustment, int vatInfo) override;

  // --- Telematic set-up and the pass-through line
  int TelematicCensus() override;
  int TelematicActivate(const char* vat_number, const char* tax_code, const char* user,
                        const char* password, int32_t ateco, const char* date) override;
  int TelematicCommissioning() override;
  int ZupEcrCmd(const char* command, int* length, char* answer) override;

  // --- Extended receipt operations
  int PrintRecItemEx(int pfl_item_type, const char* description, int64_t price, int quantity,
                     int vatInfo, int64_t unitPrice, const char* unitName, int departmentInfo,
                     bool print_now, const char* pluCode) override;
  int PrintRecItemAdjustmentEx(int adjustment_type, const char* description, int64_t amount,
                               int vatInfo, int departmentInfo) override;
  int PrintRecItemAdjustmentEx2(int adjustment_type, const char* description, int64_t amount,
                                int vatInfo, int departmentInfo, bool is_void) override;
  int PrintRecTotalEx(int64_t payment, const char* description, bool auto_payment) override;

  // --- Fiscal documents and item lists
  int BeginFiscalDocument(int amount) override;
  int EndFiscalDocument() override;
  int PrintFiscalDocumentLine(const char* line) override;
  int BeginItemList(int vat_id) override;
  int EndItemList() override;
  int VerifyItem(const char* item_name, int vat_id) override;

  // --- Reports
  int PrintPeriodicTotalsReport(const char* from_date, const char* to_date) override;
  int PrintPowerLossReport() override;
  int PrintReport(int report_type, const char* from, const char* to) override;
  int PrintXReport() override;
  int PrintZReport() override;

  // --- Slip handling
  int BeginInsertion(int timeout) override;
  int BeginRemoval(int timeout) override;
  int EndInsertion() override;
  int EndRemoval() override;

  // --- Non-fiscal printing
  int BeginFixedOutput(int station, int document_type) override;
  int BeginNonFiscal() override;
  int BeginNonFiscalJournal(bool saveOnJournal) override;
  int BeginTraining() override;
  int EndFixedOutput() override;
  int EndNonFiscal() override;
  int EndTraining() override;
  int PrintFixedOutput(int document_type, int line, const char* data) override;
  int PrintNormal(int station, const char* data) override;

  // --- Reading
  int GetData(int selector, int* number, char* text) override;
  int GetDate(char* date) override;
  int GetTotalizer(int vat_id, int selector, char* text) override;
  int GetVatEntry(int vat_id, int optional_args, int* vat_rate) override;

  // --- Recovery, drawer and display
  int ClearError() override;
  int ResetPrn() override;
  int OpenDrawer() override;
  int WaitForDrawerClose(int32_t beep_timeout, int32_t beep_frequency, int32_t beep_duration,
                         int32_t beep_delay) override;
  int ClearText() override;
  int DisplayText(const char* text, int attribute) override;
  int DisplayTextAt(int row, int column, const char* text, int attribute) override;
  int DisplayTextEx(const char* text, int attribute, int display, int timeout, bool clear) override;
  int DisplayTextAtEx(int row, int column, const char* text, int attribute, int display,
                      int timeout, bool clear) override;

  // --- Machine data, keyboard and device reports
  int GetTotalizerExtend(int vat_id, int totalizer_type, int totalizer, char* data) override;
  int ProgramFirmware(const char* file) override;
  int EraseTable(int table) override;
  int DownloadTable(int selector, int index, char* data_row) override;
  int UploadTable(int table, int row_type, const char* data_row) override;
  int ConfigDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                       bool* single_shoot, bool* allow_discount, bool* force_description) override;
  int ConfigDepartmentEx(bool write, int32_t dep_id, char* description, int64_t* price,
                         int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                         bool* single_shoot, bool* allow_discount, bool* force_description,
                         bool* is_service) override;
  int ConfigGroup(bool write, int index, char* description, char* operator_password,
                  int* operator_flags, int* operator_options) override;
  int ConfigKeyboard(bool write, uint8_t key_pos, uint8_t* key_code, int8_t* keyboard_type,
                     char* macro, uint16_t* macro_size) override;
  int ConfigSubtender(bool write, int32_t subtender_id, uint8_t* tender_type, char* description,
                      uint8_t* flags, uint32_t* preset_value, uint8_t* max_digits) override;
  int GetHeaderLine(int line, char* text) override;
  int KeyCodeInput(const char* keys_code_numerics, const char* keys_code_alfa_fp,
                   const char* key_code_alfa_lcd, uint8_t key_code_terminator) override;
  int PrintZReportEx(bool send) override;
  int DiagnosticsRequest(int test, bool start, int options) override;
  int DirectIO(int cmd, int* optarg, char* data) override;
  int PrintXReportEx(int32_t kind, bool clear, const char* format, const char* file,
                     int32_t outputs) override;
  int FiscalReportMessageEx(int32_t source, int32_t filter, int32_t criteria, uint8_t option1,
                            uint8_t option2, uint32_t from_number, uint32_t to_number,
                            const char* from_date, const char* to_date, const char* format,
                            const char* file, int32_t outputs) override;
  int PeriodicReportMessageEx(int32_t kind, int32_t option, const char* format, const char* file,
                              int32_t outputs, bool clear) override;
  int TelematicDocument(uint32_t device, uint8_t operation, uint8_t document_type, int32_t from_z,
                        int32_t from_number, int32_t to_z, int32_t to_number,
                        const char* file) override;

  // --- Logging and waiting
  void LogTrace(const char* line) override;
  void LogError(const char* line) override;
  void set_wait_event(Event* event) override;
  void set_wait_result_code(int code) override;

 private:
  // A thread that is cancelled meanwhile goes when the register is there.
  VirtualRegister(const CancellationDelay& whole, RegisterSettings settings);

  // Runs a client operation, which `operation` names. One that begins while another runs answers
  // RTF_E_BUSY. What it changed is stored before it is answered; when that fails, or with an
  // exception (no memory), all of it is taken back and the answer is RTF_E_FAILURE. The faults
  // that wait are asked before; `effects` is for FaultPlan::Begin. `behind` follows an operation
  // that has been carried out and stored, as a unit of its own: the answer is not touched by it.
  // A thread that is cancelled goes when the operation is over.
  template <typename Work>
  int Perform(const char* operation, Work&& work) noexcept {
    return Perform(operation, 0, std::forward<Work>(work));
  }
  template <typename Work>
  int Perform(const char* operation, unsigned effects, Work&& work) noexcept {
    return Perform(operation, effects, std::forward<Work>(work), nullptr);
  }
  template <typename Work, typename Behind>
  int Perform(const char* operation, unsigned effects, Work&& work, Behind&& behind) noexcept {
    const CancellationDelay whole;
    if (working_.test_and_set(std::memory_order_acquire)) return RTF_E_BUSY;
    // A call of a host that has not got the service so far does not reach the device.
    int answer = CheckService(operation);
    if (answer == RTF_SUCCESS) {
      RefusalNote::Operation refusals(refusals_);
      int code = RTF_E_FAILURE;
      FaultPlan::Strike fault;
      answer = RTF_E_FAILURE;
      if (Unit<true>([&] {
            fault = core_.faults.Begin(operation, core_.state != PrinterState::kMonitor, effects);
            code =
                fault.before != RTF_SUCCESS ? Refuse(fault.before, RefusalCause::kFault) : work();
          })) {
        // Carried out, and the host may not come to know.
        answer = fault.after != RTF_SUCCESS ? Refuse(fault.after, RefusalCause::kFault) : code;
        if constexpr (!std::is_null_pointer_v<std::decay_t<Behind>>) {
          if (code == RTF_SUCCESS) static_cast<void>(Unit<false>(behind));
        }
      } else {
        Refuse(answer, RefusalCause::kNotKept);
      }
      refusals.End(answer);
    }
    working_.clear(std::memory_order_release);
    return answer;
  }

  // What a host has keyed or sent and not finished.
  struct Input {
    Keyboard::Memory keyboard;
    ArticleLink::Transfer articles;
  };
  // Does some work and stores what it changed. True only when that stands; else all is as it was
  // before, a fault that struck waits again, and `noted` says why.
  template <bool noted, typename Work>
  bool Unit(Work&& work) noexcept {
    const bool was_doubtful = core_.database.doubtful();
    try {
      Input input{keyboard_.Save(), articles_.Save()};
      core_.Mark();
      try {
        work();
        core_.Keep(!noted);
        return true;
      } catch (...) {
        if (noted) NoteFailure(!was_doubtful && core_.database.doubtful());
        core_.TakeBack();
        keyboard_.Restore(std::move(input.keyboard));
        articles_.Restore(input.articles);
      }
    } catch (...) {
      if (noted) NoteFailure(false);  // nothing has been done
    }
    return false;
  }
  // From a catch block: notes the cause, and that nobody knows what stands, where it is so.
  void NoteFailure(bool doubtful) noexcept;

  // What the service lacks for an operation or for reading a property: RTF_E_CLOSED,
  // RTF_E_NOTCLAIMED, RTF_E_DISABLED.
  int CheckService(std::string_view operation) const noexcept;
  int CheckProperty(int property) const;
  // Why a change that is no operation of the client was not made.
  std::string WhyNotKept(int code) const;
  int LoadFirmware(const char* file);
  int CloseDay(const char* operation, bool send);
  int ExtractJournal(const char* operation, const JournalRequest& request, const char* file,
                     const char* format);
  int ShowText(int display, int row, int column, std::string_view text, bool clear);
  int GiveTotalizer(int vat_id, int scope, int totalizer, char* text) const;
  int AccessDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                       bool* single_shoot, bool* allow_discount, bool* force_description,
                       bool* is_service);
  int LegacyLine(const char* operation, int pfl_item_type, const char* description, long price,
                 int quantity, int vat_info, long unit_price, const char* unit_name);

  std::atomic_flag working_ = ATOMIC_FLAG_INIT;
  RefusalNote refusals_;
  RegisterCore core_;
  ReceiptDesk desk_;
  Keyboard keyboard_;
  ArticleLink articles_;
  size_t first_line_ = 0;
  std::optional<CutOffDocument> cut_off_;
  std::optional<UnansweredDocument> unanswered_;
  std::optional<ClockBehind> clock_behind_;
  std::deque<std::string> trace_lines_;
  std::deque<std::string> error_lines_;
};

}  // namespace lorimat
