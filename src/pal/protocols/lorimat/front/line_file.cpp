// Line-based file input and output, shared by the definition file, the batch run and the
// handlers that read or write files.

#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

namespace {

constexpr int kEndOfFile = -1;
constexpr int kReadError = -2;

// Reads ahead in chunks where the rest of a chunk can be given back by a seek, so that a
// line costs a few system calls, and byte by byte elsewhere (pipes, translated files).
constexpr size_t kChunk = 1024;

bool CanGiveBack(fs_file_t* file) {
  return !platform::DefaultModeTranslates() && fs_lseek(file, 0, FS_SEEK_CUR) >= 0;
}

}  // namespace

int EcrCmdInterpreter::SeqFileRead(fs_file_t* hHandle, char* szLinea, unsigned long nMax) {
  char chunk[kChunk];
  const size_t ahead = CanGiveBack(hHandle) ? kChunk : 1;
  size_t length = 0;
  szLinea[0] = 0;
  for (bool ended = false; !ended;) {
    const auto read = fs_read(hHandle, chunk, ahead);
    if (read < 0) {
      szLinea[length] = 0;
      return kReadError;
    }
    if (read == 0) {
      if (length == 0) return kEndOfFile;
      break;
    }
    const size_t got = static_cast<size_t>(read);
    const void* line_feed = std::memchr(chunk, '\n', got);
    ended = line_feed != nullptr;
    const size_t used =
        ended ? static_cast<size_t>(static_cast<const char*>(line_feed) - chunk) + 1 : got;
    if (used < got) fs_lseek(hHandle, -static_cast<int64_t>(got - used), FS_SEEK_CUR);
    const size_t room = nMax - length;
    const size_t stored = used < room ? used : room;
    std::memcpy(szLinea + length, chunk, stored);
    length += stored;
  }
  if (length > 0 && szLinea[length - 1] == '\n') --length;
  if (length > 0 && szLinea[length - 1] == '\r') --length;
  szLinea[length] = 0;
  return static_cast<int>(length);
}

bool EcrCmdInterpreter::SeqFileWrite(fs_file_t* hHandle, char* szString) {
  if (*hHandle == -1) return false;
  const size_t length = std::strlen(szString);
  if (fs_write(hHandle, szString, length) != static_cast<ptrdiff_t>(length)) return false;
  return fs_write(hHandle, "\r\n", 2) == 2;
}
