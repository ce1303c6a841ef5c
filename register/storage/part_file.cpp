#include "register/storage/part_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "register/value/register_error.h"

namespace lorimat {
namespace {

constexpr mode_t kMode = 0644;

std::string FolderOf(const std::string& file) {
  const size_t slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash + 1);
}

// What the system knows an open file by.
std::string OpenName(int descriptor) { return fmt::format("/proc/self/fd/{}", descriptor); }

}  // namespace

PartFile::PartFile(const std::string& file, Way way) : file_(file), folder_(FolderOf(file)) {
  if (file_.empty()) throw RegisterError(MakeFailure(FailureCause::kNoName));
  RequireFree();
  if (way == Way::kNamed || !MakeNameless(folder_)) MakeNamed();
}

PartFile::~PartFile() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!part_.empty()) unlink(part_.c_str());
}

void PartFile::Fail(FailureCause cause, int error) const {
  throw RegisterError(MakeFileFailure(file_, cause, {error}));
}

// A link that leads nowhere is something, too.
void PartFile::RequireFree() const {
  struct stat status = {};
  if (lstat(file_.c_str(), &status) == 0) Fail(FailureCause::kTaken);
  if (errno != ENOENT) Fail(FailureCause::kMakeRefused, errno);
  for (const std::string_view beside : {"-wal", "-journal"}) {
    const std::string name = file_ + std::string(beside);
    if (lstat(name.c_str(), &status) != 0) continue;
    // A log without anything in it is taken for no part of any file.
    if (beside == "-wal" && S_ISREG(status.st_mode) && status.st_size == 0) continue;
    throw RegisterError(MakeFileFailure(file_, FailureCause::kLoneBeside, {}, name));
  }
}

// False where that is not to be had, or could not get a name.
bool PartFile::MakeNameless(const std::string& folder) {
  descriptor_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kMode);
  if (descriptor_ < 0) return false;
  if (access(OpenName(descriptor_).c_str(), F_OK) == 0) return true;
  close(descriptor_);
  descriptor_ = -1;
  return false;
}

void PartFile::MakeNamed() {
  std::string part = file_ + ".part";
  descriptor_ = open(part.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
  if (descriptor_ >= 0) {
    part_ = std::move(part);
    return;
  }
  if (errno != EEXIST) Fail(FailureCause::kMakeRefused, errno);
  throw RegisterError(MakeFileFailure(part, FailureCause::kUnfinished));
}

void PartFile::TakeName() {
  if (part_.empty()) {
    if (linkat(AT_FDCWD, OpenName(descriptor_).c_str(), AT_FDCWD, file_.c_str(),
               AT_SYMLINK_FOLLOW) == 0) {
      return;
    }
  } else {
    // In one step, and nothing is overwritten.
    if (renameat2(AT_FDCWD, part_.c_str(), AT_FDCWD, file_.c_str(), RENAME_NOREPLACE) == 0) {
      part_.clear();
      return;
    }
    // A file system that cannot gives it a second name for a moment.
    if (errno != EEXIST && link(part_.c_str(), file_.c_str()) == 0) {
      unlink(part_.c_str());
      part_.clear();
      return;
    }
  }
  if (errno == EEXIST) Fail(FailureCause::kTaken);
  Fail(FailureCause::kMakeRefused, errno);
}

int PartFile::Finish() {
  if (fsync(descriptor_) != 0) Fail(FailureCause::kWriteRefused, errno);
  RequireFree();
  TakeName();
  // Behind this nothing fails for want of memory: the file is there.
  const int folder = open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return errno;
  const int error = fsync(folder) == 0 ? 0 : errno;
  close(folder);
  return error;
}

}  // namespace lorimat
