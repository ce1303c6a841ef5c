#include "console/device/device.h"

#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "language/code_table.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {

bool DeviceState::ready() const {
  return printer.value_or(RTF_FPTR_PS_MONITOR) == RTF_FPTR_PS_MONITOR;
}

std::string DevicePaper::text() {
  std::string text;
  for (const std::string& line : printed()) text += line + "\n";
  return text;
}

void Device::Wrap(const ClientWrapper& make) {
  wrappers_.push_back(make(stoppable_.device()));
  stoppable_.SetDevice(*wrappers_.back());
}

std::string Device::Reason(const DeviceRefusal& refusal, long code) {
  // A line may go on behind a refusal, and fail for something else.
  const bool led_to_it = refusal.result != RTF_SUCCESS && language::ComesFrom(code, refusal.result);
  return led_to_it ? refusal.reason : std::string();
}

std::string Device::ReasonSince(uint64_t refusals_before, long code) const {
  return refusals() == refusals_before ? std::string() : Reason(last_refusal(), code);
}

void Device::TellFailure(Streams& streams) {
  const std::string failure = last_failure();
  if (failure == told_) return;
  told_ = failure;
  if (!failure.empty()) TellError(streams, failure);
}

}  // namespace lorimat::console
