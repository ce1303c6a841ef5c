#include "paper_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "failure.h"
#include "text.h"

PaperFile::PaperFile(const std::string& file, const std::string& lines_file, Streams& streams)
    : name_(file), streams_(streams) {
  if (name_.empty() || name_ == "-") {
    name_.clear();
    return;
  }
  struct stat paper_status;
  struct stat lines_status;
  if (stat(name_.c_str(), &paper_status) == 0 && stat(lines_file.c_str(), &lines_status) == 0 &&
      paper_status.st_dev == lines_status.st_dev && paper_status.st_ino == lines_status.st_ino) {
    throw Failure(
        fmt::format("{}: is the file of lines; the paper would replace it", shown(name_)));
  }
  file_ = Descriptor(open(name_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  if (!file_.is_open()) {
    throw Failure(
        fmt::format("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
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
    throw Failure(
        fmt::format("{}: cannot write the paper: {}", shown(name_), system_message(errno)));
  }
}
