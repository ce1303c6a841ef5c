// A device by its client interface alone: what every fiscal device tells of itself.
#pragma once

#include <optional>
#include <string>

#include "door/job/fiscal_device.h"

namespace lorimat::door {

class ClientDevice : public FiscalDevice {
 public:
  std::optional<DeviceState> Ask() override;
  std::string Missing() override;
  int PrintMark(const std::string& mark) override;
};

}  // namespace lorimat::door
