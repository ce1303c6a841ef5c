#include "register/report_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

bool WriteInPlace(const fs::path& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();  // a full disk shows here at the latest
  return !file.fail();
}

}  // namespace

int WriteFile(std::string_view name, std::string_view content) {
  const fs::path path{std::string(name)};
  std::error_code error;
  const fs::file_status status = fs::symlink_status(path, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return WriteInPlace(path, content) ? RTF_SUCCESS : RTF_E_FAILURE;
  }
  fs::path part = path;
  part += ".part";
  if (!WriteInPlace(part, content)) {
    fs::remove(part, error);
    return RTF_E_FAILURE;
  }
  fs::rename(part, path, error);
  if (!error) return RTF_SUCCESS;
  fs::remove(part, error);
  return RTF_E_FAILURE;
}

int ReadFile(std::string_view name, std::string* content) {
  const fs::path path{std::string(name)};
  std::error_code error;
  if (!fs::exists(path, error)) return RTF_E_NOEXIST;
  if (!fs::is_regular_file(path, error)) return RTF_E_FAILURE;
  std::ifstream file(path, std::ios::binary);
  if (!file) return RTF_E_FAILURE;
  content->assign(std::istreambuf_iterator<char>(file), {});
  return file.bad() ? RTF_E_FAILURE : RTF_SUCCESS;
}

}  // namespace lorimat
