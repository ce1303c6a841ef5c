// A client in front of another one, whose every call goes through Pass of the class that derives
// from it: Pass<operation, kind>(call), where `call` is the other one's.
#pragma once

#include <cstdint>

#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::door {

enum class OperationKind : uint8_t {
  kHost,
  kReads,
  kActs,
  kOpens,
  kPrints,
  kTotals,
  kPays,
  kSettles,
  kRecords,
  kKeys,
};

// What may have an effect on the device.
constexpr bool ActsOnDevice(OperationKind kind) {
  return kind != OperationKind::kHost && kind != OperationKind::kReads;
}

// What plug-ins for tests take through SetDataInternal: the word for what is to go wrong.
inline constexpr int kFaultItem = 99999;

template <typename Derived>
class PassingClient : public RtfClientInterface {
 public:
#define LORIMAT_PASS(Kind, Name, Arguments)                                                     \
  static_cast<Derived*>(this)->template Pass<ClientOperation::k##Name, OperationKind::k##Kind>( \
      [&] { return static_cast<Derived*>(this)->inner().Name Arguments; })
#define RTF_CLIENT_OPERATION(Kind, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return LORIMAT_PASS(Kind, Name, Arguments); }
#include "rpccommon/client/rtfclientoperations.inc"
#undef LORIMAT_PASS
};

}  // namespace lorimat::door
