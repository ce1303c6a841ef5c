// Tools of the benchmarks: a condition that must hold, and a file with a given text.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
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
  explicit TemporaryFile(const std::string& text) : path_(UnusedName()) {
    const int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    FILE* file = descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
    Require(file != nullptr, "the temporary file cannot be created");
    const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
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
