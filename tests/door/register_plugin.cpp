// A plug-in over the virtual register, for the door. Its options are "file", the register's,
// "throws", a file: an opening that finds it removes it, and throws;
// "lacks", a data item that it says it does not have, "hangs", one that it does not come back from,
// and "unplugged", a file: as long as that is there, the device is away and cannot be opened. With
// "mute", a file too, it is opened and answers nothing. "fixed" gives it a fixed decimal point.
// "opening", "trial" and "closing", files: an opening, one that is a trial, or a closing does not
// come back while that is there, and one of "other" says something else of itself than its trial
// did. "closed" is a file that a closing makes. SetDataInternal(kFaultItem, WORD) makes it go
// wrong: "hang" at what it is to do next; "gone" for good, until it has been opened twice, of which
// the first time fails.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#include "lorimatrt/device.h"
#include "passing_client.h"
#include "register/client/virtual_register.h"
#include "rpccommon/client/rtfclientbase.h"

namespace lorimat::door {
namespace {

// What lasts from one opening to the next one.
bool is_gone = false;
bool is_missed = false;  // the next opening fails
std::string unplugged;
std::string mute;

std::string hangs_at_closing;
std::string closed;

bool IsThere(const char* file) { return file != nullptr && access(file, F_OK) == 0; }

void HangWhile(const char* file) {
  while (IsThere(file)) pause();
}

bool IsUnplugged() { return IsThere(unplugged.c_str()); }

std::string TextOption(const lorimat_device_plugin* plugin, const char* name) {
  const char* text = lorimat_device_find_option(plugin, name);
  return text != nullptr ? text : "";
}

class PluginClient : public PassingClient<PluginClient> {
 public:
  PluginClient(const std::string& file, int lacks, int hangs, bool fixed)
      : register_(Settings(file)), lacks_(lacks), hangs_at_(hangs), fixed_(fixed) {}
  RtfClientInterface& inner() { return register_; }

  int SetDataInternal(int item, const char* text) override {
    if (item != kFaultItem) return PassingClient::SetDataInternal(item, text);
    hangs_ = hangs_ || std::strcmp(text, "hang") == 0;
    is_gone = is_missed = is_gone || std::strcmp(text, "gone") == 0;
    return RTF_SUCCESS;
  }
  int GetDataInternal(int item, char* text) override {
    constexpr int kFixedPoint = 352;
    while (item == hangs_at_) pause();
    if (item == kFixedPoint && fixed_) {
      const int result = PassingClient::GetDataInternal(item, text);
      if (result == RTF_SUCCESS) std::strcpy(text, "1");
      return result;
    }
    return item == lacks_ ? RTF_E_ILLEGAL : PassingClient::GetDataInternal(item, text);
  }

  template <ClientOperation operation, OperationKind kind, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    if constexpr (std::is_same_v<decltype(call()), int> &&
                  operation != ClientOperation::kGetIntProperty &&
                  operation != ClientOperation::kGetState) {
      is_gone = is_gone || IsUnplugged();
      if (is_gone || IsThere(mute.c_str())) return RTF_E_OFFLINE;
    }
    if constexpr (ActsOnDevice(kind)) {
      while (hangs_) pause();
    }
    return call();
  }

 private:
  static RegisterSettings Settings(const std::string& file) {
    RegisterSettings settings;
    settings.file = file;
    return settings;
  }

  VirtualRegister register_;
  int lacks_;     // 0 for none
  int hangs_at_;  // the same
  bool fixed_;
  bool hangs_ = false;
};

std::unique_ptr<RtfClientInterface> client;

}  // namespace
}  // namespace lorimat::door

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  using namespace lorimat::door;
  if (lorimat_device_begin(plugin) != LORIMAT_DEVICE_OK) return LORIMAT_DEVICE_OTHER_ABI;
  const bool is_trial = plugin->purpose == LORIMAT_DEVICE_TRIAL;
  const bool is_other = !is_trial && IsThere(lorimat_device_find_option(plugin, "other"));
  plugin->name = is_other ? "another" : "register plug-in";
  plugin->version = "1";
  HangWhile(lorimat_device_find_option(plugin, is_trial ? "trial" : "opening"));
  hangs_at_closing = is_trial ? "" : TextOption(plugin, "closing");
  closed = is_trial ? "" : TextOption(plugin, "closed");
  const char* throws = lorimat_device_find_option(plugin, "throws");
  if (!is_trial && throws != nullptr && unlink(throws) == 0) {
    throw 1;
  }
  unplugged = TextOption(plugin, "unplugged");
  mute = TextOption(plugin, "mute");
  if (is_missed || IsUnplugged()) {
    is_missed = false;
    std::strcpy(plugin->error, "there is nothing at the other end");
    return LORIMAT_DEVICE_FAILED;
  }
  is_gone = false;
  const char* file = lorimat_device_find_option(plugin, "file");
  const char* lacks = lorimat_device_find_option(plugin, "lacks");
  const char* hangs = lorimat_device_find_option(plugin, "hangs");
  if (file == nullptr) {
    std::strcpy(plugin->error, "file: is missing");
    return LORIMAT_DEVICE_BAD_OPTION;
  }
  try {
    if (is_trial) {
      client = std::make_unique<RtfClientBase>();
    } else {
      client = std::make_unique<PluginClient>(
          file, lacks != nullptr ? std::atoi(lacks) : 0, hangs != nullptr ? std::atoi(hangs) : 0,
          lorimat_device_find_option(plugin, "fixed") != nullptr);
    }
  } catch (const std::exception& error) {
    std::strncpy(plugin->error, error.what(), sizeof plugin->error - 1);
    return LORIMAT_DEVICE_FAILED;
  }
  plugin->kind = LORIMAT_DEVICE_CPP;
  plugin->client = client.get();
  return LORIMAT_DEVICE_OK;
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {
  using namespace lorimat::door;
  HangWhile(hangs_at_closing.c_str());
  client.reset();
  if (!closed.empty()) close(open(closed.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
}
