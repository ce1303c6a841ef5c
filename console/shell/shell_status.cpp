#include "console/shell/shell_status.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "console/message/fault_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

struct StateWords {
  int state;
  const char* words;
};

constexpr StateWords kStates[] = {
    {RTF_FPTR_PS_MONITOR, TR_TEXT("READY")},
    {RTF_FPTR_PS_FISCAL_RECEIPT, TR_TEXT("RECEIPT OPEN")},
    {RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL, TR_TEXT("PAYING")},
    {RTF_FPTR_PS_FISCAL_RECEIPT_ENDING, TR_TEXT("ENDING")},
    {RTF_FPTR_PS_FISCAL_DOCUMENT, TR_TEXT("FISCAL DOCUMENT")},
    {RTF_FPTR_PS_FIXED_OUTPUT, TR_TEXT("FIXED OUTPUT")},
    {RTF_FPTR_PS_ITEM_LIST, TR_TEXT("ITEM LIST")},
    {RTF_FPTR_PS_LOCKED, TR_TEXT("LOCKED")},
    {RTF_FPTR_PS_NONFISCAL, TR_TEXT("NON-FISCAL")},
    {RTF_FPTR_PS_REPORT, TR_TEXT("REPORT")},
};

std::string KeyText(lorimat::KeyPosition key) { return KeyPositionText(static_cast<int>(key)); }

bool InReceipt(const lorimat::VirtualRegister& device) {
  const int state = device.printer_state();
  return state == RTF_FPTR_PS_FISCAL_RECEIPT || state == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL ||
         state == RTF_FPTR_PS_FISCAL_RECEIPT_ENDING;
}

// The lines of the document that have not been taken back.
uint64_t ItemCount(const lorimat::Receipt& receipt) {
  return static_cast<uint64_t>(
      std::count_if(receipt.lines().begin(), receipt.lines().end(),
                    [](const auto& line) { return line.open_quantity != 0; }));
}

std::string ItemsText(const lorimat::Receipt& receipt) {
  return TrCount(ItemCount(receipt), "{} item", "{} items");
}

std::string KindText(lorimat::DocumentKind kind) {
  switch (kind) {
    case lorimat::DocumentKind::kSale:
      return Tr("the receipt");
    case lorimat::DocumentKind::kInvoice:
      return Tr("the invoice");
    case lorimat::DocumentKind::kRefund:
      return Tr("the credit note");
    case lorimat::DocumentKind::kCancel:
      return Tr("the void document");
  }
  return {};
}

const char* KindName(const lorimat::VirtualRegister& device) {
  // As "lorimat status --json" names them.
  if (device.training()) return "training";
  if (!InReceipt(device)) return "non-fiscal";
  switch (device.receipt().kind()) {
    case lorimat::DocumentKind::kSale:
      return "receipt";
    case lorimat::DocumentKind::kInvoice:
      return "invoice";
    case lorimat::DocumentKind::kRefund:
      return "credit note";
    case lorimat::DocumentKind::kCancel:
      return "void";
  }
  return "";
}

Json DocumentJson(const lorimat::VirtualRegister& device) {
  if (device.printer_state() == RTF_FPTR_PS_MONITOR) return Json();
  Json json = {{"kind", KindName(device)}};
  if (InReceipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    json["lines"] = ItemCount(receipt);
    json["subtotal_cents"] = AmountCents(receipt.total());
    json["paid_cents"] = AmountCents(receipt.paid());
    json["to_pay_cents"] = AmountCents(receipt.remaining());
  }
  return json;
}

const char* NextSaleName(TranslatorMemory::NextSale next_sale, bool ready) {
  switch (next_sale) {
    case TranslatorMemory::NextSale::kOpensReceipt:
      return "opens-receipt";
    case TranslatorMemory::NextSale::kOpensNone:
      return ready ? "lost" : "goes-into-document";
    case TranslatorMemory::NextSale::kUnknown:
      break;
  }
  return "unknown";
}

std::string FaultsNames(const lorimat::VirtualRegister& device) {
  std::vector<std::string> names;
  for (const lorimat::Fault& fault : device.faults().faults()) names.push_back(Shown(fault.name));
  return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

std::string PrinterStateText(const lorimat::VirtualRegister& device) {
  for (const StateWords& row : kStates) {
    if (row.state == device.printer_state()) return std::string(Translated(row.words));
  }
  return std::to_string(device.printer_state());
}

std::string StatusLine(const lorimat::VirtualRegister& device, const std::string& next_sale) {
  std::string line = PrinterStateText(device);
  if (InReceipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    line += "  " + ItemsText(receipt);
    line += "  " + Tr("subtotal {}", AmountText(receipt.total()));
    const bool paying = device.printer_state() == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    if (paying) line += "  " + Tr("to pay {}", AmountText(receipt.remaining()));
  }
  line += "  " + Tr("key {}", KeyText(device.key_position()));
  if (device.training()) line += "  " + Tr("TRAINING");
  if (!device.faults().empty()) line += "  " + Tr("fault waiting: {}", FaultsNames(device));
  if (!next_sale.empty()) line += "  " + next_sale;
  return line;
}

std::string StatusText(const lorimat::VirtualRegister& device, const std::string& file,
                       const std::string& next_sale, size_t columns) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {Tr("State"), PrinterStateText(device)},
      {Tr("Key"), KeyText(device.key_position())},
      {Tr("Training"), device.training() ? Tr("yes") : Tr("no")},
  };
  if (InReceipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    rows.emplace_back(Tr("Items"), std::to_string(ItemCount(receipt)));
    rows.emplace_back(Tr("Subtotal"), AmountText(receipt.total()));
    rows.emplace_back(Tr("Paid"), AmountText(receipt.paid()));
    rows.emplace_back(Tr("To pay"), AmountText(receipt.remaining()));
  }
  rows.emplace_back(Tr("Next sale"), next_sale);
  const lorimat::RegisterStore& store = device.store();
  for (auto& row : DayRows(store.last_closure(), store.counters(), store.day_open(),
                           store.daily().net(), store.grand_total())) {
    rows.push_back(std::move(row));
  }
  for (const std::string& text : DayNoticeTexts(device.FindNotice())) {
    rows.emplace_back(Tr("Note"), text);
  }
  rows.emplace_back(Tr("Drawer opened"),
                    TrCount(static_cast<uint64_t>(device.drawer_count()), "{} time", "{} times"));
  rows.emplace_back(Tr("Paper"), TrCount(device.paper_lines().size(), "{} line", "{} lines"));
  rows.emplace_back(Tr("Register"),
                    file.empty() ? Tr("in memory, gone with the shell") : Shown(file));
  const std::vector<lorimat::Fault>& faults = device.faults().faults();
  if (faults.empty()) rows.emplace_back(Tr("Faults"), Tr("none"));
  for (size_t i = 0; i < faults.size(); ++i) {
    rows.emplace_back(i == 0 ? Tr("Faults") : "", FaultText(faults[i]));
  }
  size_t width = 0;
  for (const auto& [name, value] : rows) width = std::max(width, ColumnsOf(name));
  std::string out;
  for (const auto& [name, value] : rows) {
    out += Entry(name + std::string(width + 2 - ColumnsOf(name), ' '), value, columns);
  }
  return out;
}

std::string OpenDocumentWords(const lorimat::VirtualRegister& device) {
  if (device.printer_state() == RTF_FPTR_PS_MONITOR) return {};
  if (!InReceipt(device)) return Tr("a document is open ({})", PrinterStateText(device));
  const lorimat::Receipt& receipt = device.receipt();
  return Tr("{} is open, with {} and a subtotal of {}", KindText(receipt.kind()),
            ItemsText(receipt), AmountText(receipt.total()));
}

Json StateJson(const lorimat::VirtualRegister& device, TranslatorMemory::NextSale next_sale) {
  const EnglishMessages english;
  const bool ready = device.printer_state() == RTF_FPTR_PS_MONITOR;
  return {{"printer", PrinterStateText(device)},
          {"open_document", DocumentJson(device)},
          {"key_position", static_cast<int>(device.key_position())},
          {"key", KeyText(device.key_position())},
          {"training", device.training()},
          {"next_sale", NextSaleName(next_sale, ready)},
          {"faults", FaultsJson(device.faults())}};
}

}  // namespace lorimat::console
