// A device that is not there.
#pragma once

#include <optional>
#include <stdexcept>

#include "door/job/client_device.h"

namespace lorimat::door {

// Away until it has been opened so many times; the first ones fail.
class LeavingDevice : public ClientDevice {
 public:
  LeavingDevice(FiscalDevice& inner, int openings) : inner_(inner), openings_(openings) {}

  RtfClientInterface& client() override { return inner_.client(); }
  std::optional<DeviceState> Ask() override {
    return openings_ > 0 ? std::nullopt : ClientDevice::Ask();
  }
  void Reopen() override {
    ++reopened;
    if (--openings_ > 0) throw std::runtime_error("nothing at the other end");
  }

  int reopened = 0;

 private:
  FiscalDevice& inner_;
  int openings_;
};

}  // namespace lorimat::door
