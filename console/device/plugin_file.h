// The file of a plug-in (include/lorimatrt/device.h): what it says of itself, looked at in a
// process of its own before this one takes it in.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/device/open_device.h"
#include "console/message/load_failure.h"
#include "lorimatrt/device.h"

namespace lorimat::console {

// What a plug-in said when it was opened, copied. Its texts are cut, and may hold any byte.
struct PluginFacts {
  int result = LORIMAT_DEVICE_FAILED;
  uint32_t abi = 0;
  uint32_t kind = 0;
  uint32_t can = 0;
  std::string name = {};
  std::string version = {};
  std::string error = {};
  std::string lacks = {};  // the member that has to be there, or is wrong

  bool is_open() const { return result == LORIMAT_DEVICE_OK && lacks.empty(); }
  // Whether what keeps it from being opened may pass.
  bool is_away() const {
    return result == LORIMAT_DEVICE_FAILED || result == LORIMAT_DEVICE_IN_USE;
  }
  // Whether it is the same device still.
  bool IsSame(const PluginFacts& other) const;
};

// The struct that is handed to a plug-in, with the options that it points to.
class PluginCall {
 public:
  PluginCall(const DeviceRequest& request, lorimat_device_purpose purpose);
  PluginCall(const PluginCall&) = delete;
  PluginCall& operator=(const PluginCall&) = delete;

  void SetLog(void (*log)(void*, const char*), void* log_data);
  // Opens the device of a file that was loaded. What is open is closed by Close, also when the
  // facts show that something is missing.
  PluginFacts Open(void* handle);
  void Close(void* handle);
  // Whether it is to be closed, also when Open has thrown.
  bool is_open() const { return is_open_; }

  // As the plug-in left it when it was opened: nothing that it writes there later counts.
  const lorimat_device_plugin& opened() const { return opened_; }

 private:
  std::vector<std::pair<std::string, std::string>> texts_;
  std::vector<lorimat_device_option> options_;
  lorimat_device_plugin plugin_{};
  // Whoever writes more than there is does not write over anything of ours.
  unsigned char behind_[4096] = {};
  lorimat_device_plugin opened_{};
  bool is_open_ = false;
};

struct PluginTrial {
  LoadFailure failure = {};
  PluginFacts facts = {};
};

// Opens and closes the file in another process.
PluginTrial TryPlugin(const DeviceRequest& request);

// Why a device is not opened; empty when the facts have nothing against it.
std::string RefusalOf(const std::string& file, const PluginFacts& facts);

// "paper, faults": what it can do beyond the interface, for a person; and the same for programs.
std::vector<std::string> AbilityTexts(uint32_t can);
std::vector<std::string> AbilityNames(uint32_t can);

// The path by which a file is loaded: without a folder it would be searched in the system's.
std::string LoadPath(const std::string& file);

}  // namespace lorimat::console
