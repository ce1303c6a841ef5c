// The Gregorian calendar, in the little that the fiscal identifiers need of it.
#pragma once

class Calendar {
 public:
  static bool IsLeapYear(unsigned int year);

  // Whether there is such a date. Day and month count from 0, the year is in full.
  static bool CheckDate(unsigned int day, unsigned int month, unsigned int year);
};
