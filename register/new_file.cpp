#include "register/new_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace lorimat {
namespace {

constexpr const char* kBeside[] = {"-wal", "-journal"};
constexpr size_t kLongestBeside = 8;

}  // namespace

int NewFile::Make(const std::string& file) {
  // Room for the names beside it, so that taking them away cannot fail.
  std::string name;
  name.reserve(file.size() + kLongestBeside);
  name = file;
  const int made = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (made < 0) return errno == EEXIST ? 0 : errno;
  close(made);
  file_.swap(name);
  return 0;
}

NewFile::~NewFile() {
  if (file_.empty()) return;
  unlink(file_.c_str());
  const size_t size = file_.size();
  for (const char* beside : kBeside) {
    file_.resize(size);
    file_ += beside;
    unlink(file_.c_str());
  }
}

}  // namespace lorimat
