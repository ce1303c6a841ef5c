#include "strike.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

// The allocator of the C library, under the names that no program replaces.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}

namespace lorimat::strike {
namespace {

enum class Verdict { kGo, kFail, kHalf };

// Plain values: nothing here may allocate, and one thread alone is at work.
struct State {
  Place place;
  const char* folder;
  size_t folder_size;
  bool counting;
  bool healed;
  bool rest_fails;  // the other half of a write
  long counts[kKinds];
  long failed;
};

constinit State state = {};
constinit Nature nature = {};
void (*on_sync)(int descriptor) = nullptr;

// Whether the fault has struck as often as it was to, or was healed.
bool IsPast() {
  if (state.healed) return true;
  return state.failed > 0 && !state.rest_fails &&
         state.counts[state.place.kind] - state.place.first >= state.place.run - 1;
}

void Die() {
  kill(getpid(), SIGKILL);
  for (;;) pause();
}

Verdict Ask(Kind kind) {
  if (!state.counting) return Verdict::kGo;
  const bool is_early = state.place.behind_open && state.counts[kOpen] == 0;
  if (kind == kMemory && is_early) return Verdict::kGo;
  const long n = ++state.counts[kind];
  if (state.healed || state.place.first == 0) return Verdict::kGo;
  if (kind != state.place.kind) {
    const bool stores = kind == kWrite || kind == kSync || kind == kTruncate;
    if (!state.place.disk || !stores || state.failed == 0 || IsPast()) return Verdict::kGo;
    ++state.failed;
    return Verdict::kFail;
  }
  if (state.rest_fails) {
    state.rest_fails = false;
    ++state.failed;
    return Verdict::kFail;
  }
  if (n < state.place.first || n - state.place.first >= state.place.run) return Verdict::kGo;
  ++state.failed;
  const bool first = n == state.place.first;
  if (state.place.kill && !state.place.half) Die();
  return state.place.half && first ? Verdict::kHalf : Verdict::kFail;
}

bool IsOurs(const char* path) {
  return state.counting && path != nullptr && strncmp(path, state.folder, state.folder_size) == 0;
}

// The folder itself is meant by its name without the '/'.
bool IsOursOrFolder(const char* path) {
  return IsOurs(path) ||
         (state.counting && path != nullptr && strlen(path) + 1 == state.folder_size &&
          strncmp(path, state.folder, state.folder_size - 1) == 0);
}

bool IsOurs(int descriptor) {
  if (!state.counting) return false;
  char link[64];
  char path[4096];
  snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const long size = syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
  if (size <= 0) return false;
  path[size] = 0;
  return IsOursOrFolder(path);
}

// A path that is looked for in a folder: its descriptor, or AT_FDCWD.
bool IsOursAt(int folder, const char* path) {
  if (path == nullptr || path[0] == '/') return IsOursOrFolder(path);
  if (folder != AT_FDCWD) return IsOurs(folder);
  char here[4096];
  const long size = state.counting
                        ? syscall(SYS_readlinkat, AT_FDCWD, "/proc/self/cwd", here, sizeof here - 1)
                        : 0;
  if (size <= 0) return false;
  here[size] = 0;
  return IsOursOrFolder(here);
}

// A path as the file system has it.
class Named {
 public:
  Named(int folder, const char* path) : path_(path) {
    if (!nature.one_case || !IsOursAt(folder, path)) return;
    size_t i = path[0] == '/' ? state.folder_size - 1 : 0;
    if (strlen(path) >= sizeof lower_) return;
    strcpy(lower_, path);
    for (; lower_[i] != 0; ++i) {
      if (lower_[i] >= 'A' && lower_[i] <= 'Z') lower_[i] = static_cast<char>(lower_[i] + 32);
    }
    path_ = lower_;
  }
  const char* path() const { return path_; }

 private:
  const char* path_;
  char lower_[4096];
};

int Error(int likely) { return state.place.error != 0 ? state.place.error : likely; }

bool FailsWith(Kind kind, int error) {
  if (state.counting) {
    const bool changes = kind == kTruncate || kind == kName;
    const int lasting = nature.read_only && changes     ? EROFS
                        : nature.full && kind == kWrite ? ENOSPC
                                                        : 0;
    if (lasting != 0) {
      ++state.counts[kind];
      ++state.failed;
      errno = lasting;
      return true;
    }
  }
  const Verdict verdict = Ask(kind);
  if (verdict == Verdict::kGo || (verdict == Verdict::kHalf && state.place.cut)) return false;
  errno = Error(error);
  return true;
}

bool NoMemory() { return FailsWith(kMemory, ENOMEM); }

// `half` makes the call for half of the bytes, `whole` for all of them; both answer as it does.
template <typename Half, typename Whole>
ssize_t Transfer(Kind kind, int error, Half&& half, Whole&& whole) {
  if (nature.full && kind == kWrite && FailsWith(kind, error)) return -1;
  switch (Ask(kind)) {
    case Verdict::kGo:
      break;
    case Verdict::kFail:
      errno = Error(error);
      return -1;
    case Verdict::kHalf: {
      const ssize_t moved = half();
      if (state.place.kill) Die();
      if (moved > 0) {
        // What is read comes in two parts, which is lawful; what is written finds no room.
        state.rest_fails = kind == kWrite && !state.place.cut;
        return moved;
      }
      if (state.place.cut) break;  // of nothing there is no half
      errno = Error(error);
      return -1;
    }
  }
  return whole();
}

ssize_t Write(int descriptor, const void* from, size_t size) {
  return syscall(SYS_write, descriptor, from, size);
}

ssize_t WriteAt(int descriptor, const void* from, size_t size, off64_t at) {
  return syscall(SYS_pwrite64, descriptor, from, size, at);
}

ssize_t CheckedWriteAt(int descriptor, const void* from, size_t size, off64_t at) {
  const auto whole = [&] { return WriteAt(descriptor, from, size, at); };
  if (!IsOurs(descriptor)) return whole();
  return Transfer(
      kWrite, ENOSPC, [&] { return WriteAt(descriptor, from, size / 2, at); }, whole);
}

ssize_t ReadAt(int descriptor, void* to, size_t size, off64_t at) {
  return syscall(SYS_pread64, descriptor, to, size, at);
}

ssize_t CheckedReadAt(int descriptor, void* to, size_t size, off64_t at) {
  const auto whole = [&] { return ReadAt(descriptor, to, size, at); };
  if (!IsOurs(descriptor)) return whole();
  return Transfer(
      kRead, EIO, [&] { return ReadAt(descriptor, to, (size + 1) / 2, at); }, whole);
}

int Open(int folder, const char* path, int flags, mode_t mode) {
  const bool ours = IsOursAt(folder, path);
  if (ours && nature.read_only && (flags & (O_ACCMODE | O_CREAT | O_TRUNC)) != 0) {
    ++state.failed;
    errno = EROFS;
    return -1;
  }
  if (ours && FailsWith(kOpen, EMFILE)) return -1;
  return static_cast<int>(syscall(SYS_openat, folder, Named(folder, path).path(), flags, mode));
}

int Sync(int descriptor, long call) {
  if (IsOurs(descriptor) && FailsWith(kSync, EIO)) return -1;
  const int answer = static_cast<int>(syscall(call, descriptor));
  if (answer == 0 && on_sync != nullptr) {
    const bool counting = state.counting;
    state.counting = false;
    on_sync(descriptor);
    state.counting = counting;
    errno = 0;
  }
  return answer;
}

int TruncateTo(int descriptor, off64_t size) {
  if (IsOurs(descriptor) && FailsWith(kTruncate, EIO)) return -1;
  return static_cast<int>(syscall(SYS_ftruncate, descriptor, size));
}

void* Map(void* address, size_t size, int protection, int flags, int descriptor, off64_t at) {
  if (descriptor >= 0 && IsOurs(descriptor) && FailsWith(kMap, ENOMEM)) return MAP_FAILED;
  return reinterpret_cast<void*>(
      syscall(SYS_mmap, address, size, protection, flags, descriptor, at));
}

int Remove(int folder, const char* path, int flags) {
  if (IsOursAt(folder, path) && FailsWith(kName, EIO)) return -1;
  return static_cast<int>(syscall(SYS_unlinkat, folder, Named(folder, path).path(), flags));
}

int Rename(int from_folder, const char* from, int to_folder, const char* to) {
  if (IsOursAt(to_folder, to) && FailsWith(kName, EIO)) return -1;
  return static_cast<int>(syscall(SYS_renameat2, from_folder, Named(from_folder, from).path(),
                                  to_folder, Named(to_folder, to).path(), 0));
}

}  // namespace

void Arm(const Place& place, const char* folder) {
  state = State{};
  state.place = place;
  state.folder = folder;
  state.folder_size = strlen(folder);
}

void SetNature(const Nature& wanted) { nature = wanted; }
void OnSync(void (*synced)(int descriptor)) { on_sync = synced; }
void Heal() { state.healed = true; }
void Resume() { state.counting = true; }
void Pause() { state.counting = false; }
long Count(Kind kind) { return state.counts[kind]; }
long Failed() { return state.failed; }
bool Past() { return IsPast(); }

}  // namespace lorimat::strike

using namespace lorimat::strike;

extern "C" {

// --- Memory

void* malloc(size_t size) noexcept { return NoMemory() ? nullptr : __libc_malloc(size); }

void* calloc(size_t count, size_t size) noexcept {
  return NoMemory() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) noexcept {
  // To nothing is a release, which cannot fail.
  const bool releases = block != nullptr && size == 0;
  return !releases && NoMemory() ? nullptr : __libc_realloc(block, size);
}

void* memalign(size_t alignment, size_t size) noexcept {
  return NoMemory() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) noexcept {
  return NoMemory() ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) noexcept {
  if (NoMemory()) return ENOMEM;
  *block = __libc_memalign(alignment, size);
  return *block != nullptr ? 0 : ENOMEM;
}

// --- Files

ssize_t write(int descriptor, const void* from, size_t size) {
  const auto whole = [&] { return Write(descriptor, from, size); };
  if (!IsOurs(descriptor)) return whole();
  return Transfer(
      kWrite, ENOSPC, [&] { return Write(descriptor, from, size / 2); }, whole);
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
  const auto whole = [&] {
    return static_cast<ssize_t>(syscall(SYS_writev, descriptor, pieces, count));
  };
  if (!IsOurs(descriptor)) return whole();
  const auto half = [&] {
    int piece = 0;
    while (piece + 1 < count && pieces[piece].iov_len == 0) ++piece;
    return Write(descriptor, pieces[piece].iov_base, pieces[piece].iov_len / 2);
  };
  return Transfer(kWrite, ENOSPC, half, whole);
}

ssize_t pwrite(int descriptor, const void* from, size_t size, off_t at) {
  return CheckedWriteAt(descriptor, from, size, at);
}
ssize_t pwrite64(int descriptor, const void* from, size_t size, off64_t at) {
  return CheckedWriteAt(descriptor, from, size, at);
}

int posix_fallocate64(int descriptor, off64_t at, off64_t size) {
  if (IsOurs(descriptor) && FailsWith(kWrite, ENOSPC)) return errno;
  return syscall(SYS_fallocate, descriptor, 0, at, size) == 0 ? 0 : errno;
}
int posix_fallocate(int descriptor, off_t at, off_t size) {
  return posix_fallocate64(descriptor, at, size);
}

ssize_t read(int descriptor, void* to, size_t size) {
  const auto whole = [&] { return static_cast<ssize_t>(syscall(SYS_read, descriptor, to, size)); };
  if (!IsOurs(descriptor)) return whole();
  const auto half = [&] {
    return static_cast<ssize_t>(syscall(SYS_read, descriptor, to, (size + 1) / 2));
  };
  return Transfer(kRead, EIO, half, whole);
}

ssize_t pread(int descriptor, void* to, size_t size, off_t at) {
  return CheckedReadAt(descriptor, to, size, at);
}
ssize_t pread64(int descriptor, void* to, size_t size, off64_t at) {
  return CheckedReadAt(descriptor, to, size, at);
}

int fsync(int descriptor) { return Sync(descriptor, SYS_fsync); }
int fdatasync(int descriptor) { return Sync(descriptor, SYS_fdatasync); }

int ftruncate(int descriptor, off_t size) noexcept { return TruncateTo(descriptor, size); }
int ftruncate64(int descriptor, off64_t size) noexcept { return TruncateTo(descriptor, size); }

int truncate64(const char* path, off64_t size) noexcept {
  if (IsOurs(path) && FailsWith(kTruncate, EIO)) return -1;
  return static_cast<int>(syscall(SYS_truncate, path, size));
}
int truncate(const char* path, off_t size) noexcept { return truncate64(path, size); }

int openat64(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const bool makes = (flags & (O_CREAT | O_TMPFILE)) != 0;
  const mode_t mode = makes ? va_arg(more, mode_t) : 0;
  va_end(more);
  return Open(folder, path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) __attribute__((alias("openat64")));
int open64(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const bool makes = (flags & (O_CREAT | O_TMPFILE)) != 0;
  const mode_t mode = makes ? va_arg(more, mode_t) : 0;
  va_end(more);
  return Open(AT_FDCWD, path, flags, mode);
}
int open(const char* path, int flags, ...) __attribute__((alias("open64")));

// The C library opens the files of its streams by a call of its own, which cannot be replaced.
FILE* fopen64(const char* path, const char* mode) {
  int flags =
      mode[0] == 'r' ? O_RDONLY : O_WRONLY | O_CREAT | (mode[0] == 'a' ? O_APPEND : O_TRUNC);
  if (strchr(mode, '+') != nullptr) flags = (flags & ~O_ACCMODE) | O_RDWR;
  if (strchr(mode, 'e') != nullptr) flags |= O_CLOEXEC;
  if (strchr(mode, 'x') != nullptr) flags |= O_EXCL;
  const int descriptor = Open(AT_FDCWD, path, flags, 0666);
  if (descriptor < 0) return nullptr;
  FILE* stream = fdopen(descriptor, mode);
  if (stream == nullptr) {
    const int error = errno;
    close(descriptor);
    errno = error;
  }
  return stream;
}
FILE* fopen(const char* path, const char* mode) { return fopen64(path, mode); }

int unlink(const char* path) noexcept { return Remove(AT_FDCWD, path, 0); }
int unlinkat(int folder, const char* path, int flags) noexcept {
  return Remove(folder, path, flags);
}

int remove(const char* path) noexcept {
  struct stat found;
  const bool folder = lstat(path, &found) == 0 && S_ISDIR(found.st_mode);
  return Remove(AT_FDCWD, path, folder ? AT_REMOVEDIR : 0);
}

int rename(const char* from, const char* to) noexcept {
  return Rename(AT_FDCWD, from, AT_FDCWD, to);
}
int renameat(int from_folder, const char* from, int to_folder, const char* to) noexcept {
  return Rename(from_folder, from, to_folder, to);
}
int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) noexcept {
  if (IsOursAt(to_folder, to) && FailsWith(kName, EIO)) return -1;
  return static_cast<int>(syscall(SYS_linkat, from_folder, Named(from_folder, from).path(),
                                  to_folder, Named(to_folder, to).path(), flags));
}
int mkdir(const char* path, mode_t mode) noexcept {
  if (IsOursAt(AT_FDCWD, path) && FailsWith(kName, EIO)) return -1;
  return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, Named(AT_FDCWD, path).path(), mode));
}

void* mmap(void* address, size_t size, int protection, int flags, int descriptor,
           off_t at) noexcept {
  return Map(address, size, protection, flags, descriptor, at);
}
void* mmap64(void* address, size_t size, int protection, int flags, int descriptor,
             off64_t at) noexcept {
  return Map(address, size, protection, flags, descriptor, at);
}

// --- What is asked of names, and locks

int fstatat(int folder, const char* path, struct stat* found, int flags) noexcept {
  return static_cast<int>(
      syscall(SYS_newfstatat, folder, Named(folder, path).path(), found, flags));
}
int stat(const char* path, struct stat* found) noexcept {
  return fstatat(AT_FDCWD, path, found, 0);
}
int lstat(const char* path, struct stat* found) noexcept {
  return fstatat(AT_FDCWD, path, found, AT_SYMLINK_NOFOLLOW);
}
int access(const char* path, int mode) noexcept {
  return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, Named(AT_FDCWD, path).path(), mode));
}

int flock(int descriptor, int operation) noexcept {
  if (nature.no_locks && IsOurs(descriptor)) {
    ++state.failed;
    errno = EOPNOTSUPP;
    return -1;
  }
  return static_cast<int>(syscall(SYS_flock, descriptor, operation));
}
int fcntl64(int descriptor, int command, ...) {
  va_list more;
  va_start(more, command);
  void* argument = va_arg(more, void*);
  va_end(more);
  const bool locks = command == F_SETLK || command == F_SETLKW || command == F_OFD_SETLK ||
                     command == F_OFD_SETLKW || command == F_GETLK || command == F_OFD_GETLK;
  if (locks && nature.no_locks && IsOurs(descriptor)) {
    ++state.failed;
    errno = ENOLCK;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
}
int fcntl(int descriptor, int command, ...) __attribute__((alias("fcntl64")));

}  // extern "C"
