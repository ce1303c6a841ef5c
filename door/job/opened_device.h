// A device as the console opens it, a plug-in say, as the door's.
#pragma once

#include <memory>
#include <string>

#include "console/device/open_device.h"
#include "console/device/stoppable_client.h"
#include "console/terminal/streams.h"
#include "door/job/client_device.h"

namespace lorimat::door {

class OpenedDevice : public ClientDevice {
 public:
  // Opens it, or leaves that to Reopen where it is away. Throws console::Failure with the cause.
  OpenedDevice(console::DeviceRequest request, console::Streams& streams);

  // Stays the same, whatever stands behind it.
  RtfClientInterface& client() override { return front_; }
  // Closes it and opens it again. Throws console::Failure with the cause: until it is open, every
  // operation is answered as by a device that is off. It is console::DeviceHung where one of these
  // calls, or one before, was given up.
  void Reopen() override;
  uint64_t refusals() const override;
  console::DeviceRefusal last_refusal() const override;
  // Why it was not opened as this began, for a person; empty where it was.
  const std::string& away() const { return away_; }
  // It is not asked again before it has been opened anew.
  void PutAway();
  // What tells of a call that did not come back and was given up; empty without one.
  std::string HangText() const;

 private:
  console::DeviceRequest request_;
  console::Streams& streams_;
  std::unique_ptr<console::Device> device_;
  console::StoppableClient front_;
  std::string away_;
};

}  // namespace lorimat::door
