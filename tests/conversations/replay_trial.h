// A conversation that is recorded while it is played, and played once more with the recording as
// the device.
#pragma once

#include <cstdint>

#include "player.h"

namespace conversation {

// Plays by the stage, records, and replays. Every line has to end the same, and the calls have to
// be those of the recording, all of them. Answers how many calls the recording answered. Throws
// Failure.
uint64_t RecordAndReplay(const Conversation& conversation, const Stage& stage);

}  // namespace conversation
