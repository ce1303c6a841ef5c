#include "register/fault/fault_operations.h"

#include <iterator>

#include "pal/peripherals/keyboard/functioncode.h"

namespace lorimat {
namespace {

constexpr unsigned kHost = 0;
constexpr unsigned kReads = kEffectReads;
constexpr unsigned kActs = kEffectActs;
constexpr unsigned kPrints = kEffectActs | kEffectPrints;
constexpr unsigned kOpens = kPrints | kEffectOpens;
constexpr unsigned kPays = kPrints | kEffectRegisters;
constexpr unsigned kTotals = kPrints | kEffectTotals;

// ResetPrn counts as one that does not print, though it marks an open document as cancelled: it
// is the way out, and has to go through without paper too.
constexpr ClientOperation kOperations[] = {
    {"GetClaimed", kHost, false},
    {"GetDeviceEnabled", kHost, false},
    {"SetDeviceEnabled", kHost, true},
    {"GetState", kHost, false},
    {"GetIntProperty", kHost, true},
    {"SetIntProperty", kHost, true},
    {"GetStringProperty", kHost, true},
    {"SetStringProperty", kHost, true},
    {"GetDataInternal", kReads, true},
    {"SetDataInternal", kActs, true},
    {"Close", kHost, true},
    {"Claim", kHost, true},
    {"Release", kHost, true},
    {"CheckHealth", kPrints, true},
    {"ClearOutput", kActs, true},
    {"CompareFirmwareVersion", kReads, true},
    {"ResetStatistics", kActs, true},
    {"RetrieveStatistics", kReads, true},
    {"UpdateFirmware", kActs, true},
    {"UpdateStatistics", kActs, true},
    {"GetVatEntryExtended", kReads, true},
    {"PrintBarcode", kPrints, true},
    {"PrintBarcodeEx", kPrints, true},
    {"InitJournal", kActs, true},
    {"BeginDocInvoice", kOpens, true},
    {"BeginDocInvoiceOppositionJurisprudence", kOpens, true},
    {"BeginDocRefund", kOpens, true},
    {"BeginDocCancel", kOpens, true},
    {"BeginDocTelematicRefund", kOpens, true},
    {"BeginDocTelematicCancel", kOpens, true},
    {"BeginDocRefundEx", kOpens, true},
    {"SendTelematicSummary", kActs, true},
    {"ExportTelematicSummary", kActs, true},
    {"SaveTelematicSummary", kActs, true},
    {"SaveTelematicSummaryEx", kActs, true},
    {"PrintBitmap", kPrints, true},
    {"SelectBitmap", kActs, true},
    {"ProcessEJournalReportByDate", kActs, true},
    {"ProcessEJournalReportByZNumber", kActs, true},
    {"ProcessEJournalReportByDateZNumber", kActs, true},
    {"ProcessEJournalReportByDateNumber", kActs, true},
    {"ProcessEJournalReportByDateNumberDocType", kActs, true},
    {"ProcessEJournalReportGlobal", kActs, true},
    {"ProgramGRC", kActs, true},
    {"EraseLogoArchive", kActs, true},
    {"BeginAdditionalTrailer", kPrints, true},
    {"PrintPaperCut", kPrints, true},
    {"SetCurrency", kActs, true},
    {"SetDate", kActs, true},
    {"SetHeaderLine", kActs, true},
    {"SetPOSID", kActs, true},
    {"SetStoreFiscalID", kActs, true},
    {"SetTrailerLine", kActs, true},
    {"SetVatTable", kActs, true},
    {"SetVatValue", kActs, true},
    {"BeginFiscalReceipt", kOpens, true},
    {"EndFiscalReceipt", kPrints, true},
    {"PrintDuplicateReceipt", kPrints, true},
    {"PrintRecCash", kPrints, true},
    {"PrintRecItem", kPrints, true},
    {"PrintRecItemVoid", kPrints, true},
    {"PrintRecItemAdjustment", kPrints, true},
    {"PrintRecItemAdjustmentVoid", kPrints, true},
    {"PrintRecItemFuel", kPrints, true},
    {"PrintRecItemFuelVoid", kPrints, true},
    {"PrintRecItemRefund", kPrints, true},
    {"PrintRecItemRefundVoid", kPrints, true},
    {"PrintRecMessage", kPrints, true},
    {"PrintRecNotPaid", kPays, true},
    {"PrintRecPackageAdjustment", kPrints, true},
    {"PrintRecPackageAdjustVoid", kPrints, true},
    {"PrintRecRefund", kPrints, true},
    {"PrintRecRefundVoid", kPrints, true},
    {"PrintRecSubtotal", kTotals, true},
    {"PrintRecSubtotalEx", kTotals, true},
    {"PrintRecSubtotalAdjustment", kPrints, true},
    {"PrintRecSubtotalAdjustVoid", kPrints, true},
    {"PrintRecTaxID", kPrints, true},
    {"PrintRecTotal", kTotals | kPays, true},
    {"PrintRecVoid", kPrints, true},
    {"PrintRecVoidItem", kPrints, true},
    {"TelematicCensus", kActs, true},
    {"TelematicActivate", kActs, true},
    {"TelematicCommissioning", kActs, true},
    {"ZupEcrCmd", kActs, true},
    {"PrintRecItemEx", kPrints, true},
    {"PrintRecItemAdjustmentEx", kPrints, true},
    {"PrintRecItemAdjustmentEx2", kPrints, true},
    {"PrintRecTotalEx", kTotals | kPays, true},
    {"BeginFiscalDocument", kOpens, true},
    {"EndFiscalDocument", kPays, true},
    {"PrintFiscalDocumentLine", kPrints, true},
    {"BeginItemList", kPrints, true},
    {"EndItemList", kPrints, true},
    {"VerifyItem", kPrints, true},
    {"PrintPeriodicTotalsReport", kPrints, true},
    {"PrintPowerLossReport", kPrints, true},
    {"PrintReport", kPrints, true},
    {"PrintXReport", kPrints, true},
    {"PrintZReport", kPays, true},
    {"BeginInsertion", kActs, true},
    {"BeginRemoval", kActs, true},
    {"EndInsertion", kActs, true},
    {"EndRemoval", kActs, true},
    {"BeginFixedOutput", kPrints, true},
    {"BeginNonFiscal", kPrints, true},
    {"BeginNonFiscalJournal", kPrints, true},
    {"BeginTraining", kActs, true},
    {"EndFixedOutput", kPrints, true},
    {"EndNonFiscal", kPrints, true},
    {"EndTraining", kActs, true},
    {"PrintFixedOutput", kPrints, true},
    {"PrintNormal", kPrints, true},
    {"GetData", kReads, true},
    {"GetDate", kReads, true},
    {"GetTotalizer", kReads, true},
    {"GetVatEntry", kReads, true},
    {"ClearError", kActs, true},
    {"ResetPrn", kActs, true},
    {"OpenDrawer", kActs, true},
    {"WaitForDrawerClose", kActs, true},
    {"ClearText", kActs, true},
    {"DisplayText", kActs, true},
    {"DisplayTextAt", kActs, true},
    {"DisplayTextEx", kActs, true},
    {"DisplayTextAtEx", kActs, true},
    {"GetTotalizerExtend", kReads, true},
    {"ProgramFirmware", kActs, true},
    {"EraseTable", kActs, true},
    {"DownloadTable", kReads, true},
    {"UploadTable", kActs, true},
    {"ConfigDepartment", kReads | kActs, true},
    {"ConfigDepartmentEx", kReads | kActs, true},
    {"ConfigGroup", kReads | kActs, true},
    {"ConfigKeyboard", kReads | kActs, true},
    {"ConfigSubtender", kReads | kActs, true},
    {"GetHeaderLine", kReads, true},
    {"KeyCodeInput", kOpens | kPays | kTotals, true},
    {"PrintZReportEx", kPays, true},
    {"DiagnosticsRequest", kPrints, true},
    {"DirectIO", kReads | kActs, true},
    {"PrintXReportEx", kPrints, true},
    {"FiscalReportMessageEx", kPrints, true},
    {"PeriodicReportMessageEx", kPrints, true},
    {"TelematicDocument", kActs, true},
    {"LogTrace", kHost, false},
    {"LogError", kHost, false},
    {"set_wait_event", kHost, false},
    {"set_wait_result_code", kHost, false},
};
static_assert(std::size(kOperations) == 149);

}  // namespace

std::span<const ClientOperation> ClientOperations() { return kOperations; }

const ClientOperation* FindClientOperation(std::string_view name) {
  for (const ClientOperation& operation : kOperations) {
    if (operation.name == name) return &operation;
  }
  return nullptr;
}

unsigned EffectsOfKey(uint8_t key) {
  using F = FunctionCode;
  if (key >= F::kDepartment01 && key <= F::kLastDepartment) return kOpens;
  if (key >= F::kSubTender01 && key <= F::kLastSubTender) return kTotals | kPays;
  // What a macro plays is not looked into.
  if (key >= F::kMacro01 && key <= F::kMacro20) return kOpens | kTotals | kPays;
  switch (key) {
    case F::kDepartment:
    case F::kPlu:
    case F::kOpenTransaction:
    case F::kInvoice:
    case F::kOpenRefundDoc:
    case F::kOpenCancelDoc:
      return kOpens;
    case F::kTotal:
    case F::kCredit:
    case F::kCheque:
    case F::kTicket:
    case F::kCreditCard:
    case F::kCreditInvoice:
    case F::kCreditServices:
    case F::kCreditSSN:
      return kTotals | kPays;
    case F::kSubtotal:
      return kTotals;
    case F::kCancel:
    case F::kPercentageA:
    case F::kPercentageB:
    case F::kAbsoluteDecrease:
    case F::kAbsoluteIncrease:
    case F::kVoidReceipt:
    case F::kTaxCode:
    case F::kCloseTransaction:
    case F::kPaperFeed:
    case F::kShortPaperFeed:
      return kPrints;
    default:
      return kActs;
  }
}

}  // namespace lorimat
