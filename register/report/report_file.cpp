#include "register/report/report_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include "register/value/planted_link.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

int NotWritten(std::string_view name, int cause) {
  return Refuse(RTF_E_FAILURE, RefusalCause::kFileNotWritten, {cause}, name);
}

int NotRead(std::string_view name, int cause) {
  return Refuse(RTF_E_FAILURE, RefusalCause::kFileNotRead, {cause}, name);
}

// More names than anybody leaves behind in one folder.
constexpr int kMostNames = 10000;

// An open file. Only Close tells whether all went well.
class Descriptor {
 public:
  Descriptor(const fs::path& path, int flags, mode_t mode = 0666)
      : number_(open(path.c_str(), flags, mode)) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { Close(); }

  bool good() const { return number_ >= 0; }
  bool Write(std::string_view content) {
    while (!content.empty()) {
      const ssize_t written = write(number_, content.data(), content.size());
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) return false;
      content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
  }
  bool Sync() {
    while (fsync(number_) != 0) {
      // What lies on no disk, a pipe or a terminal, has nothing to wait for.
      if (errno == EINVAL || errno == ENOTSUP) return true;
      if (errno != EINTR) return false;
    }
    return true;
  }
  // The owner and the group as far as the system lets that be; what a group may do is nothing for
  // another one.
  bool TakeMode(const struct stat& file) const {
    mode_t mode = file.st_mode & 0777;
    if (fchown(number_, file.st_uid, file.st_gid) != 0 &&
        fchown(number_, static_cast<uid_t>(-1), file.st_gid) != 0) {
      mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return fchmod(number_, mode) == 0;
  }
  // It is closed whatever this answers.
  bool Close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || close(number) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

// Waits for the names of a folder. One that may be written and not read is waited for with all of
// its file system.
bool SyncFolder(const fs::path& folder, const fs::path& file) {
  Descriptor names(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (names.good()) return names.Sync() && names.Close();
  if (errno != EACCES) return false;
  const int any = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (any < 0) return false;
  const bool synced = syncfs(any) == 0;
  return close(any) == 0 && synced;
}

bool WriteInPlace(const fs::path& path, std::string_view content) {
  Descriptor file(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY);
  if (!file.good() || !file.Write(content) || !file.Sync() || !file.Close()) return false;
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return true;
  // A link's file, which may be new. One that has no name, like one in memory, has no folder.
  const fs::path target = fs::canonical(path, error);
  return error || SyncFolder(target.parent_path(), target);
}

// A file of a name that nobody has, beside the one that it is to become. It goes when it does not.
class ReportPart {
 public:
  // With the mode and the owner of the file that it replaces, if it does.
  ReportPart(const fs::path& folder, const struct stat* replaced) {
    for (int number = 0; number < kMostNames; ++number) {
      path_ = folder / fmt::format(".lorimat-{}-{}.part", getpid(), number);
      // Nobody else reads it before it has the other's mode.
      Descriptor file(path_, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                      replaced != nullptr ? S_IRUSR | S_IWUSR : 0666);
      if (!file.good() && errno == EEXIST) continue;
      made_ = file.good();
      if (replaced != nullptr) mode_ = *replaced;
      file_.emplace(std::move(file));
      return;
    }
  }
  ReportPart(const ReportPart&) = delete;
  ReportPart& operator=(const ReportPart&) = delete;
  ~ReportPart() {
    if (made_) unlink(path_.c_str());
  }

  bool Fill(std::string_view content) {
    return made_ && file_->Write(content) && (!mode_ || file_->TakeMode(*mode_)) && file_->Sync() &&
           file_->Close();
  }
  bool Become(const fs::path& path) {
    if (rename(path_.c_str(), path.c_str()) != 0) return false;
    made_ = false;
    return true;
  }

 private:
  fs::path path_;
  bool made_ = false;
  std::optional<struct stat> mode_;
  std::optional<Descriptor> file_;
};

}  // namespace

int WriteFile(std::string_view name, std::string_view content) {
  errno = 0;  // where the system does not say why
  const fs::path path{std::string(name)};
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (IsPlantedLink(path.string())) return NotWritten(name, ELOOP);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return WriteInPlace(path, content) ? RTF_SUCCESS : NotWritten(name, errno);
  }
  const fs::path folder = path.has_parent_path() ? path.parent_path() : ".";
  struct stat replaced = {};
  const bool replaces = lstat(path.c_str(), &replaced) == 0;
  ReportPart part(folder, replaces ? &replaced : nullptr);
  const bool stands = part.Fill(content) && part.Become(path) && SyncFolder(folder, path);
  return stands ? RTF_SUCCESS : NotWritten(name, errno);
}

int WriteOwnFile(std::string_view name, std::string_view content, std::string_view mark) {
  errno = 0;
  const std::string path(name);
  std::error_code error;
  if (fs::exists(fs::symlink_status(path, error))) {
    std::string found;
    if (!fs::is_regular_file(path, error)) return NotWritten(name, EEXIST);
    if (const int code = ReadFile(name, &found)) return code;
    const std::string_view first_line = content.substr(0, content.find('\n'));
    if (!found.starts_with(first_line) || found.find(mark) == found.npos) {
      return NotWritten(name, EEXIST);
    }
  }
  return WriteFile(name, content);
}

int ReadFile(std::string_view name, std::string* content) {
  const fs::path path{std::string(name)};
  std::error_code error;
  if (!fs::exists(path, error)) return Refuse(RTF_E_NOEXIST, RefusalCause::kNoFile, {}, name);
  if (!fs::is_regular_file(path, error)) return NotRead(name, 0);
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) return NotRead(name, errno);
  content->assign(std::istreambuf_iterator<char>(file), {});
  return file.bad() ? NotRead(name, errno) : RTF_SUCCESS;
}

}  // namespace lorimat
