#include "console/check/kept_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <system_error>

#include "console/message/translate.h"
#include "console/terminal/streams.h"
#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;

bool IsLetter(char c) { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

std::string InSmallLetters(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), Lower);
  return name;
}

std::string InOtherLetters(std::string name) {
  for (char& c : name) {
    if (IsLetter(c)) c = static_cast<char>(c ^ ('a' ^ 'A'));
  }
  return name;
}

// Whether names that differ in their case alone are one in the folder: told by a name that is
// there, which is found under the other letters too.
bool IgnoresCase(int folder) {
  Descriptor names(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!names.is_open()) return false;
  const std::unique_ptr<DIR, int (*)(DIR*)> list(fdopendir(names.get()), &closedir);
  if (list == nullptr) return false;
  names.release();
  while (const dirent* entry = readdir(list.get())) {
    const std::string name = entry->d_name;
    if (std::none_of(name.begin(), name.end(), IsLetter)) continue;
    struct stat one;
    struct stat other;
    if (fstatat(folder, name.c_str(), &one, AT_SYMLINK_NOFOLLOW) != 0) continue;
    return fstatat(folder, InOtherLetters(name).c_str(), &other, AT_SYMLINK_NOFOLLOW) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
  }
  return false;
}

// A device or a terminal may be named any number of times.
bool MayBeMixed(const struct stat& status) {
  return !S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode);
}

std::optional<FileIdentity> IdentityOf(const struct stat& status) {
  if (MayBeMixed(status)) return std::nullopt;
  return FileIdentity{true, status.st_dev, status.st_ino, ""};
}

}  // namespace

std::string BehindLinks(int folder, const std::string& name) {
  fs::path path(name);
  std::array<char, 4097> target{};
  for (int link = 0; link < kMostLinks; ++link) {
    const ssize_t length = readlinkat(folder, path.c_str(), target.data(), target.size());
    if (length < 0) break;
    // The target alone where it is absolute.
    path = path.parent_path() / std::string(target.data(), static_cast<size_t>(length));
  }
  return path.string();
}

std::optional<FileIdentity> IdentityOfStream(int stream) {
  struct stat status;
  if (fstat(stream, &status) != 0) return std::nullopt;
  return IdentityOf(status);
}

std::optional<FileIdentity> IdentityOf(int folder, const std::string& name) {
  if (name.empty()) return std::nullopt;
  struct stat status;
  if (fstatat(folder, name.c_str(), &status, 0) == 0) return IdentityOf(status);
  const fs::path path = BehindLinks(folder, name);
  const fs::path above = path.has_parent_path() ? path.parent_path() : fs::path(".");
  const Descriptor place(openat(folder, above.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  // It cannot be opened either.
  if (!place.is_open() || fstat(place.get(), &status) != 0) return std::nullopt;
  const std::string leaf = path.filename().string();
  return FileIdentity{false, status.st_dev, status.st_ino,
                      IgnoresCase(place.get()) ? InSmallLetters(leaf) : leaf};
}

std::vector<KeptFile> RegisterFiles(const std::string& name) {
  if (name.empty()) return {};
  std::vector<KeptFile> files = {{name, TR_TEXT("the register's file")}};
  const std::string target = BehindLinks(AT_FDCWD, name);
  for (const char* end : kBesideRegister) {
    files.push_back({target + end, TR_TEXT("a part of the register's file")});
  }
  return files;
}

void KeptFiles::Add(const KeptFile& file) {
  if (file.name.empty()) return;
  if (file.name == "-") return AddStream(STDIN_FILENO, file.what);
  std::error_code error;
  const fs::path path = fs::absolute(file.name, error);
  files_.push_back({error ? file.name : path.string(), std::nullopt, file.what});
}

void KeptFiles::AddStream(int stream, const char* what) {
  const std::optional<FileIdentity> identity = IdentityOfStream(stream);
  if (identity) files_.push_back({"", identity, what});
}

const char* KeptFiles::Find(int folder, const std::string& name) const {
  const std::optional<FileIdentity> own = IdentityOf(folder, name);
  if (!own) return nullptr;
  for (const File& file : files_) {
    // Looked at each time: the register's log comes and goes.
    if (own == (file.stream ? file.stream : IdentityOf(AT_FDCWD, file.name))) return file.what;
  }
  return nullptr;
}

}  // namespace lorimat::console
