#include "console/host/installed_files.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "pal/platform/platform.h"

namespace lorimat::console {
namespace {

// The folder of the running program, without a slash at its end.
std::string ProgramFolder() {
  std::array<char, 4097> path{};
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size() - 1);
  if (length < 0) {
    throw Failure(Tr("cannot find the folder of the program: {}", SystemMessage(errno)));
  }
  const std::string program(path.data(), static_cast<size_t>(length));
  const size_t slash = program.rfind('/');
  return program.substr(0, slash == std::string::npos ? 0 : slash);
}

// The folder above the program's: that of the build or of the installation.
std::string TreeFolder() {
  const std::string folder = ProgramFolder();
  const size_t slash = folder.rfind('/');
  return folder.substr(0, slash == std::string::npos ? 0 : slash);
}

}  // namespace

std::string FindLibrary(const std::string& given) {
  if (!given.empty()) return given;
  const std::string tree = TreeFolder();
  const std::string beside = tree + "/lib/liblorimatrt.so";
  if (access(beside.c_str(), F_OK) == 0) return beside;
  const std::string installed = tree + "/" + LORIMAT_LIBRARY_FOLDER + "/liblorimatrt.so";
  if (access(installed.c_str(), F_OK) == 0) return installed;
  throw Failure(
      Tr("the library is not beside the program: neither {} nor {} exists; name it with --library",
         beside, installed));
}

std::string FindExamples() {
  const std::string installed = TreeFolder() + "/share/lorimat/examples";
  return access(installed.c_str(), F_OK) == 0 ? installed : "examples";
}

std::string FindCatalogs() {
  try {
    return TreeFolder() + "/" + LORIMAT_LOCALE_FOLDER;
  } catch (const Failure&) {
    return {};
  }
}

std::string RegistryFile() {
  const char* registry = std::getenv("LORIMATRT_REGISTRY");
  return registry != nullptr ? registry : "/etc/lorimatrt/registry.ini";
}

DefinitionFile FindDefinitionFile(const std::string& given) {
  DefinitionFile file;
  // The library's own reading of the registry, with its own limit of 80 bytes: a longer
  // InstallationDir counts as missing.
  const platform::RegistryKey key("Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA");
  std::array<char, 80> directory{};
  uint32_t size = directory.size();
  if (key.is_open() &&
      key.Query("InstallationDir", directory.data(), &size) == platform::kRegistrySuccess) {
    directory.back() = 0;
    file.installation_dir = directory.data();
    file.registry_file = RegistryFile();
    const char separator = platform::PathSeparator();
    file.path = file.installation_dir + separator + "Drivers" + separator + "MERKELIN.INI";
    return file;
  }
  file.path = given.empty() ? TreeFolder() + "/share/lorimat/merkelin.ini" : given;
  return file;
}

std::string DefinitionPath(const std::string& given) {
  return given.empty() ? FindDefinitionFile("").path : given;
}

}  // namespace lorimat::console
