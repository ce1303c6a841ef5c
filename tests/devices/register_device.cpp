// The virtual register as a plug-in, by the face that it has for hosts: a device from a file that
// has all there is. Its option is file=PATH; without one it is in memory.
#include <cstdio>
#include <exception>
#include <memory>

#include "lorimatrt/client.h"
#include "lorimatrt/device.h"
#include "lorimatrt/register.h"

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  if (const int other = lorimat_device_begin(plugin)) return other;
  plugin->name = "register-plug-in";
  plugin->version = "1.0";
  try {
    lorimatrt::RegisterSettings settings;
    const char* file = lorimat_device_find_option(plugin, "file");
    if (file != nullptr) settings.SetFile(file);
    auto device = std::make_unique<lorimatrt::VirtualRegister>(settings);
    plugin->kind = LORIMAT_DEVICE_CPP;
    plugin->client = device->client();
    plugin->data = device.release();
  } catch (const std::exception& error) {
    std::snprintf(plugin->error, sizeof plugin->error, "%s", error.what());
    return LORIMAT_DEVICE_FAILED;
  }
  return LORIMAT_DEVICE_OK;
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin* plugin) {
  delete static_cast<lorimatrt::VirtualRegister*>(plugin->data);
}
