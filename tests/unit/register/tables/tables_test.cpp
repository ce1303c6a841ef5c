// Programming of departments, groups and operators, subtenders, VAT, header lines and logos:
// what is written is read back, what a register cannot hold is refused and changes nothing, and
// later sales go by it.
#include <cstring>
#include <fstream>
#include <limits>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/tables_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

TEST_F(TablesTest, ADepartmentIsReadBackAsItWasWritten) {
  EXPECT_EQ(Department(3), "REPARTO 3,0,0,0,3,0,0,1,0,0");
  EXPECT_EQ(Write({3, "L'ORO", 123400, 500000, 2000, 2, 10, true, false, true, true}), RTF_SUCCESS);
  EXPECT_EQ(Department(3), "L'ORO,123400,500000,2000,2,10,1,0,1,1");
  EXPECT_EQ(Department(2), "REPARTO 2,0,0,0,2,0,0,1,0,0");
  EXPECT_EQ(Department(4), "REPARTO 4,0,0,0,4,0,0,1,0,0");
  // Prices are whole cents, control characters are none.
  EXPECT_EQ(Write({3, "A\tB\r\nC\x7f\x1b|2C\xe8", 123449, 1234550}), RTF_SUCCESS);
  EXPECT_EQ(Department(3), "A B  C \x1b|2C\xe8,123400,1234600,0,1,0,0,1,0,0");
}

TEST_F(TablesTest, DepartmentsThatARegisterCannotHoldAreRefused) {
  const int32_t max = std::numeric_limits<int32_t>::max();
  const int64_t top = Tables::kMaxPresetPrice;
  struct {
    DepartmentCall call;
    int code;
  } const rows[] = {
      {{0}, RTF_E_ILLEGAL},
      {{-1}, RTF_E_ILLEGAL},
      {{41}, RTF_E_ILLEGAL},
      {{max}, RTF_E_ILLEGAL},
      {{std::numeric_limits<int32_t>::min()}, RTF_E_ILLEGAL},
      {{1, std::string(33, 'D')}, RTF_EFPTR_BAD_LENGTH},
      {{1, std::string(199, 'D')}, RTF_EFPTR_BAD_LENGTH},
      {{1, "", -1}, RTF_EFPTR_BAD_PRICE},
      {{1, "", top + 1}, RTF_EFPTR_BAD_PRICE},
      {{1, "", INT64_MAX}, RTF_EFPTR_BAD_PRICE},
      {{1, "", 0, INT64_MIN}, RTF_EFPTR_BAD_PRICE},
      {{1, "", 0, top + 1}, RTF_EFPTR_BAD_PRICE},
      {{1, "", 20000, 10000}, RTF_EFPTR_BAD_PRICE},  // preset above the limit
      {{1, "", 0, 0, -1}, RTF_EFPTR_BAD_ITEM_QUANTITY},
      {{1, "", 0, 0, 0, 0}, RTF_EFPTR_BAD_VAT},
      {{1, "", 0, 0, 0, 6}, RTF_EFPTR_BAD_VAT},
      {{1, "", 0, 0, 0, max}, RTF_EFPTR_BAD_VAT},
      {{1, "", 0, 0, 0, 1, 11}, RTF_E_ILLEGAL},
      {{1, "", 0, 0, 0, 1, 255}, RTF_E_ILLEGAL},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.call.number << " " << row.call.price << " "
                                    << row.call.max_price << " " << row.call.vat);
    EXPECT_EQ(Write(row.call), row.code);
    EXPECT_EQ(Write(device, row.call, false), row.code);
    EXPECT_EQ(Department(1), "REPARTO 1,0,0,0,1,0,0,1,0,0");
  }
  for (const int32_t number : {0, -1, 41, max}) EXPECT_EQ(Department(number), "refused 106");
  EXPECT_EQ(Write({1, std::string(32, 'D'), top, top, max, 5, 10}), RTF_SUCCESS);
  EXPECT_EQ(Department(1), std::string(32, 'D') + ",999999900,999999900,2147483647,5,10,0,1,0,0");
}

TEST_F(TablesTest, ADeviceWithoutTheExtendedRecordRefusesItAlone) {
  RegisterSettings settings = TestSettings();
  settings.extended_departments = false;
  VirtualRegister plain(settings);
  EXPECT_EQ(Department(plain, 1), "refused 106");
  EXPECT_EQ(Write(plain, {1, "EXT"}), RTF_E_ILLEGAL);
  EXPECT_EQ(Department(plain, 1, false), "REPARTO 1,0,0,0,1,0,0,1,0,0");
  EXPECT_EQ(Write(plain, {1, "PLAIN"}, false), RTF_SUCCESS);
  EXPECT_EQ(Department(plain, 1, false), "PLAIN,0,0,0,1,0,0,1,0,0");
}

TEST_F(TablesTest, APlainWriteLeavesTheServiceFlag) {
  ASSERT_EQ(Write({1, "TAGLIO", 0, 0, 0, 1, 0, false, true, false, true}), RTF_SUCCESS);
  ASSERT_EQ(Write(device, {1, "PIEGA"}, false), RTF_SUCCESS);
  EXPECT_EQ(Department(1), "PIEGA,0,0,0,1,0,0,1,0,1");
}

TEST_F(TablesTest, GroupsAndOperatorsShareATable) {
  EXPECT_EQ(Group(1), "GRUPPO 1,,0,0");
  EXPECT_EQ(Group(10), "GRUPPO 10,,0,0");
  EXPECT_EQ(Group(11), "OPERATORE 1,,0,0");
  EXPECT_EQ(Group(20), "OPERATORE 10,,0,0");
  EXPECT_EQ(WriteGroup(13, "ANNA 'A'", "1234", -5, 77), RTF_SUCCESS);
  EXPECT_EQ(Group(13), "ANNA 'A',1234,-5,77");
  EXPECT_EQ(Group(3), "GRUPPO 3,,0,0");
  EXPECT_EQ(WriteGroup(1, std::string(32, 'g'), std::string(16, 'p'), INT32_MAX, INT32_MIN),
            RTF_SUCCESS);
  EXPECT_EQ(Group(1),
            std::string(32, 'g') + "," + std::string(16, 'p') + ",2147483647,-2147483648");
  EXPECT_EQ(WriteGroup(1, std::string(33, 'x'), "", 0, 0), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(WriteGroup(1, "", std::string(17, 'x'), 0, 0), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(WriteGroup(1, std::string(199, 'x'), std::string(199, 'x'), 0, 0),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(Group(1).substr(0, 3), "ggg");
  for (const int index : {0, -1, 21, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Group(index), "refused 106");
    EXPECT_EQ(WriteGroup(index, "X", "", 0, 0), RTF_E_ILLEGAL);
  }
}

TEST_F(TablesTest, ARegisterWithoutGroupsBeginsItsTableWithTheOperators) {
  RegisterSettings settings = TestSettings();
  settings.groups = -3;
  settings.operators = 1000;
  VirtualRegister other(settings);
  char text[129], word[65], count[50];
  int flags = 0, options = 0;
  EXPECT_EQ(other.ConfigGroup(false, 1, text, word, &flags, &options), RTF_SUCCESS);
  EXPECT_STREQ(text, "OPERATORE 1");
  EXPECT_EQ(other.ConfigGroup(false, 99, text, word, &flags, &options), RTF_SUCCESS);
  EXPECT_EQ(other.ConfigGroup(false, 100, text, word, &flags, &options), RTF_E_ILLEGAL);
  other.GetDataInternal(108, count);
  EXPECT_STREQ(count, "0");
  other.GetDataInternal(110, count);
  EXPECT_STREQ(count, "99");
}

TEST_F(TablesTest, SubtendersAreReadBackAndKeepTheirLimits) {
  EXPECT_EQ(Subtender(1), "1,,0,0,0");
  EXPECT_EQ(WriteSubtender(20, 2, "BUONI 'PASTO'", 1, 999999999, 255), RTF_SUCCESS);
  EXPECT_EQ(Subtender(20), "2,BUONI 'PASTO',1,999999999,255");
  EXPECT_EQ(WriteSubtender(1, 0, std::string(15, 's'), 0, 0, 0), RTF_SUCCESS);
  EXPECT_EQ(WriteSubtender(1, 0, std::string(16, 's'), 0, 0, 0), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(WriteSubtender(1, 4, "", 0, 0, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(WriteSubtender(1, 255, "", 0, 0, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(WriteSubtender(1, 0, "", 4, 0, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(WriteSubtender(1, 0, "", 0, 1000000000, 0), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(Subtender(1), "0," + std::string(15, 's') + ",0,0,0");
  for (const int number : {0, -1, 21, INT32_MAX}) {
    EXPECT_EQ(Subtender(number), "refused 106");
    EXPECT_EQ(WriteSubtender(number, 0, "", 0, 0, 0), RTF_E_ILLEGAL);
  }
}

TEST_F(TablesTest, ASubtenderPaysAsItWasProgrammed) {
  ASSERT_EQ(WriteSubtender(1, 2, "BUONO PASTO", 0, 0, 0), RTF_SUCCESS);
  ASSERT_EQ(WriteSubtender(2, 0, "DOLLARI", 1, 500, 3), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(1, 100000);
  // No change on a ticket; cash that gives change does.
  EXPECT_EQ(device.PrintRecTotalEx(110000, "10", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(40000, "10", false), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecTotalEx(70000, "11", false), RTF_SUCCESS);
  EXPECT_TRUE(PaperHas("BUONO PASTO                           4,00"));
  EXPECT_TRUE(PaperHas("DOLLARI                               7,00"));
  EXPECT_TRUE(PaperHas("Resto                                 1,00"));

  // By key: the preset value of 5,00, and at most three digits.
  device.BeginFiscalReceipt(true);
  Sell(1, 100000);
  EXPECT_FALSE(Key(F::kSubTender02, "1000"));
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_BAD_LENGTH));
  EXPECT_TRUE(Key(F::kSubTender02));
  EXPECT_EQ(device.receipt().paid(), 50000);
  EXPECT_TRUE(Key(F::kSubTender02, "5"));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);

  // An empty description gives the tender its own name back.
  ASSERT_EQ(WriteSubtender(2, 1, "", 0, 0, 0), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(1, 100000);
  EXPECT_EQ(PayRest("11"), RTF_SUCCESS);
  EXPECT_TRUE(PaperHas("Pagamento elettronico 02             10,00"));
}

TEST_F(TablesTest, VatRatesHoldWhenTheTableIsCommitted) {
  EXPECT_EQ(Rate(1), 220000);
  EXPECT_EQ(Rate(5), 0);
  EXPECT_EQ(device.SetVatValue(2, "83000"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatValue(5, "10000"), RTF_SUCCESS);
  EXPECT_EQ(Rate(2), 100000);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);
  EXPECT_EQ(Rate(2), 83000);
  EXPECT_EQ(Rate(5), 10000);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);  // nothing noted
  EXPECT_EQ(Rate(2), 83000);
  for (const int entry : {0, -1, 9, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(device.SetVatValue(entry, "10000"), RTF_EFPTR_BAD_VAT);
    EXPECT_EQ(Rate(entry), -RTF_EFPTR_BAD_VAT);
  }
  for (const int entry : {6, 7, 8}) {  // not in the table, but read by every host
    EXPECT_EQ(device.SetVatValue(entry, "10000"), RTF_EFPTR_BAD_VAT);
    EXPECT_EQ(Rate(entry), 0);
  }
  for (const char* rate :
       {"", "x", "-1", "1000000", "999901", "41250.5", "10050", "99999999999999999999", " 10000"}) {
    EXPECT_EQ(device.SetVatValue(1, rate), RTF_E_ILLEGAL) << rate;
  }
  EXPECT_EQ(device.SetVatValue(1, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);
  EXPECT_EQ(Rate(1), 220000);
  EXPECT_EQ(device.SetVatValue(1, "999900"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);
  EXPECT_EQ(Rate(1), 999900);
}

TEST_F(TablesTest, ARateChangesOnlyBetweenTheDays) {
  device.BeginFiscalReceipt(true);
  Sell(1, 122000);
  PayRest();
  ASSERT_EQ(Item(57), "1");
  EXPECT_EQ(device.SetVatValue(1, "220000"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);  // the same rate
  EXPECT_EQ(device.SetVatValue(2, "50000"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatValue(1, "100000"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatTable(), RTF_EFPTR_DAY_END_REQUIRED);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);  // what was refused is forgotten
  EXPECT_EQ(Rate(1), 220000);
  EXPECT_EQ(Rate(2), 100000);
  EXPECT_EQ(device.SetVatValue(1, "100000"), RTF_SUCCESS);
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);
  EXPECT_EQ(Rate(1), 100000);
}

TEST_F(TablesTest, SalesGoByTheNewRates) {
  device.SetVatValue(1, "0");
  device.SetVatValue(5, "100000");
  ASSERT_EQ(device.SetVatTable(), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(1, 50000, "ESENTE");
  Sell(5, 110000, "DIECI");
  PayRest();
  EXPECT_TRUE(PaperHas("ESENTE                     ES*        5,00"));
  EXPECT_TRUE(PaperHas("DIECI                      10%       11,00"));
  EXPECT_TRUE(PaperHas("di cui IVA                            1,00"));  // 11,00 * 10 / 110
}

TEST_F(TablesTest, SalesGoByTheNewDepartment) {
  ASSERT_EQ(Write({1, "VINO", 45000, 100000, 0, 2}), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(Sell(1, -1), RTF_SUCCESS);
  EXPECT_TRUE(PaperHas("VINO                       10%        4,50"));
  EXPECT_EQ(Sell(1, 100000), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 100100), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(device.receipt().by_vat(), (std::map<int, Amount>{{2, 145000}}));
}

TEST_F(TablesTest, ADepartmentWithoutDiscountsTakesNone) {
  ASSERT_EQ(Write({1, "LIBRI", 0, 0, 0, 1, 0, false, false}), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(2, 100000);
  Sell(1, 100000);
  EXPECT_EQ(device.PrintRecItemAdjustmentEx(1, "", 10000, -1, -2), RTF_E_ILLEGAL);
  EXPECT_EQ(device.PrintRecItemAdjustmentEx(3, "", 100000, -1, 1), RTF_E_ILLEGAL);
  EXPECT_EQ(device.receipt().total(), 200000);
  EXPECT_EQ(device.PrintRecItemAdjustmentEx(1, "", 10000, -1, 2), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecItemAdjustmentEx(2, "", 10000, -1, -2), RTF_SUCCESS);  // a surcharge
  EXPECT_EQ(device.PrintRecSubtotalAdjustment(1, "", 10000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 190000);
}

TEST_F(TablesTest, ADepartmentMayWantADescription) {
  ASSERT_EQ(Write({1, "VARIE", 0, 0, 0, 1, 0, false, true, true}), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(Sell(1, 10000), RTF_EFPTR_BAD_ITEM_DESCRIPTION);
  EXPECT_EQ(Sell(1, 10000, "PENNA"), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
}

TEST_F(TablesTest, ASingleShotLineByKeyIsAWholeReceipt) {
  ASSERT_EQ(Write({1, "CAFFE", 11000, 0, 0, 1, 0, true}), RTF_SUCCESS);
  EXPECT_TRUE(Key(F::kDepartment01));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  ASSERT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.store().documents()[0].by_tender, (std::map<std::string, Amount>{{"0", 11000}}));
  // In a receipt that is open already it is a line like any other.
  EXPECT_TRUE(Key(F::kDepartment02, "5"));
  EXPECT_TRUE(Key(F::kDepartment01));
  EXPECT_EQ(device.receipt().total(), 61000);
}

TEST_F(TablesTest, HeaderLinesStandOnTheNextPaper) {
  EXPECT_EQ(Header(1), "NEGOZIO DI PROVA");
  EXPECT_EQ(Header(3), "P.IVA 01234567897");
  EXPECT_EQ(Header(4), "");
  EXPECT_EQ(Header(6), "");
  EXPECT_EQ(device.SetHeaderLine(1, "DA 'GINO'", true), RTF_SUCCESS);
  EXPECT_EQ(device.SetHeaderLine(2, "", true), RTF_SUCCESS);
  EXPECT_EQ(device.SetHeaderLine(6, std::string(50, 'h').c_str(), true), RTF_SUCCESS);
  EXPECT_EQ(Header(1), "DA 'GINO'");
  EXPECT_EQ(Header(2), "");
  EXPECT_EQ(Header(6), std::string(50, 'h'));
  device.BeginFiscalReceipt(true);
  const std::vector<std::string>& paper = device.paper_lines();
  ASSERT_GE(paper.size(), 4u);
  EXPECT_EQ(paper[0], std::string(16, ' ') + "DA 'GINO'");
  EXPECT_EQ(paper[1], std::string(12, ' ') + "P.IVA 01234567897");
  EXPECT_EQ(paper[2], std::string(42, 'h'));
  EXPECT_EQ(paper[3], std::string(17, ' ') + std::string(8, 'h'));
  device.ResetPrn();
  EXPECT_EQ(device.SetHeaderLine(1, std::string(51, 'h').c_str(), true), RTF_EFPTR_BAD_LENGTH);
  for (const int line : {0, -1, 7, INT32_MAX}) {
    EXPECT_EQ(device.SetHeaderLine(line, "X", true), RTF_E_ILLEGAL);
    EXPECT_EQ(Header(line), "refused");
  }
  EXPECT_EQ(Header(1), "DA 'GINO'");
}

TEST_F(TablesTest, LogosWantAFileThatIsThere) {
  const std::string file = testing::TempDir() + "logo.bmp";
  { std::ofstream(file) << "BM"; }
  EXPECT_EQ(device.ProgramGRC(1, file.c_str(), false), RTF_SUCCESS);
  EXPECT_EQ(device.ProgramGRC(64, file.c_str(), false), RTF_SUCCESS);
  ASSERT_NE(device.tables().FindLogo(64), nullptr);
  EXPECT_EQ(*device.tables().FindLogo(64), file);
  EXPECT_EQ(device.ProgramGRC(0, file.c_str(), false), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ProgramGRC(65, file.c_str(), false), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ProgramGRC(255, file.c_str(), false), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ProgramGRC(2, (file + ".none").c_str(), false), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramGRC(2, testing::TempDir().c_str(), false), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramGRC(2, "", false), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramGRC(2, nullptr, false), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramGRC(2, std::string(81, 'f').c_str(), false), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.tables().FindLogo(2), nullptr);
  EXPECT_EQ(device.EraseLogoArchive(), RTF_SUCCESS);
  EXPECT_EQ(device.tables().FindLogo(1), nullptr);
  EXPECT_EQ(device.tables().FindLogo(64), nullptr);
}

}  // namespace
}  // namespace lorimat
