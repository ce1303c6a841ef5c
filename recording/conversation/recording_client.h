// The device client of the conversations: every operation of RtfClientInterface, each
// written down with its arguments and answered by a CallBook.
//
// What travels from the library to the client is shown as an argument; what a pointer
// takes back is an out-parameter of the answer, in the order of the declaration. GetData,
// DirectIO and ZupEcrCmd have pointers that are read too: these are both. The fields of the
// Config operations are arguments when they write, out-parameters when they read.
#pragma once

#include <new>
#include <type_traits>

#include "recording/conversation/call_slip.h"
#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace conversation {

// Makes the call that was taken down on another device; its result, 0 without one. It lives as long
// as the call, and asks for no memory.
class Forward {
 public:
  template <typename Call>
  requires std::is_invocable_r_v<int, const Call&, RtfClientInterface&>
  explicit Forward(const Call& call)
      : call_(&call), make_([](const void* made, RtfClientInterface& device) {
          return (*static_cast<const Call*>(made))(device);
        }) {}
  int operator()(RtfClientInterface& device) const { return make_(call_, device); }

 private:
  const void* call_;
  int (*make_)(const void* call, RtfClientInterface& device);
};

// Takes down calls and answers them.
class CallBook {
 public:
  virtual ~CallBook() = default;
  // The operation's result; the slip's pointers are filled from the answer, or by the device
  // that the call is forwarded to. Operations without a result drop it.
  virtual int Answer(ClientOperation operation, const CallSlip& slip, const Forward& forward) = 0;
  // In its place where there was no memory to take the arguments down.
  virtual int AnswerUntold(ClientOperation, const Forward&) { throw std::bad_alloc(); }
  // Ahead of all that a client does in a call, and behind it, whether it answers or throws.
  virtual void Enter() {}
  virtual void Leave() {}
};

// A call's time in the client.
class ClientTurn {
 public:
  explicit ClientTurn(CallBook& book) : book_(book) { book_.Enter(); }
  ~ClientTurn() { book_.Leave(); }
  ClientTurn(const ClientTurn&) = delete;
  ClientTurn& operator=(const ClientTurn&) = delete;

 private:
  CallBook& book_;
};

// Every operation with its arguments as they are.
class PlainRecordingClient : public RtfClientInterface {
 public:
  // The book outlives the client.
  explicit PlainRecordingClient(CallBook& book) : book_(book) {}

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments)               \
  Result Name Parameters override {                                                   \
    const auto call = [this](auto... arguments) {                                     \
      return Call(ClientOperation::k##Name, &RtfClientInterface::Name, arguments...); \
    };                                                                                \
    return static_cast<Result>(call Arguments);                                       \
  }
#include "rpccommon/client/rtfclientoperations.inc"

 protected:
  template <typename Result, typename... Parameters, typename... Arguments>
  int Call(ClientOperation name, Result (RtfClientInterface::*operation)(Parameters...),
           Arguments... arguments) {
    const ClientTurn turn(book_);
    const auto make = [&](RtfClientInterface& device) {
      if constexpr (std::is_void_v<Result>) {
        (device.*operation)(Plain(arguments)...);
        return 0;
      } else {
        return static_cast<int>((device.*operation)(Plain(arguments)...));
      }
    };
    CallSlip slip;
    try {
      slip = CallSlip(arguments...);
    } catch (const std::bad_alloc&) {
      return book_.AnswerUntold(name, Forward(make));
    }
    return book_.Answer(name, slip, Forward(make));
  }

 private:
  CallBook& book_;
};

// Those whose pointers are read too, or are read or filled as the call says.
class RecordingClient : public PlainRecordingClient {
 public:
  using PlainRecordingClient::PlainRecordingClient;

  int ZupEcrCmd(const char* command, int* length, char* answer) override {
    return Call(ClientOperation::kZupEcrCmd, &RtfClientInterface::ZupEcrCmd, command,
                BothWays(length), answer);
  }
  int GetData(int selector, int* number, char* text) override {
    return Call(ClientOperation::kGetData, &RtfClientInterface::GetData, selector, BothWays(number),
                text);
  }
  int ConfigDepartment(bool write, int32_t dep_id, char* description, int64_t* price,
                       int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                       bool* single_shoot, bool* allow_discount, bool* force_description) override {
    return Call(ClientOperation::kConfigDepartment, &RtfClientInterface::ConfigDepartment, write,
                dep_id, Field(write, description), Field(write, price), Field(write, max_price),
                Field(write, quantity), Field(write, vat_id), Field(write, group_id),
                Field(write, single_shoot), Field(write, allow_discount),
                Field(write, force_description));
  }
  int ConfigDepartmentEx(bool write, int32_t dep_id, char* description, int64_t* price,
                         int64_t* max_price, int32_t* quantity, int32_t* vat_id, uint8_t* group_id,
                         bool* single_shoot, bool* allow_discount, bool* force_description,
                         bool* is_service) override {
    return Call(ClientOperation::kConfigDepartmentEx, &RtfClientInterface::ConfigDepartmentEx,
                write, dep_id, Field(write, description), Field(write, price),
                Field(write, max_price), Field(write, quantity), Field(write, vat_id),
                Field(write, group_id), Field(write, single_shoot), Field(write, allow_discount),
                Field(write, force_description), Field(write, is_service));
  }
  int ConfigGroup(bool write, int index, char* description, char* operator_password,
                  int* operator_flags, int* operator_options) override {
    return Call(ClientOperation::kConfigGroup, &RtfClientInterface::ConfigGroup, write, index,
                Field(write, description), Field(write, operator_password),
                Field(write, operator_flags), Field(write, operator_options));
  }
  int ConfigKeyboard(bool write, uint8_t key_pos, uint8_t* key_code, int8_t* keyboard_type,
                     char* macro, uint16_t* macro_size) override {
    return Call(ClientOperation::kConfigKeyboard, &RtfClientInterface::ConfigKeyboard, write,
                key_pos, Field(write, key_code), Field(write, keyboard_type), Field(write, macro),
                Field(write, macro_size));
  }
  int ConfigSubtender(bool write, int32_t subtender_id, uint8_t* tender_type, char* description,
                      uint8_t* flags, uint32_t* preset_value, uint8_t* max_digits) override {
    return Call(ClientOperation::kConfigSubtender, &RtfClientInterface::ConfigSubtender, write,
                subtender_id, Field(write, tender_type), Field(write, description),
                Field(write, flags), Field(write, preset_value), Field(write, max_digits));
  }
  int DirectIO(int cmd, int* argument, char* data) override {
    return Call(ClientOperation::kDirectIO, &RtfClientInterface::DirectIO, cmd, BothWays(argument),
                BothWays(data));
  }
};

}  // namespace conversation
