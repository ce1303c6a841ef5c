// What a register keeps of its documents, read from its file beside it: nothing is asked of the
// register, and no job waits for it. Any thread may call; one at a time reads.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "register/inspect/register_file.h"
#include "register/storage/store.h"

namespace lorimat::door {

class KeptDocuments {
 public:
  // Throws RegisterError when the file cannot be read, as all members.
  explicit KeptDocuments(const std::string& register_file) : file_(register_file) {}

  std::vector<StoredDocument> List(const DocumentSpan& span) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return file_.FindDocuments(span);
  }
  std::vector<KeptDocument> Find(int closure, int number) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return file_.FindKept(closure, number);
  }

 private:
  std::mutex mutex_;
  RegisterFile file_;
};

}  // namespace lorimat::door
