#include "console/terminal/replacing_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "register/value/planted_link.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

// More than anybody leaves behind in one folder, and as many as the system follows.
constexpr int kMostNames = 10000;
constexpr int kMostLinks = 40;

std::string HiddenName(int number) { return fmt::format(".lorimat-{}-{}.part", getpid(), number); }

// What a path means behind its last links, of which the last may lead to nothing yet. Somebody
// else's are not followed where everybody may put some.
fs::path BehindLinks(fs::path path, int* error) {
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code none;
    const fs::path target = fs::read_symlink(path, none);
    if (none) return path;
    if (lorimat::IsPlantedLink(path.string())) break;
    path = path.parent_path() / target;
  }
  *error = ELOOP;
  return path;
}

int Sync(int file) {
  while (fsync(file) != 0) {
    // A file system that has nothing to wait for.
    if (errno == EINVAL || errno == ENOTSUP) return 0;
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

ReplacingFile::~ReplacingFile() { RemoveHidden(); }

void ReplacingFile::RemoveHidden() {
  if (!hidden_.empty()) unlinkat(folder_.get(), hidden_.c_str(), 0);
  hidden_.clear();
}

int ReplacingFile::Make(const std::string& path) {
  int error = 0;
  const fs::path target = BehindLinks(path, &error);
  if (error != 0) return error;
  name_ = target.filename().string();
  if (name_.empty() || name_ == "." || name_ == "..") return EISDIR;
  const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
  folder_ = Descriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder_.is_open()) return errno;
  struct stat status;
  if (fstatat(folder_.get(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    if (S_ISDIR(status.st_mode)) return EISDIR;
    replaced_ = status;
  }
  file_ = Descriptor(openat(folder_.get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, NewMode()));
  return file_.is_open() ? 0 : MakeHidden();
}

bool ReplacingFile::Replaces(const struct stat& file) const {
  return replaced_ && replaced_->st_dev == file.st_dev && replaced_->st_ino == file.st_ino;
}

int ReplacingFile::MakeHidden() {
  for (int number = 0; number < kMostNames; ++number) {
    std::string name = HiddenName(number);
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    Descriptor file(openat(folder_.get(), name.c_str(), kFlags, NewMode()));
    if (!file.is_open() && errno == EEXIST) continue;
    if (!file.is_open()) return errno;
    hidden_ = std::move(name);
    file_ = std::move(file);
    return 0;
  }
  return EEXIST;
}

// A file that replaces another is nobody else's to read before it has the other's mode.
mode_t ReplacingFile::NewMode() const { return replaced_ ? S_IRUSR | S_IWUSR : 0666; }

int ReplacingFile::Fill(std::string_view content) const {
  if (!WriteAll(file_.get(), content)) return errno;
  if (replaced_) {
    // The owner of another's file is root's to give, and a group that of its members: what that
    // group may do is nothing for another one.
    mode_t mode = replaced_->st_mode & 0777;
    if (fchown(file_.get(), replaced_->st_uid, replaced_->st_gid) != 0 &&
        fchown(file_.get(), static_cast<uid_t>(-1), replaced_->st_gid) != 0) {
      mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    errno = 0;
    if (fchmod(file_.get(), mode) != 0) return errno;
  }
  return Sync(file_.get());
}

int ReplacingFile::TakeHiddenName() {
  const std::string own = fmt::format("/proc/self/fd/{}", file_.get());
  for (int number = 0; number < kMostNames; ++number) {
    std::string name = HiddenName(number);
    if (linkat(AT_FDCWD, own.c_str(), folder_.get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      hidden_ = std::move(name);
      return 0;
    }
    if (errno != EEXIST) return errno;
  }
  return EEXIST;
}

int ReplacingFile::Write(std::string_view content) {
  int error = Fill(content);
  if (error == 0 && hidden_.empty() && TakeHiddenName() != 0) {
    // Without /proc a file that has no name gets none.
    error = MakeHidden();
    if (error == 0) error = Fill(content);
  }
  if (error == 0 && renameat(folder_.get(), hidden_.c_str(), folder_.get(), name_.c_str()) != 0) {
    error = errno;
  }
  if (error == 0) {
    hidden_.clear();
  } else {
    RemoveHidden();
  }
  return error;
}

int ReplacingFile::SyncName() const {
  const Descriptor names(openat(folder_.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (names.is_open()) return Sync(names.get());
  // A folder that may be written and not read is waited for with all of its file system.
  if (errno == EACCES && syncfs(file_.get()) == 0) return 0;
  return errno;
}

}  // namespace lorimat::console
