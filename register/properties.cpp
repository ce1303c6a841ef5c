#include "register/properties.h"

#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

using Core = const RegisterCore&;

struct IntRow {
  int property;
  int (*read)(Core);
  int (*write)(RegisterCore&, int);  // null: cannot be written
};

struct TextRow {
  int property;
  std::string RegisterOptions::*text;
  size_t size;
};

int WriteFlag(bool* flag, int value) {
  if (value != 0 && value != 1) return RTF_E_ILLEGAL;
  *flag = value == 1;
  return RTF_SUCCESS;
}

int WriteDateType(RegisterCore& core, int value) {
  if (value != RTF_FPTR_DT_RTC && value != RTF_FPTR_DT_EOD) return RTF_E_ILLEGAL;
  core.options.date_type = value;
  return RTF_SUCCESS;
}

int WriteTotalizerScope(RegisterCore& core, int value) {
  if (value < RTF_FPTR_TT_DOCUMENT || value > RTF_FPTR_TT_GRAND) return RTF_E_ILLEGAL;
  core.options.totalizer_scope = value;
  return RTF_SUCCESS;
}

// Numbering goes on from a number that the host sets, never inside an open invoice.
int WriteInvoiceNumber(RegisterCore& core, int value) {
  if (!core.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (value < 1 || value > 999999) return RTF_E_ILLEGAL;
  core.store.set_next_invoice(value);
  return RTF_SUCCESS;
}

constexpr auto kYes = [](Core) { return 1; };
constexpr auto kNo = [](Core) { return 0; };

const IntRow kIntProperties[] = {
    {RTF_PIDX_Claimed, kYes, nullptr},
    {RTF_PIDX_DeviceEnabled, kYes, nullptr},
    {RTF_PIDX_State, [](Core) { return RTF_S_IDLE; }, nullptr},
    {RTF_PIDX_PowerState, [](Core) { return RTF_PS_ONLINE; }, nullptr},
    {RTF_PIDXFptr_AmountDecimalPlaces, [](Core) { return 4; }, nullptr},
    {RTF_PIDXFptr_AsyncMode, kNo, nullptr},
    {RTF_PIDXFptr_CountryCode, [](Core) { return RTF_FPTR_CC_ITALY; }, nullptr},
    {RTF_PIDXFptr_CoverOpen, kNo, nullptr},
    {RTF_PIDXFptr_DayOpened, [](Core core) { return core.store.day_open() ? 1 : 0; }, nullptr},
    {RTF_PIDXFptr_NumHeaderLines, [](Core) { return Tables::kHeaderLines; }, nullptr},
    {RTF_PIDXFptr_NumVatRates,
     [](Core core) { return static_cast<int>(core.tables.settings().vat_rates.size()); }, nullptr},
    {RTF_PIDXFptr_PrinterState, [](Core core) { return static_cast<int>(core.state); }, nullptr},
    {RTF_PIDXFptr_QuantityDecimalPlaces, [](Core) { return 3; }, nullptr},
    {RTF_PIDXFptr_RecEmpty, kNo, nullptr},
    {RTF_PIDXFptr_RecNearEnd, kNo, nullptr},
    {RTF_PIDXFptr_TrainingModeActive, kNo, nullptr},
    {RTF_PIDXFptr_ActualCurrency, [](Core) { return RTF_FPTR_AC_EUR; }, nullptr},
    {RTF_PIDXFptr_DateType, [](Core core) { return core.options.date_type; }, WriteDateType},
    {RTF_PIDXFptr_TotalizerType, [](Core core) { return core.options.totalizer_scope; },
     WriteTotalizerScope},
    {RTF_PIDXFptr_InvoiceNumber, [](Core core) { return core.store.next_invoice(); },
     WriteInvoiceNumber},
    {RTF_PIDXFptr_CommissioningState,
     [](Core core) { return core.tables.settings().commissioned ? 1 : 0; }, nullptr},
    {RTF_PIDXFptr_PercentageDecimalPlaces, [](Core) { return 4; }, nullptr},
    {RTF_PIDXFptr_ZReportSendPending,
     [](Core core) { return core.store.pending_closures() > 0 ? 1 : 0; }, nullptr},
    {RTF_PIDXFptr_SendLotteriaAEOnClosure,
     [](Core core) { return core.options.send_lottery ? 1 : 0; },
     [](RegisterCore& core, int value) { return WriteFlag(&core.options.send_lottery, value); }},
    {RTF_PIDXFptr_AutoCloseOnInactivity, [](Core core) { return core.options.auto_close ? 1 : 0; },
     [](RegisterCore& core, int value) { return WriteFlag(&core.options.auto_close, value); }},
    {RTF_PIDXFptr_CapAmountAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapPercentAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapPositiveAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapSubAmountAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapSubPercentAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapPositiveSubtotalAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapSubtotal, kYes, nullptr},
    {RTF_PIDXFptr_CapPostPreLine, kYes, nullptr},
    {RTF_PIDXFptr_CapNonFiscalMode, kYes, nullptr},
    {RTF_PIDXFptr_CapHasVatTable, kYes, nullptr},
    {RTF_PIDXFptr_CapDoubleWidth, kYes, nullptr},
    {RTF_PIDXFptr_CapRecPresent, kYes, nullptr},
    {RTF_PIDXFptr_CapXReport, kYes, nullptr},
    {RTF_PIDXFptr_CapTotalizerType, kYes, nullptr},
    {RTF_PIDXFptr_CapTrainingMode, kNo, nullptr},
    {RTF_PIDXFptr_CapDuplicateReceipt, kNo, nullptr},
    {RTF_PIDXFptr_CapFixedOutput, kNo, nullptr},
    {RTF_PIDXFptr_CapItemList, kNo, nullptr},
    {RTF_PIDXFptr_CapSlpPresent, kNo, nullptr},
};

const TextRow kTextProperties[] = {
    {RTF_PIDXFptr_PreLine, &RegisterOptions::pre_line, kPropertyTextSize},
    {RTF_PIDXFptr_PostLine, &RegisterOptions::post_line, kPropertyTextSize},
    {RTF_PIDXFptr_InvoiceSeries, &RegisterOptions::invoice_series, 10},
};

template <typename Row, size_t n>
const Row* Find(const Row (&rows)[n], int property) {
  for (const Row& row : rows) {
    if (row.property == property) return &row;
  }
  return nullptr;
}

}  // namespace

int ReadIntProperty(const RegisterCore& core, int property, int* value) {
  const IntRow* row = Find(kIntProperties, property);
  if (row == nullptr) return RTF_E_ILLEGAL;
  *value = row->read(core);
  return RTF_SUCCESS;
}

int WriteIntProperty(RegisterCore& core, int property, int value) {
  const IntRow* row = Find(kIntProperties, property);
  if (row == nullptr || row->write == nullptr) return RTF_E_ILLEGAL;
  return row->write(core, value);
}

int ReadTextProperty(const RegisterCore& core, int property, std::string* value) {
  const TextRow* row = Find(kTextProperties, property);
  if (row == nullptr) return RTF_E_ILLEGAL;
  *value = core.options.*row->text;
  return RTF_SUCCESS;
}

int WriteTextProperty(RegisterCore& core, int property, std::string_view value) {
  const TextRow* row = Find(kTextProperties, property);
  if (row == nullptr) return RTF_E_ILLEGAL;
  if (value.size() > row->size) return RTF_EFPTR_BAD_LENGTH;
  // The number of an invoice is not changed under it.
  if (property == RTF_PIDXFptr_InvoiceSeries && !core.Allows(Operation::kProgram)) {
    return RTF_EFPTR_WRONG_STATE;
  }
  core.options.*row->text = value;
  return RTF_SUCCESS;
}

}  // namespace lorimat
