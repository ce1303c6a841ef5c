// The links of the journal's chain that are no entries: events that print nothing, or nothing that
// the journal keeps, and that move what the register goes by. With them all that counts can be
// worked out again from the chain.
//
// Entries and events make one chain: an event tells behind which entry it came.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "register/storage/database.h"
#include "register/storage/sql_text.h"

namespace lorimat {

// As they are stored.
enum class EventKind {
  kBeginning = 1,      // of the chain: `value` is a Beginning
  kProgrammed = 2,     // `subject` is programmed: `value` is a ProgrammedChange
  kInvoiceNumber = 3,  // the next invoice gets the number `value`
  kPeriodCleared = 4,  // `subject` is its number, `value` the first document that it takes in
  kSummarySent = 5,    // of the closing `value`
  kLotterySent = 6,    // of the documents `value`, all that waited
  kNonFiscal = 7,      // a non-fiscal document was counted; the journal may not have it
};

struct ChainEvent {
  int64_t place = 0;  // from 1
  int64_t entry = 0;  // the entries of the journal ahead of it
  EventKind kind = EventKind::kBeginning;
  int64_t time = 0;  // YYYYMMDDHHMMSS
  std::string subject = {};
  std::string value = {};
  std::string hash = {};  // 64 hexadecimal digits
};

// The columns of an event.
inline constexpr SqlText kEventColumns = "place, entry, kind, time, subject, value, hash";
ChainEvent ReadEvent(const Statement& row);

// Where a period began.
struct PeriodBeginning {
  bool cleared = false;
  int64_t time = 0;
  int64_t first_document = 1;
};
// What the register went by when its chain began: at its making, or when it was carried over from
// a version without events.
struct Beginning {
  int64_t last_closure = 0;
  int64_t next_invoice = 1;
  int64_t non_fiscal = 0;     // of the day that was open
  int64_t last_document = 0;  // that was registered
  std::map<int64_t, PeriodBeginning> periods = {};
  std::set<int64_t> summaries_waiting = {};  // closings
  std::set<int64_t> lottery_waiting = {};    // documents
};

// Nothing for a text that is none.
std::optional<Beginning> ReadBeginning(std::string_view record);

// The hash of an event, from that of the link before it.
std::string EventHash(std::string_view previous, const ChainEvent& event);

// Adds an event to the chain, whose last link has the hash `previous`; answers its own. Its place
// is given here.
std::string InsertEvent(Database& database, std::string_view previous, ChainEvent event);

// Begins the chain: the beginning, and what is programmed. Part of the unit of work that is under
// way; the ledger is stored. Answers the hash of the last link.
std::string BeginChain(Database& database, int64_t time);

// What is programmed and belongs to the chain, by its name: single values as they are, of a table
// a digest of its rows. `settings` takes in the single values and the device's options, `tables`
// VAT rates, departments, operators and subtenders.
using ProgrammedTexts = std::map<std::string, std::string>;
ProgrammedTexts ProgrammedValues(Database& database, bool settings, bool tables);

// The name of a single value: that the clock was set back (ClockSetBack).
inline constexpr char kClockSetBackName[] = "clock_set_back";

// What an event of that kind holds: the value before, and the value from then on. A thing that is
// not there has an empty one.
struct ProgrammedChange {
  std::string before = {};
  std::string after = {};
};
std::string ToRecord(const ProgrammedChange& change);
std::optional<ProgrammedChange> ReadProgrammedChange(std::string_view record);

// Numbers as the value of an event, each with a blank behind it, and back.
std::string NumbersRecord(const std::set<int64_t>& numbers);
std::set<int64_t> ReadNumbers(std::string_view record);

}  // namespace lorimat
