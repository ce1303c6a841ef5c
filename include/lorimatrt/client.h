// What a device client is written with: the interface that the library calls (RtfClientInterface),
// a client that supports nothing, to derive from (RtfClientBase), the list of the operations, and
// the numbers that travel: result codes, properties, selectors, kinds of lines and rows, keys.
//
//   class Printer : public RtfClientBase {
//    public:
//     int BeginFiscalReceipt(bool print_header) override { ... }
//   };
//
// Headers alone, C++17 or later: nothing of them is in a library. The headers that this one brings
// keep the paths that they have always had, below the folder of this file.
#ifndef LORIMATRT_CLIENT_H
#define LORIMATRT_CLIENT_H

#include "managermachine/managerdownloadtablerowtype.h"
#include "managermachine/managerparams.h"
#include "managermachine/pflitemtype.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

#endif
