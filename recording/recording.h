// A recording, or a conversation, read from a file: its steps, and what is wrong with it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "recording/conversation/script.h"

namespace recording {

// Behind each what the number and the text are.
enum class RecordingCause : uint8_t {
  kNone,
  kUnreadable,      // an errno value
  kTooLarge,        // bytes that it may have
  kForeignVersion,  // that of its format, 0 for no number
  kNotUnderstood,   // a line, 0 for none, and what the reader of the language says of it
  kCut,             // the line behind which it ends; the call that was at work, or none
  kEdited,          // the line of its end
};

struct RecordingFault {
  RecordingCause cause = RecordingCause::kNone;
  int64_t number = 0;
  std::string text = {};

  explicit operator bool() const { return cause != RecordingCause::kNone; }
};

struct Recording {
  conversation::Conversation script;
  RecordingFault fault;
  // A conversation tells nothing of itself, and is not looked at for changes.
  bool is_recording = false;
  std::string made_by;
  std::string library;
  std::string device;
  std::string first_time;  // of its first step; empty for none
  bool blanked = false;    // its secrets
  bool at_limit = false;   // it ends at its limit of bytes

  // Whether the steps are there: of what is sound, cut or edited.
  bool readable() const {
    return !fault || fault.cause == RecordingCause::kCut || fault.cause == RecordingCause::kEdited;
  }
};

// Never throws but for want of memory. `path` is what faults of parts are told with.
Recording ReadRecordingText(const std::string& path, const std::string& text);
// The same of a file.
Recording ReadRecording(const std::string& path);

}  // namespace recording
