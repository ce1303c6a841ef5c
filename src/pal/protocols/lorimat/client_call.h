// The one door to the device client. Each macro calls an operation of rtfClient_ and
// gives its result, or -1 when there is no client; the arguments are then not
// evaluated. The four differ in name only.
//
// A client that throws must not carry its exception through the library: such a call
// counts as RTF_E_FAILURE.
#pragma once

#include <cxxabi.h>

#include <cstring>

#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

template <class Call>
int GuardedClientCall(Call call) {
  try {
    return call();
  } catch (abi::__forced_unwind&) {
    throw;  // the thread is being cancelled: that goes its way
  } catch (...) {
    return RTF_E_FAILURE;
  }
}

#define RTF_FP_INVOKE(name, ...) \
  (rtfClient_ != nullptr ? GuardedClientCall([&] { return rtfClient_->name(__VA_ARGS__); }) : -1)
#define RTF_LD_INVOKE(name, ...) RTF_FP_INVOKE(name, __VA_ARGS__)
#define RTF_FP_INVOKE_NP(name) RTF_FP_INVOKE(name)
#define RTF_FP_INVOKE_NI(name, ...) RTF_FP_INVOKE(name, __VA_ARGS__)

// A text that the client writes. Its contract is 50 characters at most; there is room for
// more, since a client that forgets it must not damage the translator.
struct ClientText {
  char buffer[512] = {};

  void Clear() { std::memset(buffer, 0, sizeof buffer); }
  // The text, closed wherever the client left it.
  const char* close() {
    buffer[sizeof buffer - 1] = 0;
    return buffer;
  }
};

// The translator's trace through the client.
#define LOG_ZUP_TRACE_F(...) LogF(false, __VA_ARGS__)
#define LOG_ZUP_ERR_F(...) LogF(true, __VA_ARGS__)
#define LOG_ZUP_TRACE(text) Log(false, text)
#define LOG_ZUP_ERR(text) Log(true, text)
