// An "@" line as a user types it. The library answers OK whatever the lines of the batch did, and
// tells of those that failed in an error file alone. A line that names none is run with one of the
// console's own, which is read and taken away again; nothing else about the line changes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/host/batch_refusals.h"
#include "console/host/batch_request.h"
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

// The line with this error file, when it names a batch file and no error file; else empty. So it is
// too where the library would read the longer line otherwise: a name that ends in a blank, a line
// of more than the characters there may be.
std::string WithErrorFile(const std::string& line, const std::string& error_file);

BatchRun RunBatchLine(const std::string& line, Library& library, RegisterClient& client,
                      const MemoryWatch* memory);

// The failing lines of a batch with their texts, which are read from its file; place names the file
// as it is shown.
std::vector<FailedLine> FailedLines(const std::vector<BatchError>& errors, const std::string& file,
                                    const std::string& place, const BatchRefusals& refusals);

void ReportFailures(const std::vector<FailedLine>& failures, FailureReport& report);

// Says that the failing lines are not known, if they are not; place is that of the "@" line.
void TellUnknownFailures(const BatchRun& run, const std::string& place, Streams& streams);

}  // namespace lorimat::console
