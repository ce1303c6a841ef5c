// Goes into a program ahead of its libraries, and sends it a signal behind the n-th progress bar
// that it draws: "2 5" in LORIMAT_TEST_BAR_SIGNAL is SIGINT (2) behind the fifth. So a test knows
// how far the work has come, whatever the time that it takes.
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

struct Place {
  int signal = 0;
  long bar = 0;
};

Place ReadPlace() {
  Place place;
  const char* const text = std::getenv("LORIMAT_TEST_BAR_SIGNAL");
  if (text == nullptr || std::sscanf(text, "%d %ld", &place.signal, &place.bar) != 2) return {};
  return place;
}

bool IsBar(std::string_view text) {
  for (const std::string_view begin : {"\r[", "\r\x1b[K["}) {
    if (text.substr(0, begin.size()) == begin) return true;
  }
  return false;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] ssize_t write(int file, const void* data, size_t size) {
  static const Place place = ReadPlace();
  static long bars = 0;
  const ssize_t written = syscall(SYS_write, file, data, size);
  if (place.bar != 0 && IsBar({static_cast<const char*>(data), size}) && ++bars == place.bar) {
    raise(place.signal);
  }
  return written;
}
