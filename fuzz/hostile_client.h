// A device client whose every answer is taken from the fuzzer's input: results, exceptions,
// numbers, and texts as long as their room, with an end or without.
#pragma once

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <type_traits>

#include "rpccommon/client/rtfclientinterface.h"

class HostileClient : public RtfClientInterface {
 public:
  // Room for a text that the translator gives whatever it asks for.
  static constexpr size_t kTextRoom = 512;

  explicit HostileClient(std::string_view answers) : answers_(answers) {}
  // A line that makes many calls has its answers refused from some point on, so that a device
  // without end does not hold the fuzzer up.
  void BeginLine() { calls_ = 0; }

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return Answer<Result> Arguments; }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  template <typename Result, typename... Arguments>
  Result Answer(Arguments... arguments) {
    // An operation that writes is given its texts; one that reads is to fill them.
    writes_ = false;
    (Take(arguments), ...);
    const int result = TakeResult();
    if constexpr (!std::is_void_v<Result>) return static_cast<Result>(result);
  }

  template <typename T>
  void Take(T argument) {
    if constexpr (std::is_same_v<T, bool>) {
      writes_ = writes_ || argument;
    } else if constexpr (std::is_same_v<T, const char*>) {
      if (argument != nullptr) Read(argument);
    } else if constexpr (std::is_same_v<T, char*>) {
      if (argument != nullptr) Text(argument);
    } else if constexpr (std::is_pointer_v<T>) {
      using Value = std::remove_pointer_t<T>;
      if constexpr (std::is_arithmetic_v<Value>) {
        if (argument != nullptr) *argument = static_cast<Value>(Number());
      }
    }
  }

  uint8_t Byte();
  int64_t Number();
  // Results are mostly 0; some throw.
  int TakeResult();
  void Read(const char* text);
  void Text(char* text);

  std::string_view answers_;
  size_t place_ = 0;
  unsigned calls_ = 0;
  bool writes_ = false;
  size_t read_ = 0;  // so that nothing that is read is left out
};
