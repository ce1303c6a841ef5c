// Recordings and conversations. The input: the file. It is read, its lines are run on a device that
// answers as it does, in its order and in any, that run is recorded and read again, and it is
// trimmed.
#include <string>
#include <vector>

#include "fuzz/scratch.h"
#include "fuzz/tally.h"
#include "fuzz/translator_session.h"
#include "recording/recorder.h"
#include "recording/recording.h"
#include "recording/replay.h"
#include "recording/trim.h"

namespace {

constexpr size_t kMostLines = 40;
constexpr size_t kLongestLine = 2000;

class TextSink : public recording::Sink {
 public:
  int Write(std::string_view bytes) noexcept override {
    text += bytes;
    return 0;
  }
  std::string text;
};

std::vector<std::string> LinesSent(const recording::Recording& read) {
  std::vector<std::string> lines;
  for (const conversation::Step& step : read.script.steps) {
    if (step.kind != conversation::Step::kSend || lines.size() >= kMostLines) continue;
    // What a library is sent ends at a NUL.
    std::string line = WithoutFolders(step.text.substr(0, step.text.find('\0')));
    if (line.size() <= kLongestLine && line.find('@') == line.npos) lines.push_back(line);
  }
  return lines;
}

// Runs the lines on a replay; what passed, as a recording.
std::string Run(const std::vector<std::string>& lines, const recording::Recording& read,
                recording::ReplayOrder order, uint64_t* departures) {
  recording::Replay replay(read, {.order = order});
  TextSink sink;
  recording::RecorderSettings settings;
  settings.with_secrets = true;
  settings.now = [] { return int64_t{0}; };
  settings.ticks = [] { return int64_t{0}; };
  recording::Recorder recorder(sink, settings);
  FreshFolder();
  TranslatorSession session(recorder.Wrap(replay.client()), false);
  for (const std::string& line : lines) {
    recorder.LineBegins(line);
    const long code = session.Run(line);
    recorder.LineEnds(code, "*");
  }
  recorder.Finish();
  *departures = replay.departures();
  return sink.text;
}

// A text without its first line, which counts.
std::string Body(const std::string& text) { return text.substr(text.find('\n') + 1); }

void CheckTrim(const recording::Recording& read) {
  std::vector<int> all;
  for (const conversation::Step& step : read.script.steps) {
    if (step.kind == conversation::Step::kSend && !step.cut) {
      all.push_back(conversation::LineInFile(read.script, step.line));
    }
  }
  recording::Trim(read, {});
  const recording::Trimmed once = recording::Trim(read, all);
  if (once.cause != recording::TrimCause::kNone) return;
  const recording::Recording again = recording::ReadRecordingText("trimmed", once.text);
  Require(!again.fault, "what was trimmed is a conversation");
  std::vector<int> kept;
  for (const conversation::Step& step : again.script.steps) {
    if (step.kind == conversation::Step::kSend) {
      kept.push_back(conversation::LineInFile(again.script, step.line));
    }
  }
  const recording::Trimmed twice = recording::Trim(again, kept);
  Require(Body(twice.text) == Body(once.text), "what is trimmed again stays what it is");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  ++TheTally().files;
  const recording::Recording read = recording::ReadRecordingText("input", text);
  if (!read.readable()) return 0;
  CheckTrim(read);
  const std::vector<std::string> lines = LinesSent(read);
  for (const auto order : {recording::ReplayOrder::kStrict, recording::ReplayOrder::kLenient}) {
    uint64_t departures = 0;
    const std::string recorded = Run(lines, read, order, &departures);
    const recording::Recording own = recording::ReadRecordingText("own", recorded);
    Require(!own.fault, "what was recorded is read");
    // The same lines on a device that answers the same make the same calls.
    const std::string again = Run(lines, own, recording::ReplayOrder::kStrict, &departures);
    Require(departures == 0, "a recording is replayed without a departure");
    Require(again == recorded, "what is recorded of a replay is its recording");
  }
  return 0;
}
