// A register's file that was not there before. It goes again, with what stands beside it, when no
// register comes of it.
#pragma once

#include <string>

namespace lorimat {

class NewFile {
 public:
  NewFile() = default;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  // Makes it, empty. Answers the system's error number, 0 when it is there now; one that is there
  // already is nobody's new file.
  int Make(const std::string& file);
  // It stays.
  void Keep() noexcept { file_.clear(); }

 private:
  std::string file_;
};

}  // namespace lorimat
