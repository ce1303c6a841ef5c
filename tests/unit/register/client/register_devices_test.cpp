// What a register has beside documents: barcodes, codes, displays, data items, properties, direct
// commands and the translator's trace.
#include <fstream>
#include <limits>
#include <sstream>

#include "register/client/virtual_register.h"
#include "register/desk/data_items.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class RegisterDevicesTest : public RegisterTest {
 protected:
  void SetUp() override { ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS); }
};

TEST_F(RegisterDevicesTest, BarcodesWantContentOfTheirKind) {
  struct {
    const char* type;
    const char* data;
    int code;
  } const rows[] = {
      {"00", "03600029145", RTF_SUCCESS},   // check digit left to the printer
      {"00", "036000291452", RTF_SUCCESS},  // 3*(0+6+0+2+1+5) + 0+3... = 58, digit 2
      {"00", "036000291453", RTF_E_ILLEGAL},
      {"00", "1234567890", RTF_EFPTR_BAD_LENGTH},
      {"01", "123456", RTF_SUCCESS},
      {"02", "800123456789", RTF_SUCCESS},
      {"02", "8001234567897", RTF_SUCCESS},
      {"02", "8001234567890", RTF_E_ILLEGAL},
      {"02", "80012345678A", RTF_E_ILLEGAL},
      {"03", "1234567", RTF_SUCCESS},
      {"03", "12345670", RTF_SUCCESS},  // 3*(1+3+5+7) + 2+4+6 = 60
      {"04", "ABC-123", RTF_SUCCESS},
      {"04", "abc", RTF_E_ILLEGAL},
      {"05", "1234", RTF_SUCCESS},
      {"05", "123", RTF_EFPTR_BAD_LENGTH},
      {"06", "A123B", RTF_SUCCESS},
      {"06", "A123E", RTF_E_ILLEGAL},
      {"07", "Any text", RTF_SUCCESS},
      {"08", "\x01", RTF_E_ILLEGAL},
      {"08", "", RTF_EFPTR_BAD_LENGTH},
      {"09", "PDF", RTF_SUCCESS},
      {"10", "https://example.org", RTF_SUCCESS},
      {"11", "\xff\x01", RTF_SUCCESS},
      {"12", "1", RTF_E_ILLEGAL},
      {"", "1", RTF_E_ILLEGAL},
      {"2", "800123456789", RTF_E_ILLEGAL},
  };
  for (const auto& row : rows) {
    const std::string before = Snapshot();
    EXPECT_EQ(device.PrintBarcode(row.type, "1", "3", "2", row.data, 1), row.code)
        << row.type << " " << row.data;
    if (row.code != RTF_SUCCESS) {
      EXPECT_EQ(Snapshot(), before);
    }
  }
  EXPECT_EQ(device.PrintBitmap(255, 1), RTF_SUCCESS);
  EXPECT_EQ(device.PrintBitmap(256, 1), RTF_E_ILLEGAL);
  EXPECT_EQ(device.PrintBitmap(-1, 1), RTF_E_ILLEGAL);
}

TEST_F(RegisterDevicesTest, BarcodeTextStandsWhereItIsAskedFor) {
  const size_t start = device.paper_lines().size();
  device.PrintBarcode("08", "1", "1", "0", "ABC", 1);
  device.PrintBarcode("08", "1", "1", "1", "ABC", 1);
  device.PrintBarcode("08", "1", "2", "2", "ABC", 1);
  const std::vector<std::string> lines(device.paper_lines().begin() + static_cast<long>(start),
                                       device.paper_lines().end());
  EXPECT_EQ(lines, (std::vector<std::string>{"[CODE128 ABC]", "ABC", "[CODE128 ABC]",
                                             std::string(29, ' ') + "[CODE128 ABC]",
                                             std::string(39, ' ') + "ABC"}));
}

TEST_F(RegisterDevicesTest, ABarcodeCutsBehindItWhereACutIsPossible) {
  device.PrintBarcode("08", "1", "3", "0", "ABC", 2);
  EXPECT_EQ(device.paper_lines().back(), "              [CODE128 ABC]");
  device.ResetPrn();
  device.BeginNonFiscal();
  device.PrintBarcode("08", "1", "3", "0", "ABC", 2);
  EXPECT_EQ(device.paper_lines().back(), std::string(42, '-'));
}

TEST_F(RegisterDevicesTest, TaxOrLotteryCodeStandsOnTheReceipt) {
  Sell(1, 10000);
  EXPECT_EQ(device.PrintRecTaxID("123"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.PrintRecTaxID("RSSMRA80A01H50-U"), RTF_E_ILLEGAL);
  ASSERT_EQ(device.PrintRecTaxID("RSSMRA80A01H501U"), RTF_SUCCESS);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_NE(device.paper_text().find("\nC.F. cliente: RSSMRA80A01H501U\n"), std::string::npos);
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  ASSERT_EQ(device.KeyCodeInput("", "", "", 167), RTF_SUCCESS);
  ASSERT_EQ(device.KeyCodeInput("", "", "AB12CD34", 145), RTF_SUCCESS);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_NE(device.paper_text().find("\nCodice lotteria: AB12CD34\n"), std::string::npos);
  EXPECT_EQ(device.store().documents().back().lottery_code, "AB12CD34");
}

TEST_F(RegisterDevicesTest, DisplaysKeepTwoRowsOfTwentyColumns) {
  EXPECT_EQ(device.DisplayTextAtEx(0, 0, "TOTALE 10,00", 0, 2, 4, true), RTF_SUCCESS);
  EXPECT_EQ(device.DisplayTextAtEx(1, 0, "GRAZIE", 0, 2, 4, true), RTF_SUCCESS);
  EXPECT_EQ(device.DisplayTextAtEx(0, 0, std::string(100, 'x').c_str(), 0, 0, 4, true),
            RTF_SUCCESS);
  EXPECT_EQ(device.display_text(2, 0), "TOTALE 10,00");
  EXPECT_EQ(device.display_text(2, 1), "GRAZIE");
  EXPECT_EQ(device.display_text(0, 0), std::string(20, 'x'));
  EXPECT_EQ(device.DisplayTextAtEx(1, 18, "ABCD", 0, 2, 4, false), RTF_SUCCESS);
  EXPECT_EQ(device.display_text(2, 1), "GRAZIE            AB");
  EXPECT_EQ(device.DisplayTextAtEx(0, 0, "A\nB\x01", 0, 2, 4, true), RTF_SUCCESS);
  EXPECT_EQ(device.display_text(2, 0), "A B");
  struct {
    int row, column, display;
  } const bad[] = {{-1, 0, 0}, {2, 0, 0}, {0, -1, 0}, {0, 20, 0}, {0, 0, 3}, {0, 0, -1}};
  for (const auto& place : bad) {
    EXPECT_EQ(device.DisplayTextAtEx(place.row, place.column, "X", 0, place.display, 4, true),
              RTF_E_ILLEGAL);
  }
  EXPECT_EQ(device.display_text(7, 7), "");
  EXPECT_EQ(device.ClearText(), RTF_SUCCESS);
  EXPECT_EQ(device.display_text(2, 0), "");
}

TEST_F(RegisterDevicesTest, DataItemsAreReadAndWrittenByTheTable) {
  for (const DataItem& item : DataItems()) {
    char text[52];
    std::fill(std::begin(text), std::end(text), '#');
    EXPECT_EQ(device.GetDataInternal(item.number, text),
              item.read != nullptr ? RTF_SUCCESS : RTF_E_ILLEGAL);
    EXPECT_EQ(text[50], '#') << item.number;
    EXPECT_LT(std::string(text, 50).find('\0'), 50u) << item.number;
    if (item.write == nullptr) {
      EXPECT_EQ(device.SetDataInternal(item.number, "1"), RTF_E_ILLEGAL) << item.number;
    }
  }
  EXPECT_EQ(Item(999), "refused");
  EXPECT_EQ(Item(-1), "refused");
  EXPECT_EQ(device.SetDataInternal(999, "1"), RTF_E_ILLEGAL);
  for (const int flag : {148, 600}) {
    for (const char* value : {"2", "", "x", "-1", "01"}) {
      EXPECT_EQ(device.SetDataInternal(flag, value), RTF_E_ILLEGAL);
    }
  }
  EXPECT_EQ(device.SetDataInternal(152, std::string(50, 'x').c_str()), RTF_SUCCESS);
  EXPECT_EQ(Item(152), std::string(49, 'x'));  // what a caller's buffer takes
  EXPECT_EQ(device.SetDataInternal(152, std::string(51, 'x').c_str()), RTF_EFPTR_BAD_LENGTH);
}

TEST_F(RegisterDevicesTest, TheConfigurationOfTheDevice) {
  EXPECT_EQ(Item(75), "6");
  EXPECT_EQ(Item(77), "5");
  EXPECT_EQ(Item(78), "40");
  EXPECT_EQ(Item(86), "1");
  EXPECT_EQ(Item(92), "99LRM0000001VR");
  EXPECT_EQ(Item(103), "1.00");
  EXPECT_EQ(Item(108), "10");
  EXPECT_EQ(Item(109), "2");
  EXPECT_EQ(Item(110), "10");
  EXPECT_EQ(Item(157), "20");
  EXPECT_EQ(Item(352), "0");
  EXPECT_EQ(Item(149), "150120241030");
  EXPECT_EQ(Item(459), "0");
}

TEST_F(RegisterDevicesTest, OverlongSettingsAreCut) {
  RegisterSettings settings = TestSettings();
  settings.serial_number = std::string(100, 'S');
  settings.firmware_version = std::string(100, 'F');
  settings.header_lines.assign(10, std::string(60, 'H'));
  settings.departments.assign(50, {"X", 99});
  settings.last_closure = -5;
  VirtualRegister other(settings);
  char text[50];
  other.GetDataInternal(92, text);
  EXPECT_EQ(text, std::string(32, 'S'));
  other.GetDataInternal(103, text);
  EXPECT_EQ(text, std::string(20, 'F'));
  other.GetDataInternal(78, text);
  EXPECT_STREQ(text, "40");
  other.BeginFiscalReceipt(true);
  // A department on a VAT entry that is not there sells nothing.
  EXPECT_EQ(other.PrintRecItemEx(0, "", 100, 0, -1, 0, "", 1, true, ""), RTF_EFPTR_BAD_VAT);
}

TEST_F(RegisterDevicesTest, PropertiesRefuseWhatTheyCannotTake) {
  EXPECT_EQ(Property(RTF_PIDXFptr_PrinterState), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Property(RTF_PIDXFptr_TrainingModeActive), 0);
  int value = 0;
  EXPECT_EQ(device.GetIntProperty(424242, &value), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_PrinterState, 1), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_SendLotteriaAEOnClosure, 1), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_SendLotteriaAEOnClosure), 1);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_AutoCloseOnInactivity, 2), RTF_E_ILLEGAL);
  device.ResetPrn();
  for (const int number : {0, -1, 1000000, INT32_MIN}) {
    EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, number), RTF_E_ILLEGAL);
  }
  char text[128];
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_PreLine, std::string(127, 'p').c_str()),
            RTF_SUCCESS);
  EXPECT_EQ(device.GetStringProperty(RTF_PIDXFptr_PreLine, text), RTF_SUCCESS);
  EXPECT_EQ(text, std::string(127, 'p'));
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_PreLine, std::string(128, 'p').c_str()),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "12345678901"),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_ErrorString, "x"), RTF_E_ILLEGAL);
}

TEST_F(RegisterDevicesTest, DirectCommands) {
  char data[514];
  std::fill(std::begin(data), std::end(data), '#');
  data[0] = '\0';
  int item = 92;
  EXPECT_EQ(device.DirectIO(1, &item, data), RTF_SUCCESS);
  EXPECT_STREQ(data, "99LRM0000001VR");
  item = 152;
  std::fill(std::begin(data), std::end(data), 'x');  // no NUL within the 513 characters
  EXPECT_EQ(device.DirectIO(2, &item, data), RTF_EFPTR_BAD_LENGTH);
  std::copy_n("Grazie", 7, data);
  EXPECT_EQ(device.DirectIO(2, &item, data), RTF_SUCCESS);
  EXPECT_EQ(Item(152), "Grazie");
  item = 999;
  EXPECT_EQ(device.DirectIO(1, &item, data), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DirectIO(502, &item, data), RTF_SUCCESS);
  EXPECT_EQ(device.DirectIO(503, &item, data), RTF_SUCCESS);
  for (const int command : {0, -1, 504, INT32_MAX}) {
    EXPECT_EQ(device.DirectIO(command, &item, data), RTF_E_ILLEGAL);
  }
  EXPECT_EQ(data[513], 'x');
}

TEST_F(RegisterDevicesTest, TraceLinesAreKeptUpToALimit) {
  for (int line = 0; line < 1500; ++line) device.LogTrace(std::to_string(line).c_str());
  device.LogError("guasto");
  device.LogError(nullptr);
  EXPECT_EQ(device.trace_lines().size(), VirtualRegister::kLogLines);
  EXPECT_EQ(device.trace_lines().front(), "500");
  EXPECT_EQ(device.error_lines().front(), "guasto");
}

std::string ReadFile(const std::string& name) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/" + name);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(RegisterDocumentation, ListsEveryDataItemAsTheTableHasIt) {
  const std::string text = ReadFile("docs/register.md");
  ASSERT_FALSE(text.empty());
  std::string expected = "| Item | Name | Unit | Access |\n|---|---|---|---|\n";
  for (const DataItem& item : DataItems()) {
    expected += "| " + std::to_string(item.number) + " | " + std::string(item.name) + " | " +
                std::string(item.unit) + " | " + (item.write != nullptr ? "read, write" : "read") +
                " |\n";
  }
  EXPECT_NE(text.find(expected + "\n"), std::string::npos);
}

TEST(RegisterDocumentation, ListsEveryOperationThatIsNotModelled) {
  const std::string text = ReadFile("docs/register.md");
  const std::string listed = text.substr(text.find("## Not modelled"));
  const std::string source = ReadFile("register/client/not_modelled.cpp");
  const std::string mark = "int VirtualRegister::";
  int operations = 0;
  for (size_t at = source.find(mark); at != source.npos; at = source.find(mark, at + 1)) {
    const size_t start = at + mark.size();
    const std::string name = source.substr(start, source.find('(', start) - start);
    EXPECT_NE(listed.find("`" + name + "`"), listed.npos) << name;
    ++operations;
  }
  EXPECT_EQ(operations, 15);
}

}  // namespace
}  // namespace lorimat
