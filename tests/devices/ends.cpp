// A device that ends the process it is in, by "how": segv, abort or exit. "at" says in which calls,
// with commas between them: item (the taking back of one), closing (with a receipt open), header,
// state (with a receipt open), close (when something was sold). With "opened", a file that it
// lengthens by a byte whenever it is opened, and "at" with third-open, it ends there as well.
#include <sys/mman.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sound_device.h"

namespace {

std::string at;
std::string how;
bool sold = false;

bool IsAt(const std::string& place) {
  return ("," + at + ",").find("," + place + ",") != std::string::npos;
}

void EndAt(const std::string& place) {
  if (!IsAt(place)) return;
  if (how == "exit") std::exit(3);
  if (how == "abort") std::abort();
  // As it is without a sanitizer's handler.
  std::signal(SIGSEGV, SIG_DFL);
  void* nobodys = mmap(nullptr, sizeof(int), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  *static_cast<volatile int*>(nobodys) = 0;
}

class Ends : public SoundDevice {
 public:
  int GetIntProperty(int property, int* value) override {
    if (open_) EndAt("state");
    return SoundDevice::GetIntProperty(property, value);
  }
  int GetHeaderLine(int line, char* text) override {
    EndAt("header");
    return SoundDevice::GetHeaderLine(line, text);
  }
  int PrintRecItemEx(int type, const char* text, int64_t price, int quantity, int vat,
                     int64_t unit_price, const char* unit, int department, bool flag,
                     const char* code) override {
    if (type != 0) EndAt("item");
    sold = true;
    return SoundDevice::PrintRecItemEx(type, text, price, quantity, vat, unit_price, unit,
                                       department, flag, code);
  }
  int PrintZReportEx(bool stay) override {
    if (open_) EndAt("closing");
    return SoundDevice::PrintZReportEx(stay);
  }
};

Ends device;

}  // namespace

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  const auto option = [plugin](const char* key) {
    const char* given = lorimat_device_find_option(plugin, key);
    return std::string(given != nullptr ? given : "");
  };
  at = option("at");
  how = option("how");
  if (const std::string opened = option("opened"); !opened.empty()) {
    std::FILE* file = std::fopen(opened.c_str(), "a");
    if (file == nullptr) return LORIMAT_DEVICE_FAILED;
    std::fputc('o', file);
    const long times = std::ftell(file);
    std::fclose(file);
    if (times == 3) EndAt("third-open");
  }
  return OpenSound(plugin, "ends", &device, [](void*) { return true; });
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {
  // The trial ahead of the work has sold nothing.
  if (sold) EndAt("close");
}
