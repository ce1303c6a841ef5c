#include "replay_trial.h"

#include <string>
#include <utility>
#include <vector>

#include "recording/recorder.h"
#include "recording/recording.h"
#include "recording/replay.h"

namespace conversation {
namespace {

class TextSink : public recording::Sink {
 public:
  int Write(std::string_view bytes) noexcept override {
    text += bytes;
    return 0;
  }
  std::string text;
};

using Answers = std::vector<std::pair<long, std::string>>;

// Plays by the stage with a recorder in front of its client.
std::string Record(const Conversation& conversation, Stage stage, Answers& answers) {
  TextSink sink;
  // The conversations fill more of a text than it has room, as a bad client does.
  recording::Recorder recorder(sink, {.made_by = "a test",
                                      .device = "the conversation's",
                                      .with_secrets = true,
                                      .guard_texts = false});
  stage.face = [&recorder](RtfClientInterface& client) {
    return std::shared_ptr<RtfClientInterface>(&recorder.Wrap(client), [](RtfClientInterface*) {});
  };
  bool starts = false;
  const auto started = [&] {
    if (std::exchange(starts, false)) recorder.InitEnds(0);
  };
  stage.device_for = [&, device_for = stage.device_for](const Step& step) {
    started();
    starts = step.kind == Step::kInit;
    if (starts) recorder.InitBegins("");
    if (step.kind == Step::kSend) recorder.LineBegins(step.text);
    return device_for ? device_for(step) : nullptr;
  };
  stage.answered = [&](const Step&, long code, const std::string& answer) {
    recorder.LineEnds(code, answer);
    answers.emplace_back(code, answer);
  };
  Play(conversation, stage);
  started();
  recorder.Finish();
  return sink.text;
}

std::string Told(const recording::Departure& departure) {
  return "line " + std::to_string(departure.line) +
         " of the recording\n    expected: " + departure.expected +
         "\n    seen:     " + departure.got;
}

}  // namespace

uint64_t RecordAndReplay(const Conversation& conversation, const Stage& stage) {
  Answers recorded;
  const std::string text = Record(conversation, stage, recorded);
  recording::Recording read = recording::ReadRecordingText("recording", text);
  if (read.fault) {
    throw Failure(static_cast<int>(read.fault.number),
                  "the recording is no good: " + read.fault.text + "\n" + text);
  }
  std::string parted;
  recording::Replay replay(
      std::move(read), {.guard_texts = false, .parted = [&](const recording::Departure& departure) {
                          if (parted.empty()) parted = Told(departure);
                        }});
  Answers replayed;
  Stage again;
  again.library = stage.library;
  again.language = stage.language;
  again.device = &replay.client();
  again.wild_device = true;
  again.comparison = stage.device == nullptr ? Comparison::kAll : Comparison::kNothing;
  again.answered = [&](const Step&, long code, const std::string& answer) {
    replayed.emplace_back(code, answer);
  };
  Play(conversation, again);
  if (!parted.empty()) throw Failure(0, "the replay parts from " + parted);
  if (const auto left = replay.NotMade()) throw Failure(0, "not made again: " + Told(*left));
  if (recorded != replayed) throw Failure(0, "a line ends otherwise in the replay");
  return replay.answered();
}

}  // namespace conversation
