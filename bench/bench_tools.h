// Tools of the benchmarks: a condition that must hold, files and folders for a while, and memory.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

// Ends the program when a condition does not hold: a timing of something that fails means
// nothing.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "lorimat_bench: %s\n", what);
  std::exit(1);
}

// The file exists for the life of the object.
class TemporaryFile {
 public:
  // The text so many times.
  explicit TemporaryFile(const std::string& text, int64_t times = 1) : path_(UnusedName()) {
    const int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    FILE* file = descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
    Require(file != nullptr, "the temporary file cannot be created");
    bool written = true;
    for (int64_t i = 0; i < times && written; ++i) {
      written = fwrite(text.data(), 1, text.size(), file) == text.size();
    }
    Require(fclose(file) == 0 && written, "the temporary file cannot be written");
  }
  ~TemporaryFile() { std::remove(path_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const char* path() const { return path_.c_str(); }
  char* path() { return path_.data(); }

 private:
  // Without capital letters, which the library lower-cases in the name of a batch.
  static std::string UnusedName() {
    static int count = 0;
    char name[64];  // as long in every process: what is counted includes the name
    std::snprintf(name, sizeof name, "lorimat-bench-%010d-%03d", static_cast<int>(getpid()),
                  ++count);
    return (std::filesystem::temp_directory_path() / name).string();
  }

  std::string path_;
};

// The folder exists for the life of the object, with all that is put into it.
class TemporaryFolder {
 public:
  TemporaryFolder()
      : path_((std::filesystem::temp_directory_path() / "lorimat-bench-XXXXXX").string()) {
    Require(mkdtemp(path_.data()) != nullptr, "the temporary folder cannot be made");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// How far the memory of this process grows at most, in bytes, from the making of the object on.
class MemoryPeak {
 public:
  MemoryPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
    before_ = Bytes("VmRSS:");
  }
  double bytes() const { return static_cast<double>(Bytes("VmHWM:") - before_); }

 private:
  static int64_t Bytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
      int64_t kilobytes = 0;
      if (word == name && status >> kilobytes) return kilobytes * 1024;
    }
    Require(false, "the system does not tell the memory");
    return 0;
  }

  int64_t before_ = 0;
};
