#include "platform/loading.h"

#include <dlfcn.h>

namespace conversation {

void* OpenLibrary(const std::string& path, std::string* cause) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) *cause = dlerror();
  return library;
}

bool IsLoaded(const std::string& path) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
}

void* FindFunction(void* library, const char* name) { return dlsym(library, name); }

void CloseLibrary(void* library) { dlclose(library); }

}  // namespace conversation
