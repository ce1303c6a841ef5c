// Cuts a recording down to the lines that matter, and makes a conversation of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recording/recording.h"

namespace recording {

enum class TrimCause : uint8_t {
  kNone,
  kNothingFailed,  // and no lines were named
  kNoLine,         // a number: no line that was sent and answered stands there
};

struct Trimmed {
  TrimCause cause = TrimCause::kNone;
  int number = 0;         // of kNoLine
  std::string text = {};  // the conversation
  size_t kept = 0;        // lines that were sent, of
  size_t all = 0;         // so many that were answered
};

// The lines that matter are those that stand in the recording's file at the lines `named`, or else
// all that failed. With each go those of its document ahead of it, and the lines that called
// nothing: they may have set how others are read. The recording is readable.
Trimmed Trim(const Recording& recording, const std::vector<int>& named);

}  // namespace recording
