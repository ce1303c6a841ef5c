// Goes into a program ahead of its libraries: no file can be locked, as on a file system that has
// no locks.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

extern "C" {

[[gnu::visibility("default")]] int fcntl64(int descriptor, int command, ...) {
  va_list rest;
  va_start(rest, command);
  const long argument = va_arg(rest, long);
  va_end(rest);
  if (command == F_SETLK || command == F_SETLKW || command == F_GETLK) {
    errno = ENOLCK;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
}
[[gnu::visibility("default")]] int fcntl(int descriptor, int command, ...)
    __attribute__((alias("fcntl64")));

}  // extern "C"
