#include "console/command/output_names.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;

// The name with the links at its end followed, also to a file that is not there yet.
fs::path behind_links(const std::string& name) {
  fs::path path(name);
  std::error_code error;
  for (int link = 0; link < kMostLinks; ++link) {
    const fs::path target = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / target;  // the target alone where it is absolute
  }
  return path;
}

// What makes a file the same as another one.
struct Identity {
  bool there = false;
  dev_t device = 0;  // of the file, or of the folder that it would be made in
  ino_t node = 0;
  std::string leaf;  // of a file that is not there

  bool operator==(const Identity&) const = default;
};

// A device or a terminal may be named any number of times.
bool may_be_mixed(const struct stat& status) {
  return !S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode);
}

std::optional<Identity> identity_of_stream(int stream) {
  struct stat status;
  if (fstat(stream, &status) != 0 || may_be_mixed(status)) return std::nullopt;
  return Identity{true, status.st_dev, status.st_ino, ""};
}

std::optional<Identity> identity_of(const std::string& name) {
  struct stat status;
  if (stat(name.c_str(), &status) == 0) {
    if (may_be_mixed(status)) return std::nullopt;
    return Identity{true, status.st_dev, status.st_ino, ""};
  }
  const fs::path path = behind_links(name);
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  if (stat(folder.c_str(), &status) != 0) return std::nullopt;  // it cannot be opened either
  return Identity{false, status.st_dev, status.st_ino, path.filename().string()};
}

// Standard error takes messages and the trace, and may be one with standard output.
std::optional<Identity> identity_of(const OutputName& output) {
  if (output.name != "-") return identity_of(output.name);
  return output.is_trace ? std::nullopt : identity_of_stream(STDOUT_FILENO);
}

// What standard output replaces, a shell has replaced before.
void require_not_kept(const OutputName& output, const std::vector<KeptFile>& kept) {
  if (output.name == "-") return;
  const std::optional<Identity> own = identity_of(output);
  for (const KeptFile& one : kept) {
    const std::optional<Identity> other =
        one.name == "-" ? identity_of_stream(STDIN_FILENO) : identity_of(one.name);
    if (!own || own != other) continue;
    throw Failure(output.is_trace
                      ? tr("{}: is {}; the trace would replace it", shown(output.name), one.what)
                      : tr("{}: is {}; the paper would replace it", shown(output.name), one.what));
  }
}

bool are_one_place(const OutputName& one, const OutputName& other) {
  if (one.is_trace == other.is_trace && one.name == "-" && other.name == "-") return true;
  const std::optional<Identity> identity = identity_of(one);
  return identity && identity == identity_of(other);
}

}  // namespace

std::vector<KeptFile> register_files(const std::string& name) {
  if (name.empty()) return {};
  std::vector<KeptFile> files = {{name, tr("the register's file")}};
  const std::string target = behind_links(name).string();
  for (const std::string_view end : {"-wal", "-shm", "-journal"}) {
    files.push_back({target + std::string(end), tr("a part of the register's file")});
  }
  return files;
}

void require_apart(const std::vector<OutputName>& outputs, const std::vector<KeptFile>& kept) {
  for (const OutputName& output : outputs) {
    if (output.name.empty()) continue;
    require_not_kept(output, kept);
    for (const OutputName& before : outputs) {
      if (&before == &output) break;
      if (before.name.empty() || !are_one_place(before, output)) continue;
      throw Failure(
          tr("{} {}: {} goes there already", output.option, shown(output.name), before.what));
    }
  }
}

}  // namespace lorimat::console
