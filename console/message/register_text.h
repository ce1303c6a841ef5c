// What a register holds, in words for a person: amounts, times, documents.
#pragma once

#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "register/inspect/register_file.h"
#include "register/state/lottery_drop.h"
#include "register/totals/journal.h"

namespace lorimat::console {

// While one of these lives, the numbers in this thread's texts have a point and nothing between
// thousands, "1234.56": for answers whose other numbers do.
class PointedNumbers {
 public:
  PointedNumbers();
  ~PointedNumbers();
  PointedNumbers(const PointedNumbers&) = delete;
  PointedNumbers& operator=(const PointedNumbers&) = delete;
  static bool wanted();

 private:
  bool before_;
};

// "1.234,56", "-0,05".
std::string AmountText(lorimat::Amount amount);
// The same as a number of cents.
int64_t AmountCents(lorimat::Amount amount);

// "20/11/2026 11:03", and "2026-11-20T11:03" for programs.
std::string TimeText(const std::tm& time);
std::string TimeForPrograms(const std::tm& time);

// A document of a kind ("a credit note"), in the user's language.
std::string DocumentKindText(lorimat::InterruptedKind kind);
// "a receipt of 20/11/2026 11:03, 2 lines, subtotal 3,50, not paid: the next start voids it".
std::string OpenDocumentText(const lorimat::CutOffDocument& document);
// The same behind the start: "a receipt of 20/11/2026 11:03, 2 lines, subtotal 3,50, was cut off:
// not paid, and voided now".
std::string EndedDocumentText(const lorimat::CutOffDocument& document);
// "receipt 0001-0002 of 20/11/2026 11:03, total 3,50, was stored last, and ...".
std::string UnansweredDocumentText(const lorimat::UnansweredDocument& document);

// So many receipts went out without their lottery code, and the last one why; `last` may be none by
// now.
std::string LotteryDropNote(const lorimat::LotteryDrop& last, uint64_t drops);

// A kind of journal entries: its name for options and programs ("credit-note"), and for a person.
struct JournalKindName {
  lorimat::JournalKind kind;
  const char* name;
  const char* text;
};
const std::vector<JournalKindName>& JournalKindNames();
// The name of a kind; its number when it has none.
std::string NameOfKind(lorimat::JournalKind kind);
std::string JournalKindText(lorimat::JournalKind kind);
// "0001-0001", closure and number; "0001" alone for what has no number.
std::string DocumentNumberText(int closure, int number);

// A position of the key lock, "registering"; its number when it has no name.
std::string KeyPositionText(int position);

// What is to be told of a register's day, a sentence each.
std::vector<std::string> DayNoticeTexts(const lorimat::DayNotice& notice);
// The last closing, the day behind it and the grand total: names and values.
std::vector<std::pair<std::string, std::string>> DayRows(int last_closure,
                                                         const lorimat::DailyCounters& day,
                                                         bool open, lorimat::Amount day_total,
                                                         lorimat::Amount grand_total);

// Rows of a name and a value, the values under each other.
std::string PairedRows(const std::vector<std::pair<std::string, std::string>>& rows);

// How many columns of a terminal a UTF-8 text takes, a character being one.
size_t ColumnCount(const std::string& text);

}  // namespace lorimat::console
