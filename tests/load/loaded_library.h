// Tools of the load tests: the library loaded by hand, a folder that goes with the test,
// and what was written to an output stream meanwhile.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "lorimatrt/lorimatrt.h"

// The library, from construction to unload() or destruction.
class LoadedLibrary {
 public:
  explicit LoadedLibrary(const std::string& file = LIBRARY_FILE,
                         int flags = RTLD_NOW | RTLD_LOCAL) {
    handle_ = dlopen(file.c_str(), flags);
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  ~LoadedLibrary() { Unload(); }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  void Unload() {
    if (handle_ != nullptr) {
      EXPECT_EQ(dlclose(handle_), 0) << dlerror();
    }
    handle_ = nullptr;
  }

  // A function of that name, of the type that the header declares.
  template <class Function>
  Function* find(const char* name) const {
    void* address = handle_ != nullptr ? dlsym(handle_, name) : nullptr;
    EXPECT_NE(address, nullptr) << name;
    return reinterpret_cast<Function*>(address);
  }

 private:
  void* handle_;
};

// An export of the header by its own name and type.
#define EXPORT_OF(library, name) ((library).find<decltype(name)>(#name))

// A fresh folder that is the current one for the life of the object. The registry file is
// set to one that is not there, so that the machine's own settings do not count.
class OwnFolder {
 public:
  OwnFolder() : before_(std::filesystem::current_path()) {
    std::string pattern = (std::filesystem::temp_directory_path() / "lorimat-XXXXXX").string();
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    path_ = pattern;
    std::filesystem::current_path(path_);
    setenv("LORIMATRT_REGISTRY", (path_ / "no-registry.ini").c_str(), 1);
  }
  ~OwnFolder() {
    std::filesystem::current_path(before_);
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(File(name), std::ios::binary) << text;
    return File(name);
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path path_;
};

// Turns a file descriptor to a file for the life of the object.
class CapturedOutput {
 public:
  CapturedOutput(int descriptor, FILE* target) : descriptor_(descriptor) {
    Flush();
    before_ = dup(descriptor_);
    dup2(fileno(target), descriptor_);
  }
  ~CapturedOutput() {
    Flush();
    dup2(before_, descriptor_);
    close(before_);
  }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

 private:
  static void Flush() {
    std::cout.flush();
    std::fflush(nullptr);
  }

  int descriptor_;
  int before_;
};

// The whole of a file that a descriptor was turned to.
inline std::string WrittenTo(FILE* file) {
  std::string text;
  char piece[256];
  rewind(file);
  for (size_t size; (size = fread(piece, 1, sizeof piece, file)) > 0;) text.append(piece, size);
  return text;
}
