// The journal: every document as it was printed, and how extracts of it are selected. An entry
// is made when its document ends; nothing changes or removes one.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "register/document/receipt.h"

namespace lorimat {

// Kinds of entries, as the bits of a selection's filter, and as they are stored: those of
// registered documents, in their order, and others. The first two and the last are those that hosts
// have words for.
constexpr int32_t JournalBit(DocumentKind kind) { return 0x2 << static_cast<int>(kind); }
enum JournalKind : int32_t {
  kJournalSale = JournalBit(DocumentKind::kSale),
  kJournalInvoice = JournalBit(DocumentKind::kInvoice),
  kJournalRefund = JournalBit(DocumentKind::kRefund),
  kJournalCancel = JournalBit(DocumentKind::kCancel),
  kJournalAbandoned = 0x20,
  kJournalClosure = 0x40,
  kJournalNonFiscal = 0x100,
};

// That of a registered document.
constexpr JournalKind JournalKindOf(DocumentKind kind) {
  return static_cast<JournalKind>(JournalBit(kind));
}

inline constexpr int32_t kJournalAll = 65535;

struct JournalEntry {
  JournalKind kind = kJournalSale;
  int closure = 0;  // the closure that it falls under
  int number = 0;   // of the document in its own series; 0 for kinds without one
  std::tm time = {};
  std::vector<std::string> lines = {};  // as printed, from the header to the cut
  // The registered document that it is of, by its place among them; 0 for none.
  int64_t document = 0;
  // Chains it to the entry before it (register/storage/entry_digest.h): 64 hexadecimal digits.
  std::string hash = {};
};

// What an extract takes in. Numbers that are not the whole range 1 to 9999 leave out what has
// no number.
struct JournalSelection {
  static constexpr int kLastNumber = 9999;

  int32_t filter = kJournalAll;
  bool by_date = false;  // otherwise by closure
  std::tm from = {};
  std::tm to = {};
  bool in_closures = false;  // with dates: of the closures below alone
  int from_closure = 0;
  int to_closure = 0;
  int from_number = 1;  // of the first closure, or of each date
  int to_number = kLastNumber;
};

bool Selects(const JournalSelection& selection, const JournalEntry& entry);

// "DDMMYYYYHHMM" as a time; false when the calendar does not have it.
bool ParseMinute(std::string_view text, std::tm* time);

}  // namespace lorimat
