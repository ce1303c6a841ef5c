#include "paper_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "failure.h"
#include "text.h"
#include "translate.h"

PaperFile::PaperFile(const std::string& file, const std::vector<KeptFile>& kept, Streams& streams)
    : name_(file), streams_(streams) {
  if (name_.empty() || name_ == "-") {
    name_.clear();
    return;
  }
  struct stat paper_status;
  struct stat kept_status;
  const bool there = stat(name_.c_str(), &paper_status) == 0;
  for (const KeptFile& one : kept) {
    if (there && stat(one.name.c_str(), &kept_status) == 0 &&
        paper_status.st_dev == kept_status.st_dev && paper_status.st_ino == kept_status.st_ino) {
      throw Failure(tr("{}: is {}; the paper would replace it", shown(name_), one.what));
    }
  }
  file_ = Descriptor(open(name_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  if (!file_.is_open()) {
    throw Failure(tr("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
}

void PaperFile::write(std::string_view paper) {
  if (name_.empty()) {
    streams_.output(paper);
    return;
  }
  struct stat status;
  const bool regular = fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode);
  // close tells of what a network's or a quota's file system could not keep.
  if ((regular && ftruncate(file_.get(), 0) != 0) || !write_all(file_.get(), paper) ||
      close(file_.release()) != 0) {
    throw Failure(tr("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
}
