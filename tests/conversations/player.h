// Plays a conversation against the shared library.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "recording/conversation/script.h"

class RtfClientInterface;

namespace conversation {

// What is compared when a device gives the answers.
enum class Comparison {
  kAll,      // as with the conversation's own: the device's answers have to be the same besides
  kCodes,    // the calls, the results of the device and the codes of the lines; what is read from
             // the device, and the texts and files that show it, are its own
  kNothing,  // the lines are sent
};

struct Stage {
  std::string library;   // path of the shared library
  std::string language;  // path of the definition file that is used by default
  // Gives the answers in place of the conversation; its pointers have to hold room as
  // rtfclientinterface.h says. It must not answer -1, and every line has to end with a code that
  // `is_code` knows.
  RtfClientInterface* device = nullptr;
  // Asked ahead of each step that talks to the library: the device from there on, or null to keep
  // the one there is.
  std::function<RtfClientInterface*(const Step& step)> device_for = nullptr;
  // Told of each operation that the conversation answers otherwise than with success, ahead of it.
  std::function<void(const Call& call, int answer)> refusal = nullptr;
  Comparison comparison = Comparison::kAll;
  bool (*is_code)(long code) = nullptr;
  // Asked ahead of each step that talks to the library: whether the conversation itself answers and
  // is compared, for all that a device is there.
  std::function<bool(const Step& step)> by_script = nullptr;
  // The device may answer -1, as one that breaks its promises does.
  bool wild_device = false;
  // Told of each line that was sent, and what it ended with.
  std::function<void(const Step& step, long code, const std::string& answer)> answered = nullptr;
  // Makes what the library is given of the conversation's client; null: the client itself.
  std::function<std::shared_ptr<RtfClientInterface>(RtfClientInterface& client)> face = nullptr;
  // Told when the library goes to work on a line or on TradInit, true, and when it is the turn of
  // the host or its client, false.
  std::function<void(bool works)> library_works = nullptr;
};

struct Count {
  int steps = 0;       // lines sent and exports called, TradInit among them
  int calls = 0;       // client calls compared
  int lines = 0;       // lines sent
  int same_lines = 0;  // of those: with the calls, answers and text of the conversation
  int forwarded = 0;   // calls that the device answered
};

// Loads the library in a temporary folder of its own, plays every step, unloads it.
// Throws Failure at the first difference.
Count Play(const Conversation& conversation, const Stage& stage);

}  // namespace conversation
