#include "door/job/client_device.h"

#include <gtest/gtest.h>

#include "door_shop.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::door {
namespace {

// The register by its client interface alone.
class PlainDevice : public ClientDevice {
 public:
  explicit PlainDevice(RtfClientInterface& client) : client_(client) {}
  RtfClientInterface& client() override { return client_; }

 private:
  RtfClientInterface& client_;
};

// What passes is asked again; what the device has not it will not have another day.
TEST(ClientDevice, AJournalThatIsNotToldNowMayBeToldLater) {
  struct Row {
    int result;
    Told told;
  };
  constexpr Row kRows[] = {
      {RTF_E_ILLEGAL, Told::kNo},
      {RTF_E_NOEXIST, Told::kNo},
      {RTF_E_EXISTS, Told::kNo},
      {RTF_EFPTR_COVER_OPEN, Told::kNoAnswer},
      {RTF_EFPTR_REC_EMPTY, Told::kNoAnswer},
      {RTF_E_TIMEOUT, Told::kNoAnswer},
      {RTF_E_OFFLINE, Told::kNoAnswer},
  };
  DoorShop shop;
  shop.Sell("k");
  shop.Drain();
  PlainDevice device(shop.device->device());
  LastDocument last;
  for (const Row& row : kRows) {
    shop.device->device().AddFault(
        {.name = "code", .code = row.result, .operation = ClientOperation::kFiscalReportMessageEx});
    EXPECT_EQ(device.FindLast({1, 1, false}, &last), row.told) << row.result;
  }
  EXPECT_EQ(device.FindLast({1, 1, false}, &last), Told::kYes);
  EXPECT_FALSE(last.paper.empty());
}

}  // namespace
}  // namespace lorimat::door
