// Each operation of the interface through the C face beside the same call in C++: arguments by
// chance, results and what is filled by chance.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "bindings/c/forwarding_table.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/client/rtfclientbuffers.h"

namespace {

using Chance = std::mt19937_64;

// Bytes behind a caller's room that nothing may touch.
constexpr size_t kBehind = 32;
constexpr char kUntouched = 0x5A;

template <typename T>
T Any(Chance& chance) {
  T value;
  if constexpr (std::is_same_v<T, bool>) {
    value = chance() % 2 == 0;
  } else {
    const uint64_t bits = chance();
    static_assert(sizeof(T) <= sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
  }
  return value;
}

// What a caller holds for one parameter.
template <typename T>
struct Held {
  T value;
  Held(Chance& chance, size_t) : value(Any<T>(chance)) {}
  T Give() { return value; }
  std::string Seen() const { return {reinterpret_cast<const char*>(&value), sizeof value}; }
};
template <typename T>
struct Held<T*> {
  std::unique_ptr<T> value;
  Held(Chance& chance, size_t) : value(std::make_unique<T>(Any<T>(chance))) {}
  T* Give() { return value.get(); }
  std::string Seen() const { return {reinterpret_cast<const char*>(value.get()), sizeof(T)}; }
};
template <>
struct Held<const char*> {
  std::string value;
  bool null;
  Held(Chance& chance, size_t) : null(chance() % 8 == 0) {
    value.resize(static_cast<size_t>(chance() % 90));
    for (char& c : value) c = static_cast<char>(chance() % 255 + 1);
  }
  const char* Give() { return null ? nullptr : value.c_str(); }
  std::string Seen() const { return null ? "null" : "text " + value; }
};
template <>
struct Held<Event*> {
  uint64_t place;
  Held(Chance& chance, size_t) : place(chance()) {}
  Event* Give() { return reinterpret_cast<Event*>(&place); }
  std::string Seen() const { return {}; }
};
template <>
struct Held<char*> {
  std::vector<char> room;
  Held(Chance& chance, size_t size) : room(size) {
    for (char& c : room) c = static_cast<char>(chance());
    room.resize(size + kBehind, kUntouched);
  }
  char* Give() { return room.data(); }
  std::string Seen() const { return {room.data(), room.size()}; }
};

template <typename T>
bool IsWithin(const Held<T>& held) {
  if constexpr (std::is_same_v<T, char*>) {
    return std::string_view(held.room.data(), held.room.size())
        .ends_with(std::string(kBehind, kUntouched));
  }
  return true;
}

// A device that notes what it is called with, and answers by chance: it fills every byte of each
// room. Made with the same number twice, it answers the same.
class Device : public RtfClientBase {
 public:
  explicit Device(uint64_t seed) : chance_(seed) {}
  std::vector<std::string> notes;
  bool throws = false;
  bool behind_c = false;  // fills what it is told, not what the list has

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override {                                     \
    notes.push_back(#Name);                                             \
    const auto take = [this](auto... arguments) {                       \
      return Take<ClientOperation::k##Name, Result>(arguments...);      \
    };                                                                  \
    return take Arguments;                                              \
  }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  template <ClientOperation operation, typename Result, typename... Arguments>
  Result Take(Arguments... arguments) {
    item_ = -1;
    length_ = 0;
    texts_ = 0;
    (One<operation>(arguments), ...);
    if (throws) throw 1;
    if constexpr (!std::is_void_v<Result>) return Any<Result>(chance_);
  }

  template <ClientOperation operation, typename T>
  void One(T argument) {
    if constexpr (std::is_same_v<T, const char*>) {
      notes.push_back(argument == nullptr ? "null" : std::string("text ") + argument);
    } else if constexpr (std::is_same_v<T, char*>) {
      const ClientBuffer* row = FindClientBuffer(operation, texts_++, item_);
      if (row == nullptr) {
        ADD_FAILURE() << "no room is known for a text of " << ClientOperationName(operation);
        return;
      }
      const size_t room = row->size == kClientBufferByLength ? length_ : row->size;
      const size_t size = behind_c ? c_face::told_rooms.at(static_cast<size_t>(texts_ - 1)) : room;
      notes.emplace_back(argument, room);
      for (size_t i = 0; i < size; ++i) argument[i] = static_cast<char>(chance_());
    } else if constexpr (std::is_same_v<T, Event*>) {
      notes.push_back(std::to_string(reinterpret_cast<uintptr_t>(argument)));
    } else if constexpr (std::is_pointer_v<T>) {
      using Value = std::remove_pointer_t<T>;
      notes.emplace_back(reinterpret_cast<const char*>(argument), sizeof(Value));
      if constexpr (operation == ClientOperation::kZupEcrCmd) {
        length_ = static_cast<size_t>(*argument);
      } else {
        *argument = Any<Value>(chance_);
      }
    } else {
      if constexpr (std::is_same_v<T, int>) {
        if (item_ == -1) item_ = argument;
      }
      notes.emplace_back(reinterpret_cast<const char*>(&argument), sizeof argument);
    }
  }

  Chance chance_;
  int item_ = -1;
  int texts_ = 0;
  size_t length_ = 0;
};

class Face {
 public:
  Face(RtfClientInterface& device, bool guarded) {
    const lorimat_device table = c_face::TableOf(device);
    EXPECT_EQ(lorimat_client_new(&table, &client_), LORIMAT_OK);
    lorimat_client_guard(client_, guarded);
  }
  ~Face() { lorimat_client_free(client_); }
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;
  RtfClientInterface& operator*() {
    return *static_cast<RtfClientInterface*>(lorimat_client_interface(client_));
  }
  lorimat_client* get() { return client_; }

 private:
  lorimat_client* client_ = nullptr;
};

struct Outcome {
  std::string result;
  bool within = true;              // nothing was written behind a room
  std::vector<std::string> held;   // by the caller behind the call
  std::vector<std::string> noted;  // by the device
  bool operator==(const Outcome&) const = default;
};

// Room for the texts of an operation as its first number names the item.
template <ClientOperation operation, typename... Held>
void FitRooms(std::tuple<Held...>& held) {
  int item = -1;
  int text = 0;
  size_t length = 0;
  const auto fit = [&](auto& one) {
    using Type = std::decay_t<decltype(one)>;
    if constexpr (std::is_same_v<Type, ::Held<int>>) {
      if (item == -1) item = one.value;
    } else if constexpr (operation == ClientOperation::kZupEcrCmd &&
                         std::is_same_v<Type, ::Held<int*>>) {
      *one.value = static_cast<int>(static_cast<unsigned>(*one.value) % 600);
      length = static_cast<size_t>(*one.value);
    } else if constexpr (std::is_same_v<Type, ::Held<char*>>) {
      const ClientBuffer* row = FindClientBuffer(operation, text++, item);
      ASSERT_NE(row, nullptr) << ClientOperationName(operation);
      const size_t size = row->size == kClientBufferByLength ? length : row->size;
      one.room.resize(size);
      one.room.resize(size + kBehind, kUntouched);
    }
  };
  std::apply([&](auto&... one) { (fit(one), ...); }, held);
}

template <ClientOperation operation, typename Result, typename... Parameters>
Outcome Call(RtfClientInterface& device, Device& noting, uint64_t seed,
             Result (RtfClientInterface::*member)(Parameters...)) {
  Chance chance(seed);
  std::tuple<Held<Parameters>...> held{Held<Parameters>(chance, 600)...};
  if constexpr (operation == ClientOperation::kGetDataInternal) {
    std::get<0>(held).value %= 150;  // the rows of the list are among them
  }
  FitRooms<operation>(held);
  Outcome outcome;
  std::apply(
      [&](auto&... one) {
        if constexpr (std::is_void_v<Result>) {
          (device.*member)(one.Give()...);
        } else {
          outcome.result = std::to_string((device.*member)(one.Give()...));
        }
        outcome.held = {one.Seen()...};
        outcome.within = (IsWithin(one) && ...);
      },
      held);
  if constexpr (operation == ClientOperation::kset_wait_event) {
    // The address of the one that is held, which is another in each call.
    EXPECT_EQ(noting.notes.at(1),
              std::to_string(reinterpret_cast<uintptr_t>(std::get<0>(held).Give())));
    noting.notes.pop_back();
  }
  outcome.noted = noting.notes;
  return outcome;
}

constexpr uint64_t kRounds = 200;

template <ClientOperation operation, typename Member>
void PassesUnchanged(Member member, bool guarded) {
  for (uint64_t round = 0; round < kRounds; ++round) {
    const uint64_t seed = round * 977 + static_cast<uint64_t>(operation);
    Device direct(seed + 1);
    Device behind(seed + 1);
    behind.behind_c = true;
    Face face(behind, guarded);
    const Outcome expected = Call<operation>(direct, direct, seed, member);
    const Outcome seen = Call<operation>(*face, behind, seed, member);
    EXPECT_EQ(seen, expected) << ClientOperationName(operation) << ", round " << round;
    EXPECT_EQ(lorimat_client_take_fault(face.get(), nullptr), LORIMAT_OK);
    EXPECT_TRUE(seen.within && expected.within) << ClientOperationName(operation);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(CFaceOperations, ArgumentsAndResultsPassUnchanged) {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  PassesUnchanged<ClientOperation::k##Name>(&RtfClientInterface::Name, false);
#include "rpccommon/client/rtfclientoperations.inc"
}

TEST(CFaceOperations, TheyDoSoThroughGuardedRoomsToo) {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  PassesUnchanged<ClientOperation::k##Name>(&RtfClientInterface::Name, true);
#include "rpccommon/client/rtfclientoperations.inc"
}

template <ClientOperation operation, typename Member>
void AnExceptionIsAFailure(Member member) {
  Device behind(1);
  behind.throws = true;
  Face face(behind, false);
  const Outcome seen = Call<operation>(*face, behind, 1, member);
  if (seen.result != "") {
    const bool question = operation == ClientOperation::kGetClaimed ||
                          operation == ClientOperation::kGetDeviceEnabled;
    EXPECT_EQ(seen.result, question ? "0" : std::to_string(RTF_E_FAILURE))
        << ClientOperationName(operation);
  }
  const char* name = nullptr;
  EXPECT_EQ(lorimat_client_take_fault(face.get(), &name), LORIMAT_CALLBACK_THREW);
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(name, ClientOperationName(operation));
  EXPECT_EQ(lorimat_client_take_fault(face.get(), &name), LORIMAT_OK);
  EXPECT_EQ(name, nullptr);
}

TEST(CFaceOperations, AnExceptionIsAFailureOfTheDevice) {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  AnExceptionIsAFailure<ClientOperation::k##Name>(&RtfClientInterface::Name);
#include "rpccommon/client/rtfclientoperations.inc"
}

}  // namespace
