// "lorimat words": the commands and fields of a definition file.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

struct WordsOptions {
  std::string language;  // definition file; empty takes the one that a host would read
  std::string command;   // empty shows all; else a name, which may be shortened, or "#10"
  bool markdown = false;
  bool json = false;
};

// Returns kExitGood, or kExitFaults when there is no such command. Throws Failure when the
// definition file cannot be read.
int WordsCommand(const WordsOptions& options, Streams& streams);

}  // namespace lorimat::console
