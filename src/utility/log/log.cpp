// Building a line, and the console. The line begins LS_HEADER characters into the buffer and
// holds at most LS_OUTPUT: every step below takes the room that is left from its length.
#include "utility/log/log.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "pal/drivers/datetime.h"
#include "pal/threading/posix/thread.h"
#include "utility/decimal_digits.h"
#include "utility/hex.h"

namespace {

// The length of a text, at most limit characters of which are looked at.
size_t BoundedLength(const char* text, size_t limit) {
  const void* nul = std::memchr(text, 0, limit);
  return nul ? static_cast<size_t>(static_cast<const char*>(nul) - text) : limit;
}

// Copies a text into an array, cut to what leaves its last byte for the NUL.
template <size_t N>
void SetText(char (&dest)[N], const char* text) {
  if (text == nullptr) text = "";
  const size_t length = BoundedLength(text, N - 1);
  std::memmove(dest, text, length);
  std::memset(dest + length, 0, N - length);
}

}  // namespace

Log* Log::GetInstance() {
  static Log instance;
  return &instance;
}

Log::Log()
    : stopped_(true),
      last_opened_date_(),
      max_file_size_(104857600),
      rotate_kind_(LR_NONE),
      level_(LL_TRACE),
      modules_(255),
      outputs_(LO_ALL),
      output_level_(LL_TRACE),
      output_(buffer_ + LS_HEADER),
      buffer_{},
      level_initials_{'T', 'D', 'I', 'W', 'E', 'F'},
      level_texts_{"TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"},
      trailer_{"\n"},
      output_console_opened_(false),
      output_dflash_opened_(false),
      output_file_opened_(false),
      output_syslog_opened_(false),
      output_file_name_{},
      output_syslog_host_{},
      syslog_hostname_{},
      last_addr_resol_error_time_(0),
      syslog_getaddr_errors_(0),
      output_syslog_addr_(kUnknownAddress),
      output_syslog_port_(514),
      output_syslog_socket_(NetSocket::NST_DGRAM_UDP),
      syslog_unresolved_(false),
      syslog_look_up_failed_(false),
      syslog_look_up_running_(false) {
  OpenConsole();
  stopped_ = false;
}

Log::~Log() {
  // What other objects write while the process ends is dropped.
  stopped_ = true;
  CloseConsole();
  CloseFile();
  CloseSyslog();
}

void Log::Start() {
  {
    MutexLock lock(&mutex_);
    const uint32_t outputs = outputs_;
    if (outputs & LO_CONSOLE) OpenConsole();
    if ((outputs & LO_FILE) && output_file_name_[0] != 0) OpenFile(true);
    CloseSyslog();
    OpenSyslog();
    if ((outputs & LO_SYSLOG) && output_syslog_host_[0] != 0) {
      output_syslog_opened_ = true;
      syslog_unresolved_ = output_syslog_addr_ == kUnknownAddress;
    }
    stopped_ = false;
  }
  ResolveSyslogHost();
}

void Log::Stop() {
  stopped_ = true;
  // A line that has passed the gate already is written first, or misses these two.
  MutexLock lock(&mutex_);
  CloseFile();
  CloseSyslog();
}

void Log::set_output_file_name(const char* name) {
  MutexLock lock(&mutex_);
  SetText(output_file_name_, name);
}

void Log::set_output_syslog_host(const char* host) {
  MutexLock lock(&mutex_);
  char old[sizeof(output_syslog_host_)];
  std::memcpy(old, output_syslog_host_, sizeof(old));
  SetText(output_syslog_host_, host);
  if (std::strcmp(old, output_syslog_host_) == 0) return;
  output_syslog_addr_ = kUnknownAddress;
  syslog_look_up_failed_ = false;
  syslog_unresolved_ = output_syslog_opened_;
}

void Log::set_syslog_hostname(const char* name) {
  MutexLock lock(&mutex_);
  SetText(syslog_hostname_, name);
}

void Log::set_trailer(const char* trailer) {
  MutexLock lock(&mutex_);
  SetText(trailer_, trailer);
}

bool Log::Passes(Levels level, const LocationInfo& location) const {
  if (stopped_ || level < level_) return false;
  return (modules_ >> (static_cast<uint32_t>(location.moduleNumber()) & 31) & 1) != 0;
}

namespace {

// The name of the calling thread, or its number where it has none, cut to the room of a name.
struct ThreadField {
  char text[Thread::NAME_SIZE] = {};
  ThreadField() {
    if (Thread::Name(text) && text[0] != 0) return;
    char number[24];
    const char* const end = decimal_digits::Write(number, Thread::Identify());
    std::memcpy(text, number, std::min(static_cast<size_t>(end - number), sizeof(text) - 1));
  }
};

// Puts fields behind each other, as many as there is room for in front of the NUL.
class FieldWriter {
 public:
  FieldWriter(char* place, size_t size) : place_(place), room_(size - 1) {}

  void Put(const char* text, size_t length) {
    length = std::min(length, room_);
    std::memcpy(place_, text, length);
    place_ += length;
    room_ -= length;
  }
  void Put(const char* text) { Put(text, BoundedLength(text, room_)); }
  char* Close() {
    *place_ = 0;
    return place_;
  }

 private:
  char* place_;
  size_t room_;
};

}  // namespace

size_t Log::BeginLine(Levels level, const LocationInfo& location, const char* thread) {
  output_level_ = level;
  const size_t date = PrependDate(output_);
  const size_t index = static_cast<size_t>(level);
  const char initial = index < LL_LEVELS ? level_initials_[index] : '?';
  const int line = location.lineNumber();
  const auto magnitude = static_cast<uint64_t>(line < 0 ? -int64_t{line} : int64_t{line});

  // "date.milliseconds:level:thread:method:line - "
  char middle[] = ".000:?:";
  decimal_digits::WriteLast(middle + 1, DateTime::GetMillisecond(), 3);
  middle[5] = initial;
  char end[32];
  char* place = end;
  *place++ = ':';
  if (line < 0) *place++ = '-';
  place = decimal_digits::Write(place, magnitude);
  std::memcpy(place, " - ", 3);
  place += 3;

  FieldWriter writer(output_ + date, LS_OUTPUT - date);
  writer.Put(middle, sizeof(middle) - 1);
  writer.Put(thread);
  writer.Put(":", 1);
  writer.Put(location.methodName() != nullptr ? location.methodName() : "");
  writer.Put(end, static_cast<size_t>(place - end));
  return static_cast<size_t>(writer.Close() - output_);
}

size_t Log::Append(size_t used, const char* text, size_t limit) {
  const size_t room = LS_OUTPUT - used;
  const size_t length = BoundedLength(text, limit < room ? limit : room);
  std::memcpy(output_ + used, text, length);
  output_[used + length] = 0;
  return used + length;
}

void Log::Write(Levels level, const LocationInfo& location, const char* message) {
  if (!Passes(level, location)) return;
  ResolveSyslogHost();
  const ThreadField thread;
  MutexLock lock(&mutex_);
  size_t used = BeginLine(level, location, thread.text);
  used = Append(used, message != nullptr ? message : "", LS_OUTPUT);
  Append(used, trailer_, LS_OUTPUT);
  WriteOutput(level);
}

void Log::WriteF(Levels level, const LocationInfo& location, const char* format, ...) {
  if (!Passes(level, location)) return;
  ResolveSyslogHost();
  const ThreadField thread;
  MutexLock lock(&mutex_);
  const size_t used = BeginLine(level, location, thread.text);
  // The room leaves out the line's last character, which so stays for the trailer.
  va_list arguments;
  va_start(arguments, format);
  if (std::vsnprintf(output_ + used, LS_OUTPUT - used, format, arguments) < 0) output_[used] = 0;
  va_end(arguments);
  Append(used + std::strlen(output_ + used), trailer_, LS_OUTPUT);
  WriteOutput(level);
}

void Log::WriteH(Levels level, const LocationInfo& location, const char* message, const void* data,
                 size_t length) {
  if (!Passes(level, location)) return;
  ResolveSyslogHost();
  const ThreadField thread;
  MutexLock lock(&mutex_);
  size_t used = BeginLine(level, location, thread.text);
  used = Append(used, message != nullptr ? message : "", LS_OUTPUT);
  const size_t needed = used + std::strlen(trailer_);
  // A message that fills the line leaves room for no byte.
  size_t shown = needed < LS_OUTPUT ? (LS_OUTPUT - needed) / 2 : 0;
  if (shown > length) shown = length;
  if (shown > 0) Hex::Encode(static_cast<const uint8_t*>(data), shown, output_ + used);
  Append(used + 2 * shown, trailer_, LS_TRAILER);
  WriteOutput(level);
}

void Log::WriteOutput(Levels) {
  const uint32_t outputs = outputs_;
  if (output_console_opened_ && (outputs & LO_CONSOLE)) WriteConsoleA();
  if (output_file_opened_ && (outputs & LO_FILE)) WriteFile();
  if (output_syslog_opened_ && (outputs & LO_SYSLOG)) WriteSyslog();
}

size_t Log::PrependDate(char* buffer) {
  size_t length = 0;
  const char* const date = clock_.NowText(&length);
  std::memcpy(buffer, date, length + 1);
  return length;
}

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // the caller's format is the point
#endif
void Log::toLocalDateTime(char* buffer, size_t length, const char* format, const tm* time) {
  tm local = *time;
  char text[128];
  if (length == 0 || !DateTime::ToLocalDateTime(&local)) return;
  // A result of 0 is an empty text or one too long; only the first leaves the text defined.
  text[0] = 0;
  const size_t printed = std::strftime(text, sizeof(text), format, &local);
  if (printed == 0 && format[0] != 0) return;
  const size_t kept = printed < length ? printed : length - 1;
  std::memcpy(buffer, text, kept);
  buffer[kept] = 0;
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

void Log::WriteConsoleA() {
  std::fputs(output_, stdout);
  std::fflush(stdout);
}
