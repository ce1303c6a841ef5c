// The Windows loader calls DllMain itself; the C runtime runs constructors ahead of its
// first call and destructors behind its last.

#include <windows.h>

#include "lorimatrt/loader.h"

namespace {

__attribute__((constructor)) void init() { lorimat_init(); }

__attribute__((destructor)) void destroy() { lorimat_destroy(); }

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD fdwReason, LPVOID) {
  LoaderNotification(fdwReason);
  return TRUE;
}
