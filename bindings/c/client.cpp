// The clients that hosts in C make.
#include <new>

#include "bindings/c/border.h"
#include "bindings/c/device_client.h"
#include "bindings/c/host_struct.h"

struct lorimat_client {
  explicit lorimat_client(const lorimat_device& table) : device(lorimat::c::Taken(table)) {}
  lorimat::c::DeviceClient device;
};

const char* lorimat_result_text(int result) { return lorimat::c::TextOf(result); }

const char* lorimat_error(void) { return lorimat::c::LastError(); }

uint32_t lorimat_abi(void) { return LORIMAT_ABI; }

int lorimat_client_new(const lorimat_device* table, lorimat_client** client) {
  using lorimat::c::Fail;
  if (client != nullptr) *client = nullptr;
  if (table == nullptr || client == nullptr) return Fail(LORIMAT_NULL_ARGUMENT);
  if (const lorimat_result fault = lorimat::c::FaultOf(table)) return Fail(fault);
  return lorimat::c::Guarded([&] {
    *client = new lorimat_client(*table);
    return LORIMAT_OK;
  });
}

void lorimat_client_free(lorimat_client* client) { delete client; }

void* lorimat_client_interface(lorimat_client* client) {
  // What the library reads from the pointer is this base.
  return client != nullptr ? static_cast<RtfClientInterface*>(&client->device) : nullptr;
}

void lorimat_client_guard(lorimat_client* client, bool on) {
  if (client != nullptr) client->device.Guard(on);
}

int lorimat_client_take_fault(lorimat_client* client, const char** operation) {
  if (operation != nullptr) *operation = nullptr;
  if (client == nullptr) return lorimat::c::Fail(LORIMAT_NULL_ARGUMENT);
  const auto [fault, name] = client->device.TakeFault();
  if (operation != nullptr && fault != LORIMAT_OK) *operation = ClientOperationName(name).data();
  return fault;
}
