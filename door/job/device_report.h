// What a device tells of itself for people. Nothing in it counts for the outcome of a job.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "door/log/job.h"

namespace lorimat::door {

// Amounts in ten-thousandths of the currency.
struct RateTotal {
  std::string rate;  // "22%", or a mark
  int64_t total = 0;
  int64_t vat = 0;  // contained in it
};

struct TenderTotal {
  std::string tender;  // as the paper names it
  int64_t total = 0;
};

// Of the day that is open; what the device does not tell is nothing.
struct DayReport {
  int64_t total = 0;
  std::optional<int> documents = {};
  std::optional<std::vector<RateTotal>> rates = {};
  std::optional<std::vector<TenderTotal>> tenders = {};
};

struct DeviceReport {
  bool is_open = false;         // a document, fiscal or not
  bool is_fiscal_open = false;  // a fiscal one
  std::optional<JobDocument> last_document = {};
  DayReport day = {};
  std::vector<std::string> warnings = {};  // "paper_near_end": codes, which stay
};

}  // namespace lorimat::door
