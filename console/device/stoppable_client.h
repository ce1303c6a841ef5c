// A client between the library and a device, by which an "@" line ends ahead of its end: the
// library runs a batch to the end of its file and has no word that stops it, but a device that
// refuses all that is left leaves those lines without effect.
//
// Each line begins with a trace line, the only call that the library makes there and nowhere else.
// A stop is looked for at that call alone, so that no sale is left half done between two calls of
// one line. Nothing of the trace is read.
//
// What is refused is what asks the device or changes it. Its state and GetIntProperty are answered
// as ever: a report waits for minutes where the state of the printer cannot be read, and a sale
// takes a document for open, so that the sale behind it would open none.
//
// Lines that call nothing are not held up: they run, and files are emptied ahead of the call that
// would have filled them.
#pragma once

#include <csignal>
#include <functional>
#include <type_traits>
#include <utility>

#include "language/code_table.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {

class StoppableClient : public RtfClientInterface {
 private:
  using Operation = ClientOperation;

 public:
  // Whether a refused call led to the code.
  static constexpr bool IsStop(long code) {
    return code == language::kStoppedHere || code == language::kStoppedBehind;
  }

  StoppableClient() = default;
  // The device has to outlive this object.
  explicit StoppableClient(RtfClientInterface& device) : device_(&device) {}

  // Before the first call.
  void SetDevice(RtfClientInterface& device) { device_ = &device; }
  RtfClientInterface& device() { return *device_; }

  // The next line is an "@" line. It ends once *stop is not 0; `line_begins` is called where each
  // line begins, that one too.
  void Begin(const volatile std::sig_atomic_t* stop, std::function<void()> line_begins);
  // That line has ended: nothing is refused any more. Whether a call was.
  bool End();

#define LORIMAT_PASS(Name, Arguments) \
  Pass<Operation::k##Name>([&] { return device_->Name Arguments; })
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return LORIMAT_PASS(Name, Arguments); }
#include "rpccommon/client/rtfclientoperations.inc"
#undef LORIMAT_PASS

 private:
  template <Operation operation, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    if constexpr (operation == Operation::kLogTrace) LineBegins();
    // The others have no result code.
    constexpr bool kRefusable = std::is_same_v<decltype(call()), int> &&
                                operation != Operation::kGetState &&
                                operation != Operation::kGetIntProperty;
    if constexpr (kRefusable) {
      if (stopping_) {
        refused_ = true;
        return behind_ ? language::kStoppedBehind : language::kStoppedHere;
      }
    }
    return call();
  }
  void LineBegins();

  RtfClientInterface* device_ = nullptr;
  const volatile std::sig_atomic_t* stop_ = nullptr;  // while an "@" line is at work
  std::function<void()> line_begins_;
  bool stopping_ = false;
  bool refused_ = false;  // a call
  bool behind_ = false;   // the line at work is behind the one that it stopped at
};

// Begins an "@" line, and ends it whichever way it goes.
class StoppableLine {
 public:
  StoppableLine(StoppableClient& client, const volatile std::sig_atomic_t* stop,
                std::function<void()> line_begins)
      : client_(client) {
    client_.Begin(stop, std::move(line_begins));
  }
  ~StoppableLine() { client_.End(); }
  StoppableLine(const StoppableLine&) = delete;
  StoppableLine& operator=(const StoppableLine&) = delete;

 private:
  StoppableClient& client_;
};

}  // namespace lorimat::console
