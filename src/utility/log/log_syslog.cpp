// The syslog form of a line: one datagram, a header of RFC 3164 and the line behind it; and
// the look-up of the server's address.
#include "utility/log/log.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "pal/drivers/datetime.h"

size_t Log::FormatSyslogHeader(char* header, Levels level, const tm& time, const char* hostname) {
  static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  constexpr int kUserFacility = 1;
  int severity = 7;  // debug
  switch (level) {
    case LL_INFO:
      severity = 6;
      break;
    case LL_WARN:
      severity = 4;
      break;
    case LL_ERROR:
      severity = 3;
      break;
    case LL_FATAL:
      severity = 0;
      break;
    default:
      break;
  }
  const int printed =
      std::snprintf(header, LS_HEADER, "<%d>%s %2d %02d:%02d:%02d %s ",
                    kUserFacility * 8 + severity, kMonths[static_cast<unsigned>(time.tm_mon) % 12],
                    time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec, hostname);
  if (printed < 0) header[0] = 0;
  return std::strlen(header);
}

const char* Log::PrependSyslogHeader() {
  tm now = {};
  DateTime::GetLocalDateTime(&now);
  char header[LS_HEADER];
  const size_t length = FormatSyslogHeader(header, output_level_, now, syslog_hostname_);
  char* start = output_ - length;
  std::memcpy(start, header, length);
  return start;
}

void Log::OpenSyslog() {
  output_syslog_opened_ = false;
  syslog_unresolved_ = false;
}

void Log::WriteSyslog() {
  if (output_syslog_addr_ == kUnknownAddress) return;
  const char* text = PrependSyslogHeader();
  output_syslog_socket_.SendTo(reinterpret_cast<const uint8_t*>(text), std::strlen(text),
                               output_syslog_addr_, output_syslog_port_);
}

void Log::CloseSyslog() {
  if (!output_syslog_opened_) return;
  output_syslog_socket_.Close();
  output_syslog_opened_ = false;
  syslog_unresolved_ = false;
}

bool Log::ClaimLookUp(char* host) {
  MutexLock lock(&mutex_);
  if (!syslog_unresolved_ || syslog_look_up_running_) return false;
  // The difference is right across the counter's wrap; a clock set back makes it large.
  const uint32_t passed = DateTime::GetUptime_ms() - last_addr_resol_error_time_;
  if (syslog_look_up_failed_ && passed < static_cast<uint32_t>(address_resolution_interval_)) {
    return false;
  }
  std::memcpy(host, output_syslog_host_, sizeof(output_syslog_host_));
  return syslog_look_up_running_ = true;
}

void Log::FinishLookUp(const char* host, int result, uint32_t address) {
  MutexLock lock(&mutex_);
  syslog_look_up_running_ = false;
  if (result != 0) ++syslog_getaddr_errors_;
  // The name may be another by now: nothing is known of that one.
  if (std::strcmp(host, output_syslog_host_) != 0) return;
  if (result != 0) {
    last_addr_resol_error_time_ = DateTime::GetUptime_ms();
    syslog_look_up_failed_ = true;
  } else {
    output_syslog_addr_ = address;
    syslog_look_up_failed_ = false;
    syslog_unresolved_ = false;
  }
}

void Log::ResolveSyslogHost() {
  if (!syslog_unresolved_ || !(outputs_ & LO_SYSLOG)) return;
  // The lines that the look-up writes come here again and find it claimed.
  struct LookUp {
    Log* log;
    char host[LS_HOSTNAME + 1];
    int result = -1;
    uint32_t address = kUnknownAddress;
    bool claimed;
    explicit LookUp(Log* owner) : log(owner), claimed(owner->ClaimLookUp(host)) {}
    // Also where the thread is cancelled while it waits for an answer.
    ~LookUp() {
      if (claimed) log->FinishLookUp(host, result, address);
    }
  } look_up(this);
  if (look_up.claimed) {
    look_up.result = NetSocket::GetHostAddress(look_up.host, &look_up.address);
  }
}
