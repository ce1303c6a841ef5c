// Why the device refused lines of an "@" batch, which runs as one line. The refusals are seen in
// their order, and the library's error file has the failing lines in theirs. A line gets a reason
// where as many lines failed with its code as were refused so that this code comes of it; where the
// numbers differ, which belongs to which would be a guess.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "console/device/device.h"

namespace lorimat::console {

class BatchRefusals {
 public:
  // The device has to outlive this object.
  explicit BatchRefusals(Device& device) : device_(device), seen_(device.refusals()) {}

  // Ahead of each line, and behind the last one.
  void Note();
  // What the device said to a line that failed with the code: the one of this place, from 0,
  // among so many that did. Null when that is not known.
  const DeviceRefusal* Find(long code, uint64_t place, uint64_t lines) const;

 private:
  // The refusals with one result, a line each.
  struct Kind {
    uint64_t lines = 0;
    std::vector<DeviceRefusal> first;  // no more are shown
  };

  Device& device_;
  uint64_t seen_;  // refusals
  std::map<int, Kind> kinds_;
};

}  // namespace lorimat::console
