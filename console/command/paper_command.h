// "lorimat paper": the roll of a register's file as text and as pictures.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct PaperOptions {
  std::string register_file;
  size_t last = 0;    // documents from the end; 0 takes all of the roll
  std::string paper;  // of the text; empty is standard output, unless pictures are asked for
  std::string png;
  std::string pdf;
  bool follow = false;
};

void AddPaper(CLI::App& app, PaperOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError.
int PaperCommand(const PaperOptions& options, Streams& streams);

}  // namespace lorimat::console
