// The translator for a device that may be away as the door begins. It asks a device what that is as
// it is handed over, so that behind one that was away it is handed it anew.
#pragma once

#include <functional>
#include <string>

#include "console/host/library.h"
#include "console/terminal/streams.h"
#include "door/job/fiscal_device.h"

namespace lorimat::door {

class DoorLibrary {
 public:
  // The definition file is read again when the device is handed over anew. The device has to
  // outlive this object. Throws console::Failure when the library cannot be loaded.
  DoorLibrary(const std::string& definition, const std::string& library, console::Streams& streams,
              FiscalDevice& device);

  // Hands the device over. False when the definition file cannot be read.
  bool Begin();
  // The device was away meanwhile: it is handed over anew ahead of the next line, and `there` is
  // told what it is.
  void BeginAgain(std::function<void(const DeviceState& state)> there);
  // Runs a line, and writes its answer's text; 0 or a result code, that of a device that is off
  // where it has to be handed over anew and cannot be. For one thread.
  long RunLine(const std::string& line, std::string* answer);

 private:
  console::Descriptor definition_;
  console::Library library_;
  FiscalDevice& device_;
  bool is_stale_ = false;
  std::function<void(const DeviceState& state)> there_;
};

}  // namespace lorimat::door
