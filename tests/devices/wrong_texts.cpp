// A device that fills its texts wrongly: too long, without an end, of another form, and otherwise
// from one time to the next. What it does is right.
#include <cstring>

#include "sound_device.h"

namespace {

class WrongTexts : public SoundDevice {
 public:
  int GetDataInternal(int item, char* text) override {
    switch (item) {
      case 75:
        return Give("two", text);
      case 78:  // departments: it has one more with each day that is closed
        return Give(std::to_string(40 + closings_), text);
      case 92:  // as long as its room, and no end
        std::memset(text, '9', 50);
        return RTF_SUCCESS;
      case 352:
        return Give("yes", text);
      case 371:
        return Give("20;0;0", text);
      default:
        return RTF_E_ILLEGAL;
    }
  }
  int GetHeaderLine(int, char* text) override {  // there is room for 65
    std::memset(text, 'T', 80);
    text[80] = '\0';
    return RTF_SUCCESS;
  }
  int PrintZReportEx(bool send) override {
    const int code = SoundDevice::PrintZReportEx(send);
    if (code == RTF_SUCCESS) ++closings_;
    return code;
  }

 private:
  int closings_ = 0;
};

WrongTexts device;

}  // namespace

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  return OpenSound(plugin, "wrong-texts", &device, [](void*) { return true; });
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {}
