#include "register/client/virtual_register.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "register/client/client_buffers.h"
#include "register/desk/data_items.h"
#include "register/desk/properties.h"
#include "register/desk/recovery.h"
#include "register/fault/fault_operations.h"
#include "register/value/refusal.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

// The longest texts that the interface lets a client give out.
constexpr size_t kGetDataSize = 50;
constexpr size_t kGetDateSize = 13;  // DDMMYYYYHHMM
constexpr size_t kDirectIoSize = 513;

// A sentence names a file, and may name another or have what a library says.
constexpr size_t kCauseSize = 8192;
constexpr size_t kNameSize = 4096;

struct DataSelector {
  int selector;
  std::string (*read)(const RegisterCore&);
};

const DataSelector kDataSelectors[] = {
    {RTF_FPTR_GD_CURRENT_TOTAL,
     [](const RegisterCore& core) { return std::to_string(core.document.receipt.total()); }},
    {RTF_FPTR_GD_DAILY_TOTAL,
     [](const RegisterCore& core) { return std::to_string(core.store.daily().net()); }},
    {RTF_FPTR_GD_RECEIPT_NUMBER,
     [](const RegisterCore& core) { return std::to_string(core.store.counters().documents); }},
    {RTF_FPTR_GD_REFUND,
     [](const RegisterCore& core) { return std::to_string(core.store.daily().refunds); }},
    {RTF_FPTR_GD_NOT_PAID,
     [](const RegisterCore& core) { return std::to_string(core.store.daily().not_paid); }},
    {RTF_FPTR_GD_MID_VOID,
     [](const RegisterCore& core) { return std::to_string(core.store.counters().abandoned); }},
    {RTF_FPTR_GD_Z_REPORT,
     [](const RegisterCore& core) { return fmt::format("{:04}", core.store.last_closure()); }},
    {RTF_FPTR_GD_GRAND_TOTAL,
     [](const RegisterCore& core) { return std::to_string(core.store.grand_total()); }},
    {RTF_FPTR_GD_PRINTER_ID,
     [](const RegisterCore& core) { return core.tables.settings().serial_number; }},
    {RTF_FPTR_GD_FIRMWARE, [](const RegisterCore& core) { return core.firmware_version; }},
    {RTF_FPTR_GD_REFUND_VOID,
     [](const RegisterCore& core) {
       constexpr unsigned kKinds = Totals::kSales | Totals::kInvoices;
       return std::to_string(
           core.store.day().Sum(kKinds, 0, EnteredFigure::kRefundLines).taken_back);
     }},
    {RTF_FPTR_GD_DESCRIPTION_LENGTH,
     [](const RegisterCore&) { return std::to_string(Paper::kDescriptionColumns); }},
    {RTF_FPTR_GD_FISCAL_REC,
     [](const RegisterCore& core) {
       return fmt::format("{:04}", core.store.counters().documents);
     }},
    {RTF_FPTR_GD_FISCAL_REC_VOID,
     [](const RegisterCore& core) { return std::to_string(core.store.counters().cancels); }},
    {RTF_FPTR_GD_NONFISCAL_REC,
     [](const RegisterCore& core) { return std::to_string(core.store.counters().non_fiscal); }},
    {RTF_FPTR_GD_SIMP_INVOICE,
     [](const RegisterCore& core) { return std::to_string(core.store.next_invoice() - 1); }},
};

std::string DateTimeText(const std::tm& time) {
  return fmt::format("{:02}{:02}{:04}{:02}{:02}", time.tm_mday, time.tm_mon + 1,
                     1900 + time.tm_year, time.tm_hour, time.tm_min);
}

int NoDataItem(int item) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kDataItem, {item});
}

// A failure whose texts stand elsewhere: to note it needs no memory.
struct FailureView {
  FailureCause cause;
  std::array<int64_t, RegisterFailure::kNumbers> numbers = {};
  std::string_view text = {};
  FailurePlace place = FailurePlace::kNone;
  std::string_view file = {};
};

void Keep(std::deque<std::string>* lines, const char* line) noexcept {
  try {
    lines->emplace_back(View(line));
    if (lines->size() > VirtualRegister::kLogLines) lines->pop_front();
  } catch (...) {
    // A line of the trace is lost; nothing rests on it.
  }
}

}  // namespace

VirtualRegister::VirtualRegister(RegisterSettings settings)
    : VirtualRegister(CancellationDelay(), std::move(settings)) {}

VirtualRegister::VirtualRegister(const CancellationDelay&, RegisterSettings settings)
    : core_(std::move(settings)), desk_(core_), keyboard_(core_, desk_), articles_(core_) {
  core_.last_failure.reserve(kCauseSize);
  core_.failure.text.reserve(kNameSize);
  core_.failure.file.reserve(kNameSize);
  first_line_ = core_.paper.dropped() + core_.paper.lines().size();
  const std::optional<UnansweredDocument> last = FindUnanswered(core_);
  cut_off_ = EndCutOff(core_, desk_);
  if (!cut_off_) unanswered_ = last;
  clock_behind_ = FindClockBehind(core_);
  day_notice_ = FindDayNotice(core_.store, core_.Now());
}

VirtualRegister::~VirtualRegister() {
  const CancellationDelay whole;
  core_.NoteAnswered();
}

std::string VirtualRegister::start_notice() const {
  std::string notice;
  const auto add = [&notice](const std::string& sentence) {
    if (!notice.empty() && !sentence.empty()) notice += ' ';
    notice += sentence;
  };
  if (cut_off_) add(CutOffNotice(*cut_off_));
  if (unanswered_) add(UnansweredNotice(*unanswered_));
  if (clock_behind_) add(ClockNotice(*clock_behind_));
  add(DayNoticeText(day_notice_));
  return notice;
}

void VirtualRegister::NoteFailure(bool doubtful) noexcept {
  // The texts have their room since the start.
  const auto note = [this, doubtful](const FailureView& failure, std::string_view english) {
    RegisterFailure& kept = core_.failure;
    kept.cause = failure.cause;
    kept.numbers = failure.numbers;
    kept.text.assign(failure.text.substr(0, kNameSize));
    kept.place = failure.place;
    kept.file.assign(failure.file.substr(0, kNameSize));
    kept.doubtful = doubtful;
    core_.session.lottery_drop = {};
    std::string& text = core_.last_failure;
    text.assign(english.substr(0, kCauseSize - kDoubtfulEnglish.size()));
    if (doubtful) text += kDoubtfulEnglish;
  };
  try {
    throw;
  } catch (const std::bad_alloc&) {
    note({FailureCause::kNoMemory}, EnglishPattern(FailureCause::kNoMemory));
  } catch (const RegisterError& error) {
    const RegisterFailure& failure = error.failure();
    note({failure.cause, failure.numbers, failure.text, failure.place, failure.file}, error.what());
  } catch (const std::system_error& error) {
    const bool of_system = error.code().category() == std::generic_category() ||
                           error.code().category() == std::system_category();
    note({FailureCause::kForeign, {of_system ? error.code().value() : 0}, error.what()},
         error.what());
  } catch (const std::exception& error) {
    note({FailureCause::kForeign, {}, error.what()}, error.what());
  } catch (...) {
    note({FailureCause::kUnknown}, EnglishPattern(FailureCause::kUnknown));
  }
  if (core_.failure.cause == FailureCause::kNotOnDisk) core_.database.NoteTold();
}

// --- Faults on demand

RegisterError VirtualRegister::WhyNotKept(int code) const {
  return RegisterError(code == RTF_E_FAILURE ? core_.failure : MakeFailure(FailureCause::kAtWork));
}

void VirtualRegister::AddFault(Fault fault) {
  std::optional<RegisterError> refused;
  const int code = Perform(std::nullopt, [&] {
    try {
      core_.faults.Add(std::move(fault));
    } catch (const RegisterError& error) {
      refused = error;
      return RTF_E_ILLEGAL;
    }
    return RTF_SUCCESS;
  });
  if (code == RTF_SUCCESS) return;
  throw refused ? *refused : WhyNotKept(code);
}

void VirtualRegister::ClearFaults() {
  const int code = Perform(std::nullopt, [&] {
    core_.faults.Clear();
    return RTF_SUCCESS;
  });
  if (code != RTF_SUCCESS) throw WhyNotKept(code);
}

// --- Device state and properties

int VirtualRegister::GetState() {
  if (core_.service == ServiceState::kClosed) return RTF_S_CLOSED;
  int state = RTF_S_BUSY;  // while an operation runs
  Perform(ClientOperation::kGetState, [&] {
    state = core_.faults.PollState();
    return RTF_SUCCESS;
  });
  return state;
}

int VirtualRegister::GetIntProperty(int property, int* value) {
  return Perform(ClientOperation::kGetIntProperty, [&] {
    if (value == nullptr) return RTF_E_ILLEGAL;
    if (const int code = CheckProperty(property)) return code;
    if (property == RTF_PIDX_State && core_.service == ServiceState::kClosed) {
      *value = RTF_S_CLOSED;
      return RTF_SUCCESS;
    }
    if (property == RTF_PIDX_State) {
      *value = core_.faults.PollState();
      return RTF_SUCCESS;
    }
    if (property == RTF_PIDXFptr_PrinterState && core_.report_polls > 0) {
      --core_.report_polls;
      *value = RTF_FPTR_PS_REPORT;
      return RTF_SUCCESS;
    }
    return ReadIntProperty(core_, property, value);
  });
}

int VirtualRegister::SetIntProperty(int property, int value) {
  return Perform(ClientOperation::kSetIntProperty,
                 [&] { return WriteIntProperty(core_, property, value); });
}

int VirtualRegister::GetStringProperty(int property, char* value) {
  return Perform(ClientOperation::kGetStringProperty, [&] {
    if (value == nullptr) return RTF_E_ILLEGAL;
    if (const int code = CheckProperty(property)) return code;
    std::string text;
    if (const int code = ReadTextProperty(core_, property, &text)) return code;
    Give(text, value, kPropertyTextSize + 1);
    return RTF_SUCCESS;
  });
}

int VirtualRegister::SetStringProperty(int property, const char* value) {
  return Perform(ClientOperation::kSetStringProperty,
                 [&] { return WriteTextProperty(core_, property, View(value)); });
}

int VirtualRegister::GetDataInternal(int item, char* text) {
  return Perform(ClientOperation::kGetDataInternal, [&] {
    const DataItem* row = FindDataItem(item);
    if (text == nullptr) return RTF_E_ILLEGAL;
    if (row == nullptr || row->read == nullptr) return NoDataItem(item);
    Give(row->read(core_, keyboard_), text, kDataItemSize);
    return RTF_SUCCESS;
  });
}

int VirtualRegister::SetDataInternal(int item, const char* text) {
  return Perform(ClientOperation::kSetDataInternal, [&] {
    const DataItem* row = FindDataItem(item);
    if (row == nullptr) return NoDataItem(item);
    if (row->write == nullptr) return Refuse(RTF_E_ILLEGAL, RefusalCause::kReadOnly, {item});
    return row->write(core_, View(text));
  });
}

// --- Reading

int VirtualRegister::GetData(int selector, int* number, char* text) {
  return Perform(ClientOperation::kGetData, [&] {
    if (text == nullptr) return RTF_E_ILLEGAL;
    static_cast<void>(number);
    for (const DataSelector& row : kDataSelectors) {
      if (row.selector != selector) continue;
      Give(row.read(core_), text, kGetDataSize);
      return RTF_SUCCESS;
    }
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTotal, {selector});
  });
}

int VirtualRegister::GetDate(char* date) {
  return Perform(ClientOperation::kGetDate, [&] {
    if (date == nullptr) return RTF_E_ILLEGAL;
    const bool closing = core_.options.date_type == RTF_FPTR_DT_EOD;
    const std::optional<Closure> last = closing ? core_.store.LastClosure() : std::nullopt;
    if (closing && !last) return Refuse(RTF_E_NOEXIST, RefusalCause::kNoClosingYet);
    const std::tm time = last ? last->time : core_.Now();
    Give(DateTimeText(time), date, kGetDateSize);
    return RTF_SUCCESS;
  });
}

// --- Drawer, displays and keyboard

int VirtualRegister::OpenDrawer() {
  return Perform(ClientOperation::kOpenDrawer, [&] {
    ++core_.drawer_count;
    return RTF_SUCCESS;
  });
}

std::string VirtualRegister::display_text(int display, int row) const {
  const auto found = core_.displays.find(display);
  if (found == core_.displays.end() || row < 0 || row >= Display::kRows) return {};
  return found->second.rows[static_cast<size_t>(row)];
}

int VirtualRegister::ShowText(int display, int row, int column, std::string_view text, bool clear) {
  if (display < 0 || display > 2 || row < 0 || row >= Display::kRows || column < 0 ||
      column >= Display::kColumns) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kDisplay, {display});
  }
  std::string& shown = core_.displays[display].rows[static_cast<size_t>(row)];
  std::string line = clear ? std::string() : shown;
  const size_t start = static_cast<size_t>(column);
  const std::string clean = ReadHostText(text).text;
  const std::string_view part = std::string_view(clean).substr(0, Display::kColumns - start);
  line.resize(std::max(line.size(), start + part.size()), ' ');
  line.replace(start, part.size(), part);
  while (!line.empty() && line.back() == ' ') line.pop_back();
  shown = std::move(line);
  return RTF_SUCCESS;
}

int VirtualRegister::ClearText() {
  return Perform(ClientOperation::kClearText, [&] {
    core_.displays.clear();
    return RTF_SUCCESS;
  });
}

int VirtualRegister::DisplayText(const char* text, int) {
  return Perform(ClientOperation::kDisplayText,
                 [&] { return ShowText(2, 0, 0, View(text), true); });
}

int VirtualRegister::DisplayTextAt(int row, int column, const char* text, int) {
  return Perform(ClientOperation::kDisplayTextAt,
                 [&] { return ShowText(2, row, column, View(text), false); });
}

int VirtualRegister::DisplayTextEx(const char* text, int, int display, int, bool clear) {
  return Perform(ClientOperation::kDisplayTextEx,
                 [&] { return ShowText(display, 0, 0, View(text), clear); });
}

int VirtualRegister::DisplayTextAtEx(int row, int column, const char* text, int, int display, int,
                                     bool clear) {
  return Perform(ClientOperation::kDisplayTextAtEx,
                 [&] { return ShowText(display, row, column, View(text), clear); });
}

int VirtualRegister::KeyCodeInput(const char* keys_code_numerics, const char* keys_code_alfa_fp,
                                  const char* key_code_alfa_lcd, uint8_t key_code_terminator) {
  return Perform(ClientOperation::kKeyCodeInput, EffectsOfKey(key_code_terminator), [&] {
    return keyboard_.Play(View(keys_code_numerics), View(keys_code_alfa_fp),
                          View(key_code_alfa_lcd), key_code_terminator);
  });
}

// The register's direct commands: 1 reads the data item `argument` into the data, 2 writes it
// from there, 502 and 503 switch the line to a device behind the register on and off.
int VirtualRegister::DirectIO(int cmd, int* argument, char* data) {
  return Perform(ClientOperation::kDirectIO, EffectsOfRecord(cmd != 1), [&] {
    if (argument == nullptr || data == nullptr) return RTF_E_ILLEGAL;
    const DataItem* item = cmd == 1 || cmd == 2 ? FindDataItem(*argument) : nullptr;
    switch (cmd) {
      case 1:
        if (item == nullptr || item->read == nullptr) return NoDataItem(*argument);
        Give(item->read(core_, keyboard_), data, kDirectIoSize);
        return RTF_SUCCESS;
      case 2:
        if (item == nullptr) return NoDataItem(*argument);
        if (item->write == nullptr)
          return Refuse(RTF_E_ILLEGAL, RefusalCause::kReadOnly, {*argument});
        return item->write(core_, BoundedView(data, kDirectIoSize));
      case 502:
      case 503:
        core_.pass_through = cmd == 502;
        return RTF_SUCCESS;
      default:
        return Refuse(RTF_E_ILLEGAL, RefusalCause::kNotModelled);
    }
  });
}

// --- Logging and waiting

void VirtualRegister::LogTrace(const char* line) { Keep(&trace_lines_, line); }
void VirtualRegister::LogError(const char* line) { Keep(&error_lines_, line); }
// The register answers each call when it is done: there is nothing to wait for.
void VirtualRegister::set_wait_event(Event*) {}
void VirtualRegister::set_wait_result_code(int) {}

}  // namespace lorimat
