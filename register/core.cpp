#include "register/core.h"

#include <utility>

namespace lorimat {

RegisterCore::RegisterCore(RegisterSettings settings)
    : tables(std::move(settings)),
      store(tables.settings().last_closure, tables.settings().last_invoice),
      firmware_version(tables.settings().firmware_version) {
  if (tables.settings().open_drawer_at_end) device_options.Write(kDrawerAtEnd, "1");
}

std::tm RegisterCore::Now() const {
  if (tables.settings().clock) return tables.settings().clock();
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  return local != nullptr ? *local : std::tm{};
}

bool RegisterCore::Allows(Operation operation) const {
  if (operation == Operation::kBeginDocument && key != KeyPosition::kRegister) return false;
  if (operation == Operation::kProgram && tables.settings().programming_needs_key &&
      key != KeyPosition::kProgram) {
    return false;
  }
  return lorimat::Allows(state, operation);
}

}  // namespace lorimat
