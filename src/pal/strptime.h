// Parsing of dates and times, and the reading of a broken-down time as UTC. Both are our own
// on every platform, so that results do not differ between them; the namespace keeps them
// apart from the platform's functions of the same names.
#pragma once

#include <ctime>

namespace pal {

// Parses text by format into *time and returns the first character not consumed, or null
// where text does not fit. English names, digits without sign or leading blank; the
// conversions are those of the table in strptime.cpp. Fields are written as they are read:
// those that the format does not name, tm_wday and tm_yday too, are never touched, and after
// a failure the fields read so far keep their new values.
//
// "%C" sets tm_year to a hundred times its value, without the base of 1900, and a "%y"
// behind it counts from there: that is meant.
char* strptime(const char* text, const char* format, struct tm* time);

// Seconds since the epoch of a UTC time, worked out from the local zone: the time is read as
// local (mktime normalises *time) and moved by the whole hours between its hour and the hour
// of the same moment in UTC. -1 where there is none.
//
// Meant, because what this system has written is compared with it: minutes of a zone are
// lost; tm_isdst of 0 in summer moves the result by the hour that normalising adds; where UTC
// and local time lie on different days the result is an even number of hours off, or a day.
time_t timegm(struct tm* time);

}  // namespace pal
