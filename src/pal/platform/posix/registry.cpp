// The registry as a text file. The file is hostile until proven otherwise: it is read in
// small pieces, every line is known by its places in the file alone, and nothing of it is
// kept but the place where the key's section begins.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "pal/platform/platform.h"

namespace platform {
namespace {

constexpr char kDefaultFile[] = "/etc/lorimatrt/registry.ini";

// A larger file is no registry; the bound keeps a search short.
constexpr int64_t kLargestFile = int64_t{1024} * 1024;

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// A carriage return counts as one, so that lines may end in CR LF.
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// Reads exactly length bytes from a place in the file.
bool ReadAt(int file, int64_t place, char* bytes, size_t length) {
  while (length > 0) {
    const ssize_t count = pread(file, bytes, length, static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    place += count;
    length -= static_cast<size_t>(count);
  }
  return true;
}

// A stretch of the file.
struct Stretch {
  int64_t begin = 0;
  int64_t end = 0;
  int64_t length() const { return end - begin; }
};

// Whether the stretch holds that text, ignoring case.
bool Equals(int file, Stretch stretch, const char* text) {
  const size_t length = std::strlen(text);
  if (static_cast<uint64_t>(stretch.length()) != length) return false;
  char piece[256];
  for (size_t done = 0; done < length;) {
    const size_t count = length - done < sizeof(piece) ? length - done : sizeof(piece);
    if (!ReadAt(file, stretch.begin + static_cast<int64_t>(done), piece, count)) return false;
    for (size_t i = 0; i < count; ++i) {
      if (AsciiLower(piece[i]) != AsciiLower(text[done + i])) return false;
    }
    done += count;
  }
  return true;
}

// One line of the file: "[text]", "text=value", or neither. A line that begins a bracket
// and does not close it ends the section before it all the same; its text equals none.
struct Line {
  enum Kind { kOther, kSection, kValue } kind = kOther;
  Stretch text = {0, -1};  // the section's path or the value's name
  Stretch value;
};

// Gives the lines of the file one after the other, from a place on.
class LineReader {
 public:
  LineReader(int file, int64_t place) : file_(file), place_(place), piece_end_(place) {}

  // The place behind the lines read so far.
  int64_t place() const { return place_; }

  // False at the end of the file.
  bool Next(Line* line) {
    *line = Line();
    char c;
    if (!NextByte(&c)) return false;
    Trimmed left, right;  // of the first "="; a section has no right side
    Trimmed* side = &left;
    do {
      if (c == '\n') break;
      if (c == '=' && side == &left && left.first != '[') {
        side = &right;
      } else {
        side->Add(c, place_ - 1);
      }
    } while (NextByte(&c));
    if (left.first == '[') {
      line->kind = Line::kSection;
      if (left.last == ']' && !left.closed) {
        line->text = {left.stretch.begin + 1, left.stretch.end - 1};
      }
    } else if (side == &right && !left.closed) {
      line->kind = Line::kValue;
      line->text = left.stretch;
      line->value = right.stretch;
    }
    return true;
  }

 private:
  // A stretch that grows by bytes and leaves out the blanks around it. A NUL closes it.
  struct Trimmed {
    Stretch stretch;
    bool closed = false;
    char first = 0;
    char last = 0;
    void Add(char c, int64_t place) {
      if (c == 0) closed = true;
      if (closed || IsBlank(c)) return;
      if (first == 0) {
        first = c;
        stretch.begin = place;
      }
      last = c;
      stretch.end = place + 1;
    }
  };

  bool NextByte(char* c) {
    if (place_ == piece_end_) {
      if (place_ >= kLargestFile) return false;  // the file has grown since it was opened
      ssize_t count;
      do {
        count = pread(file_, piece_, sizeof(piece_), static_cast<off_t>(place_));
      } while (count < 0 && errno == EINTR);
      if (count <= 0) return false;
      piece_begin_ = place_;
      piece_end_ = place_ + count;
    }
    *c = piece_[place_ - piece_begin_];
    ++place_;
    return true;
  }

  int file_;
  int64_t place_;
  int64_t piece_begin_ = 0;
  int64_t piece_end_;
  char piece_[1024];
};

// The descriptor of the registry file, or -1.
int OpenRegistryFile() {
  const char* name = std::getenv("LORIMATRT_REGISTRY");
  if (name == nullptr || *name == 0) name = kDefaultFile;
  // Without O_NONBLOCK a pipe of that name would block the host.
  const int file = open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file == -1) return -1;
  struct stat status;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= kLargestFile) {
    return file;
  }
  close(file);
  return -1;
}

// Where the first line begins: behind the mark that some editors put before UTF-8 text.
int64_t FirstLine(int file) {
  char mark[3];
  return ReadAt(file, 0, mark, sizeof(mark)) && std::memcmp(mark, "\xEF\xBB\xBF", 3) == 0 ? 3 : 0;
}

}  // namespace

RegistryKey::RegistryKey(const char* path) : handle_(-1) {
  const int file = OpenRegistryFile();
  if (file == -1) return;
  LineReader reader(file, FirstLine(file));
  Line line;
  while (reader.Next(&line)) {
    if (line.kind == Line::kSection && Equals(file, line.text, path)) {
      handle_ = file;
      section_ = reader.place();
      return;
    }
  }
  close(file);
}

RegistryKey::~RegistryKey() {
  if (is_open()) close(static_cast<int>(handle_));
}

bool RegistryKey::is_open() const { return handle_ != -1; }

long RegistryKey::Query(const char* name, char* text, uint32_t* size) const {
  if (!is_open()) return kRegistryNotFound;
  if (text != nullptr && size == nullptr) return kRegistryInvalidParameter;
  const int file = static_cast<int>(handle_);
  LineReader reader(file, section_);
  Line line;
  while (reader.Next(&line) && line.kind != Line::kSection) {
    if (line.kind != Line::kValue || !Equals(file, line.text, name)) continue;
    const uint32_t length = static_cast<uint32_t>(line.value.length());
    if (size == nullptr) return kRegistrySuccess;
    if (text != nullptr) {
      if (*size < length + 1) {
        *size = length + 1;
        return kRegistryMoreData;
      }
      if (!ReadAt(file, line.value.begin, text, length)) return kRegistryNotFound;
      text[length] = 0;
    }
    *size = length + 1;
    return kRegistrySuccess;
  }
  return kRegistryNotFound;
}

}  // namespace platform
