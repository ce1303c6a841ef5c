// Goes into a program ahead of its libraries, and kills it ahead of the n-th call that changes a
// file or the names of a folder: "5" in LORIMAT_TEST_CALL_KILL is ahead of the fifth. So each place
// between two such calls has its turn, whatever the time that they take.
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace {

void Count() {
  static const char* const text = std::getenv("LORIMAT_TEST_CALL_KILL");
  static const long place = text == nullptr ? 0 : std::atol(text);
  static long calls = 0;
  if (place != 0 && ++calls == place) raise(SIGKILL);
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] ssize_t write(int file, const void* data, size_t size) {
  Count();
  return syscall(SYS_write, file, data, size);
}
[[gnu::visibility("default")]] ssize_t pwrite(int file, const void* data, size_t size, off_t at) {
  Count();
  return syscall(SYS_pwrite64, file, data, size, at);
}
[[gnu::visibility("default")]] ssize_t pwrite64(int file, const void* data, size_t size,
                                                off64_t at) {
  Count();
  return syscall(SYS_pwrite64, file, data, size, at);
}
[[gnu::visibility("default")]] int fsync(int file) {
  Count();
  return static_cast<int>(syscall(SYS_fsync, file));
}
[[gnu::visibility("default")]] int fdatasync(int file) {
  Count();
  return static_cast<int>(syscall(SYS_fdatasync, file));
}
[[gnu::visibility("default")]] int linkat(int from, const char* name, int to, const char* target,
                                          int flags) {
  Count();
  return static_cast<int>(syscall(SYS_linkat, from, name, to, target, flags));
}

}  // extern "C"
