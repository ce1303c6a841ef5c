// The form in which the journal's chain takes in an entry: a text of the entry's values and of
// the fiscal facts that it stands for (docs/register.md). Any two different entries have
// different texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "register/document/documents.h"
#include "register/totals/closures.h"
#include "register/totals/journal.h"

namespace lorimat {

// Everything that is stored of a registered document, lines and payments included.
std::string DocumentFacts(const StoredDocument& document);
// The same where its SumsRecord is there already.
std::string DocumentFacts(const StoredDocument& document, std::string_view sums);
// Everything that is stored of a closing.
std::string ClosureFacts(const Closure& closure);

// The hash of an entry, from that of the entry before it (empty for the first one).
std::string EntryHash(std::string_view previous, uint64_t place, const JournalEntry& entry,
                      std::string_view facts);

// The VAT rates of a closing as they are stored.
std::string VatRatesRecord(const std::vector<VatRate>& rates);
bool ReadVatRates(std::string_view text, std::vector<VatRate>* rates);

}  // namespace lorimat
