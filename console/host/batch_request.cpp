#include "console/host/batch_request.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string_view>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/remove_folder.h"

namespace lorimat::console {
namespace {

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

// The library keeps 255 characters of a name and puts ".tmp" behind the error file's.
constexpr size_t kLongestFolder = 200;

std::string TemporaryFolder() {
  const char* given = std::getenv("TMPDIR");
  const std::string folder = given != nullptr ? given : "";
  const bool fit = !folder.empty() && folder.front() == '/' && folder.size() <= kLongestFolder &&
                   std::none_of(folder.begin(), folder.end(),
                                [](char c) { return IsCapital(c) || IsControl(c); });
  return fit ? folder : "/tmp";
}

// Reads the number that begins the text, and takes it off; false when there is none.
bool TakeNumber(std::string_view* text, uint64_t* number) {
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number);
  if (error != std::errc()) return false;
  text->remove_prefix(static_cast<size_t>(end - text->data()));
  return true;
}

}  // namespace

ScratchFolder::ScratchFolder() {
  const std::string folder = TemporaryFolder();
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    path_ = fmt::format("{}/lorimat-{:08x}", folder, random());
    if (mkdir(path_.c_str(), 0700) == 0) return;
    if (errno != EEXIST) break;
  }
  throw Failure(Tr("{}: no folder for the error file: {}", Shown(path_), SystemMessage(errno)));
}

ScratchFolder::~ScratchFolder() { RemoveFolder(path_); }

void CopyPipe(const std::string& pipe, const std::string& file, const std::string& place,
              const volatile std::sig_atomic_t* stop) {
  // Opened at once, also where nobody writes yet: the wait is for what comes.
  const Descriptor from(open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!from.is_open()) {
    throw Failure(Tr("{}: cannot be opened: {}", place, SystemMessage(errno)));
  }
  const Descriptor to(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!to.is_open()) throw Failure(Tr("{}: cannot be opened: {}", file, SystemMessage(errno)));
  std::array<char, 65536> buffer;
  for (;;) {
    if (!WaitForInput(from.get(), stop)) {
      throw Failure(Tr("{}: stopped by {} ahead of its first line", place, InterruptName()));
    }
    const ssize_t got = read(from.get(), buffer.data(), buffer.size());
    if (got == 0) return;
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got < 0) throw Failure(Tr("{}: cannot be read: {}", place, SystemMessage(errno)));
    if (!WriteAll(to.get(), {buffer.data(), static_cast<size_t>(got)})) {
      throw Failure(Tr("{}: cannot be written: {}", file, SystemMessage(errno)));
    }
  }
}

void RequireBatchName(const std::string& name) {
  if (std::any_of(name.begin(), name.end(), IsCapital)) {
    std::string lower = name;
    for (char& c : lower) {
      if (IsCapital(c)) c = static_cast<char>(c - 'A' + 'a');
    }
    throw Failure(Tr(
        "{}: --batch cannot run a file whose name has capital letters: the library lower-cases the "
        "names of batch files and would look for {}; rename the file, or run it without --batch",
        Shown(name), Shown(lower)));
  }
  if (std::any_of(name.begin(), name.end(), IsControl)) {
    throw Failure(
        Tr("{}: --batch cannot run a file whose name has control characters: the library "
           "cannot be given such a name; rename the file, or run it without --batch",
           Shown(name)));
  }
  if (!name.empty() && name.back() == ' ') {
    throw Failure(
        Tr("'{}': --batch cannot run a file whose name ends in a blank: the library drops "
           "that blank; rename the file, or run it without --batch",
           Shown(name)));
  }
}

std::string QuotedOperand(const std::string& name) {
  std::string out = "'";
  for (const char c : name) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

std::string BatchLine(const std::string& name, const std::string& error_file) {
  return "@" + QuotedOperand(name) + "," + QuotedOperand(error_file);
}

bool IsBatchLine(const std::string& line) {
  const size_t first = line.find_first_not_of(" \t");
  return first != std::string::npos && line[first] == '@';
}

BatchError ParseBatchError(const std::string& message) {
  constexpr std::string_view kMark = " in line ";
  BatchError error;
  error.text = WithoutTrailingBlanks(message);
  const size_t mark = error.text.find(kMark);
  if (mark == std::string::npos) return error;
  // In front of the mark stand class and index, as "1/12".
  const std::string_view before = std::string_view(error.text).substr(0, mark);
  const size_t slash = before.rfind('/');
  if (slash == std::string_view::npos) return error;
  size_t start = slash;
  while (start > 0 && before[start - 1] >= '0' && before[start - 1] <= '9') --start;
  std::string_view class_text = before.substr(start, slash - start);
  std::string_view index_text = before.substr(slash + 1);
  std::string_view after = std::string_view(error.text).substr(mark + kMark.size());
  uint64_t class_number = 0;
  uint64_t index = 0;
  uint64_t line = 0;
  if (!TakeNumber(&class_text, &class_number) || !class_text.empty() ||
      !TakeNumber(&index_text, &index) || !index_text.empty() || !TakeNumber(&after, &line)) {
    return error;
  }
  error.line = line;
  error.code = static_cast<long>((class_number & 0xFFFF) << 8 | (index & 0xFF));
  error.text = std::string(before) + std::string(after);
  return error;
}

std::vector<BatchError> ReadBatchErrors(const std::string& error_file) {
  std::vector<BatchError> errors;
  LineReader reader(error_file);
  SourceLine line;
  while (reader.Next(&line)) {
    BatchError error = ParseBatchError(line.text);
    if (error.line != 0 && !errors.empty() && errors.back().line == error.line) continue;
    errors.push_back(std::move(error));
  }
  return errors;
}

}  // namespace lorimat::console
