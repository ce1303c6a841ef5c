// The operations of RtfClientInterface as values, in its order, and their names as text: for
// whoever notes calls, counts them or lets one fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// kGetClaimed, kGetDeviceEnabled and so on: the operation's name behind a k.
enum class ClientOperation : uint8_t {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) k##Name,
#include "rtfclientoperations.inc"
};

inline constexpr std::string_view kClientOperationNames[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) #Name,
#include "rtfclientoperations.inc"
};
inline constexpr size_t kClientOperationCount =
    sizeof kClientOperationNames / sizeof kClientOperationNames[0];

// "GetClaimed"; empty for a value that is no operation.
constexpr std::string_view ClientOperationName(ClientOperation operation) {
  const size_t index = static_cast<size_t>(operation);
  return index < kClientOperationCount ? kClientOperationNames[index] : std::string_view();
}

// Nothing for a text that names none; the case counts.
constexpr std::optional<ClientOperation> FindClientOperation(std::string_view name) {
  for (size_t i = 0; i < kClientOperationCount; ++i) {
    if (kClientOperationNames[i] == name) return static_cast<ClientOperation>(i);
  }
  return std::nullopt;
}
