// The virtual register as a sequence of operations: what holds of it is looked at behind each. An
// answer of 0 is stored, any other changes nothing. The input: an operation's byte, and the bytes
// that it takes.
#include <filesystem>

#include "fuzz/register_session.h"
#include "managermachine/pflitemtype.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace {

using lorimat::VirtualRegister;

constexpr int kMostOperations = 60;
constexpr const char* kFile = "register";

class Day {
 public:
  explicit Day(std::string_view input) : input_(input) { Start(); }

  void Run() {
    for (int i = 0; i < kMostOperations && !input_.empty(); ++i) {
      fuzz_minutes += input_.Small(4);
      const uint8_t which = input_.Byte();
      if (which >= 250) {
        Restart();
        continue;
      }
      const std::string before = RegisterFacts(*device_);
      const int64_t documents = device_->store().document_count();
      const int answer = Operate(which % 48);
      if (answer != RTF_SUCCESS) {
        Require(RegisterFacts(*device_) == before, "what is refused changes nothing");
      }
      const int64_t more = device_->store().document_count() - documents;
      Require(more == 0 || (more == 1 && answer == RTF_SUCCESS), "a document is an answer of 0");
    }
    CheckSums(device_->store());
    Restart();
    CheckSums(device_->store());
    const int64_t documents = device_->store().document_count();
    const uint64_t entries = device_->store().journal_count();
    device_.reset();
    CheckJournalOf(kFile, documents, entries);
  }

 private:
  void Start() { device_ = std::make_unique<VirtualRegister>(FuzzSettings(kFile)); }

  // What was answered is there when the register starts again. A document that was open ends then.
  void Restart() {
    const int64_t documents = device_->store().document_count();
    const int64_t total = device_->store().grand_total();
    const std::string day = device_->store().day().ToRecord();
    device_.reset();
    Start();
    Require(device_->store().document_count() == documents, "a start keeps the documents");
    Require(device_->store().grand_total() == total, "a start keeps the grand total");
    Require(device_->store().day().ToRecord() == day, "a start keeps the day");
    Require(device_->printer_state() == RTF_FPTR_PS_MONITOR, "a start is ready");
  }

  int Line(int type) {
    const int department = input_.Small(45);
    const int64_t price = input_.Amount();
    const int quantity = input_.Small(3) == 0 ? static_cast<int>(input_.Amount()) : 0;
    return device_->PrintRecItemEx(type, text_, price, quantity, input_.Small(9) - 1,
                                   quantity == 0 ? 0 : price, "", department, true,
                                   input_.Small(6) == 0 ? "8001" : "");
  }

  int Reference(bool telematic, bool refund, bool whole) {
    const int number = input_.Small(12);
    const int closure = input_.Small(4);
    const char* date = input_.Small(4) == 0 ? "01012024" : "";
    const char* serial = input_.Small(3) == 0 ? "99LRM0000001VR" : "";
    if (telematic && refund) return device_->BeginDocTelematicRefund(number, closure, date, serial);
    if (telematic) return device_->BeginDocTelematicCancel(number, closure, date, whole, text_);
    if (refund) return device_->BeginDocRefundEx(number, closure, date, whole);
    return device_->BeginDocCancel(number, closure, date, whole);
  }

  int Operate(int which) {
    static constexpr const char* kTexts[] = {"", "CAFFE", "\x80\xE0 'x'",
                                             "1234567890123456789012345"};
    static constexpr const char* kTenders[] = {"0", "1", "2", "5", "30", "6", "x", ""};
    text_ = kTexts[input_.Small(4)];
    VirtualRegister& device = *device_;
    switch (which) {
      case 0:
      case 1:
        return device.BeginFiscalReceipt(true);
      case 2:
      case 3:
      case 4:
      case 5:
      case 6:
        return Line(PflItemType::kPrintRecItem);
      case 7:
        return Line(input_.Small(16));
      case 8:
        return Line(PflItemType::kPrintRecItemVoid);
      case 9:
        return device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, text_, input_.Amount(),
                                               -1, -2);
      case 10:
        return device.PrintRecItemAdjustmentEx2(input_.Small(8), text_, input_.Amount(),
                                                input_.Small(7) - 1, input_.Small(5) - 2,
                                                input_.Small(2) == 0);
      case 11:
        return device.PrintRecSubtotalAdjustment(input_.Small(8), text_, input_.Amount());
      case 12:
        return device.PrintRecSubtotalAdjustVoid(input_.Small(8), input_.Amount());
      case 13:
        return device.PrintRecSubtotalEx(input_.Amount(), input_.Small(2) == 0);
      case 14:
      case 15:
      case 16:
      case 17:
        return device.PrintRecTotalEx(0, kTenders[input_.Small(3)], true);
      case 18:
      case 19:
        return device.PrintRecTotalEx(input_.Amount(), kTenders[input_.Small(8)], false);
      case 20:
        return device.PrintRecNotPaid(text_, static_cast<long>(input_.Amount()));
      case 21:
        return device.EndFiscalReceipt(true);
      case 22:
        return device.PrintRecVoid(text_);
      case 23:
        return device.ResetPrn();
      case 24:
      case 25:
        return Reference(true, true, false);
      case 26:
        return Reference(true, false, input_.Small(2) == 0);
      case 27:
        return Reference(false, true, input_.Small(2) == 0);
      case 28:
        return Reference(false, false, input_.Small(2) == 0);
      case 29:
        return device.BeginDocInvoice(text_, "", "", "", text_);
      case 30:
        return device.BeginNonFiscalJournal(input_.Small(2) == 0);
      case 31:
        return device.PrintNormal(2, text_);
      case 32:
        return device.EndNonFiscal();
      case 33:
        return device.PrintZReportEx(false);
      case 34:
        return device.PrintXReport();
      case 35:
        return device.PrintRecMessage(text_);
      case 36:
        return device.PrintRecTaxID("RSSMRA80A01H501U");
      case 37:
        return device.PrintBarcode("05", "2", "1", "0", "800123456789", 0);
      case 38:
        return device.BeginAdditionalTrailer();
      case 39:
        return device.PrintDuplicateReceipt();
      case 40:
        return device.PrintRecItemVoid(text_, static_cast<long>(input_.Amount()), 1000,
                                       input_.Small(6), static_cast<long>(input_.Amount()), "");
      case 41:
        return device.PrintRecPackageAdjustment(input_.Small(4), text_, "1,100;2,200");
      case 42:
        return device.PrintRecRefund(text_, static_cast<long>(input_.Amount()), input_.Small(6));
      case 43:
        return device.SetDataInternal(input_.Byte() * 3, text_);
      case 44:
        return device.BeginTraining();
      case 45:
        return device.EndTraining();
      case 46:
        return device.SetVatValue(input_.Small(8), "1000");
      default: {
        char number[50];
        return device.GetDataInternal(input_.Byte() * 3, number);
      }
    }
  }

  InputNumbers input_;
  const char* text_ = "";
  std::unique_ptr<VirtualRegister> device_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  fuzz_minutes = 600;
  Day(std::string_view(reinterpret_cast<const char*>(data), size)).Run();
  return 0;
}
