// What the system is asked for files, for tests that want to see it or have it fail: the program's
// own fsync, close, linkat and statvfs take the places of the library's.
#pragma once

#include <functional>
#include <string>

namespace lorimat {

// While one is there, it is told each call with the file's whole name, of linkat the folder's; when
// it answers an error number, the call fails with it. A close that fails has closed all the same.
class FileCalls {
 public:
  using Watcher = std::function<int(const char* call, const std::string& file)>;

  explicit FileCalls(Watcher watcher);
  ~FileCalls();
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

 private:
  Watcher watcher_;
};

// While one is there, every file system has so many blocks left, of 4,096 bytes.
class RoomLeft {
 public:
  explicit RoomLeft(long blocks);
  ~RoomLeft();
  RoomLeft(const RoomLeft&) = delete;
  RoomLeft& operator=(const RoomLeft&) = delete;

  void Set(long blocks);
};

}  // namespace lorimat
