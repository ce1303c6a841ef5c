// Sales without tax: the nature of an entry, set by the shop, on paper and in the summary.
#include <fstream>
#include <iterator>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class Natures : public StoredRegisterTest {
 protected:
  int Set(int entry, const std::string& code) {
    ShopSetup setup;
    setup.vat_natures[entry] = code;
    return device->SetUp(setup, &refused);
  }
  int Sell(int department, int64_t price) {
    return device->PrintRecItemEx(PflItemType::kPrintRecItem, "CORSO", price, 0, -1, 0, "",
                                  department, true, "");
  }
  void Sale(int department) {
    ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(department, 100000), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  int LinesWith(const std::string& text) const {
    int count = 0;
    for (const std::string& line : device->paper_lines()) {
      if (line.find(text) != line.npos) ++count;
    }
    return count;
  }

  ShopRefusal refused;
};

TEST_F(Natures, EachHasItsMarkAndItsLegend) {
  const struct {
    const char* code;
    const char* line;
    const char* legend;
  } kRows[] = {{"N1", "CORSO                      EE*       10,00", "EE* = N1 escluso art. 15"},
               {"N2", "CORSO                      NS*       10,00", "NS* = N2 non soggetto"},
               {"N3", "CORSO                      NI*       10,00", "NI* = N3 non imponibile"},
               {"N4", "CORSO                      ES*       10,00", "ES* = N4 esente"},
               {"N5", "CORSO                      RM*       10,00", "RM* = N5 regime del margine"},
               {"N6", "CORSO                      AL*       10,00", "AL* = N6 operazione non IVA"}};
  for (const auto& row : kRows) {
    ASSERT_EQ(Set(5, row.code), RTF_SUCCESS) << row.code;
    Restart();
    Sale(5);
    ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
    EXPECT_EQ(LinesWith(row.line), 1) << row.code;
    EXPECT_EQ(LinesWith(row.legend), 1) << row.code;
    EXPECT_EQ(LinesWith(std::string("Totale ") + std::string(row.legend).substr(0, 3) + " "), 1);
    const std::string file = Path("summary.xml");
    const int closure = device->store().last_closure();
    ASSERT_EQ(device->SaveTelematicSummary(closure, closure, file.c_str()), RTF_SUCCESS);
    std::ifstream in(file);
    const std::string xml(std::istreambuf_iterator<char>(in), {});
    EXPECT_NE(xml.find(std::string("<Natura>") + row.code + "</Natura>"), xml.npos) << row.code;
  }
}

// Of two entries of one nature the paper tells once; of one that has no line it tells nothing.
TEST_F(Natures, ThePaperTellsOfThoseThatItHas) {
  ASSERT_EQ(Set(3, "N2"), RTF_SUCCESS);
  ASSERT_EQ(Set(4, "N4"), RTF_SUCCESS);
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(4, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 100000), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(LinesWith(" = "), 1);
  EXPECT_EQ(LinesWith("ES* = N4 esente"), 1);
}

// What goes back is of the nature that it was sold in.
TEST_F(Natures, AVoidTellsTheNatureOfTheSale) {
  Sale(5);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(Set(5, "N1"), RTF_SUCCESS);
  ASSERT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(LinesWith("ES* = N4 esente"), 2);
  EXPECT_EQ(LinesWith("EE*"), 0);
}

// Nor of what was taken back on the sale.
TEST_F(Natures, AVoidTellsNoNatureOfWhatDidNotStand) {
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 100000), RTF_SUCCESS);
  ASSERT_EQ(
      device->PrintRecItemEx(PflItemType::kPrintRecItemVoid, "", 100000, 0, -1, 0, "", 5, true, ""),
      RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(LinesWith("ES* = N4 esente"), 1);
  ASSERT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(LinesWith("ES* = N4 esente"), 1);
}

TEST_F(Natures, ANatureTakesTheRateAndARateTheNature) {
  ASSERT_EQ(Set(1, "N3"), RTF_SUCCESS);
  EXPECT_EQ(device->tables().FindVat(1)->rate, 0);
  ShopSetup setup;
  setup.vat_rates = {{1, 220000}, {5, 0}};
  setup.vat_natures = {{2, "N6"}};
  ASSERT_EQ(device->SetUp(setup, &refused), RTF_SUCCESS);
  EXPECT_EQ(device->tables().FindVat(1)->rate, 220000);
  EXPECT_EQ(device->tables().FindVat(1)->mark, "");
  EXPECT_EQ(device->tables().FindVat(2)->rate, 0);
  EXPECT_EQ(device->tables().FindVat(2)->mark, "AL*");
  EXPECT_EQ(device->tables().FindVat(5)->mark, "ES*");
}

TEST_F(Natures, WhatIsNoneOrComesWithAnOpenDayIsRefused) {
  for (const char* code : {"", "N", "N0", "N7", "n4", "ES*", "N4 "}) {
    EXPECT_EQ(Set(5, code), RTF_E_ILLEGAL) << code;
    EXPECT_EQ(refused.number, 5);
  }
  EXPECT_EQ(Set(6, "N4"), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Set(0, "N4"), RTF_EFPTR_BAD_VAT);
  Sale(5);
  EXPECT_EQ(Set(5, "N4"), RTF_SUCCESS);  // as it is
  EXPECT_EQ(Set(5, "N2"), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(Set(1, "N2"), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(device->tables().FindVat(5)->mark, "ES*");
}

// The chain of the journal has it, and finds one that was changed by other means.
TEST_F(Natures, TheJournalKnowsOfIt) {
  ASSERT_EQ(Set(5, "N2"), RTF_SUCCESS);
  Sale(5);
  device.reset();
  EXPECT_TRUE(FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal(nullptr)).empty());
  Sql("shop.register", "UPDATE vat_rate SET mark = 'ES*' WHERE number = 5");
  EXPECT_FALSE(FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal(nullptr)).empty());
}

}  // namespace
}  // namespace lorimat
