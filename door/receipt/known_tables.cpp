#include "door/receipt/known_tables.h"

#include <utility>

namespace lorimat::door {

void KnownTables::Look(const VirtualRegister& device) noexcept try {
  const uint64_t revision = device.tables().revision();
  const bool round_cash = device.setup().round_cash;
  if (tables_ != nullptr && revision == revision_ && tables_->round_cash == round_cash) return;
  auto tables = std::make_shared<const DeviceTables>(DeviceTables{device.tables(), round_cash});
  const std::lock_guard<std::mutex> lock(mutex_);
  tables_ = std::move(tables);
  revision_ = revision;
} catch (...) {
  // No memory: what was known stays, and the next look finds that it is old.
}

std::shared_ptr<const DeviceTables> KnownTables::Get() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return tables_;
}

}  // namespace lorimat::door
