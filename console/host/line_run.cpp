#include "console/host/line_run.h"

#include <fmt/format.h>

#include <utility>

#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_encoding.h"

namespace lorimat::console {

LineAnswer RunLine(const SourceLine& line, const LineHost& host) {
  LineAnswer answer;
  if (line.nul_at != 0) {
    answer.not_run =
        Tr("a NUL byte stands in column {}, and the library would read the line only up to there",
           line.nul_at) +
        EncodingHint(line.text);
    return answer;
  }
  if (IsBatchLine(line.text)) {
    BatchRun batch = RunBatchLine(line.text, host);
    answer.code = batch.code;
    answer.answer = batch.answer;
    answer.not_run = batch.not_run;
    if (answer.not_run.empty()) answer.batch = std::move(batch);
    return answer;
  }
  answer.not_run = host.guard.LineFault(line.text);
  if (!answer.not_run.empty()) return answer;
  const uint64_t refusals = host.device.refusals();
  host.memory.Begin();
  answer.code = host.library.RunLine(line.text, &answer.answer);
  host.memory.Answered(line.text, answer.code);
  if (answer.code != 0) {
    answer.reason = host.memory.LostSaleReason(answer.code);
    if (answer.reason.empty()) answer.reason = host.device.ReasonSince(refusals, answer.code);
  }
  return answer;
}

uint64_t RunLines(LineReader& reader, const LineHost& host, LineSink& sink) {
  SourceLine line;
  uint64_t last = 0;
  bool goes_on = true;
  // What Ctrl-C leaves of a line that was being typed or sent is not run.
  while (goes_on && interrupted == 0 && !host.device.given_up() && reader.Next(&line) &&
         interrupted == 0) {
    last = line.number;
    const std::string place = fmt::format("{}:{}", reader.name(), line.number);
    goes_on = sink.Take(line, place, RunLine(line, host));
  }
  return last;
}

}  // namespace lorimat::console
