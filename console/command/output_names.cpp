#include "console/command/output_names.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;

// The name with the links at its end followed, also to a file that is not there yet.
fs::path BehindLinks(const std::string& name) {
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
bool MayBeMixed(const struct stat& status) {
  return !S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode);
}

std::optional<Identity> IdentityOfStream(int stream) {
  struct stat status;
  if (fstat(stream, &status) != 0 || MayBeMixed(status)) return std::nullopt;
  return Identity{true, status.st_dev, status.st_ino, ""};
}

std::optional<Identity> IdentityOf(const std::string& name) {
  struct stat status;
  if (stat(name.c_str(), &status) == 0) {
    if (MayBeMixed(status)) return std::nullopt;
    return Identity{true, status.st_dev, status.st_ino, ""};
  }
  const fs::path path = BehindLinks(name);
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  if (stat(folder.c_str(), &status) != 0) return std::nullopt;  // it cannot be opened either
  return Identity{false, status.st_dev, status.st_ino, path.filename().string()};
}

// Standard error takes messages and the trace, and may be one with standard output.
std::optional<Identity> IdentityOf(const OutputName& output) {
  if (output.name != "-") return IdentityOf(output.name);
  return output.is_trace ? std::nullopt : IdentityOfStream(STDOUT_FILENO);
}

// What standard output replaces, a shell has replaced before.
void RequireNotKept(const OutputName& output, const std::vector<KeptFile>& kept) {
  if (output.name == "-") return;
  const std::optional<Identity> own = IdentityOf(output);
  for (const KeptFile& one : kept) {
    const std::optional<Identity> other =
        one.name == "-" ? IdentityOfStream(STDIN_FILENO) : IdentityOf(one.name);
    if (!own || own != other) continue;
    throw Failure(output.is_trace
                      ? Tr("{}: is {}; the trace would replace it", Shown(output.name), one.what)
                      : Tr("{}: is {}; the paper would replace it", Shown(output.name), one.what));
  }
}

bool AreOnePlace(const OutputName& one, const OutputName& other) {
  if (one.is_trace == other.is_trace && one.name == "-" && other.name == "-") return true;
  const std::optional<Identity> identity = IdentityOf(one);
  return identity && identity == IdentityOf(other);
}

}  // namespace

std::vector<KeptFile> RegisterFiles(const std::string& name) {
  if (name.empty()) return {};
  std::vector<KeptFile> files = {{name, Tr("the register's file")}};
  const std::string target = BehindLinks(name).string();
  for (const std::string_view end : {"-wal", "-shm", "-journal"}) {
    files.push_back({target + std::string(end), Tr("a part of the register's file")});
  }
  return files;
}

void RequireApart(const std::vector<OutputName>& outputs, const std::vector<KeptFile>& kept) {
  for (const OutputName& output : outputs) {
    if (output.name.empty()) continue;
    RequireNotKept(output, kept);
    for (const OutputName& before : outputs) {
      if (&before == &output) break;
      if (before.name.empty() || !AreOnePlace(before, output)) continue;
      throw Failure(
          Tr("{} {}: {} goes there already", output.option, Shown(output.name), before.what));
    }
  }
}

}  // namespace lorimat::console
