// Programming of departments, groups and operators, subtenders, VAT, header lines and logos:
// what is written is read back, what a register cannot hold is refused and changes nothing, and
// later sales go by it.
#include <cstring>
#include <fstream>
#include <limits>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

struct DepartmentCall {
  int32_t number = 1;
  std::string description = "PANE";
  int64_t price = 0;
  int64_t max_price = 0;
  int32_t quantity = 0;
  int32_t vat = 1;
  uint8_t group = 0;
  bool single_shoot = false;
  bool allow_discount = true;
  bool force_description = false;
  bool is_service = false;
};

class TablesTest : public RegisterTest {
 protected:
  static int Write(VirtualRegister& device, DepartmentCall call, bool extended = true) {
    char description[200] = "";
    call.description.copy(description, sizeof description - 1);
    if (!extended) {
      return device.ConfigDepartment(true, call.number, description, &call.price, &call.max_price,
                                     &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                     &call.allow_discount, &call.force_description);
    }
    return device.ConfigDepartmentEx(true, call.number, description, &call.price, &call.max_price,
                                     &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                     &call.allow_discount, &call.force_description,
                                     &call.is_service);
  }
  int Write(const DepartmentCall& call) { return Write(device, call); }

  // The record as one text; "refused N" when the register refuses to read it.
  static std::string Department(VirtualRegister& device, int32_t number, bool extended = true) {
    DepartmentCall call;
    call.price = call.max_price = call.quantity = call.vat = -7;
    char description[128];
    std::memset(description, '#', sizeof description);
    const int code =
        extended
            ? device.ConfigDepartmentEx(false, number, description, &call.price, &call.max_price,
                                        &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                        &call.allow_discount, &call.force_description,
                                        &call.is_service)
            : device.ConfigDepartment(false, number, description, &call.price, &call.max_price,
                                      &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                      &call.allow_discount, &call.force_description);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    std::string text = description;
    for (const int64_t value :
         {call.price, call.max_price, static_cast<int64_t>(call.quantity),
          static_cast<int64_t>(call.vat), static_cast<int64_t>(call.group),
          static_cast<int64_t>(call.single_shoot), static_cast<int64_t>(call.allow_discount),
          static_cast<int64_t>(call.force_description), static_cast<int64_t>(call.is_service)}) {
      text += "," + std::to_string(value);
    }
    return text;
  }
  std::string Department(int32_t number) { return Department(device, number); }

  int WriteGroup(int index, const std::string& description, const std::string& password, int flags,
                 int options) {
    char text[200] = "", word[200] = "";
    description.copy(text, sizeof text - 1);
    password.copy(word, sizeof word - 1);
    return device.ConfigGroup(true, index, text, word, &flags, &options);
  }
  std::string Group(int index) {
    char text[129], word[65];
    int flags = -7, options = -7;
    const int code = device.ConfigGroup(false, index, text, word, &flags, &options);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    return std::string(text) + "," + word + "," + std::to_string(flags) + "," +
           std::to_string(options);
  }

  int WriteSubtender(int number, uint8_t type, const std::string& description, uint8_t flags,
                     uint32_t preset, uint8_t digits) {
    char text[200] = "";
    description.copy(text, sizeof text - 1);
    return device.ConfigSubtender(true, number, &type, text, &flags, &preset, &digits);
  }
  std::string Subtender(int number) {
    uint8_t type = 99, flags = 99, digits = 99;
    uint32_t preset = 99;
    char text[64];
    const int code = device.ConfigSubtender(false, number, &type, text, &flags, &preset, &digits);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    return std::to_string(type) + "," + text + "," + std::to_string(flags) + "," +
           std::to_string(preset) + "," + std::to_string(digits);
  }

  int Rate(int entry) {
    int rate = -7;
    const int code = device.GetVatEntry(entry, 0, &rate);
    return code == RTF_SUCCESS ? rate : -code;
  }
  std::string Header(int line) {
    char text[65];
    return device.GetHeaderLine(line, text) == RTF_SUCCESS ? text : "refused";
  }
  bool PaperHas(const std::string& text) {
    return device.paper_text().find(text) != std::string::npos;
  }
  bool Key(uint8_t key, const char* digits = "") {
    std::string codes;
    for (; *digits != '\0'; ++digits) {
      codes += *digits == '0' ? static_cast<char>(F::kNumber0) : static_cast<char>(*digits - '0');
    }
    EXPECT_EQ(device.KeyCodeInput(codes.c_str(), "", "", key), RTF_SUCCESS);
    return Item(368) == "0";
  }
};

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
  EXPECT_EQ(WriteSubtender(1, 0, "", 2, 0, 0), RTF_E_ILLEGAL);
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

// The operations that write, each on a register in some state.
struct WriteCall {
  const char* name;
  int (*call)(VirtualRegister&);
};

const WriteCall kWrites[] = {
    {"ConfigDepartment",
     [](VirtualRegister& r) {
       char text[128] = "X";
       int64_t price = 0, limit = 0;
       int32_t quantity = 0, vat = 1;
       uint8_t group = 0;
       bool shot = false, discount = true, force = false;
       return r.ConfigDepartment(true, 1, text, &price, &limit, &quantity, &vat, &group, &shot,
                                 &discount, &force);
     }},
    {"ConfigDepartmentEx",
     [](VirtualRegister& r) {
       char text[128] = "X";
       int64_t price = 0, limit = 0;
       int32_t quantity = 0, vat = 1;
       uint8_t group = 0;
       bool shot = false, discount = true, force = false, service = true;
       return r.ConfigDepartmentEx(true, 1, text, &price, &limit, &quantity, &vat, &group, &shot,
                                   &discount, &force, &service);
     }},
    {"ConfigGroup",
     [](VirtualRegister& r) {
       char text[129] = "X", word[65] = "";
       int flags = 0, options = 0;
       return r.ConfigGroup(true, 1, text, word, &flags, &options);
     }},
    {"ConfigSubtender",
     [](VirtualRegister& r) {
       char text[64] = "X";
       uint8_t type = 1, flags = 0, digits = 0;
       uint32_t preset = 0;
       return r.ConfigSubtender(true, 1, &type, text, &flags, &preset, &digits);
     }},
    {"ConfigKeyboard",
     [](VirtualRegister& r) {
       char macro[40] = "";
       uint8_t code = FunctionCode::kMenu;
       int8_t keyboard = 0;
       uint16_t size = 0;
       return r.ConfigKeyboard(true, 60, &code, &keyboard, macro, &size);
     }},
    {"SetVatValue", [](VirtualRegister& r) { return r.SetVatValue(1, "210000"); }},
    {"SetVatTable", [](VirtualRegister& r) { return r.SetVatTable(); }},
    {"SetHeaderLine", [](VirtualRegister& r) { return r.SetHeaderLine(1, "X", true); }},
    {"EraseLogoArchive", [](VirtualRegister& r) { return r.EraseLogoArchive(); }},
    {"option", [](VirtualRegister& r) { return r.SetDataInternal(317, "1"); }},
    {"invoice number",
     [](VirtualRegister& r) { return r.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 9); }},
    {"invoice series",
     [](VirtualRegister& r) { return r.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "B"); }},
    {"UploadTable", [](VirtualRegister& r) { return r.UploadTable(1, 0, ""); }},
    {"EraseTable", [](VirtualRegister& r) { return r.EraseTable(1); }},
    {"ProgramGRC",
     [](VirtualRegister& r) {
       const int code = r.ProgramGRC(1, "", false);
       return code == RTF_E_NOEXIST ? RTF_SUCCESS : code;  // past the test of the state
     }},
};

// Everything that can be programmed, as one text.
std::string Programmed(VirtualRegister& device) {
  const RegisterSettings& settings = device.tables().settings();
  std::string all;
  for (const Department& row : settings.departments) all += row.name + ";";
  for (int index = 1; index <= 20; ++index) all += device.tables().FindGroup(index)->description;
  for (int number = 1; number <= 20; ++number) {
    all += device.tables().FindSubtender(number)->description + ";";
  }
  for (const VatRate& rate : settings.vat_rates) all += std::to_string(rate.rate) + ";";
  for (const std::string& line : settings.header_lines) all += line + ";";
  for (const Article& article : settings.articles) all += article.code + ";";
  char text[128] = "";
  device.GetStringProperty(RTF_PIDXFptr_InvoiceSeries, text);
  all += text;
  device.GetDataInternal(317, text);
  all += text;
  return all + std::to_string(device.store().next_invoice());
}

TEST_F(TablesTest, NothingIsProgrammedWhileADocumentIsOpen) {
  const std::string before = Programmed(device);
  device.BeginFiscalReceipt(true);
  for (const WriteCall& write : kWrites) {
    EXPECT_EQ(write.call(device), RTF_EFPTR_WRONG_STATE) << write.name;
  }
  device.ResetPrn();
  device.BeginNonFiscal();
  for (const WriteCall& write : kWrites) {
    EXPECT_EQ(write.call(device), RTF_EFPTR_WRONG_STATE) << write.name;
  }
  device.ResetPrn();
  EXPECT_EQ(device.SetVatTable(), RTF_SUCCESS);
  EXPECT_EQ(Programmed(device), before);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);  // the rates want a closed day
  for (const WriteCall& write : kWrites) EXPECT_EQ(write.call(device), RTF_SUCCESS) << write.name;
  EXPECT_NE(Programmed(device), before);
}

TEST_F(TablesTest, AnOpenDocumentCanBeReadFrom) {
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(Department(1), "REPARTO 1,0,0,0,1,0,0,1,0,0");
  EXPECT_EQ(Group(1), "GRUPPO 1,,0,0");
  EXPECT_EQ(Subtender(1), "1,,0,0,0");
  EXPECT_EQ(Rate(1), 220000);
  EXPECT_EQ(Header(1), "NEGOZIO DI PROVA");
}

TEST_F(TablesTest, ARegisterMayWantTheKeyInTheProgrammingPosition) {
  RegisterSettings settings = TestSettings();
  settings.programming_needs_key = true;
  VirtualRegister locked(settings);
  for (const WriteCall& write : kWrites) {
    EXPECT_EQ(write.call(locked), RTF_EFPTR_WRONG_STATE) << write.name;
  }
  ASSERT_EQ(locked.KeyCodeInput("\x04", "", "", F::kKey), RTF_SUCCESS);
  for (const WriteCall& write : kWrites) EXPECT_EQ(write.call(locked), RTF_SUCCESS) << write.name;
  // And nothing is sold there.
  EXPECT_EQ(locked.BeginFiscalReceipt(true), RTF_EFPTR_WRONG_STATE);
  ASSERT_EQ(locked.KeyCodeInput("\x01", "", "", F::kKey), RTF_SUCCESS);
  EXPECT_EQ(locked.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(TablesTest, OptionsAreDataItemsWithRanges) {
  EXPECT_EQ(Item(204), "100");
  for (const int flag : {317, 318, 367, 395, 396, 415, 418, 419, 459}) {
    EXPECT_EQ(Item(flag), "0") << flag;
    EXPECT_EQ(device.SetDataInternal(flag, "1"), RTF_SUCCESS) << flag;
    for (const char* value : {"", "2", "01", "-1", "VERO", " 1"}) {
      EXPECT_EQ(device.SetDataInternal(flag, value), RTF_E_ILLEGAL) << flag;
    }
    EXPECT_EQ(Item(flag), "1") << flag;
  }
  for (const int number : {150, 151, 399, 400, 402}) {
    EXPECT_EQ(Item(number), "0") << number;
    EXPECT_EQ(device.SetDataInternal(number, "000012"), RTF_SUCCESS) << number;
    EXPECT_EQ(Item(number), "12") << number;
    EXPECT_EQ(device.SetDataInternal(number, "999999999"), RTF_SUCCESS) << number;
    for (const char* value : {"", "1000000000", "-1", "1,5", "1.5", "x"}) {
      EXPECT_EQ(device.SetDataInternal(number, value), RTF_E_ILLEGAL) << number << value;
    }
    EXPECT_EQ(device.SetDataInternal(number, nullptr), RTF_E_ILLEGAL) << number;
    EXPECT_EQ(Item(number), "999999999") << number;
  }
  for (const int text : {60, 401}) {
    EXPECT_EQ(Item(text), "") << text;
    EXPECT_EQ(device.SetDataInternal(text, "L'ora\r\n, \"ecco\""), RTF_SUCCESS) << text;
    EXPECT_EQ(Item(text), "L'ora  , \"ecco\"") << text;
    EXPECT_EQ(device.SetDataInternal(text, std::string(50, 'x').c_str()), RTF_EFPTR_BAD_LENGTH);
    EXPECT_EQ(device.SetDataInternal(text, std::string(49, 'x').c_str()), RTF_SUCCESS) << text;
    EXPECT_EQ(Item(text), std::string(49, 'x')) << text;
  }
  for (const char* level : {"80", "120", "100"}) {
    EXPECT_EQ(device.SetDataInternal(204, level), RTF_SUCCESS);
    EXPECT_EQ(Item(204), level);
  }
  for (const char* level : {"", "1", "90", "140", "0100"}) {
    EXPECT_EQ(device.SetDataInternal(204, level), RTF_E_ILLEGAL);
  }
}

TEST_F(TablesTest, TheDrawerOptionBeginsAsTheRegisterWasMade) {
  RegisterSettings settings = TestSettings();
  settings.open_drawer_at_end = true;
  VirtualRegister other(settings);
  char text[50];
  EXPECT_EQ(other.GetDataInternal(459, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "1");
  EXPECT_EQ(other.SetDataInternal(459, "0"), RTF_SUCCESS);
  EXPECT_EQ(other.GetDataInternal(459, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "0");
}

TEST_F(TablesTest, NullPointersAreIllegal) {
  char text[130] = "";
  int64_t wide = 0;
  int32_t number = 1;
  uint8_t byte = 0;
  uint32_t preset = 0;
  bool flag = false;
  EXPECT_EQ(device.ConfigDepartment(false, 1, nullptr, &wide, &wide, &number, &number, &byte, &flag,
                                    &flag, &flag),
            RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigDepartment(true, 1, text, &wide, &wide, &number, nullptr, &byte, &flag,
                                    &flag, &flag),
            RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigDepartmentEx(true, 1, text, &wide, &wide, &number, &number, &byte, &flag,
                                      &flag, &flag, nullptr),
            RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigGroup(false, 1, text, nullptr, &number, &number), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigSubtender(false, 1, &byte, text, &byte, nullptr, &byte), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigSubtender(true, 1, nullptr, text, &byte, &preset, &byte), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetVatEntry(1, 0, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetHeaderLine(1, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetHeaderLine(1, nullptr, true), RTF_SUCCESS);
  EXPECT_EQ(Header(1), "");
  EXPECT_EQ(Department(1), "REPARTO 1,0,0,0,1,0,0,1,0,0");
}

// A buffer that a host did not end is read to its size and no further.
TEST_F(TablesTest, TextsWithoutAnEndAreRefused) {
  std::vector<char> text(128, 'x');
  std::vector<char> longer(129, 'x');
  std::vector<char> word(65, 'x');
  std::vector<char> description(64, 'x');
  int64_t wide = 0;
  int32_t number = 1;
  uint8_t byte = 0;
  uint32_t preset = 0;
  bool flag = true;
  EXPECT_EQ(device.ConfigDepartmentEx(true, 1, text.data(), &wide, &wide, &number, &number, &byte,
                                      &flag, &flag, &flag, &flag),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.ConfigGroup(true, 1, longer.data(), word.data(), &number, &number),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.ConfigSubtender(true, 1, &byte, description.data(), &byte, &preset, &byte),
            RTF_EFPTR_BAD_LENGTH);
}

}  // namespace
}  // namespace lorimat
