#include "platform/descriptors.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>

#include "recording/conversation/script_text.h"

namespace conversation {
namespace {

// A name below the temporary folder that no other run of this moment has.
std::string FreshName() {
  static int count = 0;
  const std::string name = "conversation." + std::to_string(GetCurrentProcessId()) + "." +
                           std::to_string(GetTickCount64()) + "." + std::to_string(++count);
  return (std::filesystem::temp_directory_path() / name).string();
}

}  // namespace

std::string MakeTemporaryFolder() {
  const std::string path = FreshName();
  if (!std::filesystem::create_directory(path)) {
    throw Failure(0, "no temporary folder can be made");
  }
  return path;
}

int DuplicateOf(int fd) { return _dup(fd); }

int OpenScratchFile() {
  const int fd = _open(FreshName().c_str(),
                       _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT,
                       _S_IREAD | _S_IWRITE);
  if (fd < 0) throw Failure(0, "no file for the standard streams can be made");
  return fd;
}

std::string WholeFile(int fd) {
  std::string text;
  char chunk[4096];
  const __int64 end = _telli64(fd);
  _lseeki64(fd, 0, SEEK_SET);
  for (int got; (got = _read(fd, chunk, sizeof chunk)) > 0;) {
    text.append(chunk, static_cast<std::size_t>(got));
  }
  _lseeki64(fd, end, SEEK_SET);
  return text;
}

// The library has a runtime of its own, which numbers its files.
int OpenDescriptors() { return 0; }

void SendReportsTo(int) {}

}  // namespace conversation
