// What becomes of a document that was open when the register was switched off.
#pragma once

#include <optional>
#include <string>

#include "register/desk/receipt_desk.h"
#include "register/state/interrupted.h"
#include "register/storage/store_tables.h"

namespace lorimat {

// What a stored open document was.
CutOffDocument DescribeCutOff(const RegisterState& state, const StoredOpenDocument& open);

// Ends it, as ResetPrn would: one that was not paid is void, touches no total, and says in the
// journal that the power was cut; one that is registered gets its end, under the number that it
// has. Stored at once. Nothing when none was open.
std::optional<CutOffDocument> EndCutOff(RegisterCore& core, ReceiptDesk& desk);

// In a sentence, for a person.
std::string CutOffNotice(const CutOffDocument& document);

// The last document or day closing that was registered, when the register was switched off without
// order and nothing had been stored behind it: nobody knows whether the host got its answer.
// Nothing otherwise. A document that was cut off tells of itself.
std::optional<UnansweredDocument> FindUnanswered(const RegisterCore& core);
std::string UnansweredNotice(const UnansweredDocument& document);

}  // namespace lorimat
