// Documents as clients read them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "door/log/job.h"
#include "door/receipt/receipt_sums.h"
#include "register/document/documents.h"

namespace lorimat::door {

// As a job has it.
nlohmann::ordered_json DocumentJson(const JobDocument& document);
// As a register keeps it, with its items and payments. `tables` has the names of tenders; null: it
// is not known.
nlohmann::ordered_json KeptDocumentJson(const StoredDocument& document, const std::string& serial,
                                        const DeviceTables* tables);

}  // namespace lorimat::door
