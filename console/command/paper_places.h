// The files that a paper goes to: its text, and the pictures that were asked for.
#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "console/command/output_names.h"
#include "console/command/paper_file.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

struct PaperPlace {
  OutputName name;
  std::function<std::string()> content;
};

// The names of the places, for require_apart.
std::vector<OutputName> names_of(const std::vector<PaperPlace>& places);

class PaperPlaces {
 public:
  // Opens them all, so that nothing starts whose paper could not be kept. Throws Failure when one
  // cannot be opened.
  PaperPlaces(std::vector<PaperPlace> places, Streams& streams);

  struct Outcome {
    bool failed = false;       // a paper could not be drawn or written, which has been told
    bool reader_gone = false;  // nobody reads standard output any more, which has not been told
  };
  // Writes them all: one that fails keeps no other from its paper. SIGPIPE has to be ignored.
  Outcome write();

 private:
  std::vector<PaperPlace> places_;
  std::list<PaperFile> files_;
  Streams& streams_;
};

}  // namespace lorimat::console
