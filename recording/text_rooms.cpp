#include "recording/text_rooms.h"

#include <algorithm>
#include <cstdlib>

#include "rpccommon/client/rtfclientbuffers.h"

namespace recording {
namespace {

using conversation::CallSlip;
using conversation::Value;

// Of the answer of ZupEcrCmd, whose length the caller says.
constexpr size_t kMostRoom = size_t{1} << 20;

}  // namespace

size_t TextRoom(ClientOperation operation, const CallSlip& slip, size_t out) {
  int text = 0;
  for (size_t i = 0; i < out; ++i) text += slip.outs[i].is_text ? 1 : 0;
  const auto number = [&](size_t argument) {
    const bool is_number = argument < slip.arguments.size() &&
                           slip.arguments[argument].kind == Value::kWord &&
                           slip.arguments[argument].text != "null";
    return is_number ? std::atoll(slip.arguments[argument].text.c_str()) : 0;
  };
  const ClientBuffer* row = FindClientBuffer(operation, text, static_cast<int>(number(0)));
  if (row == nullptr) return 0;
  if (row->size != kClientBufferByLength) return row->size;
  return static_cast<size_t>(std::clamp<long long>(number(1), 0, kMostRoom));
}

}  // namespace recording
