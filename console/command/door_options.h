// The options of the commands that speak with a door.
#pragma once

#include <string>

#include "console/remote/http_request.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct DoorOptions {
  std::string url = "http://127.0.0.1:8577";
  std::string token_file;
  std::string ca_file;
};

void AddDoorOptions(CLI::App* command, DoorOptions* options);

// With the token of the file, or of LORIMAT_TOKEN. Throws Failure when the file holds none.
DoorAddress AddressOf(const DoorOptions& options);

}  // namespace lorimat::console
