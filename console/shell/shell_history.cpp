#include "console/shell/shell_history.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/replacing_file.h"
#include "console/terminal/streams.h"
#include "register/value/planted_link.h"

namespace lorimat::console {
namespace {

constexpr mode_t kFileMode = S_IRUSR | S_IWUSR;

std::string AbsoluteFolder(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : "";
}

// The file's folder and those above it, as only the user may enter them. The user's own folder is
// none that a program makes.
bool MakeFolders(const std::string& file) {
  const std::string home = AbsoluteFolder("HOME");
  const bool in_home = file.compare(0, home.size() + 1, home + "/") == 0;
  for (size_t slash = file.find('/', in_home ? home.size() + 1 : 1); slash != std::string::npos;
       slash = file.find('/', slash + 1)) {
    if (mkdir(file.substr(0, slash).c_str(), S_IRWXU) != 0 && errno != EEXIST) return false;
  }
  return true;
}

bool IsKept(const std::string& line) {
  return !line.empty() && line.front() != ' ' && line.front() != '\t' &&
         line.size() <= kLongestLine &&
         line.find_first_of(std::string("\0\n", 2)) == std::string::npos;
}

}  // namespace

ShellHistory::ShellHistory(const std::string& file) : file_(file) {
  struct stat status;
  if (file_.empty()) {
    Fail(Tr("neither HOME nor XDG_STATE_HOME names a folder"));
  } else if (lorimat::IsPlantedLink(file_)) {
    Fail(SystemMessage(ELOOP));
  } else if (stat(file_.c_str(), &status) != 0) {
    if (errno != ENOENT) Fail(SystemMessage(errno));
  } else if (!S_ISREG(status.st_mode)) {
    // A pipe or a device would keep the shell waiting.
    Fail(Tr("it is no regular file"));
  } else {
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) chmod(file_.c_str(), kFileMode);
    try {
      Read();
    } catch (const Failure& failure) {
      failure_ = failure.what();
    }
  }
}

void ShellHistory::Read() {
  LineReader reader(file_);
  SourceLine line;
  uint64_t count = 0;
  while (reader.Next(&line)) {
    ++count;
    if (line.length != line.text.size() || !IsKept(line.text)) continue;
    lines_.push_back(line.text);
    if (lines_.size() > 2 * kMostLines) lines_.erase(lines_.begin(), lines_.end() - kMostLines);
  }
  if (lines_.size() > kMostLines) lines_.erase(lines_.begin(), lines_.end() - kMostLines);
  if (count > kMostLines) Rewrite();
}

// By way of another file, so that a full disk does not cost the lines that are there. It has the
// mode of the one before, which only the user reads.
void ShellHistory::Rewrite() {
  std::string text;
  for (const std::string& line : lines_) text += line + "\n";
  ReplacingFile fresh;
  int error = fresh.Make(file_);
  if (error == 0) error = fresh.Write(text);
  if (error != 0) Fail(SystemMessage(error));
}

bool ShellHistory::Add(const std::string& line) {
  if (!IsKept(line) || (!lines_.empty() && lines_.back() == line)) return false;
  lines_.push_back(line);
  if (!failure_.empty()) return true;
  const int flags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC;
  Descriptor out;
  if (MakeFolders(file_)) out = Descriptor(open(file_.c_str(), flags, kFileMode));
  if (!out.is_open() || !WriteAll(out.get(), line + "\n") || close(out.release()) != 0) {
    Fail(SystemMessage(errno));
  }
  return true;
}

void ShellHistory::Fail(const std::string& cause) {
  failure_ = file_.empty() ? cause : fmt::format("{}: {}", Shown(file_), cause);
}

std::string HistoryFile() {
  std::string folder = AbsoluteFolder("XDG_STATE_HOME");
  if (folder.empty()) {
    folder = AbsoluteFolder("HOME");
    if (folder.empty()) return {};
    folder += "/.local/state";
  }
  return folder + "/lorimat/history";
}

}  // namespace lorimat::console
