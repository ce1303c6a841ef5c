// A client between the library and one that runs on a thread of its own (device_thread.h). All that
// an operation reads and fills is copied for it, so that one that was given up, and goes on later,
// finds nothing of a caller that has gone on as well. Behind that every operation answers as a
// device that is switched off.
#pragma once

#include <cxxabi.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "console/device/device.h"
#include "console/device/device_thread.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/client/rtfclientbuffers.h"

namespace lorimat::console {

// An argument of an operation for another thread. One by value, and an address that is handed on.
template <typename Parameter>
class HeldArgument {
 public:
  HeldArgument(Parameter value, size_t) : value_(value) {}
  Parameter inside() { return value_; }
  bool is_whole() const { return true; }
  void GiveBack() {}

 private:
  Parameter value_;
};

// A text that is read.
template <>
class HeldArgument<const char*> {
 public:
  HeldArgument(const char* text, size_t) : null_(text == nullptr), text_(null_ ? "" : text) {}
  const char* inside() { return null_ ? nullptr : text_.c_str(); }
  bool is_whole() const { return true; }
  void GiveBack() {}

 private:
  bool null_;
  std::string text_;
};

// A text that is filled, in the room that it has, and a guard behind it.
template <>
class HeldArgument<char*> {
 public:
  HeldArgument(char* text, size_t room)
      : caller_(text), room_(room), text_(text, text == nullptr ? text : text + room) {
    text_.resize(text_.size() + kGuardSize, kGuardByte);
  }
  char* inside() { return caller_ == nullptr ? nullptr : text_.data(); }
  // Whether nothing was written behind the room.
  bool is_whole() const {
    return std::all_of(text_.end() - kGuardSize, text_.end(),
                       [](char c) { return c == kGuardByte; });
  }
  void GiveBack() {
    if (caller_ != nullptr && room_ > 0) std::memcpy(caller_, text_.data(), room_);
  }

 private:
  static constexpr std::ptrdiff_t kGuardSize = 1024;
  static constexpr char kGuardByte = '\xA5';

  char* caller_;
  size_t room_;
  std::vector<char> text_;
};

// A value that is filled.
template <typename Value>
requires std::is_arithmetic_v<Value> &&
    (!std::is_same_v<Value, char>)&&(!std::is_const_v<Value>)class HeldArgument<Value*> {
 public:
  HeldArgument(Value* value, size_t)
      : caller_(value), value_(value != nullptr ? *value : Value()) {}
  Value* inside() { return caller_ == nullptr ? nullptr : &value_; }
  bool is_whole() const { return true; }
  void GiveBack() {
    if (caller_ != nullptr) *caller_ = value_;
  }

 private:
  Value* caller_;
  Value value_;
};

// What went wrong with a call beside its answer, and the operation.
struct CallFault {
  DeviceCallFault fault = DeviceCallFault::kNone;
  ClientOperation operation = {};
};

class TimedClient final : public RtfClientBase {
 private:
  using Operation = ClientOperation;

 public:
  // What every operation answers behind a call that was given up, and that one.
  static constexpr int kRefused = RTF_E_OFFLINE;

  // The thread has to outlive this object; a call that was given up holds on to the device.
  // `behind` is called when an operation is over, whatever came of it.
  TimedClient(std::shared_ptr<RtfClientInterface> device, DeviceThread& thread,
              std::function<void()> behind)
      : device_(std::move(device)),
        thread_(thread),
        behind_(std::move(behind)),
        fault_(std::make_shared<CallFault>()) {}

  // How many operations were refused since.
  uint64_t refused() const { return refused_; }

  // The last one that there was; it is then forgotten. One that was given up is not among them.
  CallFault TakeFault() { return std::exchange(*fault_, {}); }

#define LORIMAT_THROUGH(Name, Arguments) \
  Through<Operation::k##Name>(&RtfClientInterface::Name, [&](auto call) { return call Arguments; })
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return LORIMAT_THROUGH(Name, Arguments); }
#include "rpccommon/client/rtfclientoperations.inc"
#undef LORIMAT_THROUGH

 private:
  template <Operation operation, typename Result, typename... Parameters, typename Give>
  Result Through(Result (RtfClientInterface::*method)(Parameters...), Give give) {
    return give([this, method](Parameters... arguments) -> Result {
      return Call<operation>(method, arguments...);
    });
  }

  // As a device that is switched off.
  template <Operation operation, typename Result>
  Result Refuse() {
    ++refused_;
    if constexpr (operation == ClientOperation::kGetState) {
      return RTF_S_CLOSED;
    } else if constexpr (std::is_same_v<Result, int>) {
      return kRefused;
    } else {
      return Result();
    }
  }

  template <Operation operation, typename Result, typename... Parameters>
  Result Call(Result (RtfClientInterface::*method)(Parameters...),
              std::type_identity_t<Parameters>... arguments) {
    using Answer = std::conditional_t<std::is_void_v<Result>, int, Result>;
    struct Held {
      std::tuple<HeldArgument<Parameters>...> arguments;
      Answer answer{};
    };
    size_t texts = 0;
    [[maybe_unused]] const auto room = [&](auto argument) -> size_t {
      if constexpr (std::is_same_v<decltype(argument), char*>) {
        return ClientBufferSize<operation>(static_cast<int>(texts++), arguments...);
      }
      return 0;
    };
    // Braces: the texts are counted from left to right.
    const auto held =
        std::shared_ptr<Held>(new Held{std::tuple<HeldArgument<Parameters>...>{
                                           HeldArgument<Parameters>(arguments, room(arguments))...},
                                       {}});
    const bool ended = thread_.Run(
        ClientOperationName(operation).data(), [held, method, device = device_, fault = fault_] {
          try {
            std::apply(
                [&](auto&... argument) {
                  if constexpr (std::is_void_v<Result>) {
                    (device.get()->*method)(argument.inside()...);
                  } else {
                    held->answer = (device.get()->*method)(argument.inside()...);
                  }
                },
                held->arguments);
          } catch (abi::__forced_unwind&) {
            throw;  // the plug-in ends its thread
          } catch (...) {
            if constexpr (std::is_same_v<Result, int>) held->answer = RTF_E_FAILURE;
            *fault = {DeviceCallFault::kThrew, operation};
          }
        });
    // Of a text that was written behind, nothing is known.
    const bool is_whole =
        !ended || std::apply([](const auto&... argument) { return (argument.is_whole() && ...); },
                             held->arguments);
    if (!is_whole) *fault_ = {DeviceCallFault::kOverrun, operation};
    behind_();
    if (!ended) return Refuse<operation, Result>();
    if (!is_whole) {
      if constexpr (std::is_same_v<Result, int>) return RTF_E_FAILURE;
      if constexpr (!std::is_void_v<Result>) return held->answer;
    }
    std::apply([](auto&... argument) { (argument.GiveBack(), ...); }, held->arguments);
    if constexpr (!std::is_void_v<Result>) return held->answer;
  }

  const std::shared_ptr<RtfClientInterface> device_;
  DeviceThread& thread_;
  const std::function<void()> behind_;
  const std::shared_ptr<CallFault> fault_;
  uint64_t refused_ = 0;
};

}  // namespace lorimat::console
