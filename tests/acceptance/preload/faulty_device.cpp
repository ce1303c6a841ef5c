// A plug-in that goes wrong as its option "fault" says; without it, a device that answers all.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "lorimatrt/device.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/services/rtffptrconst.h"

namespace {

std::string fault;
lorimat_device_plugin* opened = nullptr;
// The second opening in a row, which is the one to work: the trial is another process.
bool working = false;

void Hang() {
  for (;;) pause();
}

class FaultyClient : public RtfClientBase {
 public:
  int GetState() override { return RTF_S_IDLE; }
  int GetIntProperty(int property, int* value) override {
    if (fault == "hang-asked") Hang();
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    *value = open_ ? RTF_FPTR_PS_FISCAL_RECEIPT : RTF_FPTR_PS_MONITOR;
    return RTF_SUCCESS;
  }
  int BeginFiscalReceipt(bool) override {
    open_ = true;
    return RTF_SUCCESS;
  }
  int PrintRecItemEx(int, const char*, int64_t, int, int, int64_t, const char*, int, bool,
                     const char*) override {
    if (fault == "hang") {
      std::fputs("the device hangs\n", stderr);
      Hang();
    }
    if (fault == "throw") throw std::runtime_error("out of it");
    if (fault == "flood") {
      const std::string line(900, 'x');
      for (int i = 0; i < 5000; ++i) opened->log(opened->log_data, line.c_str());
    }
    if (fault == "capacities") opened->can = 0xFFFF, opened->paper_line = nullptr;
    return RTF_SUCCESS;
  }
  int PrintRecTotalEx(int64_t, const char*, bool) override {
    open_ = false;
    return RTF_SUCCESS;
  }

 private:
  bool open_ = false;
};

FaultyClient client;

bool PaperLine(void*, size_t number, char* text, size_t room) {
  if (number > 0) return false;
  std::memset(text, 'x', room - 1);
  std::snprintf(text, room, "PAPER");
  return true;
}

}  // namespace

LORIMAT_DEVICE_API int lorimat_device_open(lorimat_device_plugin* plugin) {
  const char* given = lorimat_device_find_option(plugin, "fault");
  fault = given != nullptr ? given : "";
  opened = plugin;
  working = plugin->purpose == LORIMAT_DEVICE_WORK;
  if (fault == "abi") {
    std::memset(static_cast<void*>(plugin), 0x7F, sizeof *plugin);
    plugin->abi = 7;
    return LORIMAT_DEVICE_OK;
  }
  if (lorimat_device_begin(plugin) != LORIMAT_DEVICE_OK) return LORIMAT_DEVICE_OTHER_ABI;
  plugin->name = fault == "nameless" ? "" : working && fault == "other" ? "another" : "faulty";
  plugin->version = "1\x1B[2J";
  if (fault == "crash-open") raise(SIGSEGV);
  if (fault == "exit-open") _exit(0);
  if (fault == "hang-open") Hang();
  if (fault == "in-use") {
    std::memset(plugin->error, 'x', sizeof plugin->error);
    return LORIMAT_DEVICE_IN_USE;
  }
  if (fault == "failed") return LORIMAT_DEVICE_FAILED;
  if (fault == "bad-result") return 99;
  plugin->kind = fault == "kind" ? 9u : static_cast<uint32_t>(LORIMAT_DEVICE_CPP);
  plugin->client = fault == "clientless" ? nullptr : static_cast<RtfClientInterface*>(&client);
  plugin->can = LORIMAT_DEVICE_PAPER;
  plugin->paper_line = fault == "paperless" ? nullptr : &PaperLine;
  return LORIMAT_DEVICE_OK;
}

LORIMAT_DEVICE_API void lorimat_device_close(lorimat_device_plugin*) {
  if (fault == "crash-close") raise(SIGABRT);
  if (fault == "hang-close") Hang();
}
