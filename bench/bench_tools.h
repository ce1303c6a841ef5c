// Tools of the benchmarks: a condition that must hold, and a file with a given text.
#pragma once

#include <stdlib.h>
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
  explicit TemporaryFile(const std::string& text)
      : path_((std::filesystem::temp_directory_path() / "lorimat-bench-XXXXXX").string()) {
    const int descriptor = mkstemp(path_.data());
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
  std::string path_;
};
