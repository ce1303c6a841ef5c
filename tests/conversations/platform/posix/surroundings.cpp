#include "surroundings.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "script_text.h"

extern "C" __attribute__((weak)) void __sanitizer_set_report_fd(void* fd);

namespace conversation {
namespace {

void SendReportsTo(int fd) {
  if (__sanitizer_set_report_fd != nullptr) {
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(fd)));
  }
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

void FlushStreams() {
  std::cout.flush();
  std::fflush(stdout);
  std::fflush(stderr);
}

}  // namespace

TemporaryFolder::TemporaryFolder() : back_(std::filesystem::current_path()) {
  std::string path = std::filesystem::temp_directory_path() / "conversation.XXXXXX";
  if (mkdtemp(path.data()) == nullptr) throw Failure(0, "no temporary folder can be made");
  path_ = path;
  std::filesystem::current_path(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::current_path(back_, ignored);
  std::filesystem::remove_all(path_, ignored);
}

KeptStreams::KeptStreams() {
  FlushStreams();
  for (int fd : {1, 2}) {
    own_[fd - 1] = fcntl(fd, F_DUPFD_CLOEXEC, 3);
    std::string name = std::filesystem::temp_directory_path() / "conversation.XXXXXX";
    kept_[fd - 1] = mkostemp(name.data(), O_CLOEXEC);
    if (kept_[fd - 1] < 0) throw Failure(0, "no file for the standard streams can be made");
    unlink(name.c_str());
    dup2(kept_[fd - 1], fd);
  }
  SendReportsTo(own_[1]);
}

KeptStreams::~KeptStreams() {
  FlushStreams();
  SendReportsTo(2);
  for (int fd : {1, 2}) {
    dup2(own_[fd - 1], fd);
    close(own_[fd - 1]);
    close(kept_[fd - 1]);
  }
}

std::string KeptStreams::Output() const {
  FlushStreams();
  return WholeFile(kept_[0]);
}

std::string KeptStreams::Errors() const {
  FlushStreams();
  return WholeFile(kept_[1]);
}

OwnRegistry::OwnRegistry() {
  const std::string file = std::filesystem::current_path() / "registry.ini";
  setenv("LORIMATRT_REGISTRY", file.c_str(), 1);
}

OwnRegistry::~OwnRegistry() = default;

void OwnRegistry::Write(const std::string& text) {
  std::ofstream file("registry.ini", std::ios::binary);
  file << text;
  if (!file.flush()) throw Failure(0, "cannot write registry.ini");
}

}  // namespace conversation
