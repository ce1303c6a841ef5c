#include "console/command/paper_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {

PaperFile::PaperFile(const std::string& file, Streams& streams) : name_(file), streams_(streams) {
  if (name_.empty() || name_ == "-" || Streams::IsOutput(name_)) {
    name_.clear();
    return;
  }
  other_ = Descriptor(open(name_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  struct stat status = {};
  if (!other_.is_open()) {
    if (errno != ENOENT) Fail(errno);
  } else if (fstat(other_.get(), &status) != 0) {
    Fail(errno);
  } else if (!S_ISREG(status.st_mode)) {
    return;
  }
  file_.emplace();
  const int error = file_->Make(name_);
  // A link that is not followed here was followed by the open above.
  if (error == ELOOP) Fail(error);
  // A file that lost its name is reached by its descriptor alone, and one of several names would
  // keep but one of them.
  const bool named = !other_.is_open() || (status.st_nlink == 1 && file_->Replaces(status));
  if (named && error != 0) Fail(error);
  if (named) {
    other_ = Descriptor();
  } else {
    file_.reset();
  }
}

void PaperFile::Fail(int error) const {
  throw Failure(Tr("{}: cannot write the paper: {}", Shown(name_), SystemMessage(error)));
}

void PaperFile::Write(std::string_view paper) {
  if (name_.empty()) {
    streams_.OutputText(paper);
    return;
  }
  if (file_) {
    int error = file_->Write(paper);
    if (error != 0) Fail(error);
    error = file_->SyncName();
    if (error == 0) return;
    throw Failure(
        Tr("{}: the paper is there and whole, and its name may not have reached the "
           "disk: {}",
           Shown(name_), SystemMessage(error)));
  }
  struct stat status;
  const bool regular = fstat(other_.get(), &status) == 0 && S_ISREG(status.st_mode);
  if ((regular && ftruncate(other_.get(), 0) != 0) || !WriteAll(other_.get(), paper)) Fail(errno);
  // close tells of what a network's or a quota's file system could not keep.
  if (close(other_.release()) != 0 && errno != EINTR) Fail(errno);
}

}  // namespace lorimat::console
