/* The two shared functions of the file layer. */
#include "pal/filesystem/filesystem.h"

int fs_flush(fs_file_t* file) {
  (void)file;
  return 0;
}

fs_file_t* fs_open_binary(fs_file_t* file, const char* path, mode_flags_t flags) {
  return fs_open(file, path, (mode_flags_t)((unsigned)flags | FS_BINARY_FLAG));
}
