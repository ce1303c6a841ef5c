#include <windows.h>

#include "pal/platform/platform.h"

namespace platform {
namespace {

HKEY KeyOf(intptr_t handle) { return reinterpret_cast<HKEY>(handle); }

}  // namespace

RegistryKey::RegistryKey(const char* path) : handle_(0) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS) {
    handle_ = reinterpret_cast<intptr_t>(key);
  }
}

RegistryKey::~RegistryKey() {
  if (is_open()) RegCloseKey(KeyOf(handle_));
}

bool RegistryKey::is_open() const { return handle_ != 0; }

long RegistryKey::Query(const char* name, char* text, uint32_t* size) const {
  if (!is_open()) return kRegistryNotFound;
  if (text != nullptr && size == nullptr) return kRegistryInvalidParameter;
  // A size of its own for the call: the caller's stays as it was when the value is missing.
  DWORD room = text != nullptr ? *size : 0;
  DWORD used = room;
  const LONG result = RegQueryValueExA(KeyOf(handle_), name, nullptr, nullptr,
                                       reinterpret_cast<BYTE*>(text), &used);
  if (result == ERROR_MORE_DATA) {
    *size = used;
    return kRegistryMoreData;
  }
  if (result != ERROR_SUCCESS) return result;
  // A text may be stored without its NUL: it gets one. Where that does not fit, the value
  // does not, and nothing unclosed is left behind.
  if (text != nullptr && (used == 0 || text[used - 1] != 0)) {
    if (used >= room) {
      if (room > 0) text[0] = 0;
      *size = used + 1;
      return kRegistryMoreData;
    }
    text[used++] = 0;
  }
  if (size != nullptr) *size = used;
  return kRegistrySuccess;
}

}  // namespace platform
