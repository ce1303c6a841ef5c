#include "platform/loading.h"

#include <windows.h>

namespace conversation {

void* OpenLibrary(const std::string& path, std::string* cause) {
  const HMODULE library = LoadLibraryA(path.c_str());
  if (library == nullptr) *cause = path + ": Windows error " + std::to_string(GetLastError());
  return reinterpret_cast<void*>(library);
}

bool IsLoaded(const std::string& path) { return GetModuleHandleA(path.c_str()) != nullptr; }

void* FindFunction(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}

void CloseLibrary(void* library) { FreeLibrary(reinterpret_cast<HMODULE>(library)); }

}  // namespace conversation
