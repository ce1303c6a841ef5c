// What a device is asked for while nothing is open, and the form that its answer has to have.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "rpccommon/client/rtfclientoperation.h"

class RtfClientInterface;

namespace lorimat::console {

enum class AnswerForm : uint8_t {
  kAny,
  kNumber,  // with a sign, and points and commas between digits
  kCount,   // digits: of a table, the same at each time
  kFlag,    // 0 or 1
  kDate,    // DDMMYYYYHHMM, or the beginning of it
  kStatus,  // seven fields between semicolons
};

// The texts that a call fills; each is larger than any room that a device is told.
inline constexpr size_t kAskedTexts = 2;
using AskedText = std::array<char, 2048>;
using AskedTextRooms = std::array<AskedText, kAskedTexts>;

struct ReadingCall {
  ClientOperation operation;
  int number;  // of the item or row; -1 for none
  AnswerForm form;
  size_t texts;  // that it fills
  int (*call)(RtfClientInterface& device, int number, AskedTextRooms& texts);

  std::string Name() const;
};
std::span<const ReadingCall> ReadingCalls();

bool HasForm(AnswerForm form, std::string_view text);

}  // namespace lorimat::console
