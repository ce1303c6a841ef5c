// A register that has seen everything: documents of all kinds, three closings, periods that were
// cleared, lottery codes and summaries that wait and that were sent, and something programmed in
// every table.
#pragma once

#include <gtest/gtest.h>

#include "managermachine/pflitemtype.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

class RegisterFiller {
 public:
  explicit RegisterFiller(VirtualRegister& device) : device_(device) {}

  // A new register. `logo` is a file that is there.
  void Fill(const char* logo) { Work(logo); }
  // Any register whose day is closed.
  void Work(const char* logo) {
    Program(logo);
    const int day = device_.store().last_closure() + 1;
    Receipt(1, 100000);
    MixedReceipt();
    Lottery("AB12CD34");
    Lottery("EF56GH78");
    Invoice(70000);
    Good(device_.BeginDocTelematicRefund(1, day, "", ""));
    Sell(1, 30000);
    Pay("0");
    Good(device_.BeginDocTelematicCancel(2, day, "", true, ""));
    Abandoned();
    NonFiscal(true);
    NonFiscal(false);
    Good(device_.PeriodicReportMessageEx(2, 0, "txt", "", 1, true));
    Receipt(3, 5000);
    Good(device_.PrintZReportEx(true));  // its summary is sent
    Good(device_.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""));
    SetRate();
    Good(device_.PeriodicReportMessageEx(1, 0, "txt", "", 1, true));

    Receipt(2, 25000);
    Lottery("IJ90KL12");
    Good(device_.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 41));
    Invoice(12000);
    Good(device_.PrintZReportEx(false));
    Good(device_.PrintZReportEx(false));  // of a day without documents

    NonFiscal(true);
    Receipt(1, 20000);
    Good(device_.PeriodicReportMessageEx(3, 0, "txt", "", 1, true));
    MixedReceipt();
    Lottery("MN34OP56");
    Invoice(15000);
    NonFiscal(false);
    Abandoned();
  }
  // A receipt that is begun and stays open.
  void LeaveOpen() {
    Good(device_.BeginFiscalReceipt(true));
    Sell(1, 7700);
  }
  // One that is paid, and has not ended.
  void LeaveInItsEnding() {
    Good(device_.SetDataInternal(600, "1"));
    Receipt(1, 8800);
  }

 private:
  static void Good(int code) { ASSERT_EQ(code, RTF_SUCCESS); }
  void Sell(int department, int64_t price, const char* description = "") {
    Good(device_.PrintRecItemEx(0, description, price, 0, -1, 0, "", department, true, ""));
  }
  void Pay(const char* tender) { Good(device_.PrintRecTotalEx(0, tender, true)); }
  void Receipt(int department, int64_t price) {
    Good(device_.BeginFiscalReceipt(true));
    Sell(department, price);
    Pay("0");
  }
  // Several lines and payments, with a discount, a void, and two lines that are the same.
  void MixedReceipt() {
    Good(device_.BeginFiscalReceipt(true));
    Sell(1, 50000, "PANE");
    Sell(2, 30000, "VINO");
    Sell(2, 30000, "VINO");
    Good(device_.PrintRecItemAdjustmentEx(1, "", 1000, -1, -2));
    Sell(3, 10000);
    Good(device_.PrintRecItemEx(PflItemType::kPrintRecItemVoid, "", 10000, 0, -1, 0, "", 3, true,
                                ""));
    Good(device_.PrintRecTotalEx(20000, "2", false));
    Good(device_.PrintRecTotalEx(200000, "0", false));
  }
  void Lottery(const char* code) {
    Good(device_.BeginFiscalReceipt(true));
    Sell(1, 20000);
    Good(device_.KeyCodeInput("", "", "", FunctionCode::kLotteryCode));
    Good(device_.KeyCodeInput("", code, code, FunctionCode::kConfirm));
    Pay("2");
  }
  void Invoice(int64_t price) {
    Good(device_.BeginDocInvoice("ROSSI", "", "", "", ""));
    Sell(2, price);
    Pay("5");
  }
  void Abandoned() {
    Good(device_.BeginFiscalReceipt(true));
    Sell(1, 10000);
    Good(device_.ResetPrn());
  }
  void NonFiscal(bool in_journal) {
    Good(device_.BeginNonFiscalJournal(in_journal));
    Good(device_.PrintNormal(RTF_FPTR_S_RECEIPT, "PROVA"));
    Good(device_.EndNonFiscal());
  }
  void SetRate() {
    Good(device_.SetVatValue(3, "60000"));
    Good(device_.SetVatTable());
  }
  void Program(const char* logo) {
    char name[128] = "FRUTTA";
    int64_t price = 12300, max_price = 9990000;
    int32_t quantity = 3, vat = 2;
    uint8_t group = 4;
    bool yes = true, no = false;
    Good(device_.ConfigDepartmentEx(true, 7, name, &price, &max_price, &quantity, &vat, &group,
                                    &yes, &no, &yes, &yes));
    char description[129] = "MARIA";
    char password[65] = "1234";
    int flags = 5, options = -6;
    Good(device_.ConfigGroup(true, 12, description, password, &flags, &options));
    uint8_t kind = 2, gives_change = 1, digits = 6;
    uint32_t preset = 5000;
    char tender[64] = "BUONO PASTO";
    Good(device_.ConfigSubtender(true, 3, &kind, tender, &gives_change, &preset, &digits));
    Good(device_.SetHeaderLine(5, "QUINTA", false));
    Good(device_.SetTrailerLine(1, "ARRIVEDERCI", false));
    Good(device_.SetPOSID("CASSA 3", "ANNA"));
    Good(device_.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "B/2"));
    Good(device_.SetDataInternal(152, "GRAZIE"));
    Good(device_.SetDataInternal(459, "1"));
    Good(device_.ProgramGRC(63, logo, true));
    uint8_t code = FunctionCode::kMacro01;
    int8_t keyboard = 0;
    char macro[40] = "\x01\x02";
    uint16_t size = 2;
    Good(device_.ConfigKeyboard(true, 41, &code, &keyboard, macro, &size));
  }

  VirtualRegister& device_;
};

}  // namespace lorimat
