// Calls an operation of the device client whose arguments do not matter: zeros, empty texts, and
// for each other pointer room that is known before and looked at behind.
#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>

#include "rpccommon/client/rtfclientinterface.h"

template <typename T>
class ScratchArgument {
 public:
  T Give() { return T(); }
  bool IsUntouched() const { return true; }
};

template <>
class ScratchArgument<const char*> {
 public:
  const char* Give() { return ""; }
  bool IsUntouched() const { return true; }
};

template <>
class ScratchArgument<Event*> {
 public:
  Event* Give() { return nullptr; }
  bool IsUntouched() const { return true; }
};

template <typename T>
class ScratchArgument<T*> {
 public:
  // Ones are a value of each type that an operation gives out, and a text with an end.
  ScratchArgument() { room_ = Known(); }
  T* Give() { return reinterpret_cast<T*>(room_.data()); }
  bool IsUntouched() const { return room_ == Known(); }

 private:
  using Room = std::array<unsigned char, 1024>;
  static Room Known() {
    Room room;
    room.fill(1);
    room.back() = 0;
    return room;
  }

  alignas(std::max_align_t) Room room_;
};

struct ScratchAnswer {
  int result = 0;         // 0 of an operation without one
  bool untouched = true;  // what its pointers lead to
};

template <typename Result, typename... Parameters>
ScratchAnswer CallWithScratch(RtfClientInterface& device,
                              Result (RtfClientInterface::*operation)(Parameters...)) {
  std::tuple<ScratchArgument<Parameters>...> arguments;
  ScratchAnswer answer;
  std::apply(
      [&](auto&... argument) {
        if constexpr (std::is_void_v<Result>) {
          (device.*operation)(argument.Give()...);
        } else {
          answer.result = static_cast<int>((device.*operation)(argument.Give()...));
        }
        answer.untouched = (argument.IsUntouched() && ...);
      },
      arguments);
  return answer;
}
