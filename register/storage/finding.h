// What the check of a journal found, as values: who shows it makes the sentence.
#pragma once

#include <cstdint>
#include <string>

#include "register/totals/journal.h"
#include "register/value/register_failure.h"

namespace lorimat {

// Behind each kind the members of Finding that it fills, beside `kind`.
enum class FindingKind {
  // The file
  kDamagedPage,   // text: what is wrong with it
  kUnreadable,    // failure: why the file cannot be read to its end
  kStrangeRow,    // text: the table; a row refers to one that is not there
  kStrangeValue,  // text: the table; a number where a text belongs, or the like
  kStrangeTable,  // text: a table or an index that is not as this version makes it
  // An entry, by its place
  kEntryWithoutPlace,    // entry
  kEntryMissing,         // entry
  kEntriesMissing,       // entry, last
  kEntryMissingAtEnd,    // entry
  kEntriesMissingAtEnd,  // entry, last
  kEntryBehindLast,      // entry, expected: the last one
  kEntryNotLast,         // entry
  kEntryUnreadable,      // entry
  kEntryHash,            // entry, document
  kEntryDay,             // entry, document; value: the day that it says, expected
  kDocumentTwice,        // entry, document
  kDocumentMissing,      // entry, document
  kDocumentUnreadable,   // entry, document
  kClosureMissing,       // entry, document
  kClosureUnreadable,    // entry, document
  kInvoiceNumber,        // entry, document; value: its number, expected
  // An event, by its place
  kEventMissing,      // entry
  kEventsMissing,     // entry, last
  kEventUnreadable,   // entry
  kEventHash,         // entry
  kEventNotLast,      // entry
  kSentTwice,         // entry; value: the closing, or the place of the document
  kProgrammedBefore,  // entry; text: what is programmed, by its name
  kNoBeginning,
  // Documents and closings
  kNoEntry,                 // document
  kLoneDocumentUnreadable,  // document
  kLineOrder,               // document
  kOpenDocument,
  kDocumentCount,      // value: how many were registered, expected: the last one
  kClosureNoEntry,     // closure
  kClosureTotals,      // document
  kClosureCounters,    // document
  kClosureGrandTotal,  // document
  kSummaryWaits,       // closure: it was sent
  kSummaryWaitsNot,    // closure: it was not
  kLotteryWaits,       // document: it was sent, or has no code
  kLotteryWaitsNot,    // document: it was not
  // The day, and what goes on from day to day
  kDayTotals,
  kDayCounters,
  kDayGrandTotal,
  kDayNumber,      // value, expected
  kFirstDocument,  // of the day; value, expected
  kAllTotals,
  kNextInvoice,  // value, expected
  kPeriod,       // value: its number
  kProgrammed,   // text: what is programmed, by its name
  // Told beside, and nothing that was changed. Times read as YYYYMMDDHHMMSS.
  kClockSetBack,   // entry: the event; value: the time before, expected: the one it was set to
  kTimeBackwards,  // entry, document; value: its time, expected: of the document or closing before
  kLast = kTimeBackwards,
};

struct Finding {
  FindingKind kind = FindingKind::kUnreadable;
  int64_t entry = 0;  // or event: its place, from 1
  int64_t last = 0;   // of those from `entry` on
  // The document: kind (0 when it is not known), closing and number. Invoices have a number of
  // their own series; other entries may have none, which is 0.
  int32_t document = 0;
  int64_t closure = 0;
  int64_t number = 0;
  int64_t value = 0;
  int64_t expected = 0;
  std::string text = {};
  RegisterFailure failure = {};  // without its place, which is the file that is checked

  bool operator==(const Finding&) const = default;
};

}  // namespace lorimat
