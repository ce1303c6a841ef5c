#include "door/job/register_device.h"

#include <ctime>
#include <utility>

#include "console/device/register_device.h"
#include "door/judge/client_words.h"
#include "door/log/iso_time.h"
#include "register/totals/rate_sums.h"

namespace lorimat::door {

JobDocument FactsOf(const StoredDocument& document, const std::string& serial) {
  return {document.closure,       document.number, serial,
          IsoTime(document.time), document.total,  document.kind};
}

RegisterDevice::RegisterDevice(RegisterSettings settings) : register_(std::move(settings)) {}

// Nothing where the last one has another name.
std::optional<StoredDocument> RegisterDevice::LastStored(const DocumentName& name) const {
  const RegisterStore& store = register_.store();
  std::optional<StoredDocument> stored = store.FindById(store.document_count());
  const bool is_it = stored && stored->closure == name.closure && stored->number == name.number &&
                     (stored->kind == DocumentKind::kInvoice) == name.is_invoice;
  if (!is_it) stored.reset();
  return stored;
}

Told RegisterDevice::FindVoid(const DocumentName& name, const DocumentName& sale) {
  const std::optional<StoredDocument> stored = LastStored(name);
  const bool is_it = stored && stored->kind == DocumentKind::kCancel && !sale.is_invoice &&
                     stored->referred_closure == sale.closure &&
                     stored->referred_number == sale.number;
  return is_it ? Told::kYes : Told::kNo;
}

Told RegisterDevice::FindLast(const DocumentName& name, LastDocument* document) {
  const RegisterStore& store = register_.store();
  const std::optional<StoredDocument> stored = LastStored(name);
  if (!stored) return Told::kNo;
  LastDocument last;
  last.is_invoice = name.is_invoice;
  last.facts = FactsOf(*stored, register_.tables().settings().serial_number);
  // Its entry is the last one of the journal, or stands a few entries before it.
  constexpr uint64_t kBehind = 50;
  uint64_t place = store.journal_count();
  for (uint64_t looked = 0; place > 0 && looked < kBehind; --place, ++looked) {
    std::optional<JournalEntry> entry = store.FindEntry(place);
    if (!entry || entry->document != stored->id) continue;
    last.paper = std::move(entry->lines);
    break;
  }
  *document = std::move(last);
  return Told::kYes;
}

void RegisterDevice::AddReport(DeviceReport* report) {
  const RegisterStore& store = register_.store();
  const RegisterSettings& settings = register_.tables().settings();
  report->last_document.reset();
  if (const std::optional<StoredDocument> last = store.FindById(store.document_count())) {
    report->last_document = FactsOf(*last, settings.serial_number);
  }
  const Totals& day = store.day();
  report->day.documents = day.documents();
  report->day.rates.emplace();
  for (const RateSums& rate : SumsByRate(day, settings.vat_rates)) {
    const TaxedAmount sum = rate.Sum(Totals::kAll, TaxedFigure::kGross);
    report->day.rates->push_back({rate.name, sum.amount, sum.tax});
  }
  report->day.tenders.emplace();
  for (const auto& [id, amount] : store.daily().by_tender) {
    const Tender* tender = register_.tables().FindTender(id);
    report->day.tenders->push_back({tender != nullptr ? tender->name : id, amount});
  }
  if (register_.FindClock()) report->warnings.emplace_back("clock_behind");
  const DayNotice notice = register_.FindNotice();
  if (notice.opened) report->warnings.emplace_back("day_left_open");
  if (notice.documents_left) report->warnings.emplace_back("numbers_near_end");
  if (notice.closings_left) report->warnings.emplace_back("closings_near_end");
}

console::DeviceRefusal RegisterDevice::last_refusal() const {
  const ClientWords words;
  return console::ToldRefusal(InUtf8(register_.last_refusal()), register_.failure());
}

std::optional<JobDocument> RegisterDevice::LastClosing() {
  const std::optional<Closure> closure = register_.store().LastClosure();
  if (!closure) return std::nullopt;
  return JobDocument{closure->number, 0, register_.tables().settings().serial_number,
                     IsoTime(closure->time), closure->totals.Summary().net()};
}

}  // namespace lorimat::door
