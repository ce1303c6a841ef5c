#include "register/document/documents.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "register/value/nature.h"

namespace lorimat {
namespace {

Amount Absolute(Amount amount) { return amount < 0 ? -amount : amount; }

// Counts what falls on several entries once for each of their rates.
void CountShares(const std::vector<VatRate>& rates, const std::map<int, Amount>& shares,
                 Counted what, StoredDocument* stored) {
  std::vector<VatRate> counted;
  for (const auto& [vat, share] : shares) {
    if (share == 0) continue;
    const VatRate* entry = VatEntry(rates, vat);
    const VatRate rate = entry != nullptr ? *entry : VatRate{};
    if (std::any_of(counted.begin(), counted.end(),
                    [&rate](const VatRate& other) { return SameRate(other, rate); })) {
      continue;
    }
    counted.push_back(rate);
    ++stored->figures[vat][what];
  }
}

void AddLines(const Receipt& receipt, const Tables& tables, StoredDocument* stored) {
  for (const Receipt::Line& line : receipt.lines()) {
    const Item& item = line.item;
    VatFigures& figures = stored->figures[item.vat];
    const Amount taken_back = item.amount - line.open_amount;
    const int sign = item.kind == LineKind::kSale ? 1 : -1;
    if (item.kind == LineKind::kSale) {
      figures[EnteredFigure::kItems].amount += item.amount;
      figures[EnteredFigure::kItems].taken_back += taken_back;
    }
    if (item.kind == LineKind::kRefund) {
      figures[EnteredFigure::kRefundLines].amount += item.amount;
      figures[EnteredFigure::kRefundLines].taken_back += taken_back;
      if (line.open_amount != 0) ++figures[Counted::kRefundLines];
    }
    const Amount stands = sign * line.open_amount + line.adjusted;
    if (item.kind == LineKind::kSale && item.department != 0) {
      DepartmentSum& sold = stored->sold_by_department[item.department];
      sold.quantity += line.open_quantity;
      sold.amount += stands;
    }
    const Department* department = tables.FindDepartment(item.department);
    if (department != nullptr && department->is_service) {
      figures[TaxedFigure::kServices].amount += stands;
    }
  }
}

void AddAdjustments(const Receipt& receipt, const Tables& tables, const std::vector<VatRate>& rates,
                    StoredDocument* stored) {
  for (const Adjustment& adjustment : receipt.adjustments()) {
    if (adjustment.is_void) continue;  // shows as the voided one that it takes back
    const bool surcharge = IsSurcharge(adjustment.request.type);
    const EnteredFigure given =
        adjustment.on_subtotal
            ? (surcharge ? EnteredFigure::kSubtotalSurcharges : EnteredFigure::kSubtotalDiscounts)
            : (surcharge ? EnteredFigure::kSurcharges : EnteredFigure::kDiscounts);
    for (const auto& [vat, delta] : adjustment.by_vat) {
      EnteredAmount& entered = stored->figures[vat][given];
      entered.amount += Absolute(delta);
      if (adjustment.voided) entered.taken_back += Absolute(delta);
    }
    if (adjustment.voided) continue;
    CountShares(rates, adjustment.by_vat, surcharge ? Counted::kSurcharges : Counted::kDiscounts,
                stored);
    // By what it is, as the figures: a discount on a refund line stays one.
    (surcharge ? stored->surcharges : stored->discounts) += Absolute(adjustment.delta);
    // An adjustment of a whole department stands beside its lines.
    const int number = adjustment.request.department;
    if (number == 0 || adjustment.line) continue;
    stored->sold_by_department[number].amount += adjustment.delta;
    const Department* department = tables.FindDepartment(number);
    if (department == nullptr || !department->is_service) continue;
    for (const auto& [vat, delta] : adjustment.by_vat) {
      stored->figures[vat][TaxedFigure::kServices].amount += delta;
    }
  }
}

// What was not collected, spread over the VAT entries. Each tender takes from what the earlier
// ones left, so that a document that nobody paid at all comes to its own sums again.
void AddPayments(const Receipt& receipt, StoredDocument* stored) {
  stored->change = receipt.change();
  std::map<int, Amount> left = receipt.by_vat();
  for (const Payment& payment : receipt.payments()) {
    Amount kept = payment.amount;
    if (&payment == &receipt.payments().back()) kept -= stored->change;
    stored->by_tender[payment.tender->id] += kept;
    ++stored->tender_counts[payment.tender->id];
    AddTo(&stored->collected[static_cast<int>(payment.tender->element)], {kept, 1});
    if (payment.tender->kind != TenderKind::kNotPaid) continue;
    stored->not_paid += kept;
    for (const auto& [vat, share] : Spread(kept, left)) {
      stored->figures[vat][payment.tender->not_paid].amount += share;
      left[vat] -= share;
    }
  }
}

}  // namespace

StoredDocument Summarize(const Receipt& receipt, const Tables& tables,
                         const std::vector<VatRate>& rates) {
  StoredDocument stored;
  stored.kind = receipt.kind();
  stored.total = receipt.total();
  stored.by_vat = receipt.by_vat();
  stored.by_department = receipt.by_department();
  for (const auto& [vat, gross] : stored.by_vat) {
    stored.figures[vat][TaxedFigure::kGross].amount = gross;
  }
  AddLines(receipt, tables, &stored);
  AddAdjustments(receipt, tables, rates, &stored);
  AddPayments(receipt, &stored);
  TellRates(tables, rates, &stored);
  for (auto& [vat, figures] : stored.figures) {
    const VatRate* rate = VatEntry(rates, vat);
    for (TaxedAmount& taxed : figures.taxed) {
      taxed.tax = rate != nullptr ? VatPart(taxed.amount, rate->rate) : 0;
    }
  }
  return stored;
}

void TellRates(const Tables& tables, const std::vector<VatRate>& rates, StoredDocument* document) {
  document->other_rates.clear();
  for (auto& [vat, figures] : document->figures) {
    figures[Counted::kDocuments] = 0;
    const VatRate* then = VatEntry(rates, vat);
    const VatRate* now = tables.FindVat(vat);
    if (then == nullptr || now == nullptr) continue;
    if (then->rate != now->rate || then->mark != now->mark) document->other_rates[vat] = *then;
  }
  CountShares(rates, document->by_vat, Counted::kDocuments, document);
}

namespace {

Amount CollectedBy(const StoredDocument& document, SummaryElement element) {
  const auto found = document.collected.find(static_cast<int>(element));
  return found == document.collected.end() ? 0 : found->second.amount;
}

// By what the tenders were at the payment.
PaidParts PartsThen(const StoredDocument& document) {
  PaidParts parts;
  for (const SummaryElement element :
       {SummaryElement::kCash, SummaryElement::kElectronic, SummaryElement::kTicket}) {
    AddTo(&parts.collected, CollectedBy(document, element));
  }
  parts.discount = CollectedBy(document, SummaryElement::kDiscount);
  parts.not_collected = document.not_paid;
  const auto up = document.by_tender.find(kRoundedUpTender);
  if (up != document.by_tender.end()) AddTo(&parts.rounded_up, up->second, -1);
  return parts;
}

// By what they are today: documents of a version before 4 do not tell.
std::optional<PaidParts> PartsToday(const StoredDocument& document, const Tables& tables) {
  PaidParts parts;
  for (const auto& [id, amount] : document.by_tender) {
    const Tender* tender = tables.FindTender(id);
    if (tender == nullptr) return std::nullopt;
    AddTo(tender->kind == TenderKind::kNotPaid           ? &parts.not_collected
          : tender->element == SummaryElement::kDiscount ? &parts.discount
                                                         : &parts.collected,
          amount);
  }
  return parts;
}

}  // namespace

std::optional<PaidParts> PartsOf(const StoredDocument& document, const Tables& tables) {
  const std::optional<PaidParts> parts =
      document.collected.empty() ? PartsToday(document, tables) : PartsThen(document);
  if (!parts) return std::nullopt;
  Amount sum = parts->collected;
  AddTo(&sum, parts->not_collected);
  AddTo(&sum, parts->discount);
  AddTo(&sum, parts->rounded_up, -1);
  return sum == document.total ? parts : std::nullopt;
}

int TicketsOf(const StoredDocument& document, const Tables& tables) {
  if (!document.collected.empty()) {
    const auto found = document.collected.find(static_cast<int>(SummaryElement::kTicket));
    return found == document.collected.end() ? 0 : found->second.payments;
  }
  int tickets = 0;
  for (const auto& [id, count] : document.tender_counts) {
    const Tender* tender = tables.FindTender(id);
    if (tender != nullptr && tender->element == SummaryElement::kTicket) AddTo(&tickets, count);
  }
  return tickets;
}

void AddDetails(const Receipt& receipt, StoredDocument* stored) {
  stored->lines.clear();
  stored->payments.clear();
  for (const Receipt::Line& entered : receipt.lines()) {
    const Item& item = entered.item;
    DocumentLine line;
    line.kind = item.kind;
    line.description = item.description;
    line.article = item.article;
    line.department = item.department;
    line.vat = item.vat;
    line.quantity = item.quantity;
    line.unit_price = item.unit_price;
    line.amount = item.amount;
    line.quantity_taken_back = item.quantity - entered.open_quantity;
    line.taken_back = item.amount - entered.open_amount;
    stored->lines.push_back(std::move(line));
  }
  for (const Adjustment& adjustment : receipt.adjustments()) {
    if (adjustment.is_void) continue;
    DocumentLine line;
    line.kind = adjustment.on_subtotal ? LineKind::kSubtotalAdjustment : LineKind::kAdjustment;
    line.adjustment_type = adjustment.request.type;
    line.department = adjustment.request.department;
    line.vat = adjustment.by_vat.size() == 1 ? adjustment.by_vat.begin()->first : 0;
    line.unit_price = adjustment.request.value;
    line.amount = adjustment.delta;
    line.taken_back = adjustment.voided ? adjustment.delta : 0;
    stored->lines.push_back(std::move(line));
  }
  for (const Payment& payment : receipt.payments()) {
    stored->payments.push_back({payment.tender->id, payment.amount});
  }
}

}  // namespace lorimat
