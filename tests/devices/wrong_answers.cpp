// A device that answers wrongly: -1, codes of no list, exceptions, what is refused where it is
// allowed and the other way round, and a state that does not follow.
#include <stdexcept>

#include "sound_device.h"

namespace {

class WrongAnswers : public SoundDevice {
 public:
  // Sells without a receipt, and refuses another department with a code of its own.
  int PrintRecItemEx(int type, const char* text, int64_t price, int quantity, int unit,
                     int64_t unit_price, const char* code, int department, bool one,
                     const char* more) override {
    if (!open_) return RTF_SUCCESS;
    if (department > 40) return 4711;
    return SoundDevice::PrintRecItemEx(type, text, price, quantity, unit, unit_price, code,
                                       department, one, more);
  }
  // Has it in a receipt, and not behind a payment.
  int PrintRecSubtotalEx(int64_t amount, bool check) override {
    if (paid_ > 0 && open_) return RTF_E_ILLEGAL;
    return SoundDevice::PrintRecSubtotalEx(amount, check);
  }
  // Closes the day with a receipt open, which it ends.
  int PrintZReportEx(bool) override {
    open_ = false;
    return RTF_SUCCESS;
  }
  int PrintRecMessage(const char*) override { return -1; }
  int OpenDrawer() override { throw std::runtime_error("no drawer"); }
  // Refuses, and prints all the same.
  int PrintRecVoid(const char*) override {
    open_ = false;
    return RTF_EFPTR_WRONG_STATE;
  }
  int ClearOutput() override { return RTF_E_OFFLINE; }
};

WrongAnswers device;

}  // namespace

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  return OpenSound(plugin, "wrong-answers", &device, [](void*) { return true; });
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {}
