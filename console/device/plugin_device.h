// A device from a file: the plug-in loaded, on a thread of its own, which the program does not wait
// for without an end.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "console/device/device.h"
#include "console/device/device_thread.h"
#include "console/device/open_device.h"
#include "console/device/plugin_file.h"
#include "console/device/timed_client.h"
#include "console/terminal/streams.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {

class PluginDevice : public Device {
 public:
  // Tries the file in another process, and loads and opens it. Throws Failure with the cause,
  // DeviceAway where that may pass.
  PluginDevice(const DeviceRequest& request, Streams& streams);
  // Closes it, unless it hangs; the file stays loaded.
  ~PluginDevice() override;

  std::string name() const override { return facts_.name; }
  std::string version() const override { return facts_.version; }
  std::string Greeting() const override;
  DeviceFacts facts() override;
  DeviceState state() override;
  bool ready() override;
  std::vector<std::pair<std::string, std::string>> StatusRows() override;
  DevicePaper* paper() override;
  DeviceFaults* faults() override;
  uint64_t refusals() const override { return client_->refused(); }
  int last_result() const override { return TimedClient::kRefused; }
  DeviceRefusal last_refusal() const override;
  DeviceCallFault TakeCallFault() override;
  uint64_t exceptions() const override { return exceptions_; }
  bool given_up() const override { return !thread_->given_up().call.empty(); }
  std::string last_failure() const override { return failure_; }
  std::string OpenDocumentFate() override;
  LeftNote NoteOfLeft() override;

 private:
  struct Core;
  class Paper;
  class Faults;

  // Takes over what was opened, and was the same when it was tried. Throws what keeps it from that;
  // the caller closes it then.
  void TakeOpened(const std::optional<PluginFacts>& tried);
  // Runs work on the device's thread; throws Failure when that has been given up.
  void Run(const char* call, std::function<void()> work);
  // Throws Failure when it was.
  void RequireThread() const;
  std::string HangText() const;
  // Takes over what came of a call: lines for the trace, faults.
  void LookBehind();
  void NoteFault(DeviceCallFault fault, ClientOperation operation);
  std::optional<int> Property(int property);

  Streams& streams_;
  std::string file_;
  PluginFacts facts_;
  std::shared_ptr<Core> core_;  // also held by a call that was given up
  std::unique_ptr<DeviceThread> thread_;
  std::unique_ptr<TimedClient> client_;
  std::unique_ptr<Paper> paper_;
  std::unique_ptr<Faults> faults_;
  DeviceCallFault call_fault_ = DeviceCallFault::kNone;
  uint64_t exceptions_ = 0;
  std::string failure_;
};

// Opens the plug-in of the file. Throws Failure with the cause.
std::unique_ptr<Device> OpenPlugin(const DeviceRequest& request, Streams& streams);

}  // namespace lorimat::console
