// Where the tests' recordings go, and a device that they are of.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

#include "recording/recorder.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/services/rtfconst.h"

namespace recording {

class TextSink : public Sink {
 public:
  int Write(std::string_view bytes) noexcept override {
    if (text.size() + bytes.size() > room) return 28;  // ENOSPC
    text += bytes;
    return 0;
  }
  std::string text;
  size_t room = static_cast<size_t>(-1);
};

// Answers what it is told to.
class ToldDevice : public RtfClientBase {
 public:
  int OpenDrawer() override {
    ++drawers;
    if (throws) throw std::runtime_error("a device's own");
    return result;
  }
  int GetIntProperty(int, int* value) override {
    if (fills) *value = number;
    return result;
  }
  int GetDataInternal(int, char* out) override {
    if (fills) std::memcpy(out, text.c_str(), text.size() + (closes ? 1 : 0));
    return result;
  }
  int DirectIO(int, int* argument, char* data) override {
    *argument = number;
    if (fills) std::memcpy(data, text.c_str(), text.size() + (closes ? 1 : 0));
    return result;
  }
  int ConfigGroup(bool write, int, char* description, char* password, int*, int*) override {
    if (!write) {
      std::strcpy(description, "ANNA");
      std::strcpy(password, "Segreto9");
    }
    return result;
  }
  int PrintRecMessage(const char*) override { return result; }
  int BeginDocInvoice(const char*, const char*, const char*, const char*, const char*) override {
    return result;
  }
  int BeginFiscalReceipt(bool) override { return result; }
  bool GetClaimed() override { return true; }

  int result = RTF_SUCCESS;
  int number = 1;
  std::string text;
  bool fills = true;
  bool closes = true;
  bool throws = false;
  int drawers = 0;
};

// Settings whose times stand still.
inline RecorderSettings StillSettings() {
  RecorderSettings settings;
  settings.made_by = "lorimat 3.1.11";
  settings.library = "3.1.11";
  settings.device = "a device of the tests";
  settings.now = [] { return int64_t{1'705'314'600'123'000}; };  // 15 January 2024, 10:30
  settings.ticks = [] { return int64_t{0}; };
  return settings;
}

}  // namespace recording
