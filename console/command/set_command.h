// "lorimat set": changes what a shop has set of its register.
#pragma once

#include <string>

#include "console/command/shop_options.h"
#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct SetOptions {
  std::string file;
  ShopOptions shop;
};

void AddSet(CLI::App& app, SetOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError: then nothing was changed.
int SetCommand(const SetOptions& options, Streams& streams);

}  // namespace lorimat::console
