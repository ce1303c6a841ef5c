#include <unistd.h>

#include "pal/platform/platform.h"

namespace platform {

bool EnterDirectory(const char* path) { return chdir(path) == 0; }

bool WorkingDirectory(char* path, size_t size) {
  if (size == 0) return false;
  if (getcwd(path, size) != nullptr) return true;
  path[0] = 0;
  return false;
}

char PathSeparator() { return '/'; }

}  // namespace platform
