// What each operation does, by the list of operations: whether it only reads, opens a document and
// so on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "rpccommon/client/rtfclientoperation.h"

namespace recording {

enum class Doing : uint8_t {
  kHost,
  kReads,
  kActs,
  kRecords,
  kPrints,
  kOpens,
  kPays,
  kTotals,
  kSettles,
  kKeys
};

inline constexpr Doing kDoings[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) Doing::k##Does,
#include "rpccommon/client/rtfclientoperations.inc"
};

constexpr Doing DoingOf(ClientOperation operation) {
  return kDoings[static_cast<size_t>(operation)];
}

}  // namespace recording
