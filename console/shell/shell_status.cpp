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
#include "console/message/text.h"
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

std::string key_text(lorimat::KeyPosition key) {
  switch (key) {
    case lorimat::KeyPosition::kRegister:
      return tr("registering");
    case lorimat::KeyPosition::kRead:
      return tr("reading");
    case lorimat::KeyPosition::kReset:
      return tr("closing");
    case lorimat::KeyPosition::kProgram:
      return tr("programming");
  }
  return {};
}

bool in_receipt(const lorimat::VirtualRegister& device) {
  const int state = device.printer_state();
  return state == RTF_FPTR_PS_FISCAL_RECEIPT || state == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL ||
         state == RTF_FPTR_PS_FISCAL_RECEIPT_ENDING;
}

// The lines of the document that have not been taken back.
uint64_t item_count(const lorimat::Receipt& receipt) {
  return static_cast<uint64_t>(
      std::count_if(receipt.lines().begin(), receipt.lines().end(),
                    [](const auto& line) { return line.open_quantity != 0; }));
}

std::string items_text(const lorimat::Receipt& receipt) {
  return tr_count(item_count(receipt), TR_TEXT("{} item"), TR_TEXT("{} items"));
}

std::string kind_text(lorimat::DocumentKind kind) {
  switch (kind) {
    case lorimat::DocumentKind::kSale:
      return tr("the receipt");
    case lorimat::DocumentKind::kInvoice:
      return tr("the invoice");
    case lorimat::DocumentKind::kRefund:
      return tr("the credit note");
    case lorimat::DocumentKind::kCancel:
      return tr("the void document");
  }
  return {};
}

const char* kind_name(const lorimat::VirtualRegister& device) {
  // As "lorimat status --json" names them.
  if (device.training()) return "training";
  if (!in_receipt(device)) return "non-fiscal";
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

Json document_json(const lorimat::VirtualRegister& device) {
  if (device.printer_state() == RTF_FPTR_PS_MONITOR) return Json();
  Json json = {{"kind", kind_name(device)}};
  if (in_receipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    json["lines"] = item_count(receipt);
    json["subtotal_cents"] = amount_cents(receipt.total());
    json["paid_cents"] = amount_cents(receipt.paid());
    json["to_pay_cents"] = amount_cents(receipt.remaining());
  }
  return json;
}

const char* next_sale_name(TranslatorMemory::NextSale next_sale, bool ready) {
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

std::string faults_names(const lorimat::VirtualRegister& device) {
  std::vector<std::string> names;
  for (const lorimat::Fault& fault : device.faults().faults()) names.push_back(shown(fault.name));
  return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

std::string printer_state_text(const lorimat::VirtualRegister& device) {
  for (const StateWords& row : kStates) {
    if (row.state == device.printer_state()) return std::string(translated(row.words));
  }
  return std::to_string(device.printer_state());
}

std::string status_line(const lorimat::VirtualRegister& device, const std::string& next_sale) {
  std::string line = printer_state_text(device);
  if (in_receipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    line += "  " + items_text(receipt);
    line += "  " + tr("subtotal {}", amount_text(receipt.total()));
    const bool paying = device.printer_state() == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    if (paying) line += "  " + tr("to pay {}", amount_text(receipt.remaining()));
  }
  line += "  " + tr("key {}", key_text(device.key_position()));
  if (device.training()) line += "  " + tr("TRAINING");
  if (!device.faults().empty()) line += "  " + tr("fault waiting: {}", faults_names(device));
  if (!next_sale.empty()) line += "  " + next_sale;
  return line;
}

std::string status_text(const lorimat::VirtualRegister& device, const std::string& file,
                        const std::string& next_sale, size_t columns) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {tr("State"), printer_state_text(device)},
      {tr("Key"), key_text(device.key_position())},
      {tr("Training"), device.training() ? tr("yes") : tr("no")},
  };
  if (in_receipt(device)) {
    const lorimat::Receipt& receipt = device.receipt();
    rows.emplace_back(tr("Items"), std::to_string(item_count(receipt)));
    rows.emplace_back(tr("Subtotal"), amount_text(receipt.total()));
    rows.emplace_back(tr("Paid"), amount_text(receipt.paid()));
    rows.emplace_back(tr("To pay"), amount_text(receipt.remaining()));
  }
  rows.emplace_back(tr("Next sale"), next_sale);
  const lorimat::RegisterStore& store = device.store();
  for (auto& row : DayRows(store.last_closure(), store.counters(), store.day_open(),
                           store.daily().net(), store.grand_total())) {
    rows.push_back(std::move(row));
  }
  rows.emplace_back(tr("Drawer opened"), tr_count(static_cast<uint64_t>(device.drawer_count()),
                                                  TR_TEXT("{} time"), TR_TEXT("{} times")));
  rows.emplace_back(tr("Paper"),
                    tr_count(device.paper_lines().size(), TR_TEXT("{} line"), TR_TEXT("{} lines")));
  rows.emplace_back(tr("Register"),
                    file.empty() ? tr("in memory, gone with the shell") : shown(file));
  const std::vector<lorimat::Fault>& faults = device.faults().faults();
  if (faults.empty()) rows.emplace_back(tr("Faults"), tr("none"));
  for (size_t i = 0; i < faults.size(); ++i) {
    rows.emplace_back(i == 0 ? tr("Faults") : "", fault_text(faults[i]));
  }
  size_t width = 0;
  for (const auto& [name, value] : rows) width = std::max(width, columns_of(name));
  std::string out;
  for (const auto& [name, value] : rows) {
    out += entry(name + std::string(width + 2 - columns_of(name), ' '), value, columns);
  }
  return out;
}

std::string open_document_words(const lorimat::VirtualRegister& device) {
  if (device.printer_state() == RTF_FPTR_PS_MONITOR) return {};
  if (!in_receipt(device)) return tr("a document is open ({})", printer_state_text(device));
  const lorimat::Receipt& receipt = device.receipt();
  return tr("{} is open, with {} and a subtotal of {}", kind_text(receipt.kind()),
            items_text(receipt), amount_text(receipt.total()));
}

Json state_json(const lorimat::VirtualRegister& device, TranslatorMemory::NextSale next_sale) {
  const EnglishMessages english;
  const bool ready = device.printer_state() == RTF_FPTR_PS_MONITOR;
  return {{"printer", printer_state_text(device)},
          {"open_document", document_json(device)},
          {"key_position", static_cast<int>(device.key_position())},
          {"key", key_text(device.key_position())},
          {"training", device.training()},
          {"next_sale", next_sale_name(next_sale, ready)},
          {"faults", faults_json(device.faults())}};
}

}  // namespace lorimat::console
