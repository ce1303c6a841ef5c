// A day of a register with each kind of operation that stores something, in an order that allows
// it, to be lived through while things fail.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/store_fixture.h"

namespace lorimat {

struct DayStep {
  const char* name;
  std::function<int(VirtualRegister&)> call;
  bool restart = false;  // before it, so that the file stays small
};

class StoreDayTest : public StoreTest {
 protected:
  StoreDayTest() { Write("logo.png", "x"); }

  std::vector<DayStep> Day() const {
    using R = VirtualRegister;
    const std::string logo = Path("logo.png");
    const auto sell = [](R& r) {
      return r.PrintRecItemEx(0, "PANE", 10000, 0, -1, 0, "", 1, true, "");
    };
    return {
        {"BeginFiscalReceipt", [](R& r) { return r.BeginFiscalReceipt(true); }},
        {"sale", sell},
        {"second sale", sell},
        {"void of a line",
         [](R& r) { return r.PrintRecItemEx(1, "PANE", 10000, 0, -1, 0, "", 1, true, ""); }},
        {"discount", [](R& r) { return r.PrintRecItemAdjustmentEx(1, "", 100, 1, 1); }},
        {"subtotal", [](R& r) { return r.PrintRecSubtotalEx(0, false); }},
        {"tax code", [](R& r) { return r.PrintRecTaxID("01234567897"); }},
        {"part", [](R& r) { return r.PrintRecTotalEx(1000, "2", false); }},
        {"rest", [](R& r) { return r.PrintRecTotalEx(0, "0", true); }},
        {"hold", [](R& r) { return r.SetDataInternal(600, "1"); }},
        {"invoice", [](R& r) { return r.BeginDocInvoice("ROSSI", "", "", "", ""); }},
        {"sale on it", sell},
        {"payment", [](R& r) { return r.PrintRecTotalEx(0, "5", true); }},
        {"trailer", [](R& r) { return r.BeginAdditionalTrailer(); }},
        {"barcode", [](R& r) { return r.PrintBarcode("08", "1", "3", "0", "ABC", 0); }},
        {"end", [](R& r) { return r.EndFiscalReceipt(true); }},
        {"keyed sale",
         [](R& r) { return r.KeyCodeInput("\x05\x0b\x0b", "", "", FunctionCode::kDepartment01); },
         true},
        {"keyed payment", [](R& r) { return r.KeyCodeInput("", "", "", FunctionCode::kTotal); }},
        {"whole void", [](R& r) { return r.BeginDocTelematicCancel(1, 1, "", true, ""); }},
        {"credit note",
         [](R& r) { return r.BeginDocTelematicRefund(1, 1, "15012024", "99LRM0000002"); }, true},
        {"reset", [](R& r) { return r.ResetPrn(); }},
        {"non-fiscal", [](R& r) { return r.BeginNonFiscal(); }, true},
        {"text", [](R& r) { return r.PrintNormal(RTF_FPTR_S_RECEIPT, "riga"); }},
        {"end of non-fiscal", [](R& r) { return r.EndNonFiscal(); }},
        {"drawer", [](R& r) { return r.OpenDrawer(); }, true},
        {"period", [](R& r) { return r.PeriodicReportMessageEx(1, 0, "txt", "", 1, true); }},
        {"reading", [](R& r) { return r.PrintXReport(); }},
        {"closing", [](R& r) { return r.PrintZReportEx(false); }, true},
        {"sending", [](R& r) { return r.SendTelematicSummary(); }},
        {"option", [](R& r) { return r.SetDataInternal(317, "1"); }, true},
        {"courtesy", [](R& r) { return r.SetDataInternal(152, "GRAZIE"); }},
        {"series", [](R& r) { return r.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "A"); }},
        {"header", [](R& r) { return r.SetHeaderLine(1, "NUOVA", false); }, true},
        {"rate", [](R& r) { return r.SetVatValue(2, "110000"); }},
        {"rates", [](R& r) { return r.SetVatTable(); }},
        {"open transfer", [](R& r) { return r.UploadTable(1, 0, ""); }},
        {"article", [](R& r) { return r.UploadTable(1, 1, "'77','ACETO',1,2.00"); }},
        {"changed article", [](R& r) { return r.UploadTable(1, 1, "'77','OLIO',1,3.00"); }},
        {"no articles", [](R& r) { return r.EraseTable(1); }},
        {"logo", [logo](R& r) { return r.ProgramGRC(3, logo.c_str(), true); }},
        {"no logos", [](R& r) { return r.EraseLogoArchive(); }},
        {"department",
         [](R& r) {
           char name[128] = "FRUTTA";
           int64_t price = 0, limit = 0;
           int32_t quantity = 0, vat = 1;
           uint8_t group = 0;
           bool no = false, yes = true;
           return r.ConfigDepartment(true, 2, name, &price, &limit, &quantity, &vat, &group, &no,
                                     &yes, &no);
         }},
        {"group",
         [](R& r) {
           char name[129] = "CAPI", password[65] = "";
           int flags = 1, options = 2;
           return r.ConfigGroup(true, 1, name, password, &flags, &options);
         }},
        {"subtender",
         [](R& r) {
           uint8_t kind = 1, flags = 0, digits = 0;
           uint32_t preset = 0;
           char name[64] = "SATISPAY";
           return r.ConfigSubtender(true, 2, &kind, name, &flags, &preset, &digits);
         }},
        {"key",
         [](R& r) {
           uint8_t code = FunctionCode::kMacro01;
           int8_t keyboard = 0;
           char macro[40] = "\x01";
           uint16_t size = 1;
           return r.ConfigKeyboard(true, 41, &code, &keyboard, macro, &size);
         }},
        {"closing of an empty day", [](R& r) { return r.PrintZReport(); }},
    };
  }

  // What the file holds as it would be found now.
  std::string Stored() {
    CopyAsCut("shop.register", "copy.register");
    return Dump("copy.register");
  }
  static std::string All(VirtualRegister& device) { return Image(device) + OpenImage(device); }
};

}  // namespace lorimat
