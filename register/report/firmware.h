// Firmware files of this register. A file is a head of five lines and the image behind it:
//
//   LORIMAT FIRMWARE 1
//   VERSION 1.01          at most 20 printable characters
//   SIZE 4096             bytes of the image, above 0
//   SHA256 9f86d0...      of the image, 64 hexadecimal digits
//                         an empty line
//
// Lines end with a line feed. The image is not run: a load takes over its version.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

// Checks a file. RTF_E_NOEXIST when there is none, RTF_EFIRMWARE_BAD_FILE when it is empty, cut
// short, changed, or no firmware at all; otherwise `version` takes what it says.
int CheckFirmware(std::string_view file, std::string* version);

// What a file's version is to the device's, one of RTF_CFV_*: older, same or newer where both are
// numbers with points between them, otherwise same or different.
int CompareVersions(std::string_view file, std::string_view device);

}  // namespace lorimat
