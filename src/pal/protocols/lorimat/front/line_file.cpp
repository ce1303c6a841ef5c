// Line-based file input and output, shared by the definition file, the batch run and the
// handlers that read or write files.

#include <algorithm>
#include <cstring>

#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/line_blocks.h"

namespace {

constexpr int kEndOfFile = -1;
constexpr int kReadError = -2;

// What SeqFileRead reads of a file at once, and what SeqFileWrite writes at once.
constexpr size_t kChunk = 1024;

}  // namespace

LineBlocks::LineBlocks(fs_file_t* file, char* block, size_t size)
    : file_(file), block_(block), size_(size) {
  const bool can_give_back =
      !platform::DefaultModeTranslates() && fs_lseek(file, 0, FS_SEEK_CUR) >= 0;
  if (!can_give_back) size_ = 1;
}

int LineBlocks::Read(char* line, size_t limit) {
  size_t length = 0;
  line[0] = 0;
  for (bool ended = false; !ended;) {
    if (begin_ == end_) {
      const auto read = fs_read(file_, block_, size_);
      if (read < 0) {
        line[length] = 0;
        return kReadError;
      }
      if (read == 0) {
        if (length == 0) return kEndOfFile;
        break;
      }
      begin_ = 0;
      end_ = static_cast<size_t>(read);
    }
    const char* const text = block_ + begin_;
    const void* const line_feed = std::memchr(text, '\n', end_ - begin_);
    ended = line_feed != nullptr;
    const size_t used =
        ended ? static_cast<size_t>(static_cast<const char*>(line_feed) - text) + 1 : end_ - begin_;
    const size_t stored = std::min(used, limit - length);
    std::memcpy(line + length, text, stored);
    length += stored;
    begin_ += used;
  }
  if (length > 0 && line[length - 1] == '\n') --length;
  if (length > 0 && line[length - 1] == '\r') --length;
  line[length] = 0;
  return static_cast<int>(length);
}

void LineBlocks::GiveBack() {
  if (begin_ < end_) fs_lseek(file_, -static_cast<int64_t>(end_ - begin_), FS_SEEK_CUR);
  begin_ = end_ = 0;
}

int EcrCmdInterpreter::SeqFileRead(fs_file_t* hHandle, char* szLinea, unsigned long nMax) {
  char chunk[kChunk];
  LineBlocks lines(hHandle, chunk, sizeof chunk);
  const int length = lines.Read(szLinea, nMax);
  lines.GiveBack();
  return length;
}

bool EcrCmdInterpreter::OpenOutput(fs_file_t* file, const char* name, mode_flags_t flags) {
  NoteOutput();
  return fs_open_binary(file, name, flags) != FS_BADF;
}

bool EcrCmdInterpreter::SeqFileWrite(fs_file_t* hHandle, char* szString) {
  if (*hHandle == -1) return false;
  const size_t length = std::strlen(szString);
  constexpr size_t kEnd = 2;
  // All but the longest go out with their end by one call.
  char line[kChunk];
  if (length <= sizeof line - kEnd) {
    std::memcpy(line, szString, length);
    std::memcpy(line + length, "\r\n", kEnd);
    return fs_write(hHandle, line, length + kEnd) == static_cast<ptrdiff_t>(length + kEnd);
  }
  if (fs_write(hHandle, szString, length) != static_cast<ptrdiff_t>(length)) return false;
  return fs_write(hHandle, "\r\n", kEnd) == static_cast<ptrdiff_t>(kEnd);
}
