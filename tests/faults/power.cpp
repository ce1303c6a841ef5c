#include "power.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "strike.h"

namespace lorimat::power {
namespace {

namespace fs = std::filesystem;

std::string watched;
std::string disk_folder;

[[noreturn]] void Fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// A file that takes the number of one that is gone was made at another time.
std::string NameOf(int descriptor) {
  struct statx found = {};
  if (statx(descriptor, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &found) != 0) Fail("statx");
  return std::to_string(found.stx_ino) + "-" + std::to_string(found.stx_btime.tv_sec) + "-" +
         std::to_string(found.stx_btime.tv_nsec);
}

class Opened {
 public:
  explicit Opened(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) Fail(path.c_str());
  }
  ~Opened() { close(descriptor_); }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

// A descriptor of the host's may be for writing alone.
std::string PathOf(int descriptor) {
  return fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string();
}

void KeepFile(const std::string& path, int descriptor) {
  const std::string kept = disk_folder + NameOf(descriptor);
  // One that has been taken away can only be read by its descriptor, and is of no name any more.
  if (!fs::exists(path)) return;
  fs::copy_file(path, kept + ".new", fs::copy_options::overwrite_existing);
  fs::rename(kept + ".new", kept);
}

void KeepNames(const std::string& path) {
  std::string kept = disk_folder + "names";
  if (path.size() > watched.size()) kept.append("-").append(fs::path(path).filename().string());
  {
    std::ofstream names(kept + ".new");
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
      if (!entry.is_regular_file()) continue;
      names << entry.path().filename().string() << ' '
            << NameOf(Opened(entry.path().string()).descriptor()) << '\n';
    }
    if (!names.flush()) Fail(kept.c_str());
  }
  fs::rename(kept + ".new", kept);
}

void Synced(int descriptor) {
  const std::string path = PathOf(descriptor);
  if ((path + "/").compare(0, watched.size(), watched) != 0) return;
  if (fs::is_directory(path)) {
    KeepNames(path);
  } else {
    KeepFile(path, descriptor);
  }
}

}  // namespace

void Watch(const std::string& folder, const std::string& disk) {
  watched = folder;
  disk_folder = disk;
  KeepNames(folder);
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string path = entry.path().string();
    if (entry.is_directory()) {
      KeepNames(path);
    } else {
      KeepFile(path, Opened(path).descriptor());
    }
  }
  strike::OnSync(Synced);
}

void Cut(const std::string& folder, const std::string& disk) {
  for (const fs::directory_entry& names : fs::directory_iterator(disk)) {
    const std::string list = names.path().filename().string();
    if (list.compare(0, 5, "names") != 0 || list.find(".new") != list.npos) continue;
    const std::string place = folder + (list.size() > 6 ? list.substr(6) + "/" : "");
    for (const fs::directory_entry& old : fs::directory_iterator(place)) {
      if (old.is_regular_file()) fs::remove(old.path());
    }
    std::ifstream lines(names.path());
    for (std::string name, kept; lines >> name >> kept;) {
      if (fs::exists(disk + kept)) {
        fs::copy_file(disk + kept, place + name);
      } else {
        std::ofstream empty(place + name);  // its name was waited for, and nothing that is in it
      }
    }
  }
}

}  // namespace lorimat::power
