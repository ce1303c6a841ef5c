// A file in the making: nothing stands under its name before all of it is there and on the disk,
// and what is not finished leaves nothing behind, also when the process is killed.
//
//   PartFile part("shop.register");   // throws RegisterError where something has that name
//   ... write to part.descriptor()
//   part.Finish();
//
// Where the file system can, the file has no name until then, and the system takes it away with the
// process. Elsewhere it is called "shop.register.part" meanwhile, which a kill leaves behind.
#pragma once

#include <string>

#include "register/value/register_failure.h"

namespace lorimat {

class PartFile {
 public:
  enum class Way { kNameless, kNamed };

  // Throws RegisterError when there is something of that name, or a log or journal
  // beside it, which would be taken for that of the new file; or when it cannot be made.
  // kNamed is for file systems that know files without a name not.
  explicit PartFile(const std::string& file, Way way = Way::kNameless);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  const std::string& file() const { return file_; }
  int descriptor() const { return descriptor_; }

  // Waits until the disk has it, and gives it its name. What took the name meanwhile stays as it
  // is: throws RegisterError then, and when anything else fails. Answers 0, or the error number of
  // what failed behind that: the file is there and whole, and its name may not outlast a cut of the
  // power.
  int Finish();

 private:
  void RequireFree() const;
  bool MakeNameless(const std::string& folder);
  void MakeNamed();
  void TakeName();
  [[noreturn]] void Fail(FailureCause cause, int error = 0) const;

  std::string file_;
  std::string folder_;  // that it lies in
  std::string part_;    // its name meanwhile; empty without one
  int descriptor_ = -1;
};

}  // namespace lorimat
