#include "console/device/replay_device.h"

#include <string>
#include <utility>

#include "console/message/failure.h"
#include "console/message/recording_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "recording/recording.h"
#include "recording/replay.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownOption = 60;
constexpr uint64_t kShownDepartures = 20;

// An option that takes one of two words, the first of which holds without it.
struct ReplayOption {
  const char* key;
  const char* words[2];
};

constexpr ReplayOption kOrder = {"order", {"strict", "lenient"}};
constexpr ReplayOption kDamaged = {"damaged", {"refused", "taken"}};

// Whether the second word was given. Throws Failure for any other than the two.
bool IsSecond(const ReplayOption& option, const DeviceRequest& request) {
  const std::string word = request.Option(option.key);
  if (word.empty() || word == option.words[0]) return false;
  if (word == option.words[1]) return true;
  throw Failure(Tr("the device '{}': {} is {} or {}, and not '{}'", kReplayName, option.key,
                   option.words[0], option.words[1], Shown(word, kShownOption)));
}

class ReplayDevice : public Device {
 public:
  ReplayDevice(std::string file, recording::Recording read, recording::ReplayOrder order,
               Streams& streams)
      : file_(std::move(file)),
        streams_(streams),
        replay_(std::move(read),
                {.order = order, .parted = [this](const auto& departure) { Tell(departure); }}) {
    Use(replay_.client());
  }
  ~ReplayDevice() override {
    if (replay_.departures() > kShownDepartures) {
      TellNote(streams_, TrCount(replay_.departures() - kShownDepartures,
                                 "{} further call was not recorded so",
                                 "{} further calls were not recorded so"));
    }
    const recording::Recording& read = replay_.recording();
    // A recording of another device, or of another day, parts from what is called for that reason.
    if (replay_.departures() > 0 && !read.device.empty()) {
      TellNote(streams_, Tr("{}: was recorded from {}, {}", Shown(file_), Shown(read.device),
                            Shown(read.first_time)));
    }
    const auto left = replay_.departures() == 0 ? replay_.NotMade() : std::nullopt;
    if (left) TellNote(streams_, DepartureText(file_, *left));
  }

  std::string name() const override { return std::string(kReplayName); }
  std::string version() const override { return LORIMAT_VERSION; }
  std::string place() const override { return file_; }
  std::string Greeting() const override {
    return Tr("lorimat {}: answers as they were recorded in {}.", LORIMAT_VERSION, Shown(file_));
  }
  DeviceFacts facts() override { return {}; }
  DeviceState state() override { return {}; }
  // Where the calls have parted from the recording, the last time.
  std::string last_failure() const override { return failure_; }
  // It is told at once.
  void TellFailure(Streams&) override {}
  std::string OpenDocumentFate() override { return {}; }
  LeftNote NoteOfLeft() override {
    return [](const std::string&, const std::string&) { return std::string(); };
  }

 private:
  void Tell(const recording::Departure& departure) {
    failure_ = DepartureText(file_, departure);
    if (replay_.departures() <= kShownDepartures) TellError(streams_, failure_);
  }

  std::string file_;
  Streams& streams_;
  std::string failure_;
  recording::Replay replay_;
};

}  // namespace

std::unique_ptr<Device> OpenReplay(const DeviceRequest& request, Streams& streams) {
  for (const auto& [key, value] : request.options) {
    if (key == "file" || key == kOrder.key || key == kDamaged.key) continue;
    throw Failure(Tr("the device '{}' has no option '{}'", kReplayName, Shown(key, kShownOption)));
  }
  const std::string file = request.Option("file");
  if (file.empty()) {
    throw Failure(
        Tr("the device '{}' needs a recording: replay:FILE, or the option file", kReplayName));
  }
  const bool lenient = IsSecond(kOrder, request);
  const bool takes_damaged = IsSecond(kDamaged, request);
  recording::Recording read = recording::ReadRecording(file);
  if (read.fault) {
    const std::string fault = RecordingFaultText(file, read.fault);
    if (!takes_damaged || !read.readable()) throw Failure(fault);
    TellWarning(streams, fault);
  }
  return std::make_unique<ReplayDevice>(
      file, std::move(read),
      lenient ? recording::ReplayOrder::kLenient : recording::ReplayOrder::kStrict, streams);
}

std::vector<KeptFile> FilesOfReplay(const DeviceRequest& request) {
  return {{request.Option("file"), TR_TEXT("the recording")}};
}

}  // namespace lorimat::console
