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
#include "register/desk/day_notice.h"
#include "register/desk/keyboard.h"
#include "register/desk/receipt_desk.h"
#include "register/desk/shop_setup.h"
#include "register/inspect/register_file.h"
#include "register/report/reports.h"
#include "register/value/cancellation.h"
#include "register/value/refusal.h"
#include "register/value/register_error.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"
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
  // What is programmed beyond the tables.
  const DeviceSetup& setup() const { return core_.setup; }
  // The document in progress.
  const Receipt& receipt() const { return core_.document.receipt; }
  // The document that was open when the register was switched off the last time, and has been
  // ended at this start (register/desk/recovery.h).
  const std::optional<CutOffDocument>& cut_off() const { return cut_off_; }
  // What was registered last before a switching off without order, when nothing was stored behind
  // it: its answer may not have gone out.
  const std::optional<UnansweredDocument>& unanswered() const { return unanswered_; }
  // For a program that is not the host and registers nothing, as one that programs the register:
  // what is unanswered at this start stays so for the next one, whatever is stored meanwhile.
  void LeaveUnanswered() noexcept { core_.LeaveUnanswered(); }
  // Whether the clock was too far behind the last document or closing at this start.
  const std::optional<ClockBehind>& clock_behind() const { return clock_behind_; }
  // What was to be told of the day at this start: that it was left open, and the like.
  const DayNotice& day_notice() const { return day_notice_; }
  // The same as it is now; to be called between operations. Throws RegisterError when the
  // register's file cannot be read.
  DayNotice FindNotice() const { return FindDayNotice(core_.store, core_.Now()); }
  // Whether the clock is too far behind now, by which every document would be refused; the same.
  std::optional<ClockBehind> FindClock() const { return FindClockBehind(core_); }
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
  // The same as a value, of which a host makes a sentence of its own.
  const RegisterFailure& failure() const { return core_.failure; }
  // Why the last operation that was refused was, and how many were. To be read between operations.
  // The last lottery code that a receipt went out without, until an operation cannot be stored; and
  // how many there were since the start.
  const LotteryDrop& lottery_drop() const { return core_.session.lottery_drop; }
  uint64_t lottery_drop_count() const { return core_.session.lottery_drops; }
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

  // --- Set-up by the shop (register/desk/shop_setup.h), and the register as a file; between
  // operations. As an operation: RTF_SUCCESS, or a code with the cause in last_refusal, or
  // last_failure where it could not be stored; then nothing has changed, and `refused` tells which
  // value was refused.
  int SetUp(const ShopSetup& setup, ShopRefusal* refused);
  // Writes the register as it is now into a new file. Throws RegisterError where the name is taken
  // or when it cannot be written: then there is no such file. Answers what PartFile::Finish does.
  int SaveAs(const std::string& file);

  // The device client, all of it; what the operations do is told in rtfclientinterface.h.
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override;
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  // A thread that is cancelled meanwhile goes when the register is there.
  VirtualRegister(const CancellationDelay& whole, RegisterSettings settings);

  // Runs an operation of the client, or with none what a host does to the register itself. One that
  // begins while another runs answers RTF_E_BUSY. What it changed is stored before it is answered;
  // when that fails, or with an exception (no memory), all of it is taken back and the answer is
  // RTF_E_FAILURE. The faults that wait are asked before; `effects` is for FaultPlan::Begin.
  // `behind` follows an operation that has been carried out and stored, as a unit of its own: the
  // answer is not touched by it. A thread that is cancelled goes when the operation is over.
  template <typename Work>
  int Perform(std::optional<ClientOperation> operation, Work&& work) noexcept {
    return Perform(operation, 0, std::forward<Work>(work));
  }
  template <typename Work>
  int Perform(std::optional<ClientOperation> operation, unsigned effects, Work&& work) noexcept {
    return Perform(operation, effects, std::forward<Work>(work), nullptr);
  }
  template <typename Work, typename Behind>
  int Perform(std::optional<ClientOperation> operation, unsigned effects, Work&& work,
              Behind&& behind) noexcept {
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
        // It would hide the failure.
        if (noted) core_.session.lottery_drop = {};
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
  int CheckService(std::optional<ClientOperation> operation) const noexcept;
  int CheckProperty(int property) const;
  // Why a change that is no operation of the client was not made.
  RegisterError WhyNotKept(int code) const;
  int LoadFirmware(const char* file);
  int CloseDay(ClientOperation operation, bool send);
  int ExtractJournal(ClientOperation operation, const JournalRequest& request, const char* file,
                     const char* format);
  int ShowText(int display, int row, int column, std::string_view text, bool clear);
  int GiveTotalizer(int vat_id, int scope, int totalizer, char* text) const;
  int AccessDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                       bool* single_shoot, bool* allow_discount, bool* force_description,
                       bool* is_service);
  int LegacyLine(ClientOperation operation, int pfl_item_type, const char* description, long price,
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
  DayNotice day_notice_;
  std::deque<std::string> trace_lines_;
  std::deque<std::string> error_lines_;
};

}  // namespace lorimat
