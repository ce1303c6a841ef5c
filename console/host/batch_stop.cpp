#include "console/host/batch_stop.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

#include "console/terminal/interrupt.h"
#include "console/terminal/streams.h"

namespace lorimat::console {
namespace {

bool ReadsAFile(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  struct stat status;
  return flags >= 0 && (flags & O_ACCMODE) == O_RDONLY && fstat(descriptor, &status) == 0 &&
         !S_ISDIR(status.st_mode);
}

// The descriptors that this process reads files by, in order.
std::vector<int> ReadingDescriptors() {
  std::vector<int> descriptors;
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc/self/fd", error), end;
       !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int descriptor = -1;
    std::from_chars(name.data(), name.data() + name.size(), descriptor);
    if (ReadsAFile(descriptor)) descriptors.push_back(descriptor);
  }
  std::sort(descriptors.begin(), descriptors.end());
  return descriptors;
}

}  // namespace

BatchStop::BatchStop(RegisterClient& client, std::function<void(uint64_t)> progress)
    : client_(client), progress_(std::move(progress)) {
  client_.OnLine([this] { TakeLine(); });
}

BatchStop::~BatchStop() { client_.OnLine(nullptr); }

// The library traces the "@" line before it opens the file, and then each line of the file before
// it runs.
void BatchStop::TakeLine() {
  if (!in_file_) {
    in_file_ = true;
    open_before_ = ReadingDescriptors();
    return;
  }
  if (progress_) progress_(lines_);
  if (++lines_ == 1) {
    const std::vector<int> now = ReadingDescriptors();
    std::vector<int> opened;
    std::set_difference(now.begin(), now.end(), open_before_.begin(), open_before_.end(),
                        std::back_inserter(opened));
    if (opened.size() == 1) file_ = opened.front();
  }
  if (interrupted != 0 && !stopped_behind_ && end_file()) stopped_behind_ = lines_;
}

// Between two lines the library has nothing of the file read ahead.
bool BatchStop::end_file() const {
  if (file_ < 0) return false;
  const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  return nothing.is_open() && dup3(nothing.get(), file_, O_CLOEXEC) >= 0;
}

}  // namespace lorimat::console
