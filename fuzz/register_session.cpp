#include "fuzz/register_session.h"

#include <climits>
#include <ctime>

#include "register/inspect/register_file.h"

using lorimat::Amount;
using lorimat::DocumentKind;

int64_t fuzz_minutes = 0;

lorimat::RegisterSettings FuzzSettings(const std::string& file) {
  lorimat::RegisterSettings settings;
  settings.file = file;
  settings.articles = {{"8001", "LATTE", 4, 15000}, {"FREE", "SENZA PREZZO", 1, 0}};
  settings.clock = [] {
    std::tm time = {};
    time.tm_mday = 1 + static_cast<int>(fuzz_minutes / 1440 % 28);
    time.tm_mon = static_cast<int>(fuzz_minutes / 40320 % 12);
    time.tm_year = 124 + static_cast<int>(fuzz_minutes / 483840 % 100);
    time.tm_hour = static_cast<int>(fuzz_minutes / 60 % 24);
    time.tm_min = static_cast<int>(fuzz_minutes % 60);
    return time;
  };
  return settings;
}

std::string RegisterFacts(const lorimat::VirtualRegister& device) {
  const lorimat::RegisterStore& store = device.store();
  return std::to_string(store.document_count()) + " " + std::to_string(store.journal_count()) +
         " " + std::to_string(store.grand_total()) + " " + store.day().ToRecord() + " " +
         std::to_string(store.last_closure()) + " " + std::to_string(store.next_invoice()) + " " +
         std::to_string(device.paper().dropped() + device.paper_lines().size()) + " " +
         std::to_string(device.printer_state()) + " " + store.journal_hash();
}

void CheckSums(const lorimat::RegisterStore& store) {
  lorimat::Totals day;
  Amount all = 0;
  std::map<std::pair<int, int>, lorimat::StoredDocument> sold;
  std::map<std::pair<int, int>, std::map<int, Amount>> gone;
  int64_t count = 0;
  for (const lorimat::StoredDocument& document : store.documents()) {
    ++count;
    if (document.closure == store.last_closure() + 1) day.Add(document);
    all += lorimat::DailySign(document.kind) * document.total;
    Amount by_vat = 0;
    for (const auto& [vat, amount] : document.by_vat) by_vat += amount;
    Require(by_vat == document.total, "a document's VAT entries come to its total");
    if (document.kind == DocumentKind::kSale) {
      sold[{document.closure, document.number}] = document;
    } else if (document.referred_closure != 0) {
      for (const auto& [vat, amount] : document.by_vat) {
        gone[{document.referred_closure, document.referred_number}][vat] += amount;
      }
    }
  }
  Require(count == store.document_count(), "there are as many documents as are counted");
  Require(day.ToRecord() == store.day().ToRecord(), "the day's sums are those of its documents");
  Require(all == store.grand_total(), "the grand total is that of all documents");
  for (const auto& [numbers, back] : gone) {
    Require(sold.contains(numbers), "what went back was sold");
    const lorimat::StoredDocument& sale = sold.at(numbers);
    Amount total = 0;
    for (const auto& [vat, amount] : back) {
      total += amount;
      const auto entry = sale.by_vat.find(vat);
      Require(amount <= (entry == sale.by_vat.end() ? 0 : entry->second),
              "no more of a VAT entry goes back than was sold");
    }
    Require(total <= sale.total, "no more goes back than was sold");
  }
}

void CheckJournalOf(const std::string& file, int64_t documents, uint64_t entries) {
  const lorimat::RegisterFile read(file);
  const lorimat::JournalCheck check = read.VerifyJournal(nullptr);
  Require(check.good() && !check.damaged, "the journal is good");
  const lorimat::RegisterStatus status = read.Status();
  Require(status.documents == static_cast<uint64_t>(documents),
          "the file has the documents that were answered");
  Require(status.journal_entries == entries, "the file has the entries that were made");
}

int64_t InputNumbers::Amount() {
  static constexpr int64_t kEdges[] = {0,       -1,        INT64_MAX,  INT64_MIN, INT_MAX,  1,
                                       9999999, 99999999,  999999999,  10000,     -1000000, INT_MIN,
                                       99,      100000000, 9999999999, 50};
  const uint8_t byte = Byte();
  if (byte < 200) return (byte + 1) * 100;
  if (byte < 240) return ((byte - 200) * 256 + Byte()) * 100;
  return kEdges[byte % 16];
}
