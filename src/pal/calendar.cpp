#include "pal/calendar.h"

namespace {

constexpr unsigned int kMonthLengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr unsigned int kFebruary = 1;

}  // namespace

bool Calendar::IsLeapYear(unsigned int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool Calendar::CheckDate(unsigned int day, unsigned int month, unsigned int year) {
  if (month > 11) return false;
  return day < (month == kFebruary && IsLeapYear(year) ? 29 : kMonthLengths[month]);
}
