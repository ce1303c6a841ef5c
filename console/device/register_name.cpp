#include "console/device/register_name.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "console/check/kept_files.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/planted_link.h"

namespace lorimat::console {
namespace {

// The name of a register, those that its links lead to, and those of the files beside it.
bool LeadsThroughPlantedLink(const std::string& file) {
  constexpr int kMostLinks = 40;
  std::filesystem::path path = file;
  for (int link = 0; link < kMostLinks; ++link) {
    if (lorimat::IsPlantedLink(path.string())) return true;
    std::error_code none;
    const std::filesystem::path target = std::filesystem::read_symlink(path, none);
    if (none) break;
    path = path.parent_path() / target;
  }
  return std::any_of(
      std::begin(kBesideRegister), std::end(kBesideRegister),
      [&path](const char* end) { return lorimat::IsPlantedLink(path.string() + end); });
}

}  // namespace

void RequireNoStream(const std::string& file) {
  if (file == "-") {
    throw Failure(Tr("-: standard input and output are no register; a file of this name is ./-"));
  }
}

void RequireRegisterName(const std::string& file) {
  RequireNoStream(file);
  const auto refuse = [&file](int cause) {
    throw Failure(Tr("{}: cannot be opened: {}", Shown(file), SystemMessage(cause)));
  };
  if (LeadsThroughPlantedLink(file)) refuse(ELOOP);
  const size_t slash = file.rfind('/');
  if (slash == std::string::npos) return;
  struct stat status;
  const std::string folder = file.substr(0, slash + 1);
  const std::string name = file.substr(slash + 1);
  if (stat(folder.c_str(), &status) != 0) refuse(errno);
  if (name.empty() || name == "." || name == "..") refuse(EISDIR);
}

const std::string& RequireRegister(const std::string& file, bool set_up) {
  if (file.empty()) {
    throw Failure(
        Tr("which register? Name its file with --register FILE or in the environment variable "
           "LORIMAT_REGISTER"));
  }
  RequireRegisterName(file);
  struct stat status;
  if (stat(file.c_str(), &status) != 0) {
    const int cause = errno;
    if (cause == ENOENT && set_up) {
      throw Failure(Tr("{}: there is no such register; \"lorimat init {}\" makes one", Shown(file),
                       Shown(file)));
    }
    if (cause == ENOENT) {
      throw Failure(
          Tr("{}: there is no such register; \"lorimat run --register {} FILE\" makes one",
             Shown(file), Shown(file)));
    }
    throw Failure(Tr("{}: the register cannot be reached: {}", Shown(file), SystemMessage(cause)));
  }
  return file;
}

}  // namespace lorimat::console
