// The table of operations, and that each operation asks for faults by its own name.
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "pal/peripherals/keyboard/functioncode.h"
#include "register/fault/fault_operations.h"
#include "register_fixture.h"

namespace lorimat {
namespace {

std::string ReadSource(const std::string& name) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/" + name);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(ClientOperationTest, TheTableHasTheOperationsOfTheInterfaceInItsOrder) {
  const std::string header = ReadSource("src/rpccommon/client/rtfclientinterface.h");
  const std::string mark = "\n  virtual ";
  std::vector<std::string> declared;
  std::vector<bool> codes;
  for (size_t at = header.find(mark); at != header.npos; at = header.find(mark, at + 1)) {
    std::istringstream words(header.substr(at + mark.size(), 200));
    std::string type;
    std::string name;
    words >> type;
    std::getline(words >> std::ws, name, '(');
    if (type.starts_with("~")) continue;
    declared.push_back(name);
    codes.push_back(type == "int" && name != "GetState");
  }
  ASSERT_EQ(declared.size(), 149u);
  ASSERT_EQ(ClientOperations().size(), 149u);
  for (size_t i = 0; i < declared.size(); ++i) {
    EXPECT_EQ(ClientOperations()[i].name, declared[i]);
    EXPECT_EQ(ClientOperations()[i].has_code, codes[i]) << declared[i];
    EXPECT_EQ(FindClientOperation(declared[i]), &ClientOperations()[i]);
  }
  EXPECT_EQ(FindClientOperation(""), nullptr);
  EXPECT_EQ(FindClientOperation("beginFiscalReceipt"), nullptr);
}

// Nothing prints, opens, registers or totals without acting, and reading does none of that.
TEST(ClientOperationTest, EffectsFitEachOther) {
  for (const ClientOperation& operation : ClientOperations()) {
    const unsigned more = operation.effects & ~static_cast<unsigned>(kEffectReads | kEffectActs);
    if (more != 0) {
      EXPECT_NE(operation.effects & kEffectActs, 0u) << operation.name;
      EXPECT_EQ(operation.effects & kEffectReads, 0u) << operation.name;
    }
    if (!operation.has_code) {
      EXPECT_EQ(operation.effects, 0u) << operation.name;
    }
  }
}

TEST(ClientOperationTest, KeysDoWhatTheirOperationsDo) {
  using Key = FunctionCode;
  for (const int key : {Key::kDepartment01, Key::kLastDepartment, Key::kPlu, Key::kInvoice,
                        Key::kOpenTransaction, Key::kOpenRefundDoc, Key::kOpenCancelDoc}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)),
              FindClientOperation("BeginFiscalReceipt")->effects)
        << key;
  }
  for (const int key :
       {Key::kTotal, Key::kCheque, Key::kCredit, Key::kSubTender01, Key::kLastSubTender}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)),
              FindClientOperation("PrintRecTotalEx")->effects)
        << key;
  }
  EXPECT_EQ(EffectsOfKey(Key::kSubtotal), FindClientOperation("PrintRecSubtotal")->effects);
  EXPECT_EQ(EffectsOfKey(Key::kMacro20), FindClientOperation("KeyCodeInput")->effects);
  for (const int key : {Key::kClear, Key::kNumber1, Key::kKey, Key::kDrawer, Key::kNull}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)), kEffectActs) << key;
  }
  // No key does more than the operation is said to do.
  for (int key = 0; key < 256; ++key) {
    const unsigned effects = EffectsOfKey(static_cast<uint8_t>(key));
    EXPECT_EQ(effects & ~FindClientOperation("KeyCodeInput")->effects, 0u) << key;
  }
}

class OperationFaultTest : public RegisterTest {
 protected:
  char text_[1024] = "";
  char other_[1024] = "";
  int number_ = 0;
  int second_ = 0;
  int32_t small_ = 0;
  int32_t vat_ = 1;
  int64_t price_ = 0;
  int64_t limit_ = 0;
  uint32_t preset_ = 0;
  uint16_t length_ = 0;
  uint8_t byte_ = 0;
  uint8_t flags_ = 0;
  uint8_t digits_ = 0;
  int8_t keyboard_ = 0;
  bool flag_[4] = {};
};

// Those that the register does not model, too.
TEST_F(OperationFaultTest, EveryOperationIsStruckByItsOwnName) {
  VirtualRegister& d = device;
  const std::map<std::string, std::function<int()>> calls = {
      {"SetDeviceEnabled", [&] { return d.SetDeviceEnabled(true); }},
      {"GetIntProperty", [&] { return d.GetIntProperty(RTF_PIDXFptr_PrinterState, &number_); }},
      {"SetIntProperty", [&] { return d.SetIntProperty(RTF_PIDXFptr_DateType, 4); }},
      {"GetStringProperty", [&] { return d.GetStringProperty(RTF_PIDXFptr_PreLine, text_); }},
      {"SetStringProperty", [&] { return d.SetStringProperty(RTF_PIDXFptr_PreLine, ""); }},
      {"GetDataInternal", [&] { return d.GetDataInternal(1, text_); }},
      {"SetDataInternal", [&] { return d.SetDataInternal(148, "1"); }},
      {"Close", [&] { return d.Close(); }},
      {"Claim", [&] { return d.Claim(0); }},
      {"Release", [&] { return d.Release(); }},
      {"CheckHealth", [&] { return d.CheckHealth(1); }},
      {"ClearOutput", [&] { return d.ClearOutput(); }},
      {"CompareFirmwareVersion", [&] { return d.CompareFirmwareVersion("", &number_); }},
      {"ResetStatistics", [&] { return d.ResetStatistics(""); }},
      {"RetrieveStatistics", [&] { return d.RetrieveStatistics(""); }},
      {"UpdateFirmware", [&] { return d.UpdateFirmware(""); }},
      {"UpdateStatistics", [&] { return d.UpdateStatistics(""); }},
      {"GetVatEntryExtended", [&] { return d.GetVatEntryExtended(1, 0, text_); }},
      {"PrintBarcode", [&] { return d.PrintBarcode("", "", "", "", "", 0); }},
      {"PrintBarcodeEx", [&] { return d.PrintBarcodeEx("", "", "", "", "", 0, false); }},
      {"InitJournal", [&] { return d.InitJournal(); }},
      {"BeginDocInvoice", [&] { return d.BeginDocInvoice("", "", "", "", ""); }},
      {"BeginDocInvoiceOppositionJurisprudence",
       [&] { return d.BeginDocInvoiceOppositionJurisprudence("", "", "", "", "", true); }},
      {"BeginDocRefund", [&] { return d.BeginDocRefund(1, 1, ""); }},
      {"BeginDocCancel", [&] { return d.BeginDocCancel(1, 1, "", false); }},
      {"BeginDocTelematicRefund", [&] { return d.BeginDocTelematicRefund(1, 1, "", ""); }},
      {"BeginDocTelematicCancel", [&] { return d.BeginDocTelematicCancel(1, 1, "", false, ""); }},
      {"BeginDocRefundEx", [&] { return d.BeginDocRefundEx(1, 1, "", false); }},
      {"SendTelematicSummary", [&] { return d.SendTelematicSummary(); }},
      {"ExportTelematicSummary", [&] { return d.ExportTelematicSummary(""); }},
      {"SaveTelematicSummary", [&] { return d.SaveTelematicSummary(1, 1, ""); }},
      {"SaveTelematicSummaryEx", [&] { return d.SaveTelematicSummaryEx(1, 1, "", 0); }},
      {"PrintBitmap", [&] { return d.PrintBitmap(1, 0); }},
      {"SelectBitmap", [&] { return d.SelectBitmap(1, 0); }},
      {"ProcessEJournalReportByDate",
       [&] { return d.ProcessEJournalReportByDate("", "", "", ""); }},
      {"ProcessEJournalReportByZNumber",
       [&] { return d.ProcessEJournalReportByZNumber(1, 1, "", ""); }},
      {"ProcessEJournalReportByDateZNumber",
       [&] { return d.ProcessEJournalReportByDateZNumber("", "", 1, 1, "", ""); }},
      {"ProcessEJournalReportByDateNumber",
       [&] { return d.ProcessEJournalReportByDateNumber("", "", 1, 1, "", ""); }},
      {"ProcessEJournalReportByDateNumberDocType",
       [&] { return d.ProcessEJournalReportByDateNumberDocType("", "", 1, 1, 1, "", ""); }},
      {"ProcessEJournalReportGlobal", [&] { return d.ProcessEJournalReportGlobal("", ""); }},
      {"ProgramGRC", [&] { return d.ProgramGRC(1, "", false); }},
      {"EraseLogoArchive", [&] { return d.EraseLogoArchive(); }},
      {"BeginAdditionalTrailer", [&] { return d.BeginAdditionalTrailer(); }},
      {"PrintPaperCut", [&] { return d.PrintPaperCut(); }},
      {"SetCurrency", [&] { return d.SetCurrency(1); }},
      {"SetDate", [&] { return d.SetDate(""); }},
      {"SetHeaderLine", [&] { return d.SetHeaderLine(1, "", false); }},
      {"SetPOSID", [&] { return d.SetPOSID("", ""); }},
      {"SetStoreFiscalID", [&] { return d.SetStoreFiscalID(""); }},
      {"SetTrailerLine", [&] { return d.SetTrailerLine(1, "", false); }},
      {"SetVatTable", [&] { return d.SetVatTable(); }},
      {"SetVatValue", [&] { return d.SetVatValue(1, "220000"); }},
      {"BeginFiscalReceipt", [&] { return d.BeginFiscalReceipt(true); }},
      {"EndFiscalReceipt", [&] { return d.EndFiscalReceipt(true); }},
      {"PrintDuplicateReceipt", [&] { return d.PrintDuplicateReceipt(); }},
      {"PrintRecCash", [&] { return d.PrintRecCash(1); }},
      {"PrintRecItem", [&] { return d.PrintRecItem("", 1, 0, 1, 0, ""); }},
      {"PrintRecItemVoid", [&] { return d.PrintRecItemVoid("", 1, 0, 1, 0, ""); }},
      {"PrintRecItemAdjustment", [&] { return d.PrintRecItemAdjustment(1, "", 1, 1); }},
      {"PrintRecItemAdjustmentVoid", [&] { return d.PrintRecItemAdjustmentVoid(1, "", 1, 1); }},
      {"PrintRecItemFuel", [&] { return d.PrintRecItemFuel("", 1, 0, 1, 0, "", 0, ""); }},
      {"PrintRecItemFuelVoid", [&] { return d.PrintRecItemFuelVoid("", 1, 1, 0); }},
      {"PrintRecItemRefund", [&] { return d.PrintRecItemRefund("", 1, 0, 1, 0, ""); }},
      {"PrintRecItemRefundVoid", [&] { return d.PrintRecItemRefundVoid("", 1, 0, 1, 0, ""); }},
      {"PrintRecMessage", [&] { return d.PrintRecMessage(""); }},
      {"PrintRecNotPaid", [&] { return d.PrintRecNotPaid("", 1); }},
      {"PrintRecPackageAdjustment", [&] { return d.PrintRecPackageAdjustment(1, "", ""); }},
      {"PrintRecPackageAdjustVoid", [&] { return d.PrintRecPackageAdjustVoid(1, ""); }},
      {"PrintRecRefund", [&] { return d.PrintRecRefund("", 1, 1); }},
      {"PrintRecRefundVoid", [&] { return d.PrintRecRefundVoid("", 1, 1); }},
      {"PrintRecSubtotal", [&] { return d.PrintRecSubtotal(1); }},
      {"PrintRecSubtotalEx", [&] { return d.PrintRecSubtotalEx(1, true); }},
      {"PrintRecSubtotalAdjustment", [&] { return d.PrintRecSubtotalAdjustment(1, "", 1); }},
      {"PrintRecSubtotalAdjustVoid", [&] { return d.PrintRecSubtotalAdjustVoid(1, 1); }},
      {"PrintRecTaxID", [&] { return d.PrintRecTaxID(""); }},
      {"PrintRecTotal", [&] { return d.PrintRecTotal(1, 1, "0"); }},
      {"PrintRecVoid", [&] { return d.PrintRecVoid(""); }},
      {"PrintRecVoidItem", [&] { return d.PrintRecVoidItem("", 1, 0, 1, 0, 1); }},
      {"TelematicCensus", [&] { return d.TelematicCensus(); }},
      {"TelematicActivate", [&] { return d.TelematicActivate("", "", "", "", 0, ""); }},
      {"TelematicCommissioning", [&] { return d.TelematicCommissioning(); }},
      {"ZupEcrCmd", [&] { return d.ZupEcrCmd("", &number_, text_); }},
      {"PrintRecItemEx", [&] { return d.PrintRecItemEx(0, "", 1, 0, -1, 0, "", 1, true, ""); }},
      {"PrintRecItemAdjustmentEx", [&] { return d.PrintRecItemAdjustmentEx(1, "", 1, 1, 1); }},
      {"PrintRecItemAdjustmentEx2",
       [&] { return d.PrintRecItemAdjustmentEx2(1, "", 1, 1, 1, false); }},
      {"PrintRecTotalEx", [&] { return d.PrintRecTotalEx(1, "0", false); }},
      {"BeginFiscalDocument", [&] { return d.BeginFiscalDocument(1); }},
      {"EndFiscalDocument", [&] { return d.EndFiscalDocument(); }},
      {"PrintFiscalDocumentLine", [&] { return d.PrintFiscalDocumentLine(""); }},
      {"BeginItemList", [&] { return d.BeginItemList(1); }},
      {"EndItemList", [&] { return d.EndItemList(); }},
      {"VerifyItem", [&] { return d.VerifyItem("", 1); }},
      {"PrintPeriodicTotalsReport", [&] { return d.PrintPeriodicTotalsReport("", ""); }},
      {"PrintPowerLossReport", [&] { return d.PrintPowerLossReport(); }},
      {"PrintReport", [&] { return d.PrintReport(1, "", ""); }},
      {"PrintXReport", [&] { return d.PrintXReport(); }},
      {"PrintZReport", [&] { return d.PrintZReport(); }},
      {"BeginInsertion", [&] { return d.BeginInsertion(0); }},
      {"BeginRemoval", [&] { return d.BeginRemoval(0); }},
      {"EndInsertion", [&] { return d.EndInsertion(); }},
      {"EndRemoval", [&] { return d.EndRemoval(); }},
      {"BeginFixedOutput", [&] { return d.BeginFixedOutput(1, 1); }},
      {"BeginNonFiscal", [&] { return d.BeginNonFiscal(); }},
      {"BeginNonFiscalJournal", [&] { return d.BeginNonFiscalJournal(true); }},
      {"BeginTraining", [&] { return d.BeginTraining(); }},
      {"EndFixedOutput", [&] { return d.EndFixedOutput(); }},
      {"EndNonFiscal", [&] { return d.EndNonFiscal(); }},
      {"EndTraining", [&] { return d.EndTraining(); }},
      {"PrintFixedOutput", [&] { return d.PrintFixedOutput(1, 1, ""); }},
      {"PrintNormal", [&] { return d.PrintNormal(2, ""); }},
      {"GetData", [&] { return d.GetData(1, &number_, text_); }},
      {"GetDate", [&] { return d.GetDate(text_); }},
      {"GetTotalizer", [&] { return d.GetTotalizer(0, 1, text_); }},
      {"GetVatEntry", [&] { return d.GetVatEntry(1, 0, &number_); }},
      {"ClearError", [&] { return d.ClearError(); }},
      {"ResetPrn", [&] { return d.ResetPrn(); }},
      {"OpenDrawer", [&] { return d.OpenDrawer(); }},
      {"WaitForDrawerClose", [&] { return d.WaitForDrawerClose(0, 0, 0, 0); }},
      {"ClearText", [&] { return d.ClearText(); }},
      {"DisplayText", [&] { return d.DisplayText("", 0); }},
      {"DisplayTextAt", [&] { return d.DisplayTextAt(0, 0, "", 0); }},
      {"DisplayTextEx", [&] { return d.DisplayTextEx("", 0, 2, 0, true); }},
      {"DisplayTextAtEx", [&] { return d.DisplayTextAtEx(0, 0, "", 0, 2, 0, true); }},
      {"GetTotalizerExtend", [&] { return d.GetTotalizerExtend(0, 2, 1, text_); }},
      {"ProgramFirmware", [&] { return d.ProgramFirmware(""); }},
      {"EraseTable", [&] { return d.EraseTable(1); }},
      {"DownloadTable", [&] { return d.DownloadTable(1, 0, text_); }},
      {"UploadTable", [&] { return d.UploadTable(1, 0, ""); }},
      {"ConfigDepartment",
       [&] {
         return d.ConfigDepartment(false, 1, text_, &price_, &limit_, &small_, &vat_, &byte_,
                                   &flag_[0], &flag_[1], &flag_[2]);
       }},
      {"ConfigDepartmentEx",
       [&] {
         return d.ConfigDepartmentEx(false, 1, text_, &price_, &limit_, &small_, &vat_, &byte_,
                                     &flag_[0], &flag_[1], &flag_[2], &flag_[3]);
       }},
      {"ConfigGroup", [&] { return d.ConfigGroup(false, 1, text_, other_, &number_, &second_); }},
      {"ConfigKeyboard",
       [&] { return d.ConfigKeyboard(false, 1, &byte_, &keyboard_, text_, &length_); }},
      {"ConfigSubtender",
       [&] { return d.ConfigSubtender(false, 1, &byte_, text_, &flags_, &preset_, &digits_); }},
      {"GetHeaderLine", [&] { return d.GetHeaderLine(1, text_); }},
      {"KeyCodeInput", [&] { return d.KeyCodeInput("", "", "", FunctionCode::kClear); }},
      {"PrintZReportEx", [&] { return d.PrintZReportEx(false); }},
      {"DiagnosticsRequest", [&] { return d.DiagnosticsRequest(0, true, 0); }},
      {"DirectIO",
       [&] {
         number_ = 1;
         return d.DirectIO(1, &number_, text_);
       }},
      {"PrintXReportEx", [&] { return d.PrintXReportEx(1, false, "txt", "", 1); }},
      {"FiscalReportMessageEx",
       [&] { return d.FiscalReportMessageEx(0, 0, 3, 0, 0, 1, 1, "", "", "txt", "", 1); }},
      {"PeriodicReportMessageEx",
       [&] { return d.PeriodicReportMessageEx(1, 0, "txt", "", 1, false); }},
      {"TelematicDocument", [&] { return d.TelematicDocument(0, 5, 1, 1, 1, 1, 1, ""); }},
  };
  for (const ClientOperation& operation : ClientOperations()) {
    const std::string name(operation.name);
    if (!operation.has_code) continue;
    ASSERT_TRUE(calls.contains(name)) << name;
    device.AddFault({.name = "code", .code = 777, .operation = name});
    EXPECT_EQ(calls.at(name)(), 777) << name;
    EXPECT_TRUE(device.faults().empty()) << name;
  }
  EXPECT_EQ(device.paper_text(), "");
  EXPECT_EQ(device.drawer_count(), 0);
}

// What one operation has in common with another does not let a fault of the other strike it.
TEST_F(OperationFaultTest, OperationsThatShareTheirWorkAreToldApart) {
  device.AddFault({.name = "code", .code = 777, .operation = "BeginNonFiscalJournal"});
  EXPECT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 778, .operation = "PrintBarcodeEx"});
  EXPECT_EQ(device.PrintBarcode("08", "1", "2", "2", "ABC", 0), RTF_SUCCESS);
  EXPECT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 779, .operation = "PrintXReportEx"});
  EXPECT_EQ(device.PrintXReport(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 780, .operation = "PrintZReportEx"});
  EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device.faults().faults().size(), 4u);
}

}  // namespace
}  // namespace lorimat
