// Databases in files that have no name (register/storage/part_file.h): a layer below SQLite that
// reads and writes an open descriptor.
#pragma once

#include <string>

namespace lorimat {

class DescriptorFiles {
 public:
  // For sqlite3_open_v2, which knows the layer by kLayer.
  static constexpr char kLayer[] = "lorimat-descriptor";
  static std::string NameOf(int descriptor);

  // Makes the layer known. False when there is no memory for it.
  static bool Register();
  // The error number of the last write on this thread that failed; 0 when none has since the last
  // question.
  static int TakeWriteError();
};

}  // namespace lorimat
