/* The file layer on Windows, over the C runtime's file descriptors. Included by
 * pal/filesystem/filesystem.h alone, in C and in C++. What the functions promise is told
 * in filesystem_posix.h; files open in text mode unless fs_open_binary opens them. */
#ifndef PAL_FILESYSTEM_FILESYSTEM_WINDOWS_H
#define PAL_FILESYSTEM_FILESYSTEM_WINDOWS_H

#include <direct.h>
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>

static inline fs_file_t* fs_open(fs_file_t* file, const char* path, mode_flags_t flags) {
  static const int kAccess[3] = {_O_RDONLY, _O_WRONLY, _O_RDWR};
  const unsigned bits = (unsigned)flags;
  int native;

  *file = -1;
  if ((bits & 3u) == 3u) {
    errno = EINVAL;
    return FS_BADF;
  }
  native = kAccess[bits & 3u] | _O_NOINHERIT;
  if (bits & 0x008u) native |= _O_APPEND;
  if (bits & 0x100u) native |= _O_CREAT;
  if (bits & 0x200u) native |= _O_TRUNC;
  /* Without the bit the runtime's own default holds, which is text. */
  if (bits & FS_BINARY_FLAG) native |= _O_BINARY;
  *file = _open(path, native, _S_IREAD | _S_IWRITE);
  return *file == -1 ? FS_BADF : file;
}

/* The runtime answers a negative descriptor by ending the process, unless the host
 * installed a handler of its own; these functions answer it themselves. */
static inline int fs_bad_descriptor(const fs_file_t* file) {
  if (*file >= 0) return 0;
  errno = EBADF;
  return 1;
}

static inline ptrdiff_t fs_read(fs_file_t* file, void* buffer, size_t count) {
  if (fs_bad_descriptor(file)) return -1;
  return _read(*file, buffer, count > INT_MAX ? (unsigned)INT_MAX : (unsigned)count);
}

static inline ptrdiff_t fs_write(fs_file_t* file, const void* buffer, size_t count) {
  if (fs_bad_descriptor(file)) return -1;
  return _write(*file, buffer, count > INT_MAX ? (unsigned)INT_MAX : (unsigned)count);
}

static inline int64_t fs_lseek(fs_file_t* file, int64_t offset, int origin) {
  static const int kOrigin[3] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (fs_bad_descriptor(file)) return -1;
  if (origin < FS_SEEK_SET || origin > FS_SEEK_END) {
    errno = EINVAL;
    return -1;
  }
  return _lseeki64(*file, offset, kOrigin[origin]);
}

static inline int fs_close(fs_file_t* file) {
  int result;
  if (fs_bad_descriptor(file)) return -1;
  result = _close(*file);
  *file = -1;
  return result;
}

static inline int64_t fs_fstat(fs_file_t* file) {
  struct _stat64 status;
  if (fs_bad_descriptor(file)) return -1;
  if (_fstat64(*file, &status) != 0) return -1;
  return status.st_size;
}

static inline int fs_remove(const char* path) { return remove(path); }

static inline int fs_directory_create(const char* path) { return _mkdir(path); }

static inline int fs_directory_remove(const char* path) { return _rmdir(path); }

#endif
