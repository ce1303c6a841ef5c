// The virtual register as the door's device.
#pragma once

#include <string>

#include "door/job/client_device.h"
#include "register/client/virtual_register.h"

namespace lorimat::door {

// A registered document as jobs have it.
JobDocument FactsOf(const StoredDocument& document, const std::string& serial);

class RegisterDevice : public ClientDevice {
 public:
  // Throws RegisterError when the file cannot be opened.
  explicit RegisterDevice(RegisterSettings settings);

  RtfClientInterface& client() override { return register_; }
  Told FindLast(const DocumentName& name, LastDocument* document) override;
  Told FindVoid(const DocumentName& name, const DocumentName& sale) override;
  std::optional<JobDocument> LastClosing() override;
  void AddReport(DeviceReport* report) override;
  uint64_t refusals() const override { return register_.refusal_count(); }
  console::DeviceRefusal last_refusal() const override;

  VirtualRegister& device() { return register_; }

 private:
  std::optional<StoredDocument> LastStored(const DocumentName& name) const;

  VirtualRegister register_;
};

}  // namespace lorimat::door
