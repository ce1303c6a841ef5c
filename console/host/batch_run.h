// An "@" line as a user types it. The library answers OK whatever the lines of the batch did, and
// tells of those that failed in an error file alone. A line that names none is run with one of the
// console's own, which is read and taken away again; and the lines come by a pipe of the console's
// (batch_feed.h). Nothing else about the line changes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "console/host/failure_report.h"
#include "console/host/library.h"
#include "console/host/memory_watch.h"
#include "console/host/register_client.h"

namespace lorimat::console {

struct BatchRun {
  long code = 0;  // of the "@" line
  std::string answer;
  uint64_t lines = 0;                      // of the batch that were run, empty ones too
  std::optional<uint64_t> stopped_behind;  // the last line that ran, after Ctrl-C
  // Of a batch that names no error file: its failing lines, in their order.
  std::vector<FailedLine> failures;
  // Why they are not known; empty when they are.
  std::string unknown;
};

// Whether the library would take a line for a batch.
bool IsBatchLine(const std::string& line);

// What a batch runs on, and who hears of it.
struct BatchHost {
  Library& library;
  RegisterClient& client;
  MemoryWatch* memory = nullptr;                     // may be null
  std::function<void(uint64_t)> progress = nullptr;  // how many lines have run
  std::string place = {};  // the file as it is shown; empty takes the name that the line has
};

BatchRun RunBatchLine(const std::string& line, const BatchHost& host);

void ReportFailures(const std::vector<FailedLine>& failures, FailureReport& report);

// Says that the failing lines are not known, if they are not; place is that of the "@" line.
void TellUnknownFailures(const BatchRun& run, const std::string& place, Streams& streams);

}  // namespace lorimat::console
