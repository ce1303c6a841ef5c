#include "door/job/door_library.h"

#include <fcntl.h>

#include <optional>
#include <utility>

#include "door/job/result_code.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {

DoorLibrary::DoorLibrary(const std::string& definition, const std::string& library,
                         console::Streams& streams, FiscalDevice& device)
    : definition_(open(definition.c_str(), O_RDONLY | O_CLOEXEC)),
      library_(library, streams),
      device_(device) {}

bool DoorLibrary::Begin() {
  // The library takes a path of 79 characters; the descriptor has a shorter one.
  const std::string path = "/proc/self/fd/" + std::to_string(definition_.get());
  return library_.Init(path, &device_.client()) == 0;
}

void DoorLibrary::BeginAgain(std::function<void(const DeviceState& state)> there) {
  there_ = std::move(there);
  is_stale_ = true;
}

long DoorLibrary::RunLine(const std::string& line, std::string* answer) {
  if (is_stale_) {
    // Of one that went away meanwhile the library would have learnt a part.
    const std::optional<DeviceState> state = Begin() ? device_.Ask() : std::nullopt;
    if (!state) return CodeOf(RTF_E_OFFLINE);
    is_stale_ = false;
    if (there_) there_(*state);
  }
  return library_.RunLine(line, answer);
}

}  // namespace lorimat::door
