// A device each of whose calls is watched, those of the translator too.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "door/job/call_watch.h"
#include "door/job/client_device.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace lorimat::door {

// In front of a client: each of its operations is one call.
class WatchedClient : public RtfClientInterface {
 public:
  WatchedClient(RtfClientInterface& inner, CallWatch& watch) : inner_(inner), watch_(watch) {}

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override {                                     \
    const WatchedCall call(watch_);                                     \
    return inner_.Name Arguments;                                       \
  }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  RtfClientInterface& inner_;
  CallWatch& watch_;
};

class WatchedDevice : public ClientDevice {
 public:
  // Both have to outlive this object.
  WatchedDevice(FiscalDevice& inner, CallWatch& watch)
      : inner_(inner), watch_(watch), client_(inner.client(), watch) {}

  RtfClientInterface& client() override { return client_; }
  Told FindLast(const DocumentName& name, LastDocument* document) override {
    const WatchedCall call(watch_);
    return inner_.FindLast(name, document);
  }
  Told FindVoid(const DocumentName& name, const DocumentName& sale) override {
    const WatchedCall call(watch_);
    return inner_.FindVoid(name, sale);
  }
  std::optional<JobDocument> LastClosing() override {
    const WatchedCall call(watch_);
    return inner_.LastClosing();
  }
  void AddReport(DeviceReport* report) override {
    const WatchedCall call(watch_);
    inner_.AddReport(report);
  }
  Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                 std::vector<std::string>* lines) override {
    const WatchedCall call(watch_);
    return inner_.FindPaper(name, kind, lines);
  }
  // What is known already.
  uint64_t refusals() const override { return inner_.refusals(); }
  console::DeviceRefusal last_refusal() const override { return inner_.last_refusal(); }
  // Not watched: it is several calls, each of which the thread of a device from a file gives up.
  void Reopen() override { inner_.Reopen(); }

 private:
  FiscalDevice& inner_;
  CallWatch& watch_;
  WatchedClient client_;
};

}  // namespace lorimat::door
