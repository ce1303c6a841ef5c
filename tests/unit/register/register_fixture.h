// A register whose clock stands at 15 January 2024, 10:30, and short names for its calls.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "managermachine/pflitemtype.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

inline std::tm FixedTime() {
  std::tm time = {};
  time.tm_mday = 15;
  time.tm_mon = 0;
  time.tm_year = 124;
  time.tm_hour = 10;
  time.tm_min = 30;
  return time;
}

inline RegisterSettings TestSettings() {
  RegisterSettings settings;
  settings.clock = FixedTime;
  settings.articles = {{"8001", "LATTE", 4, 15000}, {"FREE", "SENZA PREZZO", 1, 0}};
  return settings;
}

class RegisterTest : public testing::Test {
 protected:
  // A department line at a price, in ten-thousandths.
  int Sell(int department, int64_t price, const char* description = "",
           int type = PflItemType::kPrintRecItem) {
    return device.PrintRecItemEx(type, description, price, 0, -1, 0, "", department, true, "");
  }
  int SellPieces(int department, int quantity, int64_t unit_price, const char* description = "",
                 int type = PflItemType::kPrintRecItem) {
    return device.PrintRecItemEx(type, description, 0, quantity, -1, unit_price, "", department,
                                 true, "");
  }
  int PayCash(int64_t amount) { return device.PrintRecTotalEx(amount, "0", false); }
  int PayRest(const char* tender = "0") { return device.PrintRecTotalEx(0, tender, true); }
  std::string Item(int number) {
    char text[50] = "unset";
    return device.GetDataInternal(number, text) == RTF_SUCCESS ? text : "refused";
  }
  std::string Data(int selector) {
    char text[50] = "unset";
    int number = 0;
    return device.GetData(selector, &number, text) == RTF_SUCCESS ? text : "refused";
  }
  int Property(int property) {
    int value = -999;
    EXPECT_EQ(device.GetIntProperty(property, &value), RTF_SUCCESS);
    return value;
  }
  // Everything that a refused call must not change.
  std::string Snapshot() {
    return device.paper_text() + "|" + std::to_string(device.printer_state()) + "|" + Item(371) +
           "|" + Data(RTF_FPTR_GD_CURRENT_TOTAL) + "|" + Data(RTF_FPTR_GD_DAILY_TOTAL) + "|" +
           Data(RTF_FPTR_GD_GRAND_TOTAL) + "|" + Data(RTF_FPTR_GD_FISCAL_REC) + "|" +
           Data(RTF_FPTR_GD_Z_REPORT) + "|" + Item(113) + "|" + Item(114) + "|" + Item(148) + "|" +
           Item(600) + "|" + std::to_string(device.receipt().paid()) + "|" +
           std::to_string(device.receipt().adjustments().size());
  }

  VirtualRegister device{TestSettings()};
};

}  // namespace lorimat
