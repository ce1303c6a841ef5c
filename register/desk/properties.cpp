#include "register/desk/properties.h"

#include <algorithm>

#include "register/desk/day_notice.h"
#include "register/value/refusal.h"
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

int NoProperty(int property) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kProperty, {property});
}

int NotAllowed(int value) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kPropertyValue, {value});
}

int WriteFlag(bool* flag, int value) {
  if (value != 0 && value != 1) return NotAllowed(value);
  *flag = value == 1;
  return RTF_SUCCESS;
}

int WriteDateType(RegisterCore& core, int value) {
  if (value != RTF_FPTR_DT_RTC && value != RTF_FPTR_DT_EOD) return NotAllowed(value);
  core.options.date_type = value;
  return RTF_SUCCESS;
}

int WriteTotalizerScope(RegisterCore& core, int value) {
  if (value < RTF_FPTR_TT_DOCUMENT || value > RTF_FPTR_TT_GRAND) return NotAllowed(value);
  core.options.totalizer_scope = value;
  return RTF_SUCCESS;
}

// Numbering goes on from a number that the host sets, never inside an open invoice.
int WriteInvoiceNumber(RegisterCore& core, int value) {
  if (!core.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  if (value < 1 || value > 999999) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kInvoiceNumber,
                       {value, 1, 999999});
  }
  core.store.SetNextInvoice(value, core.Now());
  return RTF_SUCCESS;
}

int WriteReceiptType(RegisterCore& core, int value) {
  if (!core.Allows(Operation::kDuplicate)) return RTF_EFPTR_WRONG_STATE;
  switch (value) {
    case RTF_FPTR_RT_CASH_IN:
    case RTF_FPTR_RT_CASH_OUT:
    case RTF_FPTR_RT_SALES:
    case RTF_FPTR_RT_SIMPLE_INVOICE:
    case RTF_FPTR_RT_REFUND:
    case RTF_FPTR_RT_CANCEL:
      core.session.receipt_type = value;
      return RTF_SUCCESS;
    default:
      return RTF_E_ILLEGAL;
  }
}

// The buffer goes with the flag.
int WriteDuplicateReceipt(RegisterCore& core, int value) {
  if (const int code = WriteFlag(&core.session.buffer_receipts, value)) return code;
  if (value == 0) core.session.buffered.reset();
  return RTF_SUCCESS;
}

constexpr auto kYes = [](Core) { return 1; };
constexpr auto kNo = [](Core) { return 0; };

// Whether the device is in a condition that a fault brings.
int Waits(Core core, std::string_view fault) { return core.faults.Waits(fault) ? 1 : 0; }

const IntRow kIntProperties[] = {
    {RTF_PIDX_Claimed, [](Core core) { return core.service >= ServiceState::kClaimed ? 1 : 0; },
     nullptr},
    {RTF_PIDX_DeviceEnabled,
     [](Core core) { return core.service == ServiceState::kEnabled ? 1 : 0; }, nullptr},
    {RTF_PIDX_PowerState,
     [](Core core) { return Waits(core, kOffLineFault) ? RTF_PS_OFFLINE : RTF_PS_ONLINE; },
     nullptr},
    {RTF_PIDXFptr_AmountDecimalPlaces, [](Core) { return 4; }, nullptr},
    {RTF_PIDXFptr_AsyncMode, kNo, nullptr},
    {RTF_PIDXFptr_CountryCode, [](Core) { return RTF_FPTR_CC_ITALY; }, nullptr},
    {RTF_PIDXFptr_CoverOpen, [](Core core) { return Waits(core, kCoverOpenFault); }, nullptr},
    {RTF_PIDXFptr_DayOpened, [](Core core) { return core.store.day_open() ? 1 : 0; }, nullptr},
    {RTF_PIDXFptr_NumHeaderLines, [](Core) { return Tables::kHeaderLines; }, nullptr},
    {RTF_PIDXFptr_NumTrailerLines, [](Core) { return DeviceSetup::kTrailerLines; }, nullptr},
    {RTF_PIDXFptr_NumVatRates,
     [](Core core) { return static_cast<int>(core.tables.settings().vat_rates.size()); }, nullptr},
    {RTF_PIDXFptr_PrinterState, [](Core core) { return static_cast<int>(core.state); }, nullptr},
    {RTF_PIDXFptr_QuantityDecimalPlaces, [](Core) { return 3; }, nullptr},
    {RTF_PIDXFptr_RecEmpty, [](Core core) { return Waits(core, kPaperEndFault); }, nullptr},
    {RTF_PIDXFptr_RecNearEnd,
     [](Core core) { return Waits(core, kPaperNearEndFault) | Waits(core, kPaperEndFault); },
     nullptr},
    {RTF_PIDXFptr_RemainingFiscalMemory,
     [](Core core) {
       if (Waits(core, kFiscalMemoryFullFault) != 0) return 0;
       return RegisterStore::kLastNumber -
              std::clamp(core.store.last_closure(), 0, RegisterStore::kLastNumber);
     },
     nullptr},
    {RTF_PIDXFptr_TrainingModeActive, [](Core core) { return core.setup.training ? 1 : 0; },
     nullptr},
    {RTF_PIDXFptr_DuplicateReceipt, [](Core core) { return core.session.buffer_receipts ? 1 : 0; },
     WriteDuplicateReceipt},
    {RTF_PIDXFptr_FiscalReceiptType, [](Core core) { return core.session.receipt_type; },
     WriteReceiptType},
    {RTF_PIDXFptr_ActualCurrency, [](Core) { return RTF_FPTR_AC_EUR; }, nullptr},
    {RTF_PIDXFptr_DateType, [](Core core) { return core.options.date_type; }, WriteDateType},
    {RTF_PIDXFptr_TotalizerType, [](Core core) { return core.options.totalizer_scope; },
     WriteTotalizerScope},
    {RTF_PIDXFptr_InvoiceNumber, [](Core core) { return core.store.next_invoice(); },
     WriteInvoiceNumber},
    {RTF_PIDXFptr_CommissioningState,
     [](Core core) { return static_cast<int>(core.setup.commissioning); }, nullptr},
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
    {RTF_PIDX_CapPowerReporting, [](Core) { return RTF_PR_STANDARD; }, nullptr},
    {RTF_PIDXFptr_CapCoverSensor, kYes, nullptr},
    {RTF_PIDXFptr_CapRecEmptySensor, kYes, nullptr},
    {RTF_PIDXFptr_CapRecNearEndSensor, kYes, nullptr},
    {RTF_PIDXFptr_CapRemainingFiscalMemory, kYes, nullptr},
    {RTF_PIDXFptr_CapXReport, kYes, nullptr},
    {RTF_PIDXFptr_CapTotalizerType, kYes, nullptr},
    {RTF_PIDXFptr_CapTrainingMode, kYes, nullptr},
    {RTF_PIDXFptr_CapDuplicateReceipt, kYes, nullptr},
    {RTF_PIDXFptr_CapItemList, kYes, nullptr},
    {RTF_PIDXFptr_CapPackageAdjustment, kYes, nullptr},
    {RTF_PIDXFptr_CapPowerLossReport, kYes, nullptr},
    {RTF_PIDXFptr_CapReceiptNotPaid, kYes, nullptr},
    {RTF_PIDXFptr_CapAmountNotPaid, kYes, nullptr},
    {RTF_PIDXFptr_CapFiscalReceiptType, kYes, nullptr},
    {RTF_PIDXFptr_CapAdditionalTrailer, kYes, nullptr},
    {RTF_PIDXFptr_CapSetHeader, kYes, nullptr},
    {RTF_PIDXFptr_CapSetTrailer, kYes, nullptr},
    {RTF_PIDXFptr_CapSetVatTable, kYes, nullptr},
    {RTF_PIDXFptr_CapSetPOSID, kYes, nullptr},
    {RTF_PIDXFptr_CapSetStoreFiscalID, kYes, nullptr},
    {RTF_PIDX_CapCompareFirmwareVersion, kYes, nullptr},
    {RTF_PIDX_CapUpdateFirmware, kYes, nullptr},
    {RTF_PIDX_CapStatisticsReporting, kNo, nullptr},
    {RTF_PIDX_CapUpdateStatistics, kNo, nullptr},
    {RTF_PIDXFptr_CapSetCurrency, kNo, nullptr},
    {RTF_PIDXFptr_CapFixedOutput, kNo, nullptr},
    {RTF_PIDXFptr_CapSlpPresent, kNo, nullptr},
    {RTF_PIDXFptr_CapSlpFiscalDocument, kNo, nullptr},
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

ServiceState PropertyNeeds(int property) {
  if (property == RTF_PIDX_State) return ServiceState::kClosed;
  constexpr int kCapabilities = 500;  // of a class, from this index on
  constexpr int kExtensions = 800;
  const int place = property % RTF_PIDX_STRING;
  const int index = place % RTF_PIDX_CASH;
  const bool capability = index > kCapabilities && index < kExtensions;
  return place < RTF_PIDX_CASH || capability ? ServiceState::kOpen : ServiceState::kEnabled;
}

int ReadIntProperty(const RegisterCore& core, int property, int* value) {
  const IntRow* row = Find(kIntProperties, property);
  if (row == nullptr) return NoProperty(property);
  *value = row->read(core);
  return RTF_SUCCESS;
}

int WriteIntProperty(RegisterCore& core, int property, int value) {
  const IntRow* row = Find(kIntProperties, property);
  if (row == nullptr) return NoProperty(property);
  if (row->write == nullptr) return Refuse(RTF_E_ILLEGAL, RefusalCause::kReadOnly, {property});
  return row->write(core, value);
}

int ReadTextProperty(const RegisterCore& core, int property, std::string* value) {
  if (property == RTF_PIDX_CheckHealthText) {
    *value = core.session.health;
    return RTF_SUCCESS;
  }
  if (property == RTF_PIDXFptr_ErrorString) {
    const LotteryDropCause drop = core.session.lottery_drop.cause;
    if (drop != LotteryDropCause::kNone) {
      *value = LotteryDropText(drop);
    } else if (!core.last_failure.empty()) {
      *value = core.last_failure;
    } else {
      // What is to be known of the day. It may be asked at any moment, behind a failure too: it
      // reads neither the clock, which is the host's, nor the file.
      *value = DayNoticeText(FindDayNotice(core.store, core.seen()));
    }
    return RTF_SUCCESS;
  }
  const TextRow* row = Find(kTextProperties, property);
  if (row == nullptr) return NoProperty(property);
  *value = core.options.*row->text;
  return RTF_SUCCESS;
}

int WriteTextProperty(RegisterCore& core, int property, std::string_view value) {
  const TextRow* row = Find(kTextProperties, property);
  if (row == nullptr) return NoProperty(property);
  if (value.size() > row->size) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kProperty,
                       {static_cast<int64_t>(value.size()), static_cast<int64_t>(row->size)});
  }
  // The number of an invoice is not changed under it.
  if (property == RTF_PIDXFptr_InvoiceSeries && !core.Allows(Operation::kProgram)) {
    return RTF_EFPTR_WRONG_STATE;
  }
  core.options.*row->text = value;
  return RTF_SUCCESS;
}

}  // namespace lorimat
