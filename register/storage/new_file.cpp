#include "register/storage/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace lorimat {
namespace {

constexpr char kLog[] = "-wal";
constexpr char kIndex[] = "-shm";
constexpr char kJournal[] = "-journal";
constexpr size_t kLongestBeside = 8;

}  // namespace

int NewFile::Make(const std::string& file) {
  // Room for the names beside it, so that taking them away cannot fail.
  std::string name;
  name.reserve(file.size() + kLongestBeside);
  name = file;
  name += kJournal;
  struct stat status = {};
  had_journal_ = lstat(name.c_str(), &status) == 0;
  name.resize(file.size());
  const int made = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (made < 0) return errno == EEXIST ? 0 : errno;
  const bool known = fstat(made, &status) == 0;
  close(made);
  // Without it nothing tells the file from another one: it stays.
  if (!known) return 0;
  device_ = status.st_dev;
  inode_ = status.st_ino;
  file_.swap(name);
  return 0;
}

bool NewFile::IsOurs() const noexcept {
  struct stat status = {};
  return lstat(file_.c_str(), &status) == 0 && status.st_dev == device_ &&
         status.st_ino == inode_ && (locked_ || status.st_size == 0);
}

void NewFile::Remove() noexcept {
  if (file_.empty()) return;
  if (IsOurs()) {
    unlink(file_.c_str());
    const size_t size = file_.size();
    // A log was not there before: the file would not have been made. Its index is nothing alone.
    for (const char* beside : {kLog, kIndex}) {
      file_ += beside;
      unlink(file_.c_str());
      file_.resize(size);
    }
    if (!had_journal_) {
      file_ += kJournal;
      unlink(file_.c_str());
    }
  }
  file_.clear();
}

}  // namespace lorimat
