// Reports: readings of the day, the day closing, periods, fiscal memory and journal. Each is
// put together whole before anything leaves the register: first its file is written, then it
// is printed. One that is refused, or whose file cannot be written, changes and prints nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "register/core/core.h"

namespace lorimat {

// Where a report goes.
struct ReportTarget {
  static constexpr int32_t kPrinter = 1;
  static constexpr int32_t kFile = 2;

  // "txt", also for an empty one, or "stxt": the same text, closed by a line with its digest.
  std::string_view format = {};
  std::string_view file = {};
  int32_t outputs = kPrinter;  // the sum of the places
};

// What FiscalReportMessageEx asks for.
struct FiscalRequest {
  int32_t source = 0;  // 0 closings, 1 journal, 2 sums of a period, 4 list of documents
  int32_t filter = 0;
  int32_t criteria = 0;  // 2 dates, 3 closures, 4 dates with numbers
  uint32_t from_number = 0;
  uint32_t to_number = 0;
  std::string_view from_date = {};  // DDMMYYYYHHMM
  std::string_view to_date = {};
};

// A part of the journal: everything, or what lies within dates, closures and numbers. Numbers other
// than 1 to 9999 leave out what has none.
struct JournalRequest {
  bool by_date = false;
  std::string_view from_date = {};  // DDMMYYYYHHMM
  std::string_view to_date = {};
  bool by_closure = false;
  int from_closure = 0;
  int to_closure = 0;
  int from_number = 1;
  int to_number = JournalSelection::kLastNumber;
  int32_t filter = kJournalAll;  // bits of JournalKind
};

class ReportDesk {
 public:
  explicit ReportDesk(RegisterCore& core) : core_(core) {}

  // Reading of the day: 0 departments, 1 the day, 2 everything. A reading never clears:
  // RTF_E_ILLEGAL with `clear`.
  int PrintX(int32_t kind, bool clear, const ReportTarget& target);
  // Closes the day and prints its paper.
  int CloseDay();
  // To follow once that is stored, as a unit of work of its own: with the option for it the lottery
  // documents are sent, with `send` the summaries that wait. What cannot go out goes on waiting.
  void SendBehindClosing(bool send);
  // Totals since they were last cleared: 1 everything, 2 departments, 3 VAT, 4 operators,
  // 5 tenders. With `clear` those of this kind begin again.
  int PrintPeriodic(int32_t kind, bool clear, const ReportTarget& target);
  int PrintFiscal(const FiscalRequest& request, const ReportTarget& target);
  int PrintJournal(const JournalRequest& request, const ReportTarget& target);
  // How often the register was switched off in the middle of a document.
  int PrintPowerLosses();

 private:
  Paper Begin(std::string_view title) const;
  int Deliver(Paper report, const ReportTarget& target);
  int Closings(const FiscalRequest& request, bool sums, Paper* report) const;
  int Journal(const FiscalRequest& request, Paper* report) const;
  int Extract(const JournalSelection& selection, Paper* report) const;
  int DocumentList(const FiscalRequest& request, Paper* report) const;

  RegisterCore& core_;
};

}  // namespace lorimat
