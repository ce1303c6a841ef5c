// Writes down what passes between the translator and its device, in the language of conversations:
// the lines with their times and answers, and every call with its arguments, its result and what it
// filled. Each piece is written as soon as it is known, a call's arguments ahead of the call, so
// that a process that ends in the middle leaves all that happened.
//
// Nothing of it changes what passes. A recording that cannot be gone on with, for want of disk or
// memory or at its limit, ends; the device is called as before.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recording/conversation/recording_client.h"
#include "recording/secrets.h"

namespace recording {

// The number of the format, in the first line of a recording.
inline constexpr int kFormat = 1;

// Takes the bytes of a recording.
class Sink {
 public:
  virtual ~Sink() = default;
  // Writes all of them at once; 0, or the errno value of what failed.
  virtual int Write(std::string_view bytes) noexcept = 0;
};

struct RecorderSettings {
  // What made it and what it was made with, for people.
  std::string made_by = {};
  std::string library = {};
  std::string device = {};
  // The recording ends ahead of a line or call that would make it larger than so many bytes. The
  // answer of a call that was begun goes beyond it. 0 for no limit.
  uint64_t limit = 0;
  // Secrets are written as they are; without it `line_blanking` blanks those of lines.
  bool with_secrets = false;
  Secrets::LineBlanking line_blanking = nullptr;
  // A text that the device fills is looked at up to the end of its room (rtfclientbuffers.h);
  // without it up to its NUL, as far as that is, for devices that fill more.
  bool guard_texts = true;
  // How many exceptions the device's client has kept to itself until now: a call behind which there
  // is one more threw, whatever it answered. Empty where they come through.
  std::function<uint64_t()> exceptions = nullptr;
  // Microseconds: since 1970, and of a clock that nobody sets. Empty takes the computer's.
  std::function<int64_t()> now = nullptr;
  std::function<int64_t()> ticks = nullptr;
};

// How a recording came to its end.
enum class RecordingEnd : uint8_t {
  kNone,    // it goes on
  kWhole,   // Finish
  kLimit,   // of bytes
  kDisk,    // the sink failed: see error()
  kMemory,  // there was not enough
};

class Digest;

class Recorder : private conversation::CallBook {
 public:
  // The sink outlives the recorder. The head is written at once.
  Recorder(Sink& sink, RecorderSettings settings);
  ~Recorder() override;
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // A client that passes every call on to the device, and is there as long as the recorder; the
  // device has to be as well. The last one that was given counts. Calls come one at a time.
  RtfClientInterface& Wrap(RtfClientInterface& device);

  // What happens around the calls, each told when it does. `language` is what stands in the
  // definition file.
  void InitBegins(std::string_view language) noexcept;
  // The host's callback, as a call with these arguments, and what it answered.
  void Callback(std::string_view arguments, long answer) noexcept;
  void InitEnds(long code) noexcept;
  void LineBegins(std::string_view line) noexcept;
  void LineEnds(long code, std::string_view answer) noexcept;
  // TradClose has answered.
  void Closed(long answer) noexcept;

  // Writes the last line. Nothing is recorded behind it.
  void Finish() noexcept;

  RecordingEnd end() const { return end_; }
  int error() const { return error_; }  // of kDisk, an errno value
  uint64_t size() const { return size_; }

 private:
  int Answer(ClientOperation operation, const conversation::CallSlip& slip,
             const conversation::Forward& forward) override;
  int AnswerUntold(ClientOperation operation, const conversation::Forward& forward) override;

  void TakeTrace(bool error, const conversation::CallSlip& slip);
  void BeginCall(ClientOperation operation, const conversation::CallSlip& slip);
  void EndCall(ClientOperation operation, const conversation::CallSlip& slip,
               const std::string& result, bool success, int64_t micros);
  std::vector<conversation::Value> OutsOf(const conversation::CallSlip& slip, bool success);

  // What it does is given up, and the recording with it, where there is no memory.
  template <typename Work>
  bool Try(Work&& work) noexcept;
  void WriteHead();
  // A whole piece, which the limit may refuse, and the rest of one.
  void Write(const std::string& text);
  void WriteRest(const std::string& text);
  void End(RecordingEnd end, int error) noexcept;
  std::string Now() const;
  int64_t Ticks() const;
  uint64_t Exceptions() const;

  Sink& sink_;
  const RecorderSettings settings_;
  Secrets secrets_;
  conversation::RecordingClient client_;
  RtfClientInterface* device_ = nullptr;
  std::unique_ptr<Digest> digest_;
  std::vector<std::string> before_;  // what the pointers of the call held ahead of it
  uint64_t size_ = 0;
  uint64_t lines_ = 0;
  RecordingEnd end_ = RecordingEnd::kNone;
  int error_ = 0;
};

// A text as the language writes it behind a directive: "language: |" and its lines.
std::string Block(std::string_view directive, std::string_view contents);

// The digest of bytes as a recording's last line has it.
std::string DigestOf(std::string_view bytes);

}  // namespace recording
