// A device that hangs where its option says: "at=subtotal" in the subtotal of a receipt, "at=state"
// when it is asked for its state within one. "at=training" leaves training there.
#include <unistd.h>

#include "sound_device.h"

namespace {

std::string at;
bool training = true;

[[noreturn]] void Hang() {
  std::fputs("the device hangs\n", stderr);
  for (;;) pause();
}

class Stuck : public SoundDevice {
 public:
  void Open() { open_ = true; }
  int GetIntProperty(int property, int* value) override {
    if (at == "state" && open_) Hang();
    return SoundDevice::GetIntProperty(property, value);
  }
  int PrintRecSubtotalEx(int64_t amount, bool check) override {
    const int code = SoundDevice::PrintRecSubtotalEx(amount, check);
    if (at == "subtotal" && code == RTF_SUCCESS) Hang();
    if (at == "training" && code == RTF_SUCCESS) training = false;
    return code;
  }
};

Stuck device;

}  // namespace

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  const char* given = lorimat_device_find_option(plugin, "at");
  at = given != nullptr ? given : "";
  if (at == "open") device.Open();
  return OpenSound(plugin, "stuck", &device, [](void*) { return training; });
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {}
