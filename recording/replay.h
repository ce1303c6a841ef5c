// A device that answers as a recording does, or a conversation: the calls that a translator makes
// are held against those that were recorded, and where they part is told.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recording/conversation/recording_client.h"
#include "recording/recording.h"
#include "recording/secrets.h"

namespace recording {

enum class ReplayOrder : uint8_t {
  // The calls have to be those of the recording, in their order. Behind the first that is not,
  // every
  // call is refused.
  kStrict,
  // A call is answered by the next like it that is left in the recording, by one that was passed
  // over when none follows, and one that only reads by the last like it when none is left. One that
  // the recording has nowhere is refused, and the next goes on.
  kLenient,
};

// How the calls part from the recording.
enum class DepartureKind : uint8_t {
  kOther,     // another call was expected
  kNowhere,   // no such call is left; kLenient alone
  kRanOut,    // the recording has no further call
  kNotMade,   // a call of the recording was not made
  kNoAnswer,  // the answer that the recording has does not fit the operation
};

struct Departure {
  DepartureKind kind = DepartureKind::kOther;
  int line = 0;          // of the recording's file; of its last call for kRanOut, 0 without one
  std::string expected;  // the call with its arguments; empty for kNowhere and kRanOut
  std::string got;       // empty for kNotMade
};

struct ReplaySettings {
  ReplayOrder order = ReplayOrder::kStrict;
  // Texts are filled up to their room (rtfclientbuffers.h), without an end where the recording's
  // fills it; without it whatever their length, for hosts with larger rooms.
  bool guard_texts = true;
  // Told of each departure as it is found.
  std::function<void(const Departure& departure)> parted = nullptr;
};

class Replay : private conversation::CallBook {
 public:
  // The recording is readable.
  Replay(Recording recording, ReplaySettings settings);

  const Recording& recording() const { return recording_; }
  RtfClientInterface& client() { return client_; }

  uint64_t departures() const { return departures_; }
  uint64_t answered() const { return answered_; }
  // The first call of the recording that was not made, if there is one; it is no departure before
  // the replay has come to its end.
  std::optional<Departure> NotMade() const;

 private:
  struct Recorded {
    const conversation::Call* call = nullptr;
    bool used = false;
  };

  int Answer(ClientOperation operation, const conversation::CallSlip& slip,
             const conversation::Forward& forward) override;
  int AnswerUntold(ClientOperation operation, const conversation::Forward& forward) override;

  int AnswerCall(ClientOperation operation, const conversation::CallSlip& slip);
  // The place of the recorded call that answers; nothing when it has none, which was told.
  std::optional<size_t> Find(ClientOperation operation, const conversation::Call& made);
  std::optional<size_t> FindLeniently(ClientOperation operation, const conversation::Call& made);
  bool Fits(size_t place, const conversation::Call& made) const;
  int Give(const conversation::Call& recorded, ClientOperation operation,
           const conversation::CallSlip& slip);
  // What a call is answered that the recording has no answer for.
  static int Refuse(ClientOperation operation, const conversation::CallSlip& slip);
  void Part(DepartureKind kind, const conversation::Call* expected, std::string got);

  const Recording recording_;
  const ReplaySettings settings_;
  Secrets secrets_{nullptr};
  conversation::RecordingClient client_;
  std::vector<Recorded> calls_;
  size_t next_ = 0;
  bool parted_ = false;
  uint64_t departures_ = 0;
  uint64_t answered_ = 0;
};

}  // namespace recording
