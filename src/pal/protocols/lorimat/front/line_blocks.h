// The lines of a file, read in blocks where what was read too much can be given back by a seek, and
// byte by byte elsewhere (pipes, files whose line ends are translated).
#pragma once

#include <cstddef>

#include "pal/filesystem/filesystem.h"

class LineBlocks {
 public:
  // Both have to outlive this object.
  LineBlocks(fs_file_t* file, char* block, size_t size);

  // The next line without its end, cut to the limit; line takes one character more. Returns its
  // length, -1 at the end of the file (there may be more later), -2 when it cannot be read.
  int Read(char* line, size_t limit);
  // What was read ahead is read again from the file: by others, or because it may have changed.
  void GiveBack();

 private:
  fs_file_t* file_;
  char* block_;
  size_t size_;
  size_t begin_ = 0;  // what is left of the block
  size_t end_ = 0;
};
