#include "console/device/open_device.h"

#include <algorithm>
#include <iterator>

#include "console/device/plugin_device.h"
#include "console/device/register_device.h"
#include "console/device/replay_device.h"
#include "console/message/failure.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr BuiltInDevice kBuiltInDevices[] = {
    {kRegisterName, &OpenRegister, &FilesOfRegister, &RequireRegisterFile},
    {kReplayName, &OpenReplay, &FilesOfReplay, nullptr},
};

// The name, and behind its ':' a file.
std::pair<std::string_view, std::string_view> Parts(std::string_view device) {
  const size_t colon = device.find(':');
  if (colon == device.npos) return {device, {}};
  return {device.substr(0, colon), device.substr(colon + 1)};
}

// With the file of the name among the options.
DeviceRequest TakenApart(const DeviceRequest& request) {
  const auto [name, file] = Parts(request.device);
  DeviceRequest taken = request;
  if (name.size() == request.device.size()) return taken;
  if (file.empty()) throw Failure(Tr("the device '{}' has to have a file behind its ':'", name));
  taken.device = name;
  taken.options.emplace_back("file", file);
  return taken;
}

}  // namespace

std::string DeviceRequest::Option(std::string_view key) const {
  const auto found = std::find_if(options.rbegin(), options.rend(),
                                  [key](const auto& one) { return one.first == key; });
  return found == options.rend() ? std::string() : found->second;
}

const BuiltInDevice* FindBuiltInDevice(const DeviceRequest& request) {
  const std::string_view name = Parts(request.device).first;
  const auto* const row =
      std::find_if(std::begin(kBuiltInDevices), std::end(kBuiltInDevices),
                   [name](const BuiltInDevice& one) { return one.name == name; });
  return row == std::end(kBuiltInDevices) ? nullptr : row;
}

std::string FileOfRegister(const DeviceRequest& request) {
  return TakenApart(request).Option("file");
}

void RequireDevice(const DeviceRequest& request) {
  const BuiltInDevice* row = FindBuiltInDevice(request);
  if (row != nullptr && row->require != nullptr) row->require(TakenApart(request));
}

std::unique_ptr<Device> OpenDevice(const DeviceRequest& request, Streams& streams) {
  const BuiltInDevice* row = FindBuiltInDevice(request);
  return row != nullptr ? row->open(TakenApart(request), streams) : OpenPlugin(request, streams);
}

std::vector<KeptFile> FilesOfDevice(const DeviceRequest& request) {
  if (const BuiltInDevice* row = FindBuiltInDevice(request)) return row->files(TakenApart(request));
  return {{request.device, TR_TEXT("the file of the device")}};
}

}  // namespace lorimat::console
