// What only hosts of the standard's own operations ask for: chosen kinds of documents, cash in
// and out, packages of adjustments, copies.
#include <charconv>
#include <utility>

#include "managermachine/pflitemtype.h"
#include "register/desk/receipt_desk.h"
#include "register/tables/tenders.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr const char* kCopyMark = "*** COPIA - NON FISCALE ***";

struct CashRow {
  CashMove move;
  const char* title;
  const char* line;
};

constexpr CashRow kCash[] = {
    {CashMove::kIn, "VERSAMENTO DI CASSA", "VERSAMENTO"},
    {CashMove::kOut, "PRELIEVO DI CASSA", "PRELIEVO"},
};

const CashRow& RowOf(CashMove move) { return move == CashMove::kOut ? kCash[1] : kCash[0]; }

// Takes a whole number off the front of a text.
template <typename Number>
bool TakeNumber(std::string_view* text, Number* number) {
  const char* end = text->data() + text->size();
  const std::from_chars_result result = std::from_chars(text->data(), end, *number);
  if (result.ec != std::errc() || text->front() == '-') return false;
  text->remove_prefix(static_cast<size_t>(result.ptr - text->data()));
  return true;
}

bool TakeSign(std::string_view* text, char sign) {
  if (text->empty() || text->front() != sign) return false;
  text->remove_prefix(1);
  return true;
}

int NoShares(std::string_view text) {
  return Refuse(RTF_E_ILLEGAL, RefusalCause::kShares, {}, text);
}

// "1,10000;2,5000": VAT entries, each once, and amounts in ten-thousandths.
int ReadShares(std::string_view text, const Tables& tables, std::map<int, Amount>* shares) {
  const std::string_view all = text;
  while (!text.empty()) {
    int vat = 0;
    Amount amount = 0;
    if (!TakeNumber(&text, &vat) || !TakeSign(&text, ',') || text.empty() ||
        !TakeNumber(&text, &amount)) {
      return NoShares(all);
    }
    if (!text.empty() && !TakeSign(&text, ';')) return NoShares(all);
    if (tables.FindVat(vat) == nullptr) {
      return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry,
                    {vat, static_cast<int64_t>(tables.settings().vat_rates.size())});
    }
    const std::optional<Amount> cents = RoundToCents(amount);
    if (!cents || *cents == 0 || *cents > kMaxAmount) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kAdjustmentSize, {amount});
    }
    if (!shares->emplace(vat, *cents).second) return NoShares(all);
  }
  return shares->empty() ? NoShares(all) : RTF_SUCCESS;
}

}  // namespace

int ReceiptDesk::BeginChosen(bool print_header) {
  switch (core_.session.receipt_type) {
    case RTF_FPTR_RT_CASH_IN:
      return BeginCash(CashMove::kIn, print_header);
    case RTF_FPTR_RT_CASH_OUT:
      return BeginCash(CashMove::kOut, print_header);
    case RTF_FPTR_RT_SIMPLE_INVOICE: {
      const std::string_view nobody[5] = {};
      return BeginInvoice(nobody, false);
    }
    case RTF_FPTR_RT_REFUND:
      return BeginRefund(Reference{});
    case RTF_FPTR_RT_CANCEL:
      return BeginCancel(Reference{}, false, {});
    default:
      return BeginReceipt(print_header);
  }
}

// --- Cash in and out: documents that print and are counted as non-fiscal ones

int ReceiptDesk::BeginCash(CashMove move, bool print_header) {
  if (!core_.Allows(Operation::kBeginDocument)) return RTF_EFPTR_WRONG_STATE;
  Open(DocumentKind::kSale, Reference{});
  core_.document.cash = move;
  core_.document.number_text = "DOCUMENTO GESTIONALE";
  if (print_header) layout_.Header();
  core_.paper.Centred("DOCUMENTO GESTIONALE");
  core_.paper.Centred(RowOf(move).title);
  core_.paper.Blank();
  return RTF_SUCCESS;
}

int ReceiptDesk::Cash(Amount amount) {
  if (!core_.Allows(Operation::kCash)) return RTF_EFPTR_WRONG_STATE;
  OpenDocument& document = core_.document;
  const std::optional<Amount> cents = RoundToCents(amount);
  if (!cents || *cents <= 0) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kPaymentSize, {amount});
  }
  if (*cents > kMaxAmount - document.cash_total) {
    return Refuse(RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, RefusalCause::kTotalTooHigh,
                  {document.cash_total, kMaxAmount});
  }
  core_.paper.Pair(RowOf(document.cash).line, FormatAmount(*cents));
  document.cash_total += *cents;
  return RTF_SUCCESS;
}

// Cash moves as cash, and to the cent.
int ReceiptDesk::TotalCash(Amount payment, std::string_view tender, bool automatic) {
  OpenDocument& document = core_.document;
  if (document.cash_total == 0) {
    return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kNoCashMoved);
  }
  if (tender != kCashTender) return Refuse(RTF_E_ILLEGAL, RefusalCause::kOnlyCash, {}, tender);
  if (!automatic && RoundToCents(payment) != document.cash_total) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kCashNotExact,
                  {payment, document.cash_total});
  }
  document.time = core_.Now();
  core_.paper.Gap();
  core_.paper.Pair("TOTALE", FormatAmount(document.cash_total));
  if (core_.setup.training) document.number_text = Layout::kTrainingMark;
  core_.state = PrinterState::kEnding;
  if (core_.options.auto_cut && !core_.options.hold_settled) FinishDocument();
  return RTF_SUCCESS;
}

// --- Adjustments and corrections

int ReceiptDesk::AdjustPackage(int type, std::string_view description, std::string_view shares,
                               bool is_void) {
  if (!core_.Allows(Operation::kAdjustment)) return RTF_EFPTR_WRONG_STATE;
  AdjustmentRequest request;
  request.type = type;
  request.is_void = is_void;
  if (const int code = ReadShares(shares, core_.tables, &request.package)) return code;
  for (const auto& [vat, share] : request.package) request.value += share;
  Adjustment done;
  if (const int code = core_.document.receipt.AdjustPackage(request, &done)) return code;
  layout_.AdjustmentLine(done, description);
  return RTF_SUCCESS;
}

int ReceiptDesk::VoidItem(const LineArguments& arguments, int adjustment_type, int64_t adjustment) {
  if (!core_.Allows(Operation::kLine)) return RTF_EFPTR_WRONG_STATE;
  // Amounts below 0 have meanings of their own in other lines.
  if (arguments.price <= 0 && arguments.unit_price <= 0) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoPrice, {arguments.price});
  }
  VoidTerms terms;
  terms.by_amount = arguments.quantity == 0;
  terms.adjustment_type = adjustment_type;
  terms.adjustment = adjustment;
  return Line(arguments, terms);
}

// --- Copies

// Keeps the document that has just been printed, for a copy of it.
void ReceiptDesk::Buffer() {
  if (!core_.session.buffer_receipts) return;
  const std::vector<std::string>& lines = core_.paper.lines();
  // Without the line of the cut.
  core_.session.buffered = std::make_shared<const std::vector<std::string>>(
      lines.begin() + static_cast<std::ptrdiff_t>(core_.document_start), lines.end() - 1);
}

int ReceiptDesk::PrintDuplicate() {
  if (!core_.Allows(Operation::kDuplicate)) return RTF_EFPTR_WRONG_STATE;
  HostSession& session = core_.session;
  if (!session.buffer_receipts || session.buffered == nullptr) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kNothingBuffered);
  }
  core_.paper.Centred(kCopyMark);
  for (const std::string& line : *session.buffered) core_.paper.Line(line);
  core_.paper.Centred(kCopyMark);
  core_.paper.Cut();
  session.buffer_receipts = false;
  session.buffered.reset();
  return RTF_SUCCESS;
}

}  // namespace lorimat
