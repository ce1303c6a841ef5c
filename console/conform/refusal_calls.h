// What a device has to refuse with a code of its own: rows of the table in docs/devices.md that
// need no more than the client.
#pragma once

#include <span>
#include <string_view>

#include "console/conform/state_calls.h"

namespace lorimat::console {

struct RefusalCall {
  int code;
  std::string_view name;  // of the code
  std::string_view what;  // that is refused, in English, marked with TR_TEXT
  State at;               // where it is refused
  int (*call)(RtfClientInterface& device);
  unsigned flags = 0;  // of StateCallFlag
};
std::span<const RefusalCall> RefusalCalls();

}  // namespace lorimat::console
