// A register that faults are ordered for.
#pragma once

#include <string>
#include <string_view>

#include "register/fault/faults.h"
#include "unit/register/register_fixture.h"

namespace lorimat {

class FaultTest : public RegisterTest {
 protected:
  void Every(std::string_view name) {
    device.AddFault({.name = std::string(name), .when = FaultWhen::kEvery});
  }
  // A receipt with one line of 10,00 in it.
  void OpenReceipt() {
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  }
  int Reading() {
    char date[32];
    return device.GetDate(date);
  }
  int Key(uint8_t key, const char* digits = "") { return device.KeyCodeInput(digits, "", "", key); }
  int Department(bool write) {
    char text[64] = "NOME";
    int64_t price = 0;
    int64_t max_price = 0;
    int32_t quantity = 0;
    int32_t vat = 1;
    uint8_t group = 0;
    bool single = false;
    bool discount = true;
    bool forced = false;
    return device.ConfigDepartment(write, 1, text, &price, &max_price, &quantity, &vat, &group,
                                   &single, &discount, &forced);
  }
  int XReport(int outputs) {
    const std::string file = testing::TempDir() + "lorimat_fault_report.txt";
    return device.PrintXReportEx(1, false, "txt", file.c_str(), outputs);
  }
  size_t Waiting() { return device.faults().faults().size(); }
};

}  // namespace lorimat
