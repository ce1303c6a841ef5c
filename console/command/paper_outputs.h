// The files that a paper goes to: its text, and the pictures that were asked for.
#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "console/command/output_names.h"
#include "console/command/paper_file.h"
#include "console/terminal/streams.h"
#include "register/paper/picture.h"

namespace lorimat::console {

struct PaperOutput {
  OutputName name;
  // A text may leave the progress alone; a picture throws PictureStopped.
  std::function<std::string(const lorimat::PictureProgress&)> content;
  bool is_picture = true;
};

// The names of the outputs, for RequireApart.
std::vector<OutputName> NamesOf(const std::vector<PaperOutput>& outputs);

class PaperOutputs {
 public:
  // Opens them all, so that nothing starts whose paper could not be kept. Throws Failure when one
  // cannot be opened.
  PaperOutputs(std::vector<PaperOutput> outputs, Streams& streams);

  struct Outcome {
    bool failed = false;       // a paper could not be drawn or written, which has been told
    bool reader_gone = false;  // nobody reads standard output any more, which has not been told
    bool stopped = false;      // a signal came while a picture was drawn, which has been told
  };
  // Writes them all: one that fails keeps no other from its paper. A signal of interrupt.h that
  // comes meanwhile stops the pictures: their files stay what they were. SIGPIPE has to be ignored.
  Outcome write();

 private:
  void WriteOne(const PaperOutput& output, PaperFile& file);

  std::vector<PaperOutput> outputs_;
  std::list<PaperFile> files_;
  Streams& streams_;
  int signals_before_ = 0;
};

}  // namespace lorimat::console
