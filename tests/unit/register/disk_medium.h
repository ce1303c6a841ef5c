// What the disk itself holds of a file, beside what the system shows of it: a sync brings over what
// was written since the last one, and one that fails forgets it. Systems take such pages for
// written from then on, and no later sync brings them, until somebody writes them anew.
#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <vector>

namespace lorimat {

// Not of the memory that tests let run out.
template <typename T>
struct OwnMemory {
  using value_type = T;

  OwnMemory() = default;
  template <typename Other>
  OwnMemory(const OwnMemory<Other>&) {}
  T* allocate(size_t count) {
    void* const room = std::malloc(count * sizeof(T));
    if (room == nullptr) std::abort();
    return static_cast<T*>(room);
  }
  void deallocate(T* room, size_t) { std::free(room); }
  template <typename Other>
  bool operator==(const OwnMemory<Other>&) const {
    return true;
  }
};

class DiskMedium {
 public:
  // All that the file has now counts as waited for.
  explicit DiskMedium(sqlite3_file* file) : file_(file) { Read(0, SizeOfFile(), &content_); }

  // Ahead of a write. A cut needs none: it comes with the next sync.
  void NoteWrite(sqlite3_int64 at, int size) {
    changed_ = true;
    if (size <= 0) return;
    const size_t end = (static_cast<size_t>(at) + static_cast<size_t>(size) - 1) / kPage + 1;
    if (unsynced_.size() < end) unsynced_.resize(end);
    std::fill(unsynced_.begin() + at / kPage, unsynced_.begin() + static_cast<long>(end), true);
  }
  void NoteCut() { changed_ = true; }

  void Sync() {
    content_.resize(static_cast<size_t>(SizeOfFile()));
    for (size_t page = 0; page < unsynced_.size(); ++page) {
      const size_t at = page * kPage;
      if (!unsynced_[page] || at >= content_.size()) continue;
      Bytes now;
      Read(at, std::min(kPage, content_.size() - at), &now);
      std::copy(now.begin(), now.end(), content_.begin() + static_cast<long>(at));
    }
    unsynced_.clear();
  }
  void FailSync() { unsynced_.clear(); }

  // The power has gone: the file is what the disk holds.
  void CutPower() {
    if (!changed_) return;
    const sqlite3_io_methods& methods = *file_->pMethods;
    // SQLite writes a page at a time, and its files take not much more.
    constexpr size_t kPart = 65536;
    for (size_t at = 0; at < content_.size(); at += kPart) {
      const auto size = static_cast<int>(std::min(kPart, content_.size() - at));
      const auto place = static_cast<sqlite3_int64>(at);
      if (methods.xWrite(file_, &content_[at], size, place) != SQLITE_OK) std::abort();
    }
    const auto end = static_cast<sqlite3_int64>(content_.size());
    if (methods.xTruncate(file_, end) != SQLITE_OK) std::abort();
  }

 private:
  using Bytes = std::vector<char, OwnMemory<char>>;
  // Smaller than those of systems: less of what was forgotten comes along with its neighbours.
  static constexpr size_t kPage = 512;

  sqlite3_int64 SizeOfFile() const {
    sqlite3_int64 size = 0;
    if (file_->pMethods->xFileSize(file_, &size) != SQLITE_OK) std::abort();
    return std::min<sqlite3_int64>(size, std::numeric_limits<int>::max());
  }
  void Read(size_t at, size_t size, Bytes* bytes) const {
    bytes->resize(size);
    if (size == 0) return;
    file_->pMethods->xRead(file_, bytes->data(), static_cast<int>(size),
                           static_cast<sqlite3_int64>(at));
  }

  sqlite3_file* file_;
  Bytes content_;
  std::vector<bool, OwnMemory<bool>> unsynced_;  // pages that were written since the last sync
  bool changed_ = false;
};

}  // namespace lorimat
