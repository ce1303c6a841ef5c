#include "surroundings.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

#include "platform/descriptors.h"

namespace conversation {
namespace {

void FlushStreams() {
  std::cout.flush();
  std::fflush(stdout);
  std::fflush(stderr);
}

}  // namespace

TemporaryFolder::TemporaryFolder()
    : path_(MakeTemporaryFolder()), back_(std::filesystem::current_path().string()) {
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
    own_[fd - 1] = DuplicateOf(fd);
    kept_[fd - 1] = OpenScratchFile();
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

}  // namespace conversation
