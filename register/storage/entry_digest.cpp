#include "register/storage/entry_digest.h"

#include <utility>

#include "register/value/digest.h"
#include "register/value/row_encoding.h"

namespace lorimat {

std::string DocumentFacts(const StoredDocument& document) {
  return DocumentFacts(document, SumsRecord(document));
}

std::string DocumentFacts(const StoredDocument& document, std::string_view sums) {
  RowEncoder facts;
  facts.Text("document").Number(document.id).Number(static_cast<int>(document.kind));
  facts.Number(document.closure).Number(document.number).Number(TimeNumber(document.time));
  facts.Number(document.operator_number).Number(document.total).Number(document.not_paid);
  facts.Number(document.change).Number(document.discounts).Number(document.surcharges);
  facts.Text(document.lottery_code).Number(document.referred_closure);
  facts.Number(document.referred_number).Text(sums);
  facts.Number(static_cast<int64_t>(document.lines.size()));
  for (const DocumentLine& line : document.lines) {
    facts.Number(static_cast<int>(line.kind)).Number(line.adjustment_type).Text(line.description);
    facts.Text(line.article).Number(line.department).Number(line.vat).Number(line.quantity);
    facts.Number(line.unit_price).Number(line.amount).Number(line.quantity_taken_back);
    facts.Number(line.taken_back);
  }
  facts.Number(static_cast<int64_t>(document.payments.size()));
  for (const DocumentPayment& payment : document.payments) {
    facts.Text(payment.tender).Number(payment.amount);
  }
  return facts.Take();
}

std::string ClosureFacts(const Closure& closure) {
  const DailyCounters& counters = closure.counters;
  RowEncoder facts;
  facts.Text("closure").Number(closure.number).Number(TimeNumber(closure.time));
  facts.Number(counters.documents).Number(counters.sales).Number(counters.invoices);
  facts.Number(counters.refunds).Number(counters.cancels).Number(counters.abandoned);
  facts.Number(counters.non_fiscal).Number(closure.grand_total);
  facts.Text(VatRatesRecord(closure.vat_rates)).Text(closure.totals.ToRecord());
  return facts.Take();
}

std::string EntryHash(std::string_view previous, uint64_t place, const JournalEntry& entry,
                      std::string_view facts) {
  RowEncoder text;
  text.Text(previous).Number(static_cast<int64_t>(place)).Number(entry.kind);
  text.Number(entry.closure).Number(entry.number).Number(TimeNumber(entry.time));
  text.Number(entry.document).Number(static_cast<int64_t>(entry.lines.size()));
  for (const std::string& line : entry.lines) text.Text(line);
  text.Text(facts);
  return Sha256(text.text());
}

std::string VatRatesRecord(const std::vector<VatRate>& rates) {
  RowEncoder record;
  record.Number(static_cast<int64_t>(rates.size()));
  for (const VatRate& rate : rates) record.Number(rate.rate).Text(rate.mark);
  return record.Take();
}

bool ReadVatRates(std::string_view text, std::vector<VatRate>* rates) {
  RowDecoder record(text);
  std::vector<VatRate> read;
  for (int64_t left = record.Number(); left > 0 && record.good(); --left) {
    VatRate rate;
    rate.rate = record.Int();
    rate.mark = record.Text();
    read.push_back(std::move(rate));
  }
  if (!record.done()) return false;
  *rates = std::move(read);
  return true;
}

}  // namespace lorimat
