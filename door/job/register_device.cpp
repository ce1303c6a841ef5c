#include "door/job/register_device.h"

#include <ctime>
#include <utility>

#include "door/log/iso_time.h"

namespace lorimat::door {

RegisterDevice::RegisterDevice(RegisterSettings settings) : register_(std::move(settings)) {}

std::optional<LastDocument> RegisterDevice::Last() {
  const RegisterStore& store = register_.store();
  const std::optional<StoredDocument> stored = store.FindById(store.document_count());
  if (!stored) return std::nullopt;
  LastDocument last;
  last.facts = {stored->closure, stored->number, register_.tables().settings().serial_number,
                IsoTime(stored->time), stored->total};
  last.is_invoice = stored->kind == DocumentKind::kInvoice;
  // Its entry is the last one of the journal, or stands a few entries before it.
  constexpr uint64_t kBehind = 50;
  uint64_t place = store.journal_count();
  for (uint64_t looked = 0; place > 0 && looked < kBehind; --place, ++looked) {
    std::optional<JournalEntry> entry = store.FindEntry(place);
    if (!entry || entry->document != stored->id) continue;
    last.paper = std::move(entry->lines);
    break;
  }
  return last;
}

std::optional<JobDocument> RegisterDevice::LastClosing() {
  const std::optional<Closure> closure = register_.store().LastClosure();
  if (!closure) return std::nullopt;
  return JobDocument{closure->number, 0, register_.tables().settings().serial_number,
                     IsoTime(closure->time), closure->totals.Summary().net()};
}

}  // namespace lorimat::door
