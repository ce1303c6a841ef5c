// Dates and times as local text, and back.

#include <cstdio>
#include <cstring>

#include "pal/drivers/datetime.h"
#include "pal/strptime.h"
#include "utility/locale/locale.h"

namespace {

const size_t kTimeTextSize = 128;

// The two-letter marks of Greek documents, in code page 1253.
const char kGreekWinterTime[] = "\327\331";
const char kGreekSummerTime[] = "\310\331";

// strftime with a format that the caller brings, which the compiler cannot check.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
size_t printTime(char* text, size_t size, const char* format, const tm& time) {
  const size_t length = std::strftime(text, size, format, &time);
  // What strftime leaves behind in a text that is too small is not defined.
  text[length] = '\0';
  return length;
}
#pragma GCC diagnostic pop

}  // namespace

const char* Locale::localDateTimeSeparator() { return " "; }

const char* Locale::localTransactionDateTimeFormat() const {
  return getCurrentLanguageCode() == kGreek ? "%d-%m-%Y %q:%H:%M" : "%d-%m-%Y %H:%M";
}

const char* Locale::localFirmwareDateFormat() { return "%m/%y"; }
const char* Locale::localShortDateTimeFormat() { return "%d-%m-%y %H:%M"; }
const char* Locale::localDateTimeFormat() { return "%d-%m-%y %H:%M:%S"; }
const char* Locale::localYearDateFormat() { return "%d-%m"; }
const char* Locale::localShortDateFormat() { return "%d-%m-%y"; }
const char* Locale::localLongDateFormat() { return "%d-%m-%Y"; }
const char* Locale::localCompactDateFormat() { return "%Y%m%d"; }
const char* Locale::localShortTimeFormat() { return "%H:%M"; }
const char* Locale::localLongTimeFormat() { return "%H:%M:%S"; }
const char* Locale::localXMLDateTimeFormat() { return "%Y-%m-%dT%H:%M:%S"; }
const char* Locale::localISO8601DateFormat() { return "%Y-%m-%d"; }
const char* Locale::localUPOSLongTimeFormat() { return "%d%m%Y%H%M"; }
const char* Locale::localUPOSShortTimeFormat() { return "%d%m%Y"; }
const char* Locale::localXmlDateFormat() { return "%d%m%Y"; }
const char* Locale::localXmlTimeFormat() { return "%H%M"; }
const char* Locale::localCompactLongDateTimeFormat() { return "%Y%m%d%H%M"; }
const char* Locale::localCompactShortDateFormat() { return "%y%m%d"; }
const char* Locale::localCompactShortDateTimeFormat() { return "%y%m%d%H%M"; }
const char* Locale::localHTTPDateTimeFormat() { return "%a, %d %b %Y %H:%M:%S GMT"; }

const char* Locale::localYearDateMask() { return "  -  "; }
const char* Locale::localShortDateMask() { return "  -  -  "; }
const char* Locale::localLongDateMask() { return "  -  -    "; }
const char* Locale::localShortTimeMask() { return "  :  "; }
const char* Locale::localLongTimeMask() { return "  :  :  "; }
const char* Locale::localRegistrationNumberMask() { return "      "; }
const char* Locale::localTelematicReceiptNumberMask() { return "    -    "; }

int Locale::localTimezone() { return 0; }

const char* Locale::getWinterTimeText() const {
  return getCurrentLanguageCode() == kGreek ? kGreekWinterTime : "CET";
}

const char* Locale::getSummerTimeText() const {
  return getCurrentLanguageCode() == kGreek ? kGreekSummerTime : "CEST";
}

bool Locale::fromLocalDateTime(const char* s, size_t, const char* f, tm* result) const {
  DateTime::GetDefaultDateTime(result);
  if (pal::strptime(s, f, result) == nullptr) return false;
  return DateTime::CheckDateTime(result) && DateTime::FromLocalDateTime(result);
}

bool Locale::toLocalDateTime(char* s, size_t n, const char* f, const tm* time,
                             bool use_local_time) const {
  tm local = *time;
  if (use_local_time && !DateTime::ToLocalDateTime(&local)) return false;

  char format[kTimeTextSize];
  const char* const season = std::strstr(f, "%q");
  if (season != nullptr) {
    std::snprintf(format, sizeof format, "%.*s%s%s", static_cast<int>(season - f), f,
                  local.tm_isdst == 1 ? getSummerTimeText() : getWinterTimeText(), season + 2);
    f = format;
  }
  char text[kTimeTextSize];
  const size_t length = printTime(text, sizeof text, f, local);
  std::snprintf(s, n, "%s", text);
  return length < n;
}
