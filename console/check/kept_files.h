// Files that nothing may write over: those that a command works with, and those that it writes
// itself. A file is told by what it is on the disk, under whatever name, and one that is not there
// yet by the place where it would be.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

// A file that is kept; "-" is standard input.
struct KeptFile {
  std::string name;
  const char* what;  // in English, for Translated(): "the file of lines"
};

// What the database puts behind the register's name for the files that it makes beside it.
inline constexpr const char* kBesideRegister[] = {"-wal", "-shm", "-journal"};

// The register's file and those that the database makes beside it; none for an empty name.
std::vector<KeptFile> RegisterFiles(const std::string& name);

// What makes a file the same as another one.
struct FileIdentity {
  bool there = false;
  dev_t device = 0;  // of the file, or of the folder that it would be made in
  ino_t node = 0;
  std::string leaf;  // of a file that is not there; in small letters where case makes no difference

  bool operator==(const FileIdentity&) const = default;
};

// Of a name, seen from a folder that is open, or from AT_FDCWD. None for what may be named any
// number of times, as a device, and for what cannot be made.
std::optional<FileIdentity> IdentityOf(int folder, const std::string& name);
// Of an open file.
std::optional<FileIdentity> IdentityOfStream(int stream);

// The name with the links at its end followed, also to a file that is not there yet.
std::string BehindLinks(int folder, const std::string& name);

class KeptFiles {
 public:
  KeptFiles() = default;
  explicit KeptFiles(const std::vector<KeptFile>& files) {
    for (const KeptFile& file : files) Add(file);
  }

  // A name counts from the folder of now, wherever the program works later. Empty names and "-",
  // which is standard input here, may come.
  void Add(const KeptFile& file);
  // A file that a standard stream leads to; nothing where that is a terminal or a device.
  void AddStream(int stream, const char* what);

  size_t size() const { return files_.size(); }
  void CutTo(size_t size) { files_.resize(size); }

  // What the file of this name is, as in KeptFile; null when it is none of them.
  const char* Find(int folder, const std::string& name) const;

 private:
  struct File {
    std::string name;  // empty for a stream's
    std::optional<FileIdentity> stream;
    const char* what;
  };

  std::vector<File> files_;
};

// Keeps further files while it lives.
class KeptMeanwhile {
 public:
  KeptMeanwhile(KeptFiles& kept, const std::vector<KeptFile>& files)
      : kept_(kept), before_(kept.size()) {
    for (const KeptFile& file : files) kept_.Add(file);
  }
  ~KeptMeanwhile() { kept_.CutTo(before_); }
  KeptMeanwhile(const KeptMeanwhile&) = delete;
  KeptMeanwhile& operator=(const KeptMeanwhile&) = delete;

 private:
  KeptFiles& kept_;
  size_t before_;
};

}  // namespace lorimat::console
