// What the host does in its day: documents of all kinds, programming, reports, closings.
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "host.h"
#include "managermachine/pflitemtype.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr int64_t kCents = 100;

}  // namespace

bool Host::Key(const char* digits, const char* text, uint8_t key, Fact fact) {
  const Look before = Begin("KeyCodeInput", fact);
  strike::Resume();
  int code = device_.KeyCodeInput(digits, text, text, key);
  strike::Pause();
  if (code == RTF_SUCCESS) {
    char refusal[64] = "";
    device_.GetDataInternal(368, refusal);
    code = std::atoi(refusal);
  }
  return End("KeyCodeInput", code, fact, before);
}

bool Host::Line(int department, int64_t price, int type) {
  return Call("PrintRecItemEx", [&] {
    return device_.PrintRecItemEx(type, "PANE", price, 0, -1, 0, "", department, true, "");
  });
}

bool Host::Pay(const char* tender, int64_t amount, Fact fact) {
  return Call(
      "PrintRecTotalEx", [&] { return device_.PrintRecTotalEx(amount, tender, amount == 0); },
      fact);
}

// --- Documents

bool Host::Receipt() {
  // 10,00 and 3,00 less 3,00, 5,00 less 1,00: 14,00.
  if (!(Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(true); }) &&
        Line(1, 1000 * kCents) && Line(1, 300 * kCents) &&
        Line(1, 300 * kCents, PflItemType::kPrintRecItemVoid) && Line(2, 500 * kCents) &&
        Call("PrintRecItemAdjustmentEx",
             [&] { return device_.PrintRecItemAdjustmentEx(1, "", 100 * kCents, -1, -2); }) &&
        Call("PrintRecSubtotalEx", [&] { return device_.PrintRecSubtotalEx(0, false); }) &&
        Pay("2", 400 * kCents) && Pay("1", 300 * kCents) &&
        Pay("0", 0, {Fact::kSale, 1400 * kCents}))) {
    return false;
  }
  receipt_number_ = device_.store().counters().documents;
  return true;
}

bool Host::SmallReceipt() {
  return Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(false); }) &&
         Line(1, 250 * kCents) && Pay("0", 300 * kCents, {Fact::kSale, 250 * kCents});
}

bool Host::KeyedReceipt() {
  if (!(Key("\x05", "", FunctionCode::kDepartment01) &&
        Key("\x04", "", FunctionCode::kDepartment01) &&
        Key("", "", FunctionCode::kTotal, {Fact::kSale, 900 * kCents}))) {
    return false;
  }
  keyed_number_ = device_.store().counters().documents;
  return true;
}

bool Host::Invoice() {
  return Call("SetDataInternal", [&] { return device_.SetDataInternal(600, "1"); }) &&
         Call("BeginDocInvoice",
              [&] { return device_.BeginDocInvoice("ROSSI MARIO SRL", "", "", "", ""); }) &&
         Line(4, 400 * kCents) && Pay("5", 0, {Fact::kInvoice, 400 * kCents}) &&
         Call("BeginAdditionalTrailer", [&] { return device_.BeginAdditionalTrailer(); }) &&
         Call("PrintRecMessage", [&] { return device_.PrintRecMessage("BUONO SCONTO"); }) &&
         Call("PrintBarcode",
              [&] { return device_.PrintBarcode("08", "1", "3", "0", "ABC", 0); }) &&
         Call("EndFiscalReceipt", [&] { return device_.EndFiscalReceipt(true); });
}

bool Host::LotteryReceipt() {
  return Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(true); }) &&
         Line(1, 200 * kCents) && Key("", "", FunctionCode::kLotteryCode) &&
         Key("", "ABCDEFGH", FunctionCode::kConfirm) && Pay("2", 0, {Fact::kSale, 200 * kCents});
}

bool Host::CreditNote() {
  return Call(
             "BeginDocTelematicRefund",
             [&] { return device_.BeginDocTelematicRefund(receipt_number_, 1, "15012024", ""); }) &&
         Line(1, 300 * kCents) && Pay("0", 0, {Fact::kRefund, 300 * kCents});
}

bool Host::WholeVoid() {
  return Call(
      "BeginDocTelematicCancel",
      [&] { return device_.BeginDocTelematicCancel(keyed_number_, 1, "15012024", true, ""); },
      {Fact::kVoid, 900 * kCents});
}

bool Host::Cash(int type, int64_t amount) {
  const auto choose = [this](int wanted) {
    return Call("SetIntProperty",
                [&] { return device_.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, wanted); });
  };
  moves_cash_ = true;
  const bool done =
      settled_ ||
      (choose(type) &&
       Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(true); }) &&
       Call("PrintRecCash", [&] { return device_.PrintRecCash(static_cast<long>(amount)); }) &&
       Pay("0", 0, {Fact::kNonFiscal, 0}));
  // Also ahead of the next try: it would go on as a receipt of this kind.
  return done && choose(RTF_FPTR_RT_SALES);
}

bool Host::CashIn() { return Cash(RTF_FPTR_RT_CASH_IN, 5000 * kCents); }
bool Host::CashOut() { return Cash(RTF_FPTR_RT_CASH_OUT, 2000 * kCents); }

bool Host::NonFiscal() {
  return Call("BeginNonFiscal", [&] { return device_.BeginNonFiscal(); }) &&
         Call("PrintNormal", [&] { return device_.PrintNormal(RTF_FPTR_S_RECEIPT, "riga"); }) &&
         Call("PrintBarcode",
              [&] { return device_.PrintBarcode("08", "1", "3", "0", "ABC", 0); }) &&
         Call("EndNonFiscal", [&] { return device_.EndNonFiscal(); }, {Fact::kNonFiscal, 0});
}

bool Host::Abandoned() {
  return Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(true); }) &&
         Line(2, 700 * kCents) &&
         Call("ResetPrn", [&] { return device_.ResetPrn(); }, {Fact::kAbandoned, 0});
}

// --- Programming

bool Host::Header() {
  return Call("SetHeaderLine", [&] { return device_.SetHeaderLine(1, kNewHeader, false); },
              {Fact::kProgrammed, kHeader});
}

bool Host::Trailer() {
  return Call("SetTrailerLine", [&] { return device_.SetTrailerLine(1, kNewTrailer, false); },
              {Fact::kProgrammed, kTrailer});
}

bool Host::Department() {
  char name[128] = "FRUTTA";
  int64_t price = 0, limit = 0;
  int32_t quantity = 0, vat = 3;
  uint8_t group = 0;
  bool no = false, yes = true;
  return Call("ConfigDepartment",
              [&] {
                return device_.ConfigDepartment(true, 3, name, &price, &limit, &quantity, &vat,
                                                &group, &no, &yes, &no);
              },
              {Fact::kProgrammed, kDepartment});
}

bool Host::Rates() {
  return Call("SetVatValue", [&] { return device_.SetVatValue(2, "110000"); }) &&
         Call("SetVatTable", [&] { return device_.SetVatTable(); }, {Fact::kProgrammed, kRate});
}

bool Host::Articles() {
  const auto upload = [this](int step, const char* row, Fact fact = {}) {
    return Call(
        "UploadTable", [&] { return device_.UploadTable(1, step, row); }, fact);
  };
  report_.transfer_closed =
      upload(0, "") && upload(1, "'77','ACETO',1,2.00", {Fact::kProgrammed, kFirstArticle}) &&
      upload(1, "'78','OLIO',4,8.50", {Fact::kProgrammed, kSecondArticle}) && upload(2, "");
  return report_.transfer_closed;
}

// --- Reports

bool Host::Reading() {
  return Call("PrintXReport", [&] { return device_.PrintXReport(); });
}

bool Host::ReadingToFile() {
  const std::string file = folder_ + "reading.txt";
  return Call("PrintXReportEx",
              [&] { return device_.PrintXReportEx(1, false, "txt", file.c_str(), 3); }) &&
         IsWritten(file);
}

bool Host::IsWritten(const std::string& file) {
  std::error_code error;
  if (std::filesystem::file_size(file, error) == 0 || error) {
    report_.Wrong("%s: answered 0, and %s is not there", step_, file.c_str());
  }
  return true;
}

bool Host::Closing() {
  return Call("PrintZReportEx", [&] { return device_.PrintZReportEx(true); }, {Fact::kClosure, 0});
}

bool Host::Journal() {
  const std::string file = folder_ + "journal.txt";
  return Call("ProcessEJournalReportGlobal",
              [&] { return device_.ProcessEJournalReportGlobal(file.c_str(), "txt"); }) &&
         IsWritten(file);
}

// --- The day

const std::vector<Host::Step>& Host::Day() {
  static const std::vector<Step> day = {
      {"header", &Host::Header},
      {"rates", &Host::Rates},
      {"receipt", &Host::Receipt},
      {"department", &Host::Department},
      {"trailer", &Host::Trailer},
      {"articles", &Host::Articles},
      {"keyed receipt", &Host::KeyedReceipt},
      {"invoice", &Host::Invoice},
      {"credit note", &Host::CreditNote},
      {"void", &Host::WholeVoid},
      {"cash in", &Host::CashIn},
      {"cash out", &Host::CashOut},
      {"lottery receipt", &Host::LotteryReceipt},
      {"non-fiscal document", &Host::NonFiscal},
      {"abandoned receipt", &Host::Abandoned},
      {"reading", &Host::Reading},
      {"reading to a file", &Host::ReadingToFile},
      {"closing", &Host::Closing},
      {"journal", &Host::Journal},
      {"second day", &Host::SmallReceipt},
      {"second closing", &Host::Closing},
  };
  return day;
}

void Host::LiveHalf() {
  step_ = "half a day";
  for (const Step& step : Day()) {
    if (std::string_view(step.name) == "cash in") break;
    Do(step);
  }
  Call("BeginFiscalReceipt", [&] { return device_.BeginFiscalReceipt(true); });
  Line(1, 1000 * kCents);
  Line(2, 500 * kCents);
  report_.done = true;
}

}  // namespace lorimat
