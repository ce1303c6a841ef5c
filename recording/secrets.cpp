#include "recording/secrets.h"

#include <algorithm>

#include "rpccommon/services/rtffptrconst.h"

namespace recording {
namespace {

using conversation::Value;
using Operation = ClientOperation;

// A text that is blanked: which argument, or which of what is filled.
struct SecretText {
  Operation operation;
  int argument;      // -1 for none
  int out;           // -1 for none
  int first = -1;    // the first argument that it holds for, as a data item; -1 for any
  size_t least = 1;  // shorter ones are something else: amounts that were keyed
};

constexpr size_t kShortestTaxCode = 11;

constexpr SecretText kSecretTexts[] = {
    {Operation::kConfigGroup, 3, 1},
    {Operation::kTelematicActivate, 0, -1},
    {Operation::kTelematicActivate, 1, -1},
    {Operation::kTelematicActivate, 2, -1},
    {Operation::kTelematicActivate, 3, -1},
    {Operation::kSetStoreFiscalID, 0, -1},
    {Operation::kPrintRecTaxID, 0, -1},
    {Operation::kSetStringProperty, 1, -1, RTF_PIDXFptr_TaxCode},
    {Operation::kGetStringProperty, -1, 0, RTF_PIDXFptr_TaxCode},
    {Operation::kKeyCodeInput, 0, -1, -1, kShortestTaxCode},
    {Operation::kKeyCodeInput, 1, -1},
    {Operation::kKeyCodeInput, 2, -1},
    {Operation::kBeginDocInvoice, 0, -1},
    {Operation::kBeginDocInvoice, 1, -1},
    {Operation::kBeginDocInvoice, 2, -1},
    {Operation::kBeginDocInvoice, 3, -1},
    {Operation::kBeginDocInvoice, 4, -1},
    {Operation::kBeginDocInvoiceOppositionJurisprudence, 0, -1},
    {Operation::kBeginDocInvoiceOppositionJurisprudence, 1, -1},
    {Operation::kBeginDocInvoiceOppositionJurisprudence, 2, -1},
    {Operation::kBeginDocInvoiceOppositionJurisprudence, 3, -1},
    {Operation::kBeginDocInvoiceOppositionJurisprudence, 4, -1},
};

// Shorter ones would be found in words that are none.
constexpr size_t kShortestKnown = 4;

bool HoldsFor(const SecretText& row, Operation operation, const std::vector<Value>& arguments) {
  if (row.operation != operation) return false;
  return row.first == -1 || (!arguments.empty() && arguments[0].text == std::to_string(row.first));
}

}  // namespace

char Blanked(char c) {
  if (c >= '0' && c <= '9') return '0';
  return c == ' ' || c == '\t' ? c : 'X';
}

std::string Blanked(std::string_view text) {
  std::string blanked(text);
  for (char& c : blanked) c = Blanked(c);
  return blanked;
}

std::string Secrets::Line(std::string_view line) {
  if (!line_) return std::string(line);
  std::string blanked = line_(line);
  if (blanked.size() != line.size()) return blanked;
  for (size_t at = 0; at < line.size();) {
    size_t end = at;
    while (end < line.size() && line[end] != blanked[end]) ++end;
    Know(line.substr(at, end - at));
    at = end + 1;
  }
  return blanked;
}

std::string Secrets::Text(std::string_view text) {
  constexpr std::string_view kLine = "Cmd<";
  std::string shown(text);
  const size_t mark = text.find(kLine);
  const size_t close = text.rfind('>');
  if (mark != std::string_view::npos && close != std::string_view::npos && close > mark) {
    const size_t begin = mark + kLine.size();
    shown = std::string(text.substr(0, begin)) + Line(text.substr(begin, close - begin)) +
            std::string(text.substr(close));
  }
  for (const std::string& secret : known_) {
    for (size_t at = shown.find(secret); at != std::string::npos; at = shown.find(secret, at)) {
      shown.replace(at, secret.size(), Blanked(secret));
      at += secret.size();
    }
  }
  return shown;
}

void Secrets::Arguments(Operation operation, std::vector<Value>& arguments) {
  for (const SecretText& row : kSecretTexts) {
    const auto place = static_cast<size_t>(row.argument);
    if (row.argument < 0 || place >= arguments.size()) continue;
    if (HoldsFor(row, operation, arguments)) Blank(arguments[place], row.least);
  }
}

void Secrets::Outs(Operation operation, const std::vector<Value>& arguments,
                   std::vector<Value>& outs) {
  for (const SecretText& row : kSecretTexts) {
    const auto place = static_cast<size_t>(row.out);
    if (row.out < 0 || place >= outs.size()) continue;
    if (HoldsFor(row, operation, arguments)) Blank(outs[place], row.least);
  }
}

void Secrets::Blank(Value& value, size_t least) {
  if (value.kind != Value::kText || value.text.size() < least) return;
  Know(value.text);
  value.text = Blanked(value.text);
}

void Secrets::Know(std::string_view secret) {
  if (secret.size() < kShortestKnown || Blanked(secret) == secret) return;
  if (std::find(known_.begin(), known_.end(), secret) == known_.end()) known_.emplace_back(secret);
}

}  // namespace recording
