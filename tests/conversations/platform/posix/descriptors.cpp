#include "platform/descriptors.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>

#include "recording/conversation/script_text.h"

extern "C" __attribute__((weak)) void __sanitizer_set_report_fd(void* fd);

namespace conversation {
namespace {

std::string Pattern() { return std::filesystem::temp_directory_path() / "conversation.XXXXXX"; }

}  // namespace

std::string MakeTemporaryFolder() {
  std::string path = Pattern();
  if (mkdtemp(path.data()) == nullptr) throw Failure(0, "no temporary folder can be made");
  return path;
}

int DuplicateOf(int fd) { return fcntl(fd, F_DUPFD_CLOEXEC, 3); }

int OpenScratchFile() {
  std::string name = Pattern();
  const int fd = mkostemp(name.data(), O_CLOEXEC);
  if (fd < 0) throw Failure(0, "no file for the standard streams can be made");
  unlink(name.c_str());
  return fd;
}

std::string WholeFile(int fd) {
  std::string text;
  char chunk[4096];
  off_t at = 0;
  for (ssize_t got; (got = pread(fd, chunk, sizeof chunk, at)) > 0; at += got) {
    text.append(chunk, static_cast<std::size_t>(got));
  }
  return text;
}

int OpenDescriptors() {
  constexpr int kMost = 1024;  // new ones get the lowest numbers
  int open = 0;
  for (int fd = 0; fd < kMost; ++fd) open += fcntl(fd, F_GETFD) != -1;
  return open;
}

void SendReportsTo(int fd) {
  if (__sanitizer_set_report_fd != nullptr) {
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(fd)));
  }
}

}  // namespace conversation
