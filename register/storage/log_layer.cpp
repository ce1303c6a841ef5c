// What is written frame by frame is held until the frame that ends a unit, which is written with
// all of it ahead, or fails with all of it. Only then does SQLite tell others, by the index of the
// log, that there is something. Whatever else it does with the log finds all written that was held;
// it is read from where it is held, for a read that wrote could fail for want of room.
//
// Held is only what follows the end of a frame: frames that are written over are not. What is held
// is never part of a unit that stands, so that it is dropped where a unit is taken back or the log
// closed: nothing of it comes into the file later, where somebody else may have begun anew.
#include "register/storage/log_layer.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace lorimat {
namespace {

// Of a log, and of each frame in it, which a page follows
// (https://www.sqlite.org/fileformat2.html, 4.1).
constexpr int kLogHeadSize = 32;
constexpr int kFrameHeadSize = 24;
constexpr int kPagesAt = 4;  // in the head of a frame: not 0 in the last one of a unit
constexpr int kLeastPage = 512;
constexpr int kMostPage = 65536;

// A unit that is longer takes several calls.
constexpr int kHeld = kFrameHeadSize + kMostPage;

// For the files of the usual layer, which has some 120 bytes for each.
constexpr int kRoom = 1024;

struct LogFile {
  sqlite3_file base;
  sqlite3_file* below;
  char* held;  // kHeld bytes, the first `size` of which are to be written
  int size;
  sqlite3_int64 at;  // where those go
  // Where the head of the next frame is to be expected, and where the page of a head that was
  // written through; -1: nowhere.
  sqlite3_int64 next;
  sqlite3_int64 page;
  bool in_frame;  // the head of a frame is held, and its page is not
  bool is_last;   // the frame ends the unit
};

LogFile& Of(sqlite3_file* file) { return *reinterpret_cast<LogFile*>(file); }

const sqlite3_io_methods& Below(LogFile& log) { return *log.below->pMethods; }

sqlite3_vfs* Usual() { return sqlite3_vfs_find(nullptr); }

// What is held does not come into the file; the next frame takes its place. All ahead is written.
void GiveUp(LogFile& log) {
  if (log.size != 0) log.next = log.at;
  log.size = 0;
  log.in_frame = false;
}

// What cannot be written goes on being held: SQLite takes it for written, and may end the unit yet,
// or take it back.
int Flush(LogFile& log) {
  if (log.size == 0) return SQLITE_OK;
  const int code = Below(log).xWrite(log.below, log.held, log.size, log.at);
  if (code != SQLITE_OK) return code;
  log.size = 0;
  log.in_frame = false;
  return SQLITE_OK;
}

// As a part of what SQLite writes: it gives the unit up, which the frame that ends it may be held
// of already.
int FlushOrGiveUp(LogFile& log) {
  const int code = Flush(log);
  if (code != SQLITE_OK) GiveUp(log);
  return code;
}

int Hold(LogFile& log, const void* from, int size, sqlite3_int64 at) {
  if (log.size + size > kHeld) {
    if (const int code = FlushOrGiveUp(log)) return code;
  }
  if (log.size == 0) log.at = at;
  std::memcpy(log.held + log.size, from, static_cast<size_t>(size));
  log.size += size;
  return SQLITE_OK;
}

bool IsPage(int size) {
  return size >= kLeastPage && size <= kMostPage && (size & (size - 1)) == 0;
}

int WriteThrough(LogFile& log, const void* from, int size, sqlite3_int64 at) {
  const bool whole = (at == 0 && size == kLogHeadSize) || (at == log.page && IsPage(size));
  if (const int code = FlushOrGiveUp(log)) return code;
  log.next = log.page = -1;
  if (const int code = Below(log).xWrite(log.below, from, size, at)) return code;
  if (whole) log.next = at + size;
  if (size == kFrameHeadSize) log.page = at + size;
  return SQLITE_OK;
}

int Write(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  LogFile& log = Of(file);
  if (log.in_frame && IsPage(size) && at == log.next + kFrameHeadSize) {
    if (const int code = Hold(log, from, size, at)) return code;
    log.in_frame = false;
    log.next = at + size;
    return log.is_last ? FlushOrGiveUp(log) : SQLITE_OK;
  }
  if (!log.in_frame && size == kFrameHeadSize && at == log.next) {
    if (const int code = Hold(log, from, size, at)) return code;
    const char* const pages = static_cast<const char*>(from) + kPagesAt;
    log.is_last = std::any_of(pages, pages + 4, [](char byte) { return byte != 0; });
    log.in_frame = true;
    return SQLITE_OK;
  }
  return WriteThrough(log, from, size, at);
}

int Close(sqlite3_file* file) {
  LogFile& log = Of(file);
  sqlite3_free(log.held);
  return Below(log).xClose(log.below);
}

int Read(sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
  LogFile& log = Of(file);
  const sqlite3_int64 end = at + size;
  const sqlite3_int64 held_end = log.at + log.size;
  if (log.size != 0 && at < held_end && end > log.at) {
    if (at >= log.at && end <= held_end) {
      std::memcpy(to, log.held + (at - log.at), static_cast<size_t>(size));
      return SQLITE_OK;
    }
    if (Flush(log) != SQLITE_OK) return SQLITE_IOERR_READ;
  }
  return Below(log).xRead(log.below, to, size, at);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  LogFile& log = Of(file);
  const int code = Flush(log);
  log.next = log.page = -1;
  return code != SQLITE_OK ? code : Below(log).xTruncate(log.below, size);
}

int Sync(sqlite3_file* file, int flags) {
  LogFile& log = Of(file);
  if (const int code = Flush(log)) return code;
  return Below(log).xSync(log.below, flags);
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  LogFile& log = Of(file);
  if (const int code = Flush(log)) return code;
  return Below(log).xFileSize(log.below, size);
}

sqlite3_io_methods Methods() {
  sqlite3_io_methods methods = {};
  methods.iVersion = 1;
  methods.xClose = &Close;
  methods.xRead = &Read;
  methods.xWrite = &Write;
  methods.xTruncate = &Truncate;
  methods.xSync = &Sync;
  methods.xFileSize = &FileSize;
  methods.xLock = [](sqlite3_file* file, int lock) {
    return Below(Of(file)).xLock(Of(file).below, lock);
  };
  methods.xUnlock = [](sqlite3_file* file, int lock) {
    return Below(Of(file)).xUnlock(Of(file).below, lock);
  };
  methods.xCheckReservedLock = [](sqlite3_file* file, int* held) {
    return Below(Of(file)).xCheckReservedLock(Of(file).below, held);
  };
  methods.xFileControl = [](sqlite3_file* file, int operation, void* argument) {
    if (operation == LogLayer::kTakenBack) {
      GiveUp(Of(file));
      return SQLITE_OK;
    }
    return Below(Of(file)).xFileControl(Of(file).below, operation, argument);
  };
  methods.xSectorSize = [](sqlite3_file* file) {
    return Below(Of(file)).xSectorSize(Of(file).below);
  };
  methods.xDeviceCharacteristics = [](sqlite3_file* file) {
    return Below(Of(file)).xDeviceCharacteristics(Of(file).below);
  };
  return methods;
}

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
  static const sqlite3_io_methods methods = Methods();
  sqlite3_vfs* const usual = Usual();
  file->pMethods = nullptr;
  if (usual->szOsFile > kRoom) return SQLITE_CANTOPEN;
  if ((flags & SQLITE_OPEN_WAL) == 0) return usual->xOpen(usual, name, file, flags, out);
  new (file) LogFile{};
  LogFile* const log = &Of(file);
  log->next = log->page = -1;
  log->below = reinterpret_cast<sqlite3_file*>(log + 1);
  std::memset(static_cast<void*>(log->below), 0, kRoom);
  log->held = static_cast<char*>(sqlite3_malloc(kHeld));
  if (log->held == nullptr) return SQLITE_NOMEM;
  const int code = usual->xOpen(usual, name, log->below, flags, out);
  if (code != SQLITE_OK) {
    sqlite3_free(log->held);
    // SQLite closes what has methods, also where it did not open.
    if (log->below->pMethods != nullptr) Below(*log).xClose(log->below);
    return code;
  }
  log->base.pMethods = &methods;
  return SQLITE_OK;
}

sqlite3_vfs Layer() {
  sqlite3_vfs layer = *Usual();
  layer.szOsFile = static_cast<int>(sizeof(LogFile)) + kRoom;
  layer.pNext = nullptr;
  layer.zName = LogLayer::kName;
  layer.xOpen = &Open;
  layer.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
    return Usual()->xDelete(Usual(), name, sync);
  };
  layer.xAccess = [](sqlite3_vfs*, const char* name, int flags, int* there) {
    return Usual()->xAccess(Usual(), name, flags, there);
  };
  layer.xFullPathname = [](sqlite3_vfs*, const char* name, int size, char* whole) {
    return Usual()->xFullPathname(Usual(), name, size, whole);
  };
  return layer;
}

}  // namespace

bool LogLayer::Register() {
  if (const sqlite3_vfs* usual = Usual(); usual == nullptr || usual->szOsFile > kRoom) return false;
  static sqlite3_vfs layer = Layer();
  return sqlite3_vfs_register(&layer, 0) == SQLITE_OK;
}

}  // namespace lorimat
