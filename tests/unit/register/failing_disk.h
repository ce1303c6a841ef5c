// A disk that fails when a test wants it to: a layer between SQLite and the system's files. No
// test waits for the real disk. Where it remembers (Remember) it has what the medium holds as well:
// a sync that fails forgets what was written, as it does on systems, and a cut of the power leaves
// what was waited for with success.
#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "unit/register/disk_medium.h"

namespace lorimat {

class FailingDisk {
 public:
  enum class Fault {
    kFull,   // a write finds no room
    kWrite,  // a write fails
    kRead,   // a read fails
    kSync,   // what was written does not get through
    kHalf,   // half of a write gets through, then it fails
    kUncut,  // a sync fails, and no file can be cut from then on
    kGone,   // from a sync on that fails, nothing gets through: no write, no cut, no sync
    kDead,   // from a write on that fails, nothing gets through, as for a process that was killed
    kPower,  // the same, and when the files are closed they hold what was waited for
  };

  // While it stands, every database of the process is opened through it.
  FailingDisk() {
    real() = sqlite3_vfs_find(nullptr);
    vfs_ = *real();
    vfs_.szOsFile = static_cast<int>(sizeof(File)) + real()->szOsFile;
    vfs_.zName = "failing";
    vfs_.pNext = nullptr;
    vfs_.xOpen = &Open;
    sqlite3_vfs_register(&vfs_, 1);
    vfs_.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
      if (IsOff() && plan().fault != Fault::kGone) return SQLITE_IOERR_DELETE;
      return real()->xDelete(real(), name, sync);
    };
    plan() = Plan{};
  }
  ~FailingDisk() {
    remembers() = false;
    sqlite3_vfs_unregister(&vfs_);
    // Ahead of a layer that was made known meanwhile.
    sqlite3_vfs_register(real(), 1);
  }

  // The n-th write (or read or sync, by the fault) from now on fails, and with `lasting` all behind
  // it.
  void FailAt(Fault fault, int n, bool lasting) { plan() = {fault, n, lasting, true, false}; }
  void Heal() { plan().armed = false; }
  // As long as it stands nothing fails, and nothing is counted: for those who look at what is
  // there.
  class Pause {
   public:
    Pause() : kept_(plan().armed) { plan().armed = false; }
    ~Pause() { plan().armed = kept_; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    bool kept_;
  };
  // From here on the files that are opened have a medium: kPower needs it. What a file holds when
  // it is opened counts as waited for.
  static void Remember() { remembers() = true; }
  // The layer below, for those who look at a file themselves.
  static const char* RealName() { return real()->zName; }
  // Whether it has come to a failure since.
  bool failed() const { return plan().failed; }

 private:
  struct Plan {
    Fault fault = Fault::kFull;
    int left = 0;
    bool lasting = false;
    bool armed = false;
    bool failed = false;
  };
  struct File {
    sqlite3_file base;
    sqlite3_file* real;
    DiskMedium* medium;  // none where nothing is remembered
  };

  static sqlite3_vfs*& real() {
    static sqlite3_vfs* vfs = nullptr;
    return vfs;
  }
  static Plan& plan() {
    static Plan plan;
    return plan;
  }
  static sqlite3_file* Real(sqlite3_file* file) { return reinterpret_cast<File*>(file)->real; }
  static DiskMedium* MediumOf(sqlite3_file* file) { return reinterpret_cast<File*>(file)->medium; }

  static bool& remembers() {
    static bool remembers = false;
    return remembers;
  }
  static bool IsOff() {
    const Plan& now = plan();
    return now.armed && now.failed &&
           (now.fault == Fault::kGone || now.fault == Fault::kDead || now.fault == Fault::kPower);
  }

  enum class Access { kRead, kWrite, kSync, kCut };

  static bool Fails(Access access) {
    Plan& now = plan();
    if (!now.armed) return false;
    if (IsOff()) return access != Access::kRead;
    if (now.fault == Fault::kUncut && access == Access::kCut) return now.failed;
    const bool at_sync =
        now.fault == Fault::kSync || now.fault == Fault::kUncut || now.fault == Fault::kGone;
    const Access struck = now.fault == Fault::kRead ? Access::kRead
                          : at_sync                 ? Access::kSync
                                                    : Access::kWrite;
    if (access != struck) return false;
    if (now.failed && now.lasting) return true;
    if (--now.left != 0) return false;
    now.failed = true;
    return true;
  }

  static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
    static sqlite3_io_methods methods = Methods();
    auto* shim = reinterpret_cast<File*>(file);
    shim->real = reinterpret_cast<sqlite3_file*>(shim + 1);
    std::memset(static_cast<void*>(shim->real), 0, static_cast<size_t>(real()->szOsFile));
    shim->base.pMethods = nullptr;
    shim->medium = nullptr;
    const int code = real()->xOpen(real(), name, shim->real, flags, out);
    if (code != SQLITE_OK) return code;
    shim->base.pMethods = &methods;
    if (remembers()) {
      shim->medium = new (OwnMemory<DiskMedium>().allocate(1)) DiskMedium(shim->real);
    }
    return code;
  }

  static sqlite3_io_methods Methods() {
    sqlite3_io_methods methods = {};
    methods.iVersion = 2;
    methods.xClose = [](sqlite3_file* file) {
      if (DiskMedium* const medium = MediumOf(file)) {
        if (plan().fault == Fault::kPower && IsOff()) medium->CutPower();
        medium->~DiskMedium();
        OwnMemory<DiskMedium>().deallocate(medium, 1);
      }
      return Real(file)->pMethods->xClose(Real(file));
    };
    methods.xRead = [](sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
      if (Fails(Access::kRead)) return SQLITE_IOERR_READ;
      return Real(file)->pMethods->xRead(Real(file), to, size, at);
    };
    methods.xWrite = [](sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
      const bool fails = Fails(Access::kWrite);
      if (fails && plan().fault != Fault::kHalf) {
        return plan().fault == Fault::kFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
      }
      if (DiskMedium* const medium = MediumOf(file)) medium->NoteWrite(at, size);
      if (!fails) return Real(file)->pMethods->xWrite(Real(file), from, size, at);
      Real(file)->pMethods->xWrite(Real(file), from, size / 2, at);
      return SQLITE_IOERR_WRITE;
    };
    methods.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
      if (Fails(Access::kCut)) return SQLITE_IOERR_TRUNCATE;
      if (DiskMedium* const medium = MediumOf(file)) medium->NoteCut();
      return Real(file)->pMethods->xTruncate(Real(file), size);
    };
    methods.xSync = [](sqlite3_file* file, int flags) {
      static_cast<void>(flags);
      DiskMedium* const medium = MediumOf(file);
      if (Fails(Access::kSync)) {
        if (medium != nullptr) medium->FailSync();
        return SQLITE_IOERR_FSYNC;
      }
      if (medium != nullptr) medium->Sync();
      return SQLITE_OK;
    };
    methods.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
      return Real(file)->pMethods->xFileSize(Real(file), size);
    };
    methods.xLock = [](sqlite3_file* file, int lock) {
      return Real(file)->pMethods->xLock(Real(file), lock);
    };
    methods.xUnlock = [](sqlite3_file* file, int lock) {
      return Real(file)->pMethods->xUnlock(Real(file), lock);
    };
    methods.xCheckReservedLock = [](sqlite3_file* file, int* held) {
      return Real(file)->pMethods->xCheckReservedLock(Real(file), held);
    };
    methods.xFileControl = [](sqlite3_file* file, int op, void* argument) {
      return Real(file)->pMethods->xFileControl(Real(file), op, argument);
    };
    methods.xSectorSize = [](sqlite3_file* file) {
      return Real(file)->pMethods->xSectorSize(Real(file));
    };
    methods.xDeviceCharacteristics = [](sqlite3_file* file) {
      return Real(file)->pMethods->xDeviceCharacteristics(Real(file));
    };
    // The index of a log, which is memory that programs share.
    methods.xShmMap = [](sqlite3_file* file, int page, int size, int extend, void volatile** map) {
      return Real(file)->pMethods->xShmMap(Real(file), page, size, extend, map);
    };
    methods.xShmLock = [](sqlite3_file* file, int offset, int count, int flags) {
      return Real(file)->pMethods->xShmLock(Real(file), offset, count, flags);
    };
    methods.xShmBarrier = [](sqlite3_file* file) { Real(file)->pMethods->xShmBarrier(Real(file)); };
    methods.xShmUnmap = [](sqlite3_file* file, int remove) {
      return Real(file)->pMethods->xShmUnmap(Real(file), remove);
    };
    return methods;
  }

  sqlite3_vfs vfs_ = {};
};

}  // namespace lorimat
