// A device client that accepts everything and gives nothing: unit tests override the few
// operations that they are about.
#pragma once

#include <type_traits>

#include "rpccommon/client/rtfclientinterface.h"

class NullClient : public RtfClientInterface {
 public:
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return Accept<Result> Arguments; }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  // 0, and true of what is asked.
  template <typename Result, typename... Arguments>
  static Result Accept(Arguments...) {
    if constexpr (!std::is_void_v<Result>) return Result(std::is_same_v<Result, bool>);
  }
};
