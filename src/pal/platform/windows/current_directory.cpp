#include <windows.h>

#include "pal/platform/platform.h"

namespace platform {

bool EnterDirectory(const char* path) { return SetCurrentDirectoryA(path) != 0; }

bool WorkingDirectory(char* path, size_t size) {
  if (size == 0) return false;
  const DWORD room = size > MAXDWORD ? MAXDWORD : static_cast<DWORD>(size);
  // Where the path does not fit, the answer is the room that it needs.
  const DWORD length = GetCurrentDirectoryA(room, path);
  if (length > 0 && length < room) return true;
  path[0] = 0;
  return false;
}

char PathSeparator() { return '\\'; }

}  // namespace platform
