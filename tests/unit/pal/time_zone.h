// The process's time zone, and moments that do not depend on it.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

// Sets the process's time zone for the life of the object and puts the old one back.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const char* zone) {
    if (const char* old = std::getenv("TZ")) old_ = old;
    Set(zone);
  }
  ~ScopedTimeZone() { Set(old_ ? old_->c_str() : nullptr); }
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
  static void Set(const char* zone) {
#ifdef _WIN32
    _putenv_s("TZ", zone == nullptr ? "" : zone);
    _tzset();
#else
    if (zone == nullptr) {
      unsetenv("TZ");
    } else {
      setenv("TZ", zone, 1);
    }
    tzset();
#endif
  }

  std::optional<std::string> old_;
};

// Seconds since the epoch of a broken-down UTC time, by the platform and not by the code under
// test.
inline time_t UtcSeconds(struct tm* time) {
#ifdef _WIN32
  return _mkgmtime(time);
#else
  return ::timegm(time);
#endif
}

// Zones as rules, so that no zone database is needed.
inline constexpr char kUtc[] = "UTC0";
inline constexpr char kItaly[] = "CET-1CEST,M3.5.0,M10.5.0/3";
inline constexpr char kNewYork[] = "EST5";  // winter time all year
