#include "register/report/firmware.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <vector>

#include "register/report/report_file.h"
#include "register/value/digest.h"
#include "register/value/refusal.h"
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

// The numbers of a version like "1.10"; nothing for another one. Versions have at most twenty
// characters, so that each number fits.
std::optional<std::vector<uint64_t>> ReadVersion(std::string_view text) {
  std::vector<uint64_t> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (;;) {
    uint64_t number = 0;
    const std::from_chars_result result = std::from_chars(at, end, number);
    if (result.ec != std::errc()) return std::nullopt;
    numbers.push_back(number);
    at = result.ptr;
    if (at == end) break;
    if (*at++ != '.') return std::nullopt;
  }
  // "1" is "1.0".
  while (!numbers.empty() && numbers.back() == 0) numbers.pop_back();
  return numbers;
}

int NoFirmware(std::string_view file) {
  return Refuse(RTF_EFIRMWARE_BAD_FILE, RefusalCause::kNotAFirmware, {}, file);
}

}  // namespace

int CheckFirmware(std::string_view file, std::string* version) {
  std::string content;
  if (const int code = ReadFile(file, &content)) {
    return code == RTF_E_NOEXIST ? code : NoFirmware(file);
  }
  std::string_view rest = content;
  std::string_view empty, name, size, digest;
  if (!TakeLine(&rest, "LORIMAT FIRMWARE 1", &empty) || !empty.empty() ||
      !TakeLine(&rest, "VERSION ", &name) || !TakeLine(&rest, "SIZE ", &size) ||
      !TakeLine(&rest, "SHA256 ", &digest) || !TakeLine(&rest, "", &empty) || !empty.empty()) {
    return NoFirmware(file);
  }
  const bool printable =
      std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
  if (name.empty() || name.size() > kVersionSize || !printable || rest.empty() ||
      size != std::to_string(rest.size()) || digest != Sha256(rest)) {
    return NoFirmware(file);
  }
  *version = name;
  return RTF_SUCCESS;
}

int CompareVersions(std::string_view file, std::string_view device) {
  if (file == device) return RTF_CFV_FIRMWARE_SAME;
  const std::optional<std::vector<uint64_t>> ours = ReadVersion(device);
  const std::optional<std::vector<uint64_t>> theirs = ReadVersion(file);
  if (!ours || !theirs) return RTF_CFV_FIRMWARE_DIFFERENT;
  if (*theirs == *ours) return RTF_CFV_FIRMWARE_SAME;
  return *theirs < *ours ? RTF_CFV_FIRMWARE_OLDER : RTF_CFV_FIRMWARE_NEWER;
}

}  // namespace lorimat
