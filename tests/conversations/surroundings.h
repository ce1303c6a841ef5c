// What a conversation runs in: a temporary folder, and standard streams that are kept.
#pragma once

#include <string>

namespace conversation {

// A folder that is the current directory while it lives, and goes with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

 private:
  std::string path_;
  std::string back_;
};

// Standard output and standard error of the process go into files while it lives. A
// sanitizer's report still reaches the terminal.
class KeptStreams {
 public:
  KeptStreams();
  ~KeptStreams();
  KeptStreams(const KeptStreams&) = delete;
  KeptStreams& operator=(const KeptStreams&) = delete;

  // What was written so far.
  std::string Output() const;
  std::string Errors() const;

 private:
  int own_[2];
  int kept_[2];
};

}  // namespace conversation
