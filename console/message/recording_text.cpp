#include "console/message/recording_text.h"

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "recording/recorder.h"

namespace lorimat::console {

using recording::DepartureKind;
using recording::RecordingCause;

std::string RecordingFaultText(const std::string& file, const recording::RecordingFault& fault) {
  const std::string name = Shown(file);
  const int64_t number = fault.number;
  switch (fault.cause) {
    case RecordingCause::kNone:
      break;
    case RecordingCause::kUnreadable:
      return Tr("{}: cannot be read: {}", name, SystemMessage(static_cast<int>(number)));
    case RecordingCause::kTooLarge:
      return Tr("{}: is larger than {} bytes, and no recording is", name, number);
    case RecordingCause::kForeignVersion:
      return Tr("{}: is a recording of format {}, and this program reads format {}", name, number,
                recording::kFormat);
    case RecordingCause::kNotUnderstood:
      return Tr("{}:{}: is no line of a recording or a conversation: {}", name, number,
                Shown(fault.text));
    case RecordingCause::kCut:
      if (fault.text.empty()) return Tr("{}:{}: the recording is cut off there", name, number);
      return Tr("{}:{}: the recording is cut off there, within the call {}", name, number,
                Shown(fault.text));
    case RecordingCause::kEdited:
      return Tr("{}:{}: the recording was edited: it has not the lines that this one tells of",
                name, number);
  }
  return {};
}

std::string DepartureText(const std::string& file, const recording::Departure& departure) {
  const std::string name = Shown(file);
  const std::string expected = Shown(departure.expected);
  const std::string got = Shown(departure.got);
  switch (departure.kind) {
    case DepartureKind::kOther:
      return Tr("{}:{}: another call was recorded: expected {}, got {}", name, departure.line,
                expected, got);
    case DepartureKind::kNowhere:
      return Tr("{}: no such call is left in the recording: got {}", name, got);
    case DepartureKind::kRanOut:
      return Tr("{}:{}: the recording has no further call: got {}", name, departure.line, got);
    case DepartureKind::kNotMade:
      return Tr("{}:{}: a call that was recorded was not made: expected {}", name, departure.line,
                expected);
    case DepartureKind::kNoAnswer:
      return Tr("{}:{}: the answer that was recorded does not fit the call {}", name,
                departure.line, got);
  }
  return {};
}

}  // namespace lorimat::console
