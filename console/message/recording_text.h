// What is wrong with a recording, and where calls part from one, in the reader's language.
#pragma once

#include <string>

#include "recording/recording.h"
#include "recording/replay.h"

namespace lorimat::console {

// Of a file with this name, which shows as on a terminal; empty without a fault.
std::string RecordingFaultText(const std::string& file, const recording::RecordingFault& fault);

// The same of a departure, with the place in the recording.
std::string DepartureText(const std::string& file, const recording::Departure& departure);

}  // namespace lorimat::console
