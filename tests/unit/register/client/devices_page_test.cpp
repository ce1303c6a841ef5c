// What docs/devices.md says that a device refuses, beside what the register refuses.
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "console/conform/refusal_calls.h"
#include "unit/register/client/state_calls.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using Cells = std::vector<std::string>;

// The rows of the table below a heading, without its own heading: the cells of each.
std::vector<Cells> TableBelow(const std::string& heading) {
  std::ifstream page(std::string(LORIMAT_SOURCE_DIR) + "/docs/devices.md");
  std::vector<Cells> rows;
  std::string line;
  while (std::getline(page, line) && line != heading) {
  }
  while (std::getline(page, line) && line.substr(0, 1) != "|") {
  }
  for (; line.substr(0, 1) == "|"; std::getline(page, line)) {
    Cells cells;
    std::istringstream parts(line.substr(1));
    for (std::string cell; std::getline(parts, cell, '|');) {
      const size_t first = cell.find_first_not_of(' ');
      const size_t last = cell.find_last_not_of(' ');
      cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
    }
    rows.push_back(cells);
  }
  if (rows.size() > 2) rows.erase(rows.begin(), rows.begin() + 2);
  return rows;
}

std::vector<std::string> QuotedNames(const std::string& cell) {
  static const std::regex quoted("`([^`]+)`");
  std::vector<std::string> names;
  for (std::sregex_iterator name(cell.begin(), cell.end(), quoted), end; name != end; ++name) {
    names.push_back((*name)[1]);
  }
  return names;
}

// Each operation of the page in each state is allowed or refused as by the register, whose calls
// states_test.cpp tries.
TEST(DevicesPage, HasTheStatesOfEachOperation) {
  std::map<std::string, Cells> page;
  for (const Cells& row : TableBelow("## States")) {
    ASSERT_EQ(row.size(), 1u + kStates) << row[0];
    for (const std::string& name : QuotedNames(row[0])) {
      EXPECT_TRUE(page.emplace(name, row).second) << name << " stands twice";
    }
  }
  std::set<std::string> used;
  for (const StateCall& call : StateCalls()) {
    auto row = page.find(std::string(call.name));
    if (row == page.end()) row = page.find(std::string(call.name.substr(0, call.name.find(' '))));
    ASSERT_NE(row, page.end()) << call.name;
    used.insert(row->first);
    for (int state = 0; state < kStates; ++state) {
      EXPECT_EQ(row->second[static_cast<size_t>(1 + state)], call.allowed[state] ? "yes" : "-")
          << call.name << " in state " << kPrinterStates[state];
    }
  }
  for (const auto& [name, row] : page) EXPECT_TRUE(used.contains(name)) << name;
}

class DevicesPageTest : public RegisterTest {
 protected:
  using Way = int (DevicesPageTest::*)();

  // One way to each refusal of the page: what the operation answers that is refused.
  static const std::map<std::string, Way>& Ways() {
    static const std::map<std::string, Way> ways = {
        {"RTF_E_ILLEGAL", &DevicesPageTest::NotModelled},
        {"RTF_E_NOEXIST", &DevicesPageTest::UnknownTender},
        {"RTF_E_EXISTS", &DevicesPageTest::VoidOfAVoid},
        {"RTF_E_BUSY", &DevicesPageTest::OperationInAnOperation},
        {"RTF_EFPTR_COVER_OPEN", &DevicesPageTest::CoverOpen},
        {"RTF_EFPTR_REC_EMPTY", &DevicesPageTest::PaperEnd},
        {"RTF_EFPTR_WRONG_STATE", &DevicesPageTest::LineWithoutReceipt},
        {"RTF_EFPTR_CLOCK_ERROR", &DevicesPageTest::ClockBehindTheLastDocument},
        {"RTF_EFPTR_FISCAL_MEMORY_FULL", &DevicesPageTest::MemoryFull},
        {"RTF_EFPTR_FISCAL_TOTALS_ERROR", &DevicesPageTest::AnotherSubtotal},
        {"RTF_EFPTR_BAD_ITEM_QUANTITY", &DevicesPageTest::NegativeQuantity},
        {"RTF_EFPTR_BAD_ITEM_AMOUNT", &DevicesPageTest::VoidOfNoLine},
        {"RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW", &DevicesPageTest::TotalTooLarge},
        {"RTF_EFPTR_BAD_VAT", &DevicesPageTest::UnknownDepartment},
        {"RTF_EFPTR_BAD_PRICE", &DevicesPageTest::NoPrice},
        {"RTF_EFPTR_BAD_DATE", &DevicesPageTest::NoSuchDate},
        {"RTF_EFPTR_NEGATIVE_TOTAL", &DevicesPageTest::TotalBelowZero},
        {"RTF_EFPTR_BAD_LENGTH", &DevicesPageTest::HeaderTooLong},
        {"RTF_EFPTR_DAY_END_REQUIRED", &DevicesPageTest::RatesOnAnOpenDay},
        {"RTF_EFPTR_NEGATIVE_VAT", &DevicesPageTest::VatBelowZero},
    };
    return ways;
  }

  int Fault(const char* name) {
    device.AddFault({.name = name});
    return device.BeginFiscalReceipt(true);
  }
  void SellAndPay() {
    EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    EXPECT_EQ(Sell(1, 100000), RTF_SUCCESS);
    EXPECT_EQ(PayRest(), RTF_SUCCESS);
  }
  void Open() {
    EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    EXPECT_EQ(Sell(1, 100000), RTF_SUCCESS);
  }

  int NotModelled() { return device.PrintFiscalDocumentLine(""); }
  int UnknownTender() {
    Open();
    return PayRest("BONUS");
  }
  int VoidOfAVoid() {
    SellAndPay();
    EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
    return device.BeginDocTelematicCancel(1, 1, "", true, "");
  }
  int OperationInAnOperation() {
    int answer = RTF_SUCCESS;
    VirtualRegister* busy = nullptr;
    RegisterSettings settings = TestSettings();
    settings.clock = [&] {
      if (busy != nullptr) answer = busy->OpenDrawer();
      return FixedTime();
    };
    VirtualRegister other(settings);
    busy = &other;
    EXPECT_EQ(other.BeginFiscalReceipt(true), RTF_SUCCESS);
    return answer;
  }
  int CoverOpen() { return Fault("cover-open"); }
  int PaperEnd() { return Fault("paper-end"); }
  int MemoryFull() { return Fault("fiscal-memory-full"); }
  int LineWithoutReceipt() { return Sell(1, 100000); }
  int ClockBehindTheLastDocument() {
    std::tm now = FixedTime();
    RegisterSettings settings = TestSettings();
    settings.clock = [&] { return now; };
    VirtualRegister other(settings);
    EXPECT_EQ(other.BeginFiscalReceipt(true), RTF_SUCCESS);
    EXPECT_EQ(other.PrintRecItemEx(0, "", 100000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    EXPECT_EQ(other.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
    now.tm_hour -= 2;
    return other.BeginFiscalReceipt(true);
  }
  int AnotherSubtotal() {
    Open();
    return device.PrintRecSubtotalEx(99900, true);
  }
  int NegativeQuantity() {
    Open();
    return SellPieces(1, -1000, 10000);
  }
  int VoidOfNoLine() {
    Open();
    return Sell(2, 5000, "", PflItemType::kPrintRecItemVoid);
  }
  int TotalTooLarge() {
    Open();
    return Sell(1, 99'999'999'900);
  }
  int UnknownDepartment() {
    Open();
    return Sell(99, 10000);
  }
  int NoPrice() {
    Open();
    return Sell(1, -1);
  }
  int NoSuchDate() { return device.BeginDocTelematicRefund(1, 1, "31022024", ""); }
  int TotalBelowZero() {
    Open();
    return Sell(1, 100100, "", PflItemType::kPrintRecItemRefund);
  }
  int HeaderTooLong() { return device.SetHeaderLine(1, std::string(51, 'X').c_str(), true); }
  int RatesOnAnOpenDay() {
    SellAndPay();
    EXPECT_EQ(device.SetVatValue(1, "210000"), RTF_SUCCESS);
    return device.SetVatTable();
  }
  int VatBelowZero() {
    Open();
    return Sell(2, 50000, "", PflItemType::kPrintRecItemRefund);
  }
};

// Code, number and meaning: | `RTF_E_ILLEGAL` | 106 | ... |
class DevicesPageRefusals : public DevicesPageTest, public testing::WithParamInterface<Cells> {};

TEST_P(DevicesPageRefusals, IsWhatTheRegisterAnswers) {
  const std::vector<std::string> names = QuotedNames(GetParam().at(0));
  ASSERT_EQ(names.size(), 1u);
  const auto way = Ways().find(names[0]);
  ASSERT_NE(way, Ways().end()) << names[0];
  EXPECT_EQ(std::to_string((this->*way->second)()), GetParam().at(1)) << names[0];
}

INSTANTIATE_TEST_SUITE_P(Page, DevicesPageRefusals, testing::ValuesIn(TableBelow("## Refusals")));

TEST_F(DevicesPageTest, NamesEachRefusalThatIsTried) {
  EXPECT_EQ(TableBelow("## Refusals").size(), Ways().size());
}

// The last column has those that "lorimat conform" tries, with the code that it expects.
TEST(DevicesPage, TellsWhichRefusalsDevicesAreTriedBy) {
  std::map<std::string, std::string> page;
  for (const Cells& row : TableBelow("## Refusals")) {
    ASSERT_EQ(row.size(), 4u) << row[0];
    ASSERT_TRUE(row[3] == "yes" || row[3] == "-") << row[0];
    if (row[3] == "yes") page.emplace(QuotedNames(row[0]).at(0), row[1]);
  }
  // Each state refuses what it does not allow.
  std::map<std::string, std::string> tried = {
      {"RTF_EFPTR_WRONG_STATE", std::to_string(RTF_EFPTR_WRONG_STATE)}};
  for (const console::RefusalCall& call : console::RefusalCalls()) {
    tried.emplace(call.name, std::to_string(call.code));
  }
  EXPECT_EQ(page, tried);
}

}  // namespace
}  // namespace lorimat
