// The service: how far a host has got the device, tests, firmware, and what a device of this kind
// has done before the host could wait for it.
#include "register/client/client_buffers.h"
#include "register/client/virtual_register.h"
#include "register/desk/properties.h"
#include "register/desk/self_test.h"
#include "register/fault/fault_operations.h"
#include "register/report/firmware.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

struct NeedRow {
  ClientOperation operation;
  ServiceState state;
};

// Every other operation wants an enabled device. Reading a property depends on the property.
constexpr NeedRow kNeeds[] = {
    {ClientOperation::kGetState, ServiceState::kClosed},
    {ClientOperation::kGetIntProperty, ServiceState::kClosed},
    {ClientOperation::kGetStringProperty, ServiceState::kClosed},
    {ClientOperation::kClose, ServiceState::kOpen},
    {ClientOperation::kClaim, ServiceState::kOpen},
    {ClientOperation::kRelease, ServiceState::kOpen},
    {ClientOperation::kSetDeviceEnabled, ServiceState::kOpen},
};

// The tests of DiagnosticsRequest.
constexpr int kPrinterTest = 1;
constexpr int kDisplayTest = 2;
constexpr int kMemoryTest = 3;

// A service that is not as far as an operation needs answers what is missing first.
int Missing(ServiceState has, ServiceState needs) {
  if (has >= needs) return RTF_SUCCESS;
  switch (has) {
    case ServiceState::kClosed:
      return RTF_E_CLOSED;
    case ServiceState::kOpen:
      return RTF_E_NOTCLAIMED;
    default:
      return RTF_E_DISABLED;
  }
}

}  // namespace

int VirtualRegister::CheckService(std::optional<ClientOperation> operation) const noexcept {
  const ServiceState has = core_.service;
  // What is no operation of the client is not the host's.
  if (has == ServiceState::kEnabled || !operation) return RTF_SUCCESS;
  for (const NeedRow& row : kNeeds) {
    if (row.operation == *operation) return Missing(has, row.state);
  }
  return Missing(has, ServiceState::kEnabled);
}

int VirtualRegister::CheckProperty(int property) const {
  return Missing(core_.service, PropertyNeeds(property));
}

bool VirtualRegister::GetClaimed() { return core_.service >= ServiceState::kClaimed; }
bool VirtualRegister::GetDeviceEnabled() { return core_.service == ServiceState::kEnabled; }

int VirtualRegister::SetDeviceEnabled(bool enabled) {
  return Perform(ClientOperation::kSetDeviceEnabled, [&] {
    if (core_.service < ServiceState::kClaimed) return enabled ? RTF_E_NOTCLAIMED : RTF_SUCCESS;
    core_.service = enabled ? ServiceState::kEnabled : ServiceState::kClaimed;
    return RTF_SUCCESS;
  });
}

// The printer stays as it is, with its open document.
int VirtualRegister::Close() {
  return Perform(ClientOperation::kClose, [&] {
    core_.service = ServiceState::kClosed;
    return RTF_SUCCESS;
  });
}

// No other program has it, so there is nothing to wait for.
int VirtualRegister::Claim(int timeout) {
  return Perform(ClientOperation::kClaim, [&] {
    if (timeout < RTF_FOREVER) return RTF_E_ILLEGAL;
    if (core_.service < ServiceState::kClaimed) core_.service = ServiceState::kClaimed;
    return RTF_SUCCESS;
  });
}

int VirtualRegister::Release() {
  return Perform(ClientOperation::kRelease, [&] {
    if (core_.service < ServiceState::kClaimed) return RTF_E_ILLEGAL;
    core_.service = ServiceState::kOpen;
    return RTF_SUCCESS;
  });
}

// --- Tests

int VirtualRegister::CheckHealth(int level) {
  const unsigned effects = level == RTF_CH_EXTERNAL ? kEffectActs | kEffectPrints : kEffectActs;
  return Perform(ClientOperation::kCheckHealth, effects, [&] { return TestHealth(core_, level); });
}

// The tests of printer and memory are over when they answer: only the displays' can be stopped.
int VirtualRegister::DiagnosticsRequest(int test, bool start, int options) {
  const unsigned effects = test == kPrinterTest ? kEffectActs | kEffectPrints : kEffectActs;
  return Perform(ClientOperation::kDiagnosticsRequest, effects, [&] {
    if (options != 0) return RTF_E_ILLEGAL;
    if (test == kDisplayTest) return TestDisplays(core_, start);
    if (!start) return RTF_E_ILLEGAL;
    if (test == kPrinterTest) return TestPrinter(core_);
    if (test == kMemoryTest) return TestMemory(core_);
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTest, {test});
  });
}

// --- Output and errors

// Each operation has printed when it answers: there is no output to drop, and what is on paper
// stays there.
int VirtualRegister::ClearOutput() {
  return Perform(ClientOperation::kClearOutput, [] { return RTF_SUCCESS; });
}

int VirtualRegister::ClearError() {
  return Perform(ClientOperation::kClearError, [&] {
    keyboard_.Clear();
    return RTF_SUCCESS;
  });
}

// The drawer of this register closes by itself as soon as it has opened.
int VirtualRegister::WaitForDrawerClose(int32_t beep_timeout, int32_t beep_frequency,
                                        int32_t beep_duration, int32_t beep_delay) {
  return Perform(ClientOperation::kWaitForDrawerClose, [&] {
    const bool possible =
        beep_timeout >= RTF_FOREVER && beep_frequency >= 0 && beep_duration >= 0 && beep_delay >= 0;
    return possible ? RTF_SUCCESS : RTF_E_ILLEGAL;
  });
}

// --- Firmware

int VirtualRegister::CompareFirmwareVersion(const char* firmware_file, int* result) {
  return Perform(ClientOperation::kCompareFirmwareVersion, [&] {
    if (result == nullptr) return RTF_E_ILLEGAL;
    std::string version;
    if (const int code = CheckFirmware(View(firmware_file), &version)) return code;
    *result = CompareVersions(version, core_.firmware_version);
    return RTF_SUCCESS;
  });
}

int VirtualRegister::UpdateFirmware(const char* firmware_file) {
  return Perform(ClientOperation::kUpdateFirmware, [&] { return LoadFirmware(firmware_file); });
}

}  // namespace lorimat
