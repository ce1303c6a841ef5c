// The list of the client's operations beside the interface, and the client that supports nothing.
#include "rpccommon/client/rtfclientbase.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>
#include <type_traits>

#include "rpccommon/client/rtfclientoperation.h"
#include "support/scratch_arguments.h"

namespace {

// Cuts the next part off at a comma.
constexpr std::string_view TakePart(std::string_view* list) {
  const size_t comma = list->find(',');
  std::string_view part = list->substr(0, comma);
  *list = comma == list->npos ? std::string_view() : list->substr(comma + 1);
  while (part.starts_with(' ')) part.remove_prefix(1);
  while (part.ends_with(' ')) part.remove_suffix(1);
  return part;
}

// Whether "(a, b)" passes on what "(int a, const char* b)" takes, each in its place. That compiles
// in another order too where two have the same type.
constexpr bool PassesOn(std::string_view parameters, std::string_view arguments) {
  parameters = parameters.substr(1, parameters.size() - 2);
  arguments = arguments.substr(1, arguments.size() - 2);
  while (!parameters.empty() && !arguments.empty()) {
    const std::string_view parameter = TakePart(&parameters);
    const std::string_view argument = TakePart(&arguments);
    if (!parameter.ends_with(argument)) return false;
    const std::string_view type = parameter.substr(0, parameter.size() - argument.size());
    if (argument.empty() || !(type.ends_with(' ') || type.ends_with('*'))) return false;
  }
  return parameters.empty() && arguments.empty();
}
static_assert(PassesOn("()", "()") && PassesOn("(int a, const char *b)", "(a, b)"));
static_assert(!PassesOn("(int a, int b)", "(b, a)") && !PassesOn("(int a, int b)", "(a)"));
static_assert(!PassesOn("(int a)", "(a, b)") && !PassesOn("(int ab)", "(b)"));

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  static_assert(PassesOn(#Parameters, #Arguments), "the row of " #Name " mixes its arguments up");
#include "rpccommon/client/rtfclientoperations.inc"

// The place of an operation in the virtual table: a pointer to a virtual member holds its offset,
// with a bit beside it on some processors.
template <typename Operation>
size_t PlaceInTable(Operation operation) {
  size_t words[2];
  static_assert(sizeof words == sizeof operation);
  std::memcpy(words, &operation, sizeof words);
  return words[0] / sizeof(void*);
}

// Hosts are built apart from the library, and the two meet in the virtual table.
TEST(ClientOperationTest, TheListHasTheOrderOfTheVirtualTable) {
  size_t place = 2;  // behind the destructor, which takes two places
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  EXPECT_EQ(PlaceInTable(&RtfClientInterface::Name), place++) << #Name;
#include "rpccommon/client/rtfclientoperations.inc"
  EXPECT_EQ(place - 2, kClientOperationCount);
}

TEST(ClientOperationTest, NamesGoBothWays) {
  for (size_t i = 0; i < kClientOperationCount; ++i) {
    const auto operation = static_cast<ClientOperation>(i);
    EXPECT_EQ(FindClientOperation(ClientOperationName(operation)), operation) << i;
  }
  EXPECT_EQ(ClientOperationName(ClientOperation::kGetClaimed), "GetClaimed");
  EXPECT_EQ(ClientOperationName(ClientOperation::kset_wait_result_code), "set_wait_result_code");
  EXPECT_EQ(ClientOperationName(static_cast<ClientOperation>(kClientOperationCount)), "");
  EXPECT_EQ(ClientOperationName(static_cast<ClientOperation>(255)), "");
  for (const std::string_view name :
       {"", "beginFiscalReceipt", "BeginFiscalReceipt ", "BeginFiscalReceip"}) {
    EXPECT_FALSE(FindClientOperation(name)) << name;
  }
  EXPECT_FALSE(FindClientOperation(std::string_view("GetDate\0", 8)));
}

TEST(RtfClientBaseTest, SupportsNoOperationAndLeavesWhatItIsGiven) {
  RtfClientBase device;
  const auto expect_refusal = [&](std::string_view name, bool has_code, auto operation) {
    const ScratchAnswer answer = CallWithScratch(device, operation);
    EXPECT_TRUE(answer.untouched) << name;
    if (has_code) {
      EXPECT_EQ(answer.result, RTF_E_ILLEGAL) << name;
    }
  };
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments)                      \
  expect_refusal(#Name, std::is_same_v<Result, int>&& std::string_view(#Name) != "GetState", \
                 &RtfClientInterface::Name);
#include "rpccommon/client/rtfclientoperations.inc"
  EXPECT_FALSE(device.GetClaimed());
  EXPECT_FALSE(device.GetDeviceEnabled());
  EXPECT_EQ(device.GetState(), RTF_S_CLOSED);
}

class Drawer : public RtfClientBase {
 public:
  int OpenDrawer() override { return RTF_SUCCESS; }
};

TEST(RtfClientBaseTest, AClientAddsTheOperationsThatItHas) {
  Drawer drawer;
  RtfClientInterface& device = drawer;
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(device.ClearText(), RTF_E_ILLEGAL);
}

}  // namespace
