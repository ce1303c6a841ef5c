#include "register/totals/journal.h"

#include "register/totals/closures.h"

namespace lorimat {
namespace {

constexpr int kDaysInMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

int Digits(std::string_view text, size_t at, size_t count) {
  int number = 0;
  for (const char digit : text.substr(at, count)) number = 10 * number + (digit - '0');
  return number;
}

}  // namespace

bool Selects(const JournalSelection& selection, const JournalEntry& entry) {
  if ((selection.filter & entry.kind) == 0) return false;
  const bool whole =
      selection.from_number <= 1 && selection.to_number >= JournalSelection::kLastNumber;
  if (entry.number == 0 && !whole) return false;
  if (selection.by_date) {
    if (CompareMinutes(entry.time, selection.from) < 0) return false;
    if (CompareMinutes(entry.time, selection.to) > 0) return false;
    if (selection.in_closures &&
        (entry.closure < selection.from_closure || entry.closure > selection.to_closure)) {
      return false;
    }
    return whole || (entry.number >= selection.from_number && entry.number <= selection.to_number);
  }
  if (entry.closure < selection.from_closure || entry.closure > selection.to_closure) return false;
  if (entry.closure == selection.from_closure && entry.number < selection.from_number && !whole) {
    return false;
  }
  return whole || entry.closure != selection.to_closure || entry.number <= selection.to_number;
}

bool ParseMinute(std::string_view text, std::tm* time) {
  if (text.size() != 12 || text.find_first_not_of("0123456789") != text.npos) return false;
  const int day = Digits(text, 0, 2);
  const int month = Digits(text, 2, 2);
  const int year = Digits(text, 4, 4);
  const int hour = Digits(text, 8, 2);
  const int minute = Digits(text, 10, 2);
  if (month < 1 || month > 12 || hour > 23 || minute > 59) return false;
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  if (day < 1 || day > (month == 2 && leap ? 29 : kDaysInMonth[month - 1])) return false;
  *time = {};
  time->tm_mday = day;
  time->tm_mon = month - 1;
  time->tm_year = year - 1900;
  time->tm_hour = hour;
  time->tm_min = minute;
  return true;
}

}  // namespace lorimat
