// A device tried in a process of its own, which it may end: then the call that it was at is known,
// and what is left goes on in another.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "console/conform/conform_progress.h"
#include "console/terminal/streams.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {

// What both processes see.
struct ConformWatch {
  volatile int operation = -1;  // of ClientOperation, while a call is at work
};

// Leaves in the watch which operation is at work.
class WatchedClient : public RtfClientInterface {
 public:
  // Both outlive it.
  WatchedClient(RtfClientInterface& device, ConformWatch& watch) : device_(device), watch_(watch) {}

#define LORIMAT_WATCHED(Name, Arguments) \
  Watched(ClientOperation::k##Name, [&] { return device_.Name Arguments; })
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return LORIMAT_WATCHED(Name, Arguments); }
#include "rpccommon/client/rtfclientoperations.inc"
#undef LORIMAT_WATCHED

 private:
  class AtWork {
   public:
    AtWork(ConformWatch& watch, ClientOperation operation) : watch_(watch) {
      watch_.operation = static_cast<int>(operation);
    }
    ~AtWork() { watch_.operation = -1; }
    AtWork(const AtWork&) = delete;
    AtWork& operator=(const AtWork&) = delete;

   private:
    ConformWatch& watch_;
  };

  template <typename Call>
  auto Watched(ClientOperation operation, Call call) -> decltype(call()) {
    const AtWork at_work(watch_, operation);
    return call();
  }

  RtfClientInterface& device_;
  ConformWatch& watch_;
};

// What the device is, as its process tells it once it is open.
struct TriedDevice {
  std::string name = {};
  std::string version = {};
  bool training = false;
};

class ConformProcess {
 public:
  // How a process came to its end.
  enum class Outcome : uint8_t {
    kWhole,    // all was tried that was to be
    kFailed,   // it said what kept it from trying
    kEnded,    // the device ended it
    kAtClose,  // the device ended it when all was tried
  };

  // Throws Failure when there is no memory that two processes can share.
  ConformProcess();
  ~ConformProcess();
  ConformProcess(const ConformProcess&) = delete;
  ConformProcess& operator=(const ConformProcess&) = delete;

  // Goes on in two processes, as fork does: true in the new one, which is to go on to the end of
  // the program with what its `Told` members say. Throws Failure.
  bool Begin();

  // --- In the new one

  ConformWatch& watch() { return *watch_; }
  void TellDevice(const TriedDevice& device);
  void TellPiece(const ConformProgress& progress, size_t piece);
  // Nothing more is tried; returns when the other process has heard of it.
  void TellWhole(bool recorded);
  // It has said, or is about to say, why it tries nothing.
  void TellFailed();

  // --- In the one before

  // Takes over what the other tells, until it ends; hands the signals of interrupt.h on to it.
  // `behind` is told of each piece, and `whole` when the last one was tried.
  Outcome Follow(ConformProgress* progress, const std::function<void(size_t piece)>& behind,
                 const std::function<void()>& whole);

  // What is known since Follow: of the first process that told it.
  const std::optional<TriedDevice>& device() const { return device_; }
  bool recorded() const { return recorded_; }  // of kWhole and kAtClose
  ProcessEnd end() const { return end_; }      // of kEnded and kAtClose
  // The operation that was at work; empty for none.
  std::string_view operation() const;

 private:
  void Tell(char kind, std::string_view text);
  // Takes what has come; false when there is no more.
  bool Receive();
  void TakeWhatCame(ConformProgress* progress, const std::function<void(size_t piece)>& behind,
                    const std::function<void()>& whole);

  ConformWatch* watch_ = nullptr;
  Descriptor line_;  // to the other process
  pid_t child_ = -1;
  std::string came_;
  std::optional<TriedDevice> device_;
  bool is_whole_ = false;
  bool has_failed_ = false;
  bool recorded_ = true;
  ProcessEnd end_;
};

}  // namespace lorimat::console
