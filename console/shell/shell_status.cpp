#include "console/shell/shell_status.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "console/message/fault_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
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

std::string ItemsText(const OpenReceipt& receipt) {
  return TrCount(receipt.items, "{} item", "{} items");
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

const char* KindName(const DeviceState& device) {
  // As "lorimat status --json" names them.
  if (device.training.value_or(false)) return "training";
  if (!device.receipt) return "non-fiscal";
  switch (device.receipt->kind) {
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

Json DocumentJson(const DeviceState& device) {
  if (device.ready()) return Json();
  Json json = {{"kind", KindName(device)}};
  if (device.receipt) {
    const OpenReceipt& receipt = *device.receipt;
    json["lines"] = receipt.items;
    json["subtotal_cents"] = AmountCents(receipt.total);
    json["paid_cents"] = AmountCents(receipt.paid);
    json["to_pay_cents"] = AmountCents(receipt.remaining);
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

std::string FaultsNames(const lorimat::FaultPlan& faults) {
  std::vector<std::string> names;
  for (const lorimat::Fault& fault : faults.faults()) names.push_back(Shown(fault.name));
  return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

std::string PrinterStateText(const DeviceState& device) {
  if (!device.printer) return Tr("NOT KNOWN");
  for (const StateWords& row : kStates) {
    if (row.state == *device.printer) return std::string(Translated(row.words));
  }
  return std::to_string(*device.printer);
}

std::string StatusLine(const DeviceState& device, const std::string& next_sale) {
  std::string line = PrinterStateText(device);
  if (device.receipt) {
    const OpenReceipt& receipt = *device.receipt;
    line += "  " + ItemsText(receipt);
    line += "  " + Tr("subtotal {}", AmountText(receipt.total));
    const bool paying = *device.printer == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    if (paying) line += "  " + Tr("to pay {}", AmountText(receipt.remaining));
  }
  if (device.key_position) line += "  " + Tr("key {}", KeyPositionText(*device.key_position));
  if (device.training.value_or(false)) line += "  " + Tr("TRAINING");
  if (device.faults && !device.faults->empty()) {
    line += "  " + Tr("fault waiting: {}", FaultsNames(*device.faults));
  }
  if (!next_sale.empty()) line += "  " + next_sale;
  return line;
}

std::string StatusText(const DeviceState& device, const std::string& next_sale,
                       const std::vector<std::pair<std::string, std::string>>& more,
                       size_t columns) {
  std::vector<std::pair<std::string, std::string>> rows = {{Tr("State"), PrinterStateText(device)}};
  if (device.key_position) rows.emplace_back(Tr("Key"), KeyPositionText(*device.key_position));
  if (device.training) {
    rows.emplace_back(Tr("Training"), *device.training ? Tr("yes") : Tr("no"));
  }
  if (device.receipt) {
    const OpenReceipt& receipt = *device.receipt;
    rows.emplace_back(Tr("Items"), std::to_string(receipt.items));
    rows.emplace_back(Tr("Subtotal"), AmountText(receipt.total));
    rows.emplace_back(Tr("Paid"), AmountText(receipt.paid));
    rows.emplace_back(Tr("To pay"), AmountText(receipt.remaining));
  }
  if (!next_sale.empty()) rows.emplace_back(Tr("Next sale"), next_sale);
  rows.insert(rows.end(), more.begin(), more.end());
  if (device.faults) {
    const std::vector<lorimat::Fault>& faults = device.faults->faults();
    if (faults.empty()) rows.emplace_back(Tr("Faults"), Tr("none"));
    for (size_t i = 0; i < faults.size(); ++i) {
      rows.emplace_back(i == 0 ? Tr("Faults") : "", FaultText(faults[i]));
    }
  }
  size_t width = 0;
  for (const auto& [name, value] : rows) width = std::max(width, ColumnsOf(name));
  std::string out;
  for (const auto& [name, value] : rows) {
    out += Entry(name + std::string(width + 2 - ColumnsOf(name), ' '), value, columns);
  }
  return out;
}

std::string OpenDocumentWords(const DeviceState& device) {
  if (device.ready()) return {};
  if (!device.receipt) return Tr("a document is open ({})", PrinterStateText(device));
  const OpenReceipt& receipt = *device.receipt;
  return Tr("{} is open, with {} and a subtotal of {}", KindText(receipt.kind), ItemsText(receipt),
            AmountText(receipt.total));
}

Json StateJson(const DeviceState& device, TranslatorMemory::NextSale next_sale) {
  const EnglishMessages english;
  const auto or_null = [](const auto& value) { return value ? Json(*value) : Json(); };
  return {{"printer", device.printer ? Json(PrinterStateText(device)) : Json()},
          {"open_document", DocumentJson(device)},
          {"key_position", or_null(device.key_position)},
          {"key", device.key_position ? Json(KeyPositionText(*device.key_position)) : Json()},
          {"training", or_null(device.training)},
          {"next_sale", NextSaleName(next_sale, device.ready())},
          {"faults", device.faults ? FaultsJson(*device.faults) : Json()}};
}

}  // namespace lorimat::console
