// The lines of a file sent one by one, as a host sends them: by "run", and by ".batch" of the
// shell. What the shell is given line by line goes the same way.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/host/batch_run.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {

struct LineAnswer {
  long code = 0;
  std::string answer;
  std::string reason;                  // why the register refused it; empty when that is not known
  std::string not_run;                 // why the library was not given the line; empty when it was
  std::optional<BatchRun> batch = {};  // of an "@" line that was given to it
};

// Sends one line, an "@" line too.
LineAnswer RunLine(const SourceLine& line, const LineHost& host);

class LineSink {
 public:
  virtual ~LineSink() = default;
  // A line was answered, or not run. Whether the next one is to be sent.
  virtual bool Take(const SourceLine& line, const std::string& place, const LineAnswer& answer) = 0;
};

// Sends all lines, until the sink or a signal of interrupt.h ends it, or the device is given up.
// Answers the number of the last line that was sent.
uint64_t RunLines(LineReader& reader, const LineHost& host, LineSink& sink);

}  // namespace lorimat::console
