// The room of the texts of a call that was taken down.
#pragma once

#include <cstddef>

#include "recording/conversation/call_slip.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace recording {

// Bytes with the closing NUL of what the slip's pointer leads to; 0 for a text that the list of
// rooms does not have.
size_t TextRoom(ClientOperation operation, const conversation::CallSlip& slip, size_t out);

}  // namespace recording
