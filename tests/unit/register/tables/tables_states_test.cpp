// When the tables of a register can be written: between the documents, with the key where it has to
// be, and by calls that hold all that they need.
#include <cstring>
#include <fstream>
#include <limits>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/tables_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

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
