#include "console/command/paper_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {

PaperFile::PaperFile(const std::string& file, Streams& streams) : name_(file), streams_(streams) {
  if (name_.empty() || name_ == "-") {
    name_.clear();
    return;
  }
  constexpr int kFlags = O_WRONLY | O_CREAT | O_CLOEXEC;
  file_ = Descriptor(open(name_.c_str(), kFlags | O_EXCL, 0666));
  made_ = file_.is_open();
  if (!made_ && errno == EEXIST) file_ = Descriptor(open(name_.c_str(), kFlags, 0666));
  if (!file_.is_open()) {
    throw Failure(tr("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
}

PaperFile::~PaperFile() {
  if (made_ && file_.is_open()) remove();
}

// The name may mean another file by now: the lines of a run can change the folder.
void PaperFile::remove() const {
  struct stat named;
  struct stat own;
  if (stat(name_.c_str(), &named) == 0 && fstat(file_.get(), &own) == 0 &&
      named.st_dev == own.st_dev && named.st_ino == own.st_ino && S_ISREG(own.st_mode)) {
    unlink(name_.c_str());
  }
}

void PaperFile::write(std::string_view paper) {
  if (name_.empty()) {
    streams_.output(paper);
    return;
  }
  struct stat status;
  const bool regular = fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode);
  if ((regular && ftruncate(file_.get(), 0) != 0) || !write_all(file_.get(), paper)) {
    throw Failure(tr("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
  // close tells of what a network's or a quota's file system could not keep.
  if (close(file_.release()) != 0 && errno != EINTR) {
    throw Failure(tr("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
}

}  // namespace lorimat::console
