// The state of the device: asked for when it is wanted, never kept up to date.

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/threading/posix/thread.h"
#include "utility/log/log.h"

namespace {

// Bits of fiscal_inner_state_.
constexpr long kInnerBit3 = 0x8;
constexpr long kInnerBit5 = 0x20;
constexpr long kInnerBit16 = 0x10000;
constexpr long kInnerBit17 = 0x20000;

// Walks the fields of a status line, which ";" divides.
class StatusLine {
 public:
  explicit StatusLine(const char* text) : next_(text) {}

  bool TakeHexadecimal(long* value) {
    unsigned long bits = 0;
    if (!Take([&](const char* field, char** end) { bits = std::strtoul(field, end, 16); })) {
      return false;
    }
    *value = static_cast<long>(bits);
    return true;
  }

  bool TakeHexadecimal(int* value) {
    long bits = 0;
    if (!TakeHexadecimal(&bits)) return false;
    *value = static_cast<int32_t>(bits);
    return true;
  }

  bool TakeDecimal(int* value) {
    long number = 0;
    if (!Take([&](const char* field, char** end) { number = std::strtol(field, end, 10); })) {
      return false;
    }
    *value = static_cast<int32_t>(number);
    return true;
  }

 private:
  template <class Scan>
  bool Take(Scan scan) {
    if (next_ == nullptr) return false;
    const char* field = next_;
    next_ = std::strchr(field, ';');
    if (next_ != nullptr) ++next_;
    char* end = nullptr;
    scan(field, &end);
    return end != field;
  }

  const char* next_;
};

}  // namespace

int EcrCmdCommand::UpdateStatus() {
  int result = SyntaxError(ILLEGAL_VALUE);
  ClientText text;
  if (RTF_FP_INVOKE(GetDataInternal, 371, text.buffer) == RTF_SUCCESS) {
    StatusLine line(text.close());
    if (line.TakeHexadecimal(&fiscal_inner_state_) && line.TakeDecimal(&fiscal_functional_state_) &&
        line.TakeDecimal(&fiscal_operation_state_) && line.TakeHexadecimal(&fiscal_memory_state_) &&
        line.TakeHexadecimal(&fiscal_journal_state_) && line.TakeDecimal(&current_operator_) &&
        line.TakeDecimal(&key_mode_)) {
      result = 0;
    }
  }
  LOG_TRACE_F("fiscal_inner_state_ = %X", static_cast<unsigned int>(fiscal_inner_state_));
  LOG_TRACE_F("fiscal_functional_state_ = %d", fiscal_functional_state_);
  LOG_TRACE_F("fiscal_operation_state_ =%d", fiscal_operation_state_);
  // The line of the memory state shows the operation state: meant to stay.
  LOG_TRACE_F("fiscal_memory_state_ =%d", fiscal_operation_state_);
  LOG_TRACE_F("fiscal_journal_state_ =%X", static_cast<unsigned int>(fiscal_journal_state_));
  LOG_TRACE_F("current_operator_ =%d", current_operator_);
  LOG_TRACE_F("key_mode_ =%d", key_mode_);
  return result;
}

int EcrCmdCommand::UpdateStatusEx() {
  const int result = UpdateStatus();
  if (result != 0) return result;

  int state = 0;
  if (fiscal_functional_state_ == 0) state |= 0x01;
  if (fiscal_functional_state_ >= 2 && fiscal_functional_state_ <= 6) state |= 0x02;
  if (fiscal_functional_state_ == 7) state |= 0x20;
  if ((fiscal_inner_state_ & kInnerBit5) == 0) state |= 0x40;
  int inner = 0;
  if (fiscal_inner_state_ & kInnerBit16) inner |= 0x01;
  if (fiscal_inner_state_ & kInnerBit17) inner |= 0x04;

  constexpr int kBytes = 6;
  const int bytes[kBytes] = {0, 0, 0, state, inner, inner};
  for (int i = 0; i < kBytes; ++i) {
    sEcrStEx[i] = static_cast<char>(bytes[i]);
    // Behind what stands in szInfo: the caller empties it.
    AppendFormat(szInfo, sizeof szInfo, "%2.2X", static_cast<unsigned int>(bytes[i]));
  }
  return 0;
}

int EcrCmdCommand::status_offline() {
  szInfo[0] = 0;
  int result = UpdateStatus();
  if (result == 0) {
    // By bits here, where the extended status goes by values: state 1 counts.
    AppendFormat(szInfo, sizeof szInfo, "%d,%d,%d,", key_mode_,
                 (fiscal_functional_state_ & 0x7) != 0 ? 1 : 0, current_operator_);
    ClientText text;
    int number = 0;
    result = RTF_FP_INVOKE(GetData, RTF_FPTR_GD_FISCAL_REC, &number, text.buffer);
    if (result == 0) AppendFormat(szInfo, sizeof szInfo, "%s,", text.close());
  }
  struct Column {
    int item;
    int added_item;  // 0 for none
    bool with_zero;  // a column of the older status without a source follows, and reads 0
  };
  static constexpr Column kColumns[] = {
      {394, 0, false}, {2, 1, false},  {113, 0, false}, {118, 0, false},
      {115, 0, false}, {117, 0, true}, {114, 0, true},
  };
  for (const Column& column : kColumns) {
    int64_t value = 0;
    int64_t added = 0;
    if (result == 0) result = ReadDataItem(column.item, &value);
    if (result == 0 && column.added_item != 0) result = ReadDataItem(column.added_item, &added);
    if (result != 0) break;
    const uint64_t sum = static_cast<uint64_t>(value) + static_cast<uint64_t>(added);
    AppendFormat(szInfo, sizeof szInfo, "%lld,", static_cast<long long>(sum));
    if (column.with_zero) AppendText(szInfo, "0,");
  }
  if (result == 0) AppendText(szInfo, (fiscal_inner_state_ & kInnerBit3) != 0 ? "0" : "1");
  // A code of getDataInternal and of UpdateStatus has its class already and gets another:
  // meant.
  return checkResult(result);
}

int EcrCmdCommand::lastsco(char* szAUX1) {
  constexpr size_t kSize = 50;
  std::memset(szAUX1, 0, kSize);
  int code = getDataInternal(86, &commissioning);
  if (code != 0) return code;

  const auto read = [&](int selector, int* number) {
    ClientText text;
    int option = 0;
    const int result = RTF_FP_INVOKE(GetData, selector, &option, text.buffer);
    if (result == 0) *number = TextToInt(text.close());
    return result;
  };
  int closure = 0;
  int document = 0;
  // These two failures come out as the client gave them.
  if (commissioning != 0) code = read(RTF_FPTR_GD_Z_REPORT, &closure);
  if (code == 0) code = read(RTF_FPTR_GD_FISCAL_REC, &document);
  if (code != 0) return code;
  if (commissioning != 0) {
    AppendFormat(szAUX1, kSize, "%04lld", static_cast<long long>(closure) + 1);
  }
  AppendFormat(szAUX1, kSize, "%04d", document);
  return 0;
}

void EcrCmdCommand::WaitIdle() {
  constexpr int kStep = 150;  // milliseconds
  int time_out = 60000;
  while (rtfClient_ != nullptr && RTF_FP_INVOKE_NP(GetState) == RTF_S_BUSY && time_out > 0) {
    Thread::Sleep(kStep);
    time_out -= kStep;
  }
}
