// An "@" line as a user types it, or as the console writes it for a file. The library answers OK
// whatever the lines of the batch did, and tells of those that failed in an error file alone. A
// line that names none is run with one of the console's own, which is read and taken away again;
// nothing else about the line changes, but that a pipe is read to its end into a file, which runs:
// lines have to be looked at ahead of the library (output_guard.h). Ctrl-C ends it at the end of a
// line (stoppable_client.h).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/device/device.h"
#include "console/host/batch_walk.h"
#include "console/host/failure_report.h"
#include "console/host/library.h"
#include "console/host/memory_watch.h"
#include "console/host/output_guard.h"

namespace lorimat::console {

// What lines are run with. All of it has to outlive what it is given to.
struct LineHost {
  Library& library;
  Device& device;
  MemoryWatch& memory;
  OutputGuard& guard;
};

struct BatchRun {
  long code = 0;  // of the "@" line
  std::string answer;
  // Why the line was not given to the library, and nothing of it has run; empty when it was.
  std::string not_run;
  // Of the batch that have run, empty ones too; none when that is not known, as of a pipe.
  std::optional<uint64_t> lines = 0;
  std::optional<StopPlace> stop;  // after Ctrl-C
  // Of a batch that names no error file: its failing lines, in their order.
  std::vector<FailedLine> failures;
  // Why they are not known for sure; empty when they are, or when they stand in the file that the
  // line names for them.
  std::string unknown;
  std::string unread;  // why the error file cannot be read; empty when it can
};

// The line with this error file, when it names a batch file and no error file; else empty. So it is
// too where the library would read the longer line otherwise: a name that ends in a blank, a line
// of more than the characters there may be.
std::string WithErrorFile(const std::string& line, const std::string& error_file);

BatchRun RunBatchLine(const std::string& line, const LineHost& host);
// A file of the current folder, by its name, as one "@" line; place is what it is shown as. Throws
// Failure, and runs nothing, when there is no place for the error file.
BatchRun RunBatchFile(const std::string& name, const std::string& place, const LineHost& host);

void ReportFailures(const std::vector<FailedLine>& failures, FailureReport& report);

// Says that the failing lines are not known, if they are not; place is that of the "@" line.
void TellUnknownFailures(const BatchRun& run, const std::string& place, Streams& streams);

// "2 of 6 lines failed"; without the second number where it is not known.
std::string FailedLinesText(uint64_t failed, const std::optional<uint64_t>& lines);

// "sales.cmd: stopped by Ctrl-C behind line 12".
std::string StopText(const std::string& batch, const StopPlace& stop);

}  // namespace lorimat::console
