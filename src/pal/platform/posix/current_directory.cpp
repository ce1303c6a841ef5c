#include <unistd.h>

#include "pal/platform/platform.h"

namespace platform {

bool set_current_directory(const char* path) { return chdir(path) == 0; }

bool get_current_directory(char* path, size_t size) {
  if (size == 0) return false;
  if (getcwd(path, size) != nullptr) return true;
  path[0] = 0;
  return false;
}

char path_separator() { return '/'; }

}  // namespace platform
