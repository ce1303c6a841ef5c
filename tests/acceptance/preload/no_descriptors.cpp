// Goes into a program ahead of its libraries: as soon as there is a file of the name in
// LORIMAT_TEST_NO_DESCRIPTORS, the program opens no file any more, and makes none in memory, as one
// that has used up its descriptors. What a sanitizer opens for itself is not touched.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>

namespace {

bool NoneLeft() {
  static const char* const sign = std::getenv("LORIMAT_TEST_NO_DESCRIPTORS");
  if (sign == nullptr || access(sign, F_OK) != 0) return false;
  errno = EMFILE;
  return true;
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] int memfd_create(const char* name, unsigned flags) {
  return NoneLeft() ? -1 : static_cast<int>(syscall(SYS_memfd_create, name, flags));
}
[[gnu::visibility("default")]] int open(const char* path, int flags, ...) {
  unsigned mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list rest;
    va_start(rest, flags);
    mode = va_arg(rest, unsigned);
    va_end(rest);
  }
  return NoneLeft() ? -1 : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

}  // extern "C"
