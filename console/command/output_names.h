// The names of the files that a command writes, looked at before any of them is opened: none may be
// a file that the command needs, or another one that it writes.
#pragma once

#include <string>
#include <vector>

#include "console/check/kept_files.h"

namespace lorimat::console {

struct OutputName {
  std::string name;    // empty for none; "-" is standard output, or standard error for a trace
  const char* option;  // that names it
  std::string what;    // "the PNG"
  bool is_trace = false;
  bool is_recording = false;
};

// Throws Failure when an output is one of the kept files, or two outputs are one file. Files are
// the same when they are one on the disk, under whatever name, and files that are not there yet
// when they would be.
void RequireApart(const std::vector<OutputName>& outputs, const std::vector<KeptFile>& kept);

}  // namespace lorimat::console
