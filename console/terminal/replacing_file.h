// A file that takes its name when it is whole and on the disk. Until then the file that had the
// name stays as it was, and whoever ends the program, at whatever moment, leaves nothing half-made:
// the new file has no name before, where the file system can do that, and a hidden one beside its
// own elsewhere (".lorimat-PID-N.part").
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "console/terminal/streams.h"

namespace lorimat::console {

class ReplacingFile {
 public:
  ReplacingFile() = default;
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  // Makes the file, to be named once. A path that is a link leads to what is replaced, and the link
  // stays; one that is planted (register/value/planted_link.h) is refused: ELOOP. The folder is the
  // one that the path means now, wherever the program works later. Answers the system's error
  // number, 0 when it can be written.
  int Make(const std::string& path);
  // Whether the path that was made meant this file.
  bool Replaces(const struct stat& file) const;
  // The content, the disk, and then the name; what was replaced hands on its mode and its owner,
  // where the system lets that be. Answers the error number of what failed; then nothing is left
  // of it.
  int Write(std::string_view content);
  // Waits until the disk has the name. Behind a Write that answered 0.
  int SyncName() const;

 private:
  int MakeHidden();
  mode_t NewMode() const;
  int Fill(std::string_view content) const;
  int TakeHiddenName();
  void RemoveHidden();

  Descriptor folder_;
  std::string name_;  // in the folder
  Descriptor file_;
  std::string hidden_;  // the name until it has its own; empty for none
  std::optional<struct stat> replaced_;
};

}  // namespace lorimat::console
