/* The file layer on POSIX. Included by pal/filesystem/filesystem.h alone, in C and in C++.
 * Every function works on the operating system's file descriptor and gives its result; errno
 * tells the reason of a failure. Calls that a signal interrupts are made again. */
#ifndef PAL_FILESYSTEM_FILESYSTEM_POSIX_H
#define PAL_FILESYSTEM_FILESYSTEM_POSIX_H

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

/* A strict C11 program that asks for no POSIX names lacks this one; it does without. */
#ifdef O_CLOEXEC
enum { FS_CLOSE_ON_EXEC = O_CLOEXEC };
#else
enum { FS_CLOSE_ON_EXEC = 0 };
#endif

/* Opens path and stores the descriptor in *file. The result is file, or FS_BADF; *file is
 * then -1. A created file is the owner's alone (0600). A directory is no file here, also
 * for reading. Programs that the process starts do not inherit the descriptor. */
static inline fs_file_t* fs_open(fs_file_t* file, const char* path, mode_flags_t flags) {
  static const int kAccess[3] = {O_RDONLY, O_WRONLY, O_RDWR};
  const unsigned bits = (unsigned)flags;
  int native;
  struct stat status;

  *file = -1;
  if ((bits & 3u) == 3u) {
    errno = EINVAL;
    return FS_BADF;
  }
  /* The binary bit stands for nothing here, no file is translated. Its value is another
   * flag of this system, so it must not get through. */
  native = kAccess[bits & 3u] | FS_CLOSE_ON_EXEC | O_NOCTTY;
  if (bits & 0x008u) native |= O_APPEND;
  if (bits & 0x100u) native |= O_CREAT;
  if (bits & 0x200u) native |= O_TRUNC;
  do {
    *file = open(path, native, 0600);
  } while (*file == -1 && errno == EINTR);
  if (*file == -1) return FS_BADF;
  if (fstat(*file, &status) == 0 && S_ISDIR(status.st_mode)) {
    close(*file);
    *file = -1;
    errno = EISDIR;
    return FS_BADF;
  }
  return file;
}

/* Reads at most count bytes: how many came, 0 at the end of the file, negative on error. */
static inline ptrdiff_t fs_read(fs_file_t* file, void* buffer, size_t count) {
  ptrdiff_t result;
  if (count > INT_MAX) count = INT_MAX;
  do {
    result = read(*file, buffer, count);
  } while (result == -1 && errno == EINTR);
  return result;
}

/* Writes count bytes: how many went out, which may be fewer, or negative on error. */
static inline ptrdiff_t fs_write(fs_file_t* file, const void* buffer, size_t count) {
  ptrdiff_t result;
  if (count > INT_MAX) count = INT_MAX;
  do {
    result = write(*file, buffer, count);
  } while (result == -1 && errno == EINTR);
  return result;
}

/* Moves to offset, counted from origin (FS_SEEK_...): the new position, or -1. */
static inline int64_t fs_lseek(fs_file_t* file, int64_t offset, int origin) {
  static const int kOrigin[3] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (origin < FS_SEEK_SET || origin > FS_SEEK_END) {
    errno = EINVAL;
    return -1;
  }
  return lseek(*file, (off_t)offset, kOrigin[origin]);
}

/* Closes the descriptor, and sets *file to -1 so that no later call can meet another file
 * that got the same number: 0, or -1. */
static inline int fs_close(fs_file_t* file) {
  /* Not made again after a signal: the descriptor is gone either way. */
  const int result = close(*file);
  *file = -1;
  return result;
}

/* The file's size in bytes, or -1. Sizes pass 2 GiB: a caller that keeps one in an int caps
 * it first. */
static inline int64_t fs_fstat(fs_file_t* file) {
  struct stat status;
  if (fstat(*file, &status) != 0) return -1;
  return status.st_size;
}

static inline int fs_remove(const char* path) { return remove(path); }

/* The directory is the owner's alone (0700). */
static inline int fs_directory_create(const char* path) { return mkdir(path, 0700); }

static inline int fs_directory_remove(const char* path) { return rmdir(path); }

#endif
