// Clients of C functions: the tables they are made of, entries that are not there, and functions
// that do what they must not.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

#include "bindings/c/forwarding_table.h"
#include "bindings/c/host_struct.h"
#include "lorimatrt/lorimat.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/client/rtfclientbuffers.h"
#include "unit/support/scratch_arguments.h"

// A table as a later library may have it: a member more than the first contract.
struct LaterTable {
  size_t size;
  uint32_t abi;
  int64_t first;
  int64_t added;
};

namespace lorimat::c {
template <>
constexpr size_t FirstSize<LaterTable>() {
  return offsetof(LaterTable, added);
}
}  // namespace lorimat::c

namespace {

using lorimat::c::FaultOf;
using lorimat::c::FirstSize;
using lorimat::c::GiveBack;
using lorimat::c::Taken;

lorimat_device EmptyTable() {
  lorimat_device table = {};
  table.size = sizeof table;
  table.abi = LORIMAT_ABI;
  return table;
}

class Client {
 public:
  explicit Client(const lorimat_device& table) {
    EXPECT_EQ(lorimat_client_new(&table, &client_), LORIMAT_OK);
  }
  ~Client() { lorimat_client_free(client_); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  RtfClientInterface* operator->() {
    return static_cast<RtfClientInterface*>(lorimat_client_interface(client_));
  }
  lorimat_client* get() { return client_; }

 private:
  lorimat_client* client_ = nullptr;
};

void ExpectRefused(const lorimat_device* table, int result) {
  lorimat_client* client = reinterpret_cast<lorimat_client*>(&client);
  EXPECT_EQ(lorimat_client_new(table, &client), result);
  EXPECT_EQ(client, nullptr);
  EXPECT_STREQ(lorimat_error(), lorimat_result_text(result));
}

TEST(CFaceClient, ATableHasToBeOfThisContract) {
  lorimat_device table = EmptyTable();
  ExpectRefused(nullptr, LORIMAT_NULL_ARGUMENT);
  EXPECT_EQ(lorimat_client_new(&table, nullptr), LORIMAT_NULL_ARGUMENT);
  table.abi = LORIMAT_ABI + 1;
  ExpectRefused(&table, LORIMAT_OTHER_ABI);
  table.abi = 0;
  ExpectRefused(&table, LORIMAT_OTHER_ABI);
  EXPECT_EQ(lorimat_abi(), uint32_t{LORIMAT_ABI});
}

TEST(CFaceClient, ATableThatIsTooShortIsRefusedWhateverItsSize) {
  lorimat_device table = EmptyTable();
  for (table.size = 0; table.size < sizeof table; ++table.size) {
    ExpectRefused(&table, LORIMAT_TABLE_TOO_SHORT);
  }
}

TEST(CFaceClient, OfATableThatIsTooShortNothingBehindItsSizeIsRead) {
  // On the heap, where the sanitizer sees a byte too many.
  for (const size_t size : {sizeof(size_t), offsetof(lorimat_device, user_data)}) {
    auto* table = static_cast<lorimat_device*>(malloc(size));
    ASSERT_NE(table, nullptr);
    std::memset(static_cast<void*>(table), 0, size);
    std::memcpy(static_cast<void*>(table), &size, sizeof size);
    lorimat_client* client = nullptr;
    EXPECT_NE(lorimat_client_new(table, &client), LORIMAT_OK);
    free(table);
  }
}

TEST(CFaceClient, ALongerTableIsTakenWithoutWhatIsBehind) {
  struct {
    lorimat_device table;
    void* more[3];
  } later = {EmptyTable(), {}};
  later.table.size = sizeof later;
  Client client(later.table);
  EXPECT_EQ(client->OpenDrawer(), RTF_E_ILLEGAL);
}

TEST(CFaceClient, ALaterLibraryTakesATableOfTheFirstContract) {
  LaterTable later = {sizeof(LaterTable), LORIMAT_ABI, 1, 2};
  EXPECT_EQ(FaultOf(&later), LORIMAT_OK);
  EXPECT_EQ(Taken(later).added, 2);
  // On the heap, where the sanitizer sees a byte too many.
  constexpr size_t kFirst = FirstSize<LaterTable>();
  const std::unique_ptr<unsigned char[]> bytes(new unsigned char[kFirst]);
  later.size = kFirst;
  std::memcpy(bytes.get(), &later, kFirst);
  auto* first = reinterpret_cast<LaterTable*>(bytes.get());
  ASSERT_EQ(FaultOf(first), LORIMAT_OK);
  LaterTable own = Taken(*first);
  EXPECT_EQ(own.first, 1);
  EXPECT_EQ(own.added, 0);
  own.first = 3;
  own.added = 4;
  GiveBack(own, first);
  EXPECT_EQ(Taken(*first).first, 3);
  EXPECT_EQ(Taken(*first).added, 0);
  first->size = kFirst - 1;
  EXPECT_EQ(FaultOf(first), LORIMAT_TABLE_TOO_SHORT);
}

TEST(CFaceClient, AnEntryThatIsNullAnswersNotSupported) {
  Client client(EmptyTable());
  RtfClientBase base;
  const auto expect_same = [&](auto operation, const char* name) {
    const ScratchAnswer expected = CallWithScratch(base, operation);
    const ScratchAnswer seen = CallWithScratch(*client.operator->(), operation);
    EXPECT_EQ(seen.result, expected.result) << name;
    EXPECT_TRUE(seen.untouched) << name;
  };
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  expect_same(&RtfClientInterface::Name, #Name);
#include "rpccommon/client/rtfclientoperations.inc"
  EXPECT_EQ(client->GetState(), RTF_S_CLOSED);
}

TEST(CFaceClient, NullIsNoClient) {
  EXPECT_EQ(lorimat_client_interface(nullptr), nullptr);
  lorimat_client_free(nullptr);
  lorimat_client_guard(nullptr, true);
  const char* name = "";
  EXPECT_EQ(lorimat_client_take_fault(nullptr, &name), LORIMAT_NULL_ARGUMENT);
  EXPECT_EQ(name, nullptr);
}

TEST(CFaceClient, TheTableIsCopied) {
  lorimat_device table = EmptyTable();
  table.OpenDrawer = [](void*) { return 0; };
  Client client(table);
  table.OpenDrawer = nullptr;
  EXPECT_EQ(client->OpenDrawer(), 0);
}

TEST(CFaceClient, AGuardSeesWhatIsWrittenBehindARoom) {
  lorimat_device table = EmptyTable();
  static size_t beyond;
  table.GetDataInternal = [](void*, int, char* text, size_t text_room) {
    std::memset(text, 'x', text_room + beyond);
    return 0;
  };
  Client client(table);
  lorimat_client_guard(client.get(), true);
  for (beyond = 0; beyond <= 64; ++beyond) {
    char text[50] = "as before";
    const char* name = nullptr;
    const int answer = client->GetDataInternal(1, text);
    EXPECT_EQ(answer, beyond == 0 ? 0 : RTF_E_FAILURE) << beyond;
    EXPECT_EQ(std::string_view(text, 9), beyond == 0 ? "xxxxxxxxx" : "as before");
    EXPECT_EQ(lorimat_client_take_fault(client.get(), &name),
              beyond == 0 ? LORIMAT_OK : LORIMAT_BUFFER_OVERRUN);
    if (beyond > 0) {
      EXPECT_STREQ(name, "GetDataInternal");
    }
  }
}

TEST(CFaceClient, AnOperationThatBeginsMeanwhileIsRefused) {
  static RtfClientInterface* device;
  static int calls;
  lorimat_device table = EmptyTable();
  table.OpenDrawer = [](void*) {
    ++calls;
    EXPECT_EQ(device->ClearText(), RTF_E_BUSY);
    EXPECT_FALSE(device->GetClaimed());
    device->LogTrace("a line of the trace");
    return 7;
  };
  table.ClearText = [](void*) { return ++calls; };
  table.GetClaimed = [](void*) { return ++calls > 0; };
  table.LogTrace = [](void*, const char*) { ++calls; };
  Client client(table);
  device = client.operator->();
  calls = 0;
  EXPECT_EQ(client->OpenDrawer(), 7);
  EXPECT_EQ(calls, 1);
  const char* name = nullptr;
  EXPECT_EQ(lorimat_client_take_fault(client.get(), &name), LORIMAT_CALLBACK_ENTERED);
  EXPECT_STREQ(name, "OpenDrawer");
  EXPECT_EQ(client->ClearText(), 2);
  EXPECT_EQ(lorimat_client_take_fault(client.get(), &name), LORIMAT_OK);
}

// A client of the interface's own contract has no larger room, and the translator's are 512 at
// least but for DirectIO's.
TEST(CFaceClient, NoRoomIsLargerThanTheCallersIs) {
  for (const ClientBuffer& row : kClientBuffers) {
    const bool direct = row.operation == ClientOperation::kDirectIO;
    EXPECT_LE(row.size, direct ? 513u : 512u) << ClientOperationName(row.operation);
  }
  EXPECT_EQ(FindClientBuffer(ClientOperation::kGetDataInternal, 0, 371)->size, 50u);
  EXPECT_EQ(FindClientBuffer(ClientOperation::kGetDataInternal, 0, 106)->size, 129u);
  EXPECT_EQ(FindClientBuffer(ClientOperation::kConfigGroup, 1, 3)->size, 65u);
  EXPECT_EQ(FindClientBuffer(ClientOperation::kOpenDrawer, 0, 0), nullptr);
}

TEST(CFaceClient, EveryResultHasAText) {
  for (const int result :
       {LORIMAT_OK, LORIMAT_NULL_ARGUMENT, LORIMAT_TABLE_TOO_SHORT, LORIMAT_OTHER_ABI,
        LORIMAT_NO_MEMORY, LORIMAT_BAD_VALUE, LORIMAT_REGISTER_FAULT, LORIMAT_FAILURE,
        LORIMAT_CALLBACK_THREW, LORIMAT_BUFFER_OVERRUN, LORIMAT_CALLBACK_ENTERED}) {
    EXPECT_STRNE(lorimat_result_text(result), lorimat_result_text(-1)) << result;
  }
}

}  // namespace
