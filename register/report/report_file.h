// Files that the register writes: reports, summaries, lottery documents.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

// Writes a file whole, and waits until the disk has it and its name: it survives a cut of the
// power. It appears under its name only when all of it is written; before that an older file of
// this name stays as it was. What is no ordinary file (a device, a link) is written in place.
// RTF_E_FAILURE when that cannot be done: no such folder, no right, disk full; then nothing new is
// left, but where only the name could not be waited for.
int WriteFile(std::string_view path, std::string_view content);

// The same where a file of this name is only replaced when it is one's own: it begins with the
// content's first line and holds the mark somewhere. RTF_E_FAILURE, with EEXIST, for any other.
int WriteOwnFile(std::string_view path, std::string_view content, std::string_view mark);

// Reads a file whole. RTF_E_NOEXIST when there is none, RTF_E_FAILURE when it cannot be read.
int ReadFile(std::string_view path, std::string* content);

}  // namespace lorimat
