#include <windows.h>

#include <sstream>

#include "recording/conversation/script_text.h"
#include "surroundings.h"

namespace conversation {
namespace {

std::string KeyOfThisRun() {
  return "Software\\lorimatrt-conversation-" + std::to_string(GetCurrentProcessId());
}

}  // namespace

// The process sees a key of its own as HKEY_LOCAL_MACHINE.
OwnRegistry::OwnRegistry() { Write(""); }

OwnRegistry::~OwnRegistry() {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisRun().c_str());
}

void OwnRegistry::Write(const std::string& text) {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisRun().c_str());
  HKEY root = nullptr;
  if (RegCreateKeyA(HKEY_CURRENT_USER, KeyOfThisRun().c_str(), &root) != ERROR_SUCCESS) {
    throw Failure(0, "no key of the registry can be made");
  }
  std::istringstream lines(text);
  HKEY section = nullptr;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t sign = line.find('=');
    if (line.size() > 1 && line.front() == '[' && line.back() == ']') {
      if (section != nullptr) RegCloseKey(section);
      RegCreateKeyA(root, line.substr(1, line.size() - 2).c_str(), &section);
    } else if (section != nullptr && sign != std::string::npos) {
      const std::string value = line.substr(sign + 1);
      RegSetValueExA(section, line.substr(0, sign).c_str(), 0, REG_SZ,
                     reinterpret_cast<const BYTE*>(value.c_str()),
                     static_cast<DWORD>(value.size() + 1));
    }
  }
  if (section != nullptr) RegCloseKey(section);
  const LONG result = RegOverridePredefKey(HKEY_LOCAL_MACHINE, root);
  RegCloseKey(root);
  if (result != ERROR_SUCCESS) throw Failure(0, "the registry cannot be put aside");
}

}  // namespace conversation
