#include "register/storage/descriptor_files.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

namespace lorimat {
namespace {

thread_local int write_error = 0;

// The descriptor belongs to whoever opened it, and the file is one connection's: there is nothing
// to close or to lock.
struct File {
  sqlite3_file base;
  int descriptor;
};

int DescriptorOf(sqlite3_file* file) { return reinterpret_cast<File*>(file)->descriptor; }

int NoteWriteError(int code) {
  write_error = errno;
  const bool full = errno == ENOSPC || errno == EDQUOT;
  return full ? SQLITE_FULL : code;
}

int Read(sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
  auto* bytes = static_cast<char*>(to);
  while (size > 0) {
    const ssize_t got = pread(DescriptorOf(file), bytes, static_cast<size_t>(size), at);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return SQLITE_IOERR_READ;
    if (got == 0) {
      std::memset(bytes, 0, static_cast<size_t>(size));
      return SQLITE_IOERR_SHORT_READ;
    }
    bytes += got;
    at += got;
    size -= static_cast<int>(got);
  }
  return SQLITE_OK;
}

int Write(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  const auto* bytes = static_cast<const char*>(from);
  while (size > 0) {
    const ssize_t put = pwrite(DescriptorOf(file), bytes, static_cast<size_t>(size), at);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return NoteWriteError(SQLITE_IOERR_WRITE);
    if (put == 0) {  // it would go on for ever
      errno = EIO;
      return NoteWriteError(SQLITE_IOERR_WRITE);
    }
    bytes += put;
    at += put;
    size -= static_cast<int>(put);
  }
  return SQLITE_OK;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return ftruncate(DescriptorOf(file), size) == 0 ? SQLITE_OK
                                                  : NoteWriteError(SQLITE_IOERR_TRUNCATE);
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  struct stat status = {};
  if (fstat(DescriptorOf(file), &status) != 0) return SQLITE_IOERR_FSTAT;
  *size = status.st_size;
  return SQLITE_OK;
}

sqlite3_io_methods Methods() {
  sqlite3_io_methods methods = {};
  methods.iVersion = 1;
  methods.xClose = [](sqlite3_file*) { return SQLITE_OK; };
  methods.xRead = &Read;
  methods.xWrite = &Write;
  methods.xTruncate = &Truncate;
  methods.xSync = [](sqlite3_file*, int) { return SQLITE_OK; };  // whoever opened it does that
  methods.xFileSize = &FileSize;
  methods.xLock = [](sqlite3_file*, int) { return SQLITE_OK; };
  methods.xUnlock = [](sqlite3_file*, int) { return SQLITE_OK; };
  methods.xCheckReservedLock = [](sqlite3_file*, int* held) {
    *held = 0;
    return SQLITE_OK;
  };
  methods.xFileControl = [](sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; };
  methods.xSectorSize = [](sqlite3_file*) { return 4096; };
  methods.xDeviceCharacteristics = [](sqlite3_file*) { return 0; };
  return methods;
}

// There is no other file: what is sorted stays in memory.
int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
  static const sqlite3_io_methods methods = Methods();
  auto* opened = reinterpret_cast<File*>(file);
  opened->base.pMethods = nullptr;
  if (name == nullptr || (flags & SQLITE_OPEN_MAIN_DB) == 0) return SQLITE_CANTOPEN;
  const auto [end, error] = std::from_chars(name, name + std::strlen(name), opened->descriptor);
  if (error != std::errc() || *end != '\0') return SQLITE_CANTOPEN;
  opened->base.pMethods = &methods;
  if (out != nullptr) *out = flags;
  return SQLITE_OK;
}

int FullName(sqlite3_vfs*, const char* name, int size, char* whole) {
  const size_t length = std::strlen(name) + 1;
  if (length > static_cast<size_t>(size)) return SQLITE_CANTOPEN;
  std::memcpy(whole, name, length);
  return SQLITE_OK;
}

sqlite3_vfs Layer() {
  sqlite3_vfs layer = *sqlite3_vfs_find(nullptr);  // for the time and the like
  layer.iVersion = 1;
  layer.szOsFile = static_cast<int>(sizeof(File));
  layer.pNext = nullptr;
  layer.zName = DescriptorFiles::kLayer;
  layer.xOpen = &Open;
  layer.xFullPathname = &FullName;
  // There are no journals.
  layer.xDelete = [](sqlite3_vfs*, const char*, int) { return SQLITE_OK; };
  layer.xAccess = [](sqlite3_vfs*, const char*, int, int* there) {
    *there = 0;
    return SQLITE_OK;
  };
  return layer;
}

}  // namespace

std::string DescriptorFiles::NameOf(int descriptor) { return std::to_string(descriptor); }

bool DescriptorFiles::Register() {
  static sqlite3_vfs layer = Layer();
  return sqlite3_vfs_register(&layer, 0) == SQLITE_OK;
}

int DescriptorFiles::TakeWriteError() {
  const int error = write_error;
  write_error = 0;
  return error;
}

}  // namespace lorimat
