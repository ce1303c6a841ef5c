#include "register/desk/recovery.h"

#include <fmt/format.h>

#include <algorithm>

#include "register/desk/layout.h"
#include "register/storage/store_tables.h"

namespace lorimat {
namespace {

// On paper, so in the journal too.
constexpr char kPowerCut[] = "*** MANCANZA DI ALIMENTAZIONE ***";

InterruptedKind FiscalKind(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::kSale:
      break;
    case DocumentKind::kInvoice:
      return InterruptedKind::kInvoice;
    case DocumentKind::kRefund:
      return InterruptedKind::kCreditNote;
    case DocumentKind::kCancel:
      return InterruptedKind::kVoid;
  }
  return InterruptedKind::kReceipt;
}

InterruptedKind KindOf(const RegisterState& state, const StoredOpenDocument& open) {
  if (state.setup.training) return InterruptedKind::kTraining;
  if (open.state == PrinterState::kNonFiscal || open.state == PrinterState::kItemList ||
      open.notes.cash != CashMove::kNone) {
    return InterruptedKind::kNonFiscal;
  }
  return FiscalKind(open.kind);
}

}  // namespace

CutOffDocument DescribeCutOff(const RegisterState& state, const StoredOpenDocument& open) {
  CutOffDocument document;
  document.kind = KindOf(state, open);
  document.begun = open.notes.begun;
  document.lines = open.lines;
  document.subtotal = open.subtotal;
  document.registered = open.notes.id != 0;
  document.number = open.notes.number;
  return document;
}

std::optional<CutOffDocument> EndCutOff(RegisterCore& core, ReceiptDesk& desk) {
  const std::optional<StoredOpenDocument> open = LoadOpenDocument(core.database);
  if (!open) return std::nullopt;
  core.Mark();
  const size_t first = core.paper.dropped();
  const size_t lines = core.paper.lines().size();
  // A register of an older version has no roll: its document has no lines to go on from.
  core.document_start = open->start >= first ? std::min(open->start - first, lines) : 0;
  core.state = open->state;
  core.keep_non_fiscal = open->keep_non_fiscal;
  core.Replace({open->notes, Receipt(open->kind)});
  ++core.setup.power_losses;
  core.setup.last_power_loss = core.Now();
  if (open->state != PrinterState::kEnding) core.paper.Centred(kPowerCut);
  desk.Reset();
  core.Keep();
  return DescribeCutOff(core, *open);
}

std::string CutOffNotice(const CutOffDocument& document) {
  const std::string begun =
      fmt::format("The register was switched off in the middle of a document ({}, begun {})",
                  InterruptedKindName(document.kind), FormatDateTime(document.begun));
  if (document.registered) {
    return fmt::format("{}. It was paid: it stands under its number {} and has been ended.", begun,
                       document.number);
  }
  return fmt::format("{}. It was not paid: it has been cancelled, and no total has moved.", begun);
}

std::optional<UnansweredDocument> FindUnanswered(const RegisterCore& core) {
  const RegisterStore& store = core.store;
  if (core.answer_due == AnswerDue::kDocument) {
    const std::optional<StoredDocument> last = store.FindById(store.document_count());
    if (!last) core.database.Damaged("document");
    return UnansweredDocument{FiscalKind(last->kind), last->closure, last->number, last->time,
                              last->total};
  }
  if (core.answer_due == AnswerDue::kClosure) {
    const std::optional<Closure> last = store.LastClosure();
    if (!last) core.database.Damaged("closure");
    return UnansweredDocument{InterruptedKind::kClosure, last->number, 0, last->time,
                              last->totals.Summary().net()};
  }
  return std::nullopt;
}

std::string UnansweredNotice(const UnansweredDocument& document) {
  return fmt::format(
      "The register was switched off behind the last document that it stored ({} {}, {}, total "
      "{}). "
      "Its answer may not have gone out.",
      InterruptedKindName(document.kind), document.number_text(), FormatDateTime(document.time),
      FormatAmount(document.total));
}

}  // namespace lorimat
