// DeviceClient: a table of C functions as the device client of the library. Each operation of the
// one list goes to the entry of its name, with the room behind every text that it fills.
#pragma once

#include <cxxabi.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

#include "lorimatrt/lorimat.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/client/rtfclientbuffers.h"

namespace lorimat::c {

// What a parameter of the interface is in C.
template <typename Parameter>
struct InC {
  using Types = std::tuple<Parameter>;
};
template <>
struct InC<char*> {
  using Types = std::tuple<char*, size_t>;
};
template <>
struct InC<Event*> {
  using Types = std::tuple<void*>;
};

template <typename Result, typename Types>
struct EntryOf;
template <typename Result, typename... Types>
struct EntryOf<Result, std::tuple<Types...>> {
  using Type = Result (*)(void* user_data, Types...);
};
template <typename Result, typename... Parameters>
typename EntryOf<Result, decltype(std::tuple_cat(typename InC<Parameters>::Types()...))>::Type
    EntryFor(Result (RtfClientInterface::*)(Parameters...));

// The table has an entry for each operation, in their order and of its type.
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments)               \
  static_assert(                                                                      \
      std::is_same_v<decltype(lorimat_device::Name),                                  \
                     decltype(EntryFor(&RtfClientInterface::Name))> &&                \
          offsetof(lorimat_device, Name) ==                                           \
              offsetof(lorimat_device, GetClaimed) +                                  \
                  static_cast<size_t>(ClientOperation::k##Name) * sizeof(void (*)()), \
      "lorimat_device is not what the list of operations gives: run script/make-bindings");
#include "rpccommon/client/rtfclientoperations.inc"
static_assert(sizeof(lorimat_device) ==
              offsetof(lorimat_device, GetClaimed) + kClientOperationCount * sizeof(void (*)()));

class DeviceClient final : public RtfClientBase {
 public:
#ifdef NDEBUG
  static constexpr bool kGuardedAtFirst = false;
#else
  static constexpr bool kGuardedAtFirst = true;
#endif

  explicit DeviceClient(const lorimat_device& table) : table_(table) {}

  void Guard(bool on) { guarded_ = on; }
  // The last fault of an entry, and the operation; it is then forgotten.
  std::pair<lorimat_result, ClientOperation> TakeFault() {
    return {std::exchange(fault_, LORIMAT_OK), fault_operation_};
  }

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments)         \
  Result Name Parameters override {                                             \
    if (table_.Name == nullptr) return RtfClientBase::Name Arguments;           \
    const auto call = [&](auto... arguments) {                                  \
      return Call<ClientOperation::k##Name, Result>(table_.Name, arguments...); \
    };                                                                          \
    return call Arguments;                                                      \
  }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  static constexpr size_t kMostTexts = 2;  // of one operation
  static constexpr size_t kGuardSize = 64;
  static constexpr unsigned char kGuardByte = 0xA5;

  // A text that an entry fills, while the entry is at work.
  struct Room {
    char* text = nullptr;   // the caller's
    char* given = nullptr;  // what the entry gets: the caller's, or one with a guard behind it
    size_t size = 0;
    const unsigned char* guard = nullptr;
  };
  struct GuardedRoom {
    std::array<unsigned char, LargestClientBuffer() + kGuardSize> text;
  };

  // Nobody else gets in while an entry is at work.
  class Turn {
   public:
    explicit Turn(std::atomic_flag& working)
        : working_(working), mine_(!working.test_and_set(std::memory_order_acquire)) {}
    ~Turn() {
      if (mine_) working_.clear(std::memory_order_release);
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    bool mine() const { return mine_; }

   private:
    std::atomic_flag& working_;
    const bool mine_;
  };

  template <ClientOperation operation, typename Result, typename Entry, typename... Arguments>
  Result Call(Entry entry, Arguments... arguments) {
    const Turn turn(working_);
    if (!turn.mine()) {
      entered_.store(true, std::memory_order_relaxed);
      return Refused<Result>(RTF_E_BUSY);
    }
    entered_.store(false, std::memory_order_relaxed);
    std::array<Room, kMostTexts> rooms;
    size_t texts = 0;
    [[maybe_unused]] const auto pass = [&](auto argument) {
      if constexpr (std::is_same_v<decltype(argument), char*>) {
        const Room& room =
            Open(argument, ClientBufferSize<operation>(static_cast<int>(texts), arguments...),
                 &rooms, texts);
        ++texts;
        return std::tuple<char*, size_t>(room.given, room.size);
      } else if constexpr (std::is_same_v<decltype(argument), Event*>) {
        return std::tuple<void*>(argument);
      } else {
        return std::tuple<decltype(argument)>(argument);
      }
    };
    // Braces: the texts are counted from left to right.
    const std::tuple<std::tuple<void*>, decltype(pass(arguments))...> parts{table_.user_data,
                                                                            pass(arguments)...};
    const auto passed =
        std::apply([](const auto&... part) { return std::tuple_cat(part...); }, parts);
    lorimat_result fault = LORIMAT_OK;
    std::conditional_t<std::is_void_v<Result>, int, Result> result{};
    try {
      if constexpr (std::is_void_v<Result>) {
        std::apply(entry, passed);
      } else {
        result = std::apply(entry, passed);
      }
    } catch (abi::__forced_unwind&) {
      throw;  // the thread is being cancelled: that goes its way
    } catch (...) {
      fault = LORIMAT_CALLBACK_THREW;
    }
    if (!Close(rooms, fault == LORIMAT_OK)) fault = LORIMAT_BUFFER_OVERRUN;
    const bool answered = fault == LORIMAT_OK;
    // The operation that began meanwhile was refused; this one is answered as it is.
    if (answered && entered_.load(std::memory_order_relaxed)) fault = LORIMAT_CALLBACK_ENTERED;
    if (fault != LORIMAT_OK) {
      fault_ = fault;
      fault_operation_ = operation;
    }
    if constexpr (!std::is_void_v<Result>) {
      return answered ? result : Refused<Result>(RTF_E_FAILURE);
    }
  }

  // GetState and the questions answer as a device that is closed.
  template <typename Result>
  static Result Refused(int code) {
    if constexpr (std::is_same_v<Result, int>) return code;
    return Result();
  }

  const Room& Open(char* text, size_t size, std::array<Room, kMostTexts>* rooms, size_t number) {
    Room& room = (*rooms)[number];
    room = {text, text, text != nullptr ? size : 0, nullptr};
    // A room that only its caller knows may be larger than ours.
    if (!guarded_ || text == nullptr || size > LargestClientBuffer()) return room;
    unsigned char* own = guarded_rooms_[number].text.data();
    std::memcpy(own, text, room.size);
    std::memset(own + room.size, kGuardByte, kGuardSize);
    room.given = reinterpret_cast<char*>(own);
    room.guard = own + room.size;
    return room;
  }

  // Hands the texts over; false when an entry has written behind one: then none is.
  static bool Close(const std::array<Room, kMostTexts>& rooms, bool hand_over) {
    for (const Room& room : rooms) {
      if (room.guard == nullptr) continue;
      for (size_t i = 0; i < kGuardSize; ++i) {
        if (room.guard[i] != kGuardByte) return false;
      }
    }
    for (const Room& room : rooms) {
      if (hand_over && room.guard != nullptr) std::memcpy(room.text, room.given, room.size);
    }
    return true;
  }

  const lorimat_device table_;
  std::atomic_flag working_ = ATOMIC_FLAG_INIT;
  std::atomic<bool> entered_ = false;
  bool guarded_ = kGuardedAtFirst;
  lorimat_result fault_ = LORIMAT_OK;
  ClientOperation fault_operation_ = {};
  std::array<GuardedRoom, kMostTexts> guarded_rooms_;
};

}  // namespace lorimat::c
