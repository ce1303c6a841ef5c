// RtfClientBase: a device client that supports nothing. A client of one's own derives from it and
// writes the operations that its device has; the others answer what a host expects of an operation
// that a device has not.
//
//   class Drawer : public RtfClientBase {
//    public:
//     int OpenDrawer() override { ... }
//   };
//
// An operation with a result code answers RTF_E_ILLEGAL and leaves alone what its pointers lead to:
// some of it is input, and a caller that shows a text whatever the answer has emptied it before.
// GetState answers RTF_S_CLOSED, GetClaimed and GetDeviceEnabled answer false; trace lines and what
// is set for waiting are dropped. Nothing throws.
#pragma once

#include <type_traits>

// By their place beside this file, and not by a folder of includes: these headers are installed.
#include "../services/rtfconst.h"
#include "rtfclientinterface.h"
#include "rtfclientoperation.h"

class RtfClientBase : public RtfClientInterface {
 public:
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override {                                     \
    return NotSupported<ClientOperation::k##Name, Result> Arguments;    \
  }
#include "rtfclientoperations.inc"

 private:
  template <ClientOperation operation, typename Result, typename... Arguments>
  static constexpr Result NotSupported(Arguments...) {
    if constexpr (operation == ClientOperation::kGetState) {
      return RTF_S_CLOSED;
    } else if constexpr (std::is_same_v<Result, int>) {
      return RTF_E_ILLEGAL;
    } else {
      return Result();
    }
  }
};

// Each row of the list overrides an operation of the interface as that declares it; this says that
// no operation is without a row.
static_assert(!std::is_abstract_v<RtfClientBase>,
              "an operation of RtfClientInterface has no row in rtfclientoperations.inc");
