// "lorimat init": a new register in a file, with the shop's own numbers, lines and tables.
#pragma once

#include <string>

#include "console/command/shop_options.h"
#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct InitOptions {
  std::string file;
  ShopOptions shop;
  std::string from;
  std::string language;
  std::string library;
};

void AddInit(CLI::App& app, InitOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError: then there is no such file.
int InitCommand(const InitOptions& options, Streams& streams);

}  // namespace lorimat::console
