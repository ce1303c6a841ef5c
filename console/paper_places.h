// The files that a paper goes to: its text, and the pictures that were asked for.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "paper_file.h"
#include "streams.h"

struct PaperPlace {
  std::string name;    // "-" is standard output
  const char* option;  // that names it
  std::string what;    // for a message
  std::function<std::string()> content;
};

class PaperPlaces {
 public:
  // Opens them all, so that nothing starts whose paper could not be kept. Throws Failure when one
  // cannot be opened, when two are the same, or when one is a file of `kept`.
  PaperPlaces(std::vector<PaperPlace> places, const std::vector<KeptFile>& kept, Streams& streams);

  // Throws Failure when a paper cannot be drawn or written.
  void write();

 private:
  std::vector<PaperPlace> places_;
  std::vector<PaperFile> files_;
};
