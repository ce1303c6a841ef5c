// Ctrl-C during an "@" line. The library runs a batch to its end, and has no word that stops it.
// But it reads the file line by line: a file that ends earlier ends the batch, in the library's own
// order, and no line behind it has any effect.
//
// (A register that refuses the lines that are left would not do: the library runs them all the
// same. It empties the files that they name, takes over the settings that they make, and may
// believe that a document is open, so that the next sale opens none.)
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "console/host/register_client.h"

namespace lorimat::console {

class BatchStop {
 public:
  // The next line that the library runs is an "@" line. `progress`, if any, is told how many lines
  // of the file have run, ahead of each. The client has to outlive this object.
  explicit BatchStop(RegisterClient& client, std::function<void(uint64_t)> progress = nullptr);
  ~BatchStop();
  BatchStop(const BatchStop&) = delete;
  BatchStop& operator=(const BatchStop&) = delete;

  // The last line of the batch that ran, after Ctrl-C, by its number in the file; none when the
  // batch ran to its end.
  std::optional<uint64_t> stopped_behind() const { return stopped_behind_; }
  // How many lines of the batch ran, empty ones too.
  uint64_t lines() const { return lines_; }

 private:
  void TakeLine();
  bool end_file() const;

  RegisterClient& client_;
  std::function<void(uint64_t)> progress_;
  std::vector<int> open_before_;
  int file_ = -1;       // the library's descriptor of the batch's file; -1 when it is not known
  uint64_t lines_ = 0;  // of the file, empty ones too, up to the one at work
  bool in_file_ = false;
  std::optional<uint64_t> stopped_behind_;
};

}  // namespace lorimat::console
