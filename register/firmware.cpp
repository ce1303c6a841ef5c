#include "register/firmware.h"

#include <algorithm>

#include "register/report_file.h"
#include "register/sha256.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr size_t kVersionSize = 20;

// Takes the next line off; false when there is none with that word in front.
bool TakeLine(std::string_view* text, std::string_view word, std::string_view* value) {
  const size_t end = text->find('\n');
  if (end == text->npos || !text->starts_with(word)) return false;
  *value = text->substr(word.size(), end - word.size());
  text->remove_prefix(end + 1);
  return true;
}

}  // namespace

int CheckFirmware(std::string_view file, std::string* version) {
  std::string content;
  if (const int code = ReadFile(file, &content)) {
    return code == RTF_E_NOEXIST ? code : RTF_EFIRMWARE_BAD_FILE;
  }
  std::string_view rest = content;
  std::string_view empty, name, size, digest;
  if (!TakeLine(&rest, "LORIMAT FIRMWARE 1", &empty) || !empty.empty() ||
      !TakeLine(&rest, "VERSION ", &name) || !TakeLine(&rest, "SIZE ", &size) ||
      !TakeLine(&rest, "SHA256 ", &digest) || !TakeLine(&rest, "", &empty) || !empty.empty()) {
    return RTF_EFIRMWARE_BAD_FILE;
  }
  const bool printable =
      std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
  if (name.empty() || name.size() > kVersionSize || !printable || rest.empty() ||
      size != std::to_string(rest.size()) || digest != Sha256(rest)) {
    return RTF_EFIRMWARE_BAD_FILE;
  }
  *version = name;
  return RTF_SUCCESS;
}

}  // namespace lorimat
