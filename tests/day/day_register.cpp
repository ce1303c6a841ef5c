#include "day/day_register.h"

#include <ctime>
#include <map>
#include <utility>

#include "register/inspect/register_file.h"

namespace lorimat {

int64_t day_minutes = 0;

RegisterSettings DaySettings(const std::string& file) {
  RegisterSettings settings;
  settings.file = file;
  settings.articles = {{"8001", "LATTE", 4, 15000}, {"FREE", "SENZA PREZZO", 1, 0}};
  settings.clock = [] {
    std::tm time = {};
    time.tm_mday = 1 + static_cast<int>(day_minutes / 1440 % 28);
    time.tm_mon = static_cast<int>(day_minutes / 40320 % 12);
    time.tm_year = 124 + static_cast<int>(day_minutes / 483840 % 100);
    time.tm_hour = static_cast<int>(day_minutes / 60 % 24);
    time.tm_min = static_cast<int>(day_minutes % 60);
    return time;
  };
  return settings;
}

std::string RegisterFacts(const VirtualRegister& device) {
  const RegisterStore& store = device.store();
  return std::to_string(store.document_count()) + " " + std::to_string(store.journal_count()) +
         " " + std::to_string(store.grand_total()) + " " + store.day().ToRecord() + " " +
         std::to_string(store.last_closure()) + " " + std::to_string(store.next_invoice()) + " " +
         std::to_string(device.paper().dropped() + device.paper_lines().size()) + " " +
         std::to_string(device.printer_state()) + " " + store.journal_hash();
}

std::string WrongSums(const RegisterStore& store) {
  Totals day;
  Amount all = 0;
  std::map<std::pair<int, int>, StoredDocument> sold;
  std::map<std::pair<int, int>, std::map<int, Amount>> gone;
  int64_t count = 0;
  for (const StoredDocument& document : store.documents()) {
    ++count;
    if (document.closure == store.last_closure() + 1) day.Add(document);
    all += DailySign(document.kind) * document.total;
    Amount by_vat = 0;
    for (const auto& [vat, amount] : document.by_vat) by_vat += amount;
    if (by_vat != document.total) return "a document's VAT entries do not come to its total";
    if (document.kind == DocumentKind::kSale) {
      sold[{document.closure, document.number}] = document;
    } else if (document.referred_closure != 0) {
      for (const auto& [vat, amount] : document.by_vat) {
        gone[{document.referred_closure, document.referred_number}][vat] += amount;
      }
    }
  }
  if (count != store.document_count()) return "there are other documents than are counted";
  if (day.ToRecord() != store.day().ToRecord()) return "the day's sums are not its documents'";
  if (all != store.grand_total()) return "the grand total is not that of all documents";
  for (const auto& [numbers, back] : gone) {
    if (!sold.contains(numbers)) return "something went back that was not sold";
    const StoredDocument& sale = sold.at(numbers);
    Amount total = 0;
    for (const auto& [vat, amount] : back) {
      total += amount;
      const auto entry = sale.by_vat.find(vat);
      if (amount > (entry == sale.by_vat.end() ? 0 : entry->second)) {
        return "more of a VAT entry went back than was sold";
      }
    }
    if (total > sale.total) return "more went back than was sold";
  }
  return {};
}

std::string WrongJournal(const std::string& file, int64_t documents, uint64_t entries) {
  const RegisterFile read(file);
  const JournalCheck check = read.VerifyJournal(nullptr);
  if (!check.good() || check.damaged) return "the journal is not good";
  const RegisterStatus status = read.Status();
  if (status.documents != static_cast<uint64_t>(documents)) {
    return "the file has other documents than were answered";
  }
  if (status.journal_entries != entries) return "the file has other entries than were made";
  return {};
}

}  // namespace lorimat
