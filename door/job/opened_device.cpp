#include "door/job/opened_device.h"

#include <type_traits>
#include <utility>

#include "console/device/device_thread.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {
namespace {

// Stands there while no device does. One that supports nothing would refuse, and a refusal says
// that nothing was done.
class AwayClient : public RtfClientInterface {
 public:
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return Off<ClientOperation::k##Name, Result> Arguments; }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  template <ClientOperation operation, typename Result, typename... Arguments>
  static constexpr Result Off(Arguments...) {
    if constexpr (operation == ClientOperation::kGetState) {
      return RTF_S_CLOSED;
    } else if constexpr (std::is_same_v<Result, int>) {
      return RTF_E_OFFLINE;
    } else {
      return Result();
    }
  }
};

AwayClient& Away() {
  static AwayClient client;
  return client;
}

}  // namespace

OpenedDevice::OpenedDevice(console::DeviceRequest request, console::Streams& streams)
    : request_(std::move(request)), streams_(streams), front_(Away()) {
  try {
    device_ = console::OpenDevice(request_, streams_);
    front_.SetDevice(*device_->client());
  } catch (const console::DeviceAway& away) {
    // Its file could be loaded, and says itself that there is no device.
    away_ = away.what();
  }
  // What was tried once is not tried in another process again: this one has threads by then.
  request_.was_tried = true;
}

void OpenedDevice::PutAway() { front_.SetDevice(Away()); }

void OpenedDevice::Reopen() {
  front_.SetDevice(Away());
  // A thread of it that stays behind may be anywhere in its code, and says so as it is closed.
  device_.reset();
  if (console::DeviceThread::AnyGivenUp()) {
    throw console::DeviceHung(
        console::Tr("{}: the device did not come back from a call, and cannot be opened again",
                    console::Shown(request_.device)));
  }
  device_ = console::OpenDevice(request_, streams_);
  front_.SetDevice(*device_->client());
}

uint64_t OpenedDevice::refusals() const { return device_ != nullptr ? device_->refusals() : 0; }

console::DeviceRefusal OpenedDevice::last_refusal() const {
  const console::EnglishMessages english;
  return device_ != nullptr ? device_->last_refusal() : console::DeviceRefusal();
}

std::string OpenedDevice::HangText() const {
  return device_ != nullptr && device_->given_up() ? device_->last_failure() : std::string();
}

}  // namespace lorimat::door
