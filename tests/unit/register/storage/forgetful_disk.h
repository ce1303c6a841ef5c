// A disk as systems have it: behind a sync that failed it takes what it did not write for written.
#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <new>
#include <set>
#include <string>

namespace lorimat {

class ForgetfulDisk {
 public:
  // While it stands, every database of the process is opened through it.
  ForgetfulDisk() {
    real() = sqlite3_vfs_find(nullptr);
    vfs_ = *real();
    vfs_.szOsFile = static_cast<int>(sizeof(File)) + real()->szOsFile;
    vfs_.zName = "forgetful";
    vfs_.pNext = nullptr;
    vfs_.xOpen = &Open;
    sqlite3_vfs_register(&vfs_, 1);
    state() = {};
  }
  ~ForgetfulDisk() {
    sqlite3_vfs_unregister(&vfs_);
    sqlite3_vfs_register(real(), 1);
  }
  ForgetfulDisk(const ForgetfulDisk&) = delete;
  ForgetfulDisk& operator=(const ForgetfulDisk&) = delete;

  // The n-th sync from now on fails.
  void FailSync(int n) { state().syncs_to_failure = n; }
  bool failed() const { return state().failed; }
  // What a cut of the power leaves of a file.
  void Cut(const std::string& file, const std::string& copy) const {
    std::ofstream(copy, std::ios::binary) << state().media[file].content;
  }

 private:
  static constexpr size_t kPage = 512;

  struct Medium {
    std::string content;
    std::set<size_t> dirty;  // pages of the cache that the medium has not
  };
  struct State {
    std::map<std::string, Medium> media;
    int syncs_to_failure = 0;
    bool failed = false;
  };
  struct File {
    sqlite3_file base;
    sqlite3_file* below;
    Medium* medium;
  };

  static State& state() {
    static State one;
    return one;
  }
  static sqlite3_vfs*& real() {
    static sqlite3_vfs* one = nullptr;
    return one;
  }
  static sqlite3_file* Below(sqlite3_file* file) { return reinterpret_cast<File*>(file)->below; }

  static int Sync(sqlite3_file* file, int flags) {
    Medium& medium = *reinterpret_cast<File*>(file)->medium;
    if (state().syncs_to_failure > 0 && --state().syncs_to_failure == 0) {
      state().failed = true;
      medium.dirty.clear();
      return SQLITE_IOERR_FSYNC;
    }
    sqlite3_int64 size = 0;
    Below(file)->pMethods->xFileSize(Below(file), &size);
    std::string cache(static_cast<size_t>(size), '\0');
    if (size > 0) {
      Below(file)->pMethods->xRead(Below(file), cache.data(), static_cast<int>(size), 0);
    }
    medium.content.resize(cache.size());
    for (const size_t page : medium.dirty) {
      const size_t at = page * kPage;
      if (at >= cache.size()) continue;
      std::memcpy(&medium.content[at], &cache[at], std::min(kPage, cache.size() - at));
    }
    medium.dirty.clear();
    return Below(file)->pMethods->xSync(Below(file), flags);
  }

  static int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
    const auto first = static_cast<size_t>(at);
    const size_t last = (first + static_cast<size_t>(size) - 1) / kPage;
    for (size_t page = first / kPage; page <= last; ++page) {
      reinterpret_cast<File*>(file)->medium->dirty.insert(page);
    }
    return Below(file)->pMethods->xWrite(Below(file), data, size, at);
  }

  static int Open(sqlite3_vfs*, const char* name, sqlite3_file* opened, int flags, int* given) {
    File* const file = new (opened) File{};
    file->below = reinterpret_cast<sqlite3_file*>(file + 1);
    file->medium = &state().media[name != nullptr ? name : ""];
    std::memset(static_cast<void*>(file->below), 0, static_cast<size_t>(real()->szOsFile));
    const int code = real()->xOpen(real(), name, file->below, flags, given);
    if (code == SQLITE_OK) file->base.pMethods = &Methods();
    return code;
  }

  static const sqlite3_io_methods& Methods() {
    static const sqlite3_io_methods methods = [] {
      sqlite3_io_methods all = {};
      all.iVersion = 2;
      all.xClose = [](sqlite3_file* f) { return Below(f)->pMethods->xClose(Below(f)); };
      all.xRead = [](sqlite3_file* f, void* data, int size, sqlite3_int64 at) {
        return Below(f)->pMethods->xRead(Below(f), data, size, at);
      };
      all.xWrite = &Write;
      all.xTruncate = [](sqlite3_file* f, sqlite3_int64 size) {
        return Below(f)->pMethods->xTruncate(Below(f), size);
      };
      all.xSync = &Sync;
      all.xFileSize = [](sqlite3_file* f, sqlite3_int64* size) {
        return Below(f)->pMethods->xFileSize(Below(f), size);
      };
      all.xLock = [](sqlite3_file* f, int lock) {
        return Below(f)->pMethods->xLock(Below(f), lock);
      };
      all.xUnlock = [](sqlite3_file* f, int lock) {
        return Below(f)->pMethods->xUnlock(Below(f), lock);
      };
      all.xCheckReservedLock = [](sqlite3_file* f, int* held) {
        return Below(f)->pMethods->xCheckReservedLock(Below(f), held);
      };
      all.xFileControl = [](sqlite3_file* f, int code, void* argument) {
        return Below(f)->pMethods->xFileControl(Below(f), code, argument);
      };
      all.xSectorSize = [](sqlite3_file* f) { return Below(f)->pMethods->xSectorSize(Below(f)); };
      all.xDeviceCharacteristics = [](sqlite3_file* f) {
        return Below(f)->pMethods->xDeviceCharacteristics(Below(f));
      };
      all.xShmMap = [](sqlite3_file* f, int page, int size, int extend, void volatile** memory) {
        return Below(f)->pMethods->xShmMap(Below(f), page, size, extend, memory);
      };
      all.xShmLock = [](sqlite3_file* f, int offset, int n, int shm_flags) {
        return Below(f)->pMethods->xShmLock(Below(f), offset, n, shm_flags);
      };
      all.xShmBarrier = [](sqlite3_file* f) { Below(f)->pMethods->xShmBarrier(Below(f)); };
      all.xShmUnmap = [](sqlite3_file* f, int remove) {
        return Below(f)->pMethods->xShmUnmap(Below(f), remove);
      };
      return all;
    }();
    return methods;
  }

  sqlite3_vfs vfs_;
};

}  // namespace lorimat
