#include "register/desk/data_items.h"

#include <fmt/format.h>

#include <optional>

#include "register/desk/keyboard.h"
#include "register/desk/setup_desk.h"
#include "register/tables/tenders.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

using Core = const RegisterCore&;
using Keys = const Keyboard&;

template <typename Number>
std::string Text(Number value) {
  return std::to_string(value);
}

// "DDMMYYYYHHMM".
std::string DateTimeText(const std::tm& time) {
  return fmt::format("{:02}{:02}{:04}{:02}{:02}", time.tm_mday, time.tm_mon + 1,
                     1900 + time.tm_year, time.tm_hour, time.tm_min);
}

// 0 idle, 1 idle with the key out of the registering position, 2 receipt, 3 receipt being
// paid, 4 settled and waiting to be closed, 5 invoice, 6 credit note or void, 7 non-fiscal.
int FunctionalState(Core core) {
  switch (core.state) {
    case PrinterState::kMonitor:
      return core.key == KeyPosition::kRegister ? 0 : 1;
    case PrinterState::kReceipt:
      if (core.document.cash != CashMove::kNone) return 7;
      switch (core.document.receipt.kind()) {
        case DocumentKind::kSale:
          return 2;
        case DocumentKind::kInvoice:
          return 5;
        case DocumentKind::kRefund:
        case DocumentKind::kCancel:
          return 6;
      }
      return 2;
    case PrinterState::kTotal:
      return 3;
    case PrinterState::kEnding:
      return 4;
    case PrinterState::kNonFiscal:
    case PrinterState::kItemList:
      return 7;
  }
  return 0;
}

// 0 idle, 1 lines, 2 payment, 3 closing, 4 at the subtotal.
int OperationState(Core core) {
  switch (core.state) {
    case PrinterState::kReceipt:
      return core.document.receipt.at_subtotal() ? 4 : 1;
    case PrinterState::kTotal:
      return 2;
    case PrinterState::kEnding:
      return 3;
    case PrinterState::kMonitor:
    case PrinterState::kNonFiscal:
    case PrinterState::kItemList:
      break;
  }
  return 0;
}

// Bit 0x4: the cover is open. Bit 0x8: no day is open. Bit 0x20: in service. Bits 0x10000 and
// 0x20000: the paper is at its end, or near it. Bit 0x80000: a fault stops the device. The others
// stay clear.
unsigned InnerState(Core core) {
  unsigned state = 0;
  const FaultPlan& faults = core.faults;
  if (faults.Waits(kCoverOpenFault)) state |= 0x4 | 0x80000;
  if (faults.Waits(kPaperEndFault)) state |= 0x10000 | 0x80000;
  if (faults.Waits(kPaperNearEndFault)) state |= 0x20000;
  if (faults.Waits(kOffLineFault) || faults.Waits(kFiscalMemoryFullFault)) state |= 0x80000;
  if (!core.store.day_open()) state |= 0x8;
  if (core.in_service()) state |= 0x20;
  return state;
}

std::string Status(Core core, Keys) {
  return fmt::format("{:X};{};{};{:X};{:X};{};{}", InnerState(core), FunctionalState(core),
                     OperationState(core), core.faults.Waits(kFiscalMemoryFullFault) ? 1 : 0, 0,
                     core.current_operator, static_cast<int>(core.key));
}

std::optional<bool> ReadFlag(std::string_view text) {
  if (text == "0") return false;
  if (text == "1") return true;
  return std::nullopt;
}

int NoFlag(std::string_view text) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotAFlag, Subject::kDataItem, {}, text);
}

int WriteAutoCut(RegisterCore& core, std::string_view text) {
  const std::optional<bool> flag = ReadFlag(text);
  if (!flag) return NoFlag(text);
  core.options.auto_cut = *flag;
  return RTF_SUCCESS;
}

int WriteHoldSettled(RegisterCore& core, std::string_view text) {
  const std::optional<bool> flag = ReadFlag(text);
  if (!flag) return NoFlag(text);
  core.options.hold_settled = *flag;
  return RTF_SUCCESS;
}

int WriteCourtesyText(RegisterCore& core, std::string_view text) {
  if (text.size() > 50) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kCourtesyText,
                       {static_cast<int64_t>(text.size()), 50});
  }
  core.options.courtesy_text = text;
  return RTF_SUCCESS;
}

int WriteClock(RegisterCore& core, std::string_view text) { return SetupDesk(core).SetDate(text); }

// The options of the device can be set between documents only.
template <int item>
std::string ReadOption(Core core, Keys) {
  return core.device_options.Read(item);
}

template <int item>
int WriteOption(RegisterCore& core, std::string_view text) {
  if (!core.Allows(Operation::kProgram)) return RTF_EFPTR_WRONG_STATE;
  return core.device_options.Write(item, text);
}

// What the day collected by the tenders of a data item.
template <int item>
std::string DayTenders(Core core, Keys) {
  Amount sum = 0;
  for (const TenderRow& row : kTenders) {
    if (row.data_item == item) AddTo(&sum, core.store.day().Tender(std::string(row.id)));
  }
  return Text(sum);
}

// And by a subtender.
template <int number>
std::string DaySubtender(Core core, Keys) {
  return Text(core.store.day().Tender(Tables::SubtenderId(number)));
}

const DataItem kItems[] = {
    {1, "receipts of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().sales); }, nullptr},
    {2, "invoices of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().invoices); }, nullptr},
    {9, "grand total", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.grand_total()); }, nullptr},
    {12, "closures made", "count", [](Core core, Keys) { return Text(core.store.last_closure()); },
     nullptr},
    {15, "last invoice number", "number",
     [](Core core, Keys) { return Text(core.store.next_invoice() - 1); }, nullptr},
    {28, "credit notes of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().refunds); }, nullptr},
    {29, "invoices of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().invoices); }, nullptr},
    {32, "sales of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().receipts); }, nullptr},
    {57, "day open", "flag", [](Core core, Keys) { return Text(core.store.day_open() ? 1 : 0); },
     nullptr},
    {58, "openings of the drawer", "count", [](Core core, Keys) { return Text(core.drawer_count); },
     nullptr},
    {60, "option 60", "text", ReadOption<60>, WriteOption<60>},
    {75, "header lines", "count", [](Core, Keys) { return Text(Tables::kHeaderLines); }, nullptr},
    {77, "VAT entries", "count",
     [](Core core, Keys) { return Text(core.tables.settings().vat_rates.size()); }, nullptr},
    {78, "departments", "count",
     [](Core core, Keys) { return Text(core.tables.settings().departments.size()); }, nullptr},
    {86, "in service", "flag", [](Core core, Keys) { return Text(core.in_service() ? 1 : 0); },
     nullptr},
    {89, "total of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().net()); }, nullptr},
    {92, "serial number", "text",
     [](Core core, Keys) { return core.tables.settings().serial_number; }, nullptr},
    {98, "grand total", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.grand_total()); }, nullptr},
    {103, "firmware version", "text", [](Core core, Keys) { return core.firmware_version; },
     nullptr},
    {104, "keyboard connected", "number", [](Core, Keys) { return Text(Keyboards::kConnected); },
     nullptr},
    {105, "numbers of the keyboards", "list", [](Core, Keys) { return Keyboards::Types(); },
     nullptr},
    {106, "names of the keyboards", "list", [](Core, Keys) { return Keyboards::Names(); }, nullptr},
    {107, "keys of the keyboards", "list", [](Core, Keys) { return Keyboards::KeyCounts(); },
     nullptr},
    {108, "groups", "count", [](Core core, Keys) { return Text(core.tables.settings().groups); },
     nullptr},
    {109, "articles", "count",
     [](Core core, Keys) { return Text(core.tables.settings().articles.size()); }, nullptr},
    {110, "operators", "count",
     [](Core core, Keys) { return Text(core.tables.settings().operators); }, nullptr},
    {112, "non-fiscal documents of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().non_fiscal); }, nullptr},
    {113, "non-fiscal documents of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().non_fiscal); }, nullptr},
    {114, "abandoned documents of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().abandoned); }, nullptr},
    {115, "void documents of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().cancels); }, nullptr},
    {117, "openings of the drawer", "count",
     [](Core core, Keys) { return Text(core.drawer_count); }, nullptr},
    {118, "credit notes of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().refunds); }, nullptr},
    {121, "receipts of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.day().of(DocumentKind::kSale).total); }, nullptr},
    {148, "close and cut by itself", "flag",
     [](Core core, Keys) { return Text(core.options.auto_cut ? 1 : 0); }, WriteAutoCut},
    {149, "device clock", "DDMMYYYYHHMM", [](Core core, Keys) { return DateTimeText(core.Now()); },
     WriteClock},
    {150, "option 150", "number", ReadOption<150>, WriteOption<150>},
    {151, "option 151", "number", ReadOption<151>, WriteOption<151>},
    {152, "courtesy text", "text", [](Core core, Keys) { return core.options.courtesy_text; },
     WriteCourtesyText},
    {154, "receipts of the day", "count",
     [](Core core, Keys) { return Text(core.store.counters().sales); }, nullptr},
    {155, "closures not sent", "count",
     [](Core core, Keys) { return Text(core.store.pending_closures()); }, nullptr},
    {156, "oldest closure not sent", "DDMMYYYY",
     [](Core core, Keys) {
       const std::optional<Closure> closure = core.store.FirstPending();
       return closure ? DateTimeText(closure->time).substr(0, 8) : std::string();
     },
     nullptr},
    {157, "subtenders", "count", [](Core, Keys) { return Text(Tables::kSubtenders); }, nullptr},
    {204, "contrast of the display", "80, 100 or 120", ReadOption<204>, WriteOption<204>},
    {317, "option 317", "flag", ReadOption<317>, WriteOption<317>},
    {318, "option 318", "flag", ReadOption<318>, WriteOption<318>},
    {352, "fixed decimal point", "flag",
     [](Core core, Keys) { return Text(core.tables.settings().fixed_decimal_point ? 1 : 0); },
     nullptr},
    {367, "option 367", "flag", ReadOption<367>, WriteOption<367>},
    {368, "refusal of the last key", "result code",
     [](Core, Keys keys) { return Text(keys.error()); }, nullptr},
    {371, "status line", "text", Status, nullptr},
    {372, "cash of the day", "ten-thousandths", DayTenders<372>, nullptr},
    {373, "credit of the day", "ten-thousandths", DayTenders<373>, nullptr},
    {374, "cheques of the day", "ten-thousandths", DayTenders<374>, nullptr},
    {375, "cards of the day", "ten-thousandths", DayTenders<375>, nullptr},
    {376, "tickets of the day", "ten-thousandths", DayTenders<376>, nullptr},
    {377, "discounts of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().discounts); }, nullptr},
    {378, "surcharges of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().surcharges); }, nullptr},
    {379, "refund lines of the day", "ten-thousandths",
     [](Core core, Keys) {
       const Totals& day = core.store.day();
       constexpr unsigned kKinds = Totals::kSales | Totals::kInvoices;
       EnteredAmount refunds = day.Sum(kKinds, 0, EnteredFigure::kRefundLines);
       AddTo(&refunds.amount, refunds.taken_back, -1);
       return Text(refunds.amount);
     },
     nullptr},
    {380, "void documents of the day", "ten-thousandths",
     [](Core core, Keys) { return Text(core.store.daily().cancels); }, nullptr},
    {381, "subtender 1 of the day", "ten-thousandths", DaySubtender<1>, nullptr},
    {382, "subtender 2 of the day", "ten-thousandths", DaySubtender<2>, nullptr},
    {383, "subtender 3 of the day", "ten-thousandths", DaySubtender<3>, nullptr},
    {384, "subtender 4 of the day", "ten-thousandths", DaySubtender<4>, nullptr},
    {385, "subtender 5 of the day", "ten-thousandths", DaySubtender<5>, nullptr},
    {386, "subtender 6 of the day", "ten-thousandths", DaySubtender<6>, nullptr},
    {387, "subtender 7 of the day", "ten-thousandths", DaySubtender<7>, nullptr},
    {388, "subtender 8 of the day", "ten-thousandths", DaySubtender<8>, nullptr},
    {389, "subtender 9 of the day", "ten-thousandths", DaySubtender<9>, nullptr},
    {390, "subtender 10 of the day", "ten-thousandths", DaySubtender<10>, nullptr},
    {394, "last closure number", "number",
     [](Core core, Keys) { return Text(core.store.last_closure()); }, nullptr},
    {395, "option 395", "flag", ReadOption<395>, WriteOption<395>},
    {396, "option 396", "flag", ReadOption<396>, WriteOption<396>},
    {399, "option 399", "number", ReadOption<399>, WriteOption<399>},
    {400, "option 400", "number", ReadOption<400>, WriteOption<400>},
    {401, "option 401", "text", ReadOption<401>, WriteOption<401>},
    {402, "option 402", "number", ReadOption<402>, WriteOption<402>},
    {415, "option 415", "flag", ReadOption<415>, WriteOption<415>},
    {418, "option 418", "flag", ReadOption<418>, WriteOption<418>},
    {419, "option 419", "flag", ReadOption<419>, WriteOption<419>},
    {kDrawerAtEnd, "drawer opens at the end", "flag", ReadOption<kDrawerAtEnd>,
     WriteOption<kDrawerAtEnd>},
    {600, "settled documents wait to be closed", "flag",
     [](Core core, Keys) { return Text(core.options.hold_settled ? 1 : 0); }, WriteHoldSettled},
};

}  // namespace

std::span<const DataItem> DataItems() { return kItems; }

const DataItem* FindDataItem(int number) {
  for (const DataItem& item : kItems) {
    if (item.number == number) return &item;
  }
  return nullptr;
}

}  // namespace lorimat
