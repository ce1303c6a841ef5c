// Rows of documents, journal and closings as the store and those who check it read them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "register/document/documents.h"
#include "register/storage/database.h"
#include "register/storage/sql_text.h"
#include "register/totals/closures.h"
#include "register/totals/journal.h"

namespace lorimat {

// The columns of a document.
inline constexpr SqlText kDocumentStored =
    "id, kind, closure, number, time, operator, total, not_paid, change, discounts, surcharges, "
    "lottery_code, referred_closure, referred_number, sums";
// What ReadDocument reads; the document stands as `document`. A document is void when another one
// says so.
inline constexpr auto kDocumentColumns =
    kSql<kDocumentStored, ", kind <> ", kSqlNumber<DocumentKind::kInvoice>,
         " AND EXISTS (SELECT 1 FROM document AS other WHERE other.kind = ",
         kSqlNumber<DocumentKind::kCancel>,
         " AND other.referred_closure <> 0 AND other.referred_closure = document.closure AND "
         "other.referred_number = document.number), "
         "lottery_code <> '' AND NOT EXISTS (SELECT 1 FROM lottery_waiting WHERE "
         "lottery_waiting.document = document.id)">;
StoredDocument ReadDocument(const Database& database, const Statement& row);
// Its lines and payments.
void ReadDetails(Database& database, StoredDocument* document);

// The columns of an entry.
inline constexpr SqlText kJournalColumns =
    "place, kind, closure, number, time, document, lines, hash";
JournalEntry ReadEntry(const Database& database, const Statement& row);

// The columns of a closing, and what ReadClosure reads.
inline constexpr SqlText kClosureStored =
    "number, time, documents, sales, invoices, refunds, cancels, abandoned, non_fiscal, "
    "grand_total, vat_rates, totals";
inline constexpr auto kClosureColumns = kSql<kClosureStored,
                                             ", NOT EXISTS (SELECT 1 FROM summary_waiting WHERE "
                                             "summary_waiting.closure = closure.number)">;
// The seven counters of a day, from a column on.
DailyCounters ReadCounters(const Database& database, const Statement& row, int column);
Closure ReadClosure(const Database& database, const Statement& row);

// Lines of paper as one text, from one up to another, each ended by a line feed, and back. No line
// holds one.
std::string JoinLines(const std::vector<std::string>& lines, size_t from = 0, size_t to = SIZE_MAX);
std::vector<std::string> SplitLines(std::string_view text);

}  // namespace lorimat
