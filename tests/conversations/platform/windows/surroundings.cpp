#include "surroundings.h"

#include <windows.h>
//
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "script_text.h"

namespace conversation {
namespace {

// A name below the temporary folder that no other run of this moment has.
std::string FreshName() {
  static int count = 0;
  const std::string name = "conversation." + std::to_string(GetCurrentProcessId()) + "." +
                           std::to_string(GetTickCount64()) + "." + std::to_string(++count);
  return (std::filesystem::temp_directory_path() / name).string();
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

void FlushStreams() {
  std::cout.flush();
  std::fflush(stdout);
  std::fflush(stderr);
}

std::string KeyOfThisRun() {
  return "Software\\lorimatrt-conversation-" + std::to_string(GetCurrentProcessId());
}

}  // namespace

TemporaryFolder::TemporaryFolder() : back_(std::filesystem::current_path().string()) {
  path_ = FreshName();
  if (!std::filesystem::create_directory(path_)) {
    throw Failure(0, "no temporary folder can be made");
  }
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
    own_[fd - 1] = _dup(fd);
    kept_[fd - 1] =
        _open(FreshName().c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_TEMPORARY,
              _S_IREAD | _S_IWRITE);
    if (kept_[fd - 1] < 0) throw Failure(0, "no file for the standard streams can be made");
    _dup2(kept_[fd - 1], fd);
  }
}

KeptStreams::~KeptStreams() {
  FlushStreams();
  for (int fd : {1, 2}) {
    _dup2(own_[fd - 1], fd);
    _close(own_[fd - 1]);
    _close(kept_[fd - 1]);
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

// The process sees a key of its own as HKEY_LOCAL_MACHINE.
OwnRegistry::OwnRegistry() { Write(""); }

OwnRegistry::~OwnRegistry() {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisRun().c_str());
}

void OwnRegistry::Write(const std::string& text) {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegDeleteTreeA(HKEY_CURRENT_USER, KeyOfThisRun().c_str());
  HKEY root = nullptr;
  if (RegCreateKeyA(HKEY_CURRENT_USER, KeyOfThisRun().c_str(), &root) != ERROR_SUCCESS) {
    throw Failure(0, "no key of the registry can be made");
  }
  std::istringstream lines(text);
  HKEY section = nullptr;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t sign = line.find('=');
    if (line.size() > 1 && line.front() == '[' && line.back() == ']') {
      if (section != nullptr) RegCloseKey(section);
      RegCreateKeyA(root, line.substr(1, line.size() - 2).c_str(), &section);
    } else if (section != nullptr && sign != std::string::npos) {
      const std::string value = line.substr(sign + 1);
      RegSetValueExA(section, line.substr(0, sign).c_str(), 0, REG_SZ,
                     reinterpret_cast<const BYTE*>(value.c_str()),
                     static_cast<DWORD>(value.size() + 1));
    }
  }
  if (section != nullptr) RegCloseKey(section);
  const LONG result = RegOverridePredefKey(HKEY_LOCAL_MACHINE, root);
  RegCloseKey(root);
  if (result != ERROR_SUCCESS) throw Failure(0, "the registry cannot be put aside");
}

}  // namespace conversation
