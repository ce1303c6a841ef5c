// What the device is programmed with, as the threads that answer requests may read it while another
// works on the device.
#pragma once

#include <memory>
#include <mutex>

#include "door/receipt/receipt_sums.h"
#include "register/client/virtual_register.h"

namespace lorimat::door {

class KnownTables {
 public:
  // Looks whether anything has changed; by the thread that works on the register, between its
  // operations.
  void Look(const VirtualRegister& device) noexcept;
  // As of the last look; null before the first one. By any thread.
  std::shared_ptr<const DeviceTables> Get() const;

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const DeviceTables> tables_;
  uint64_t revision_ = 0;
};

}  // namespace lorimat::door
