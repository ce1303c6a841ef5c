// What a conversation runs in: a temporary folder, standard streams that are kept, and
// settings of the installation of its own.
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

// The settings that the library reads from the machine, empty at first: on POSIX a file in the
// current folder, on Windows a key of the process. Stands inside a TemporaryFolder.
class OwnRegistry {
 public:
  OwnRegistry();
  ~OwnRegistry();
  OwnRegistry(const OwnRegistry&) = delete;
  OwnRegistry& operator=(const OwnRegistry&) = delete;

  // Lines "[key]" and "Name=Value", in place of those before.
  void Write(const std::string& text);
};

}  // namespace conversation
