// A register's file that was not there before. It goes again, with what stands beside it, when no
// register comes of it.
#pragma once

#include <sys/types.h>

#include <string>

namespace lorimat {

class NewFile {
 public:
  NewFile() = default;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() { Remove(); }

  // Makes it, empty. Answers the system's error number, 0 when it is there now; one that is there
  // already is nobody's new file.
  int Make(const std::string& file);
  // Nobody else writes it from here on. Before that it only goes while it is empty.
  void Lock() noexcept { locked_ = true; }
  // Whether there is one that was made and is not kept.
  bool is_there() const noexcept { return !file_.empty(); }
  // It stays.
  void Keep() noexcept { file_.clear(); }
  void Remove() noexcept;

 private:
  bool IsOurs() const noexcept;

  std::string file_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
  bool locked_ = false;
  bool had_journal_ = false;  // beside it, before it was made
};

}  // namespace lorimat
