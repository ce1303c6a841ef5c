// register.txt, read: the conversations that do not go the same way with a new virtual register as
// with the device of the conversation, and what becomes of them.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace conversation {

// How far a conversation goes with the register.
enum class Reach {
  kSame,     // the same calls, answers and texts
  kCodes,    // the same calls and codes; what is read is the register's own
  kDiffers,  // the register answers otherwise
};

// A register for the lines of a conversation from one on.
struct Start {
  int line = 0;        // of a step in the conversation's file; 0: from the beginning
  std::string set_up;  // what the register has been through before; empty for nothing
};

struct Placing {
  int line = 0;  // in register.txt
  Reach reach = Reach::kSame;
  std::string reason;  // of kCodes and kDiffers
  // The device's refusals are brought about by faults on demand.
  bool faults = false;
  std::vector<Start> starts;  // by line
};

struct RegisterList {
  std::map<std::string, std::vector<std::string>> set_ups;  // lines of the language, by name
  std::map<std::string, Placing> conversations;             // by "folder/name"
};

// Throws Failure.
RegisterList ReadRegisterList(const std::string& path);

}  // namespace conversation
