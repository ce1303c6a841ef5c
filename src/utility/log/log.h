// The process-wide diagnostic log. A message is one text line, made of a date stamp,
// milliseconds, a level letter, the thread, the function, the source line and the message:
//
//   2026-11-16 05:31:04.123:I:4128:PrintRecRedeem:214 - RtfProxy.PrintRecRedeem() enter
//
// The line is built once, in a fixed buffer under one mutex, and handed to each output that
// is wanted and open. Writers use the macros at the end, which add the place in the source.
// The log reports nothing to its writers and never fails them: an output that cannot be
// opened or written is passed over.
//
// Nobody configures the log in this library: the constructor's defaults hold, all lines to
// standard output. Who wants a file or a syslog server sets their names and calls Start.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "pal/drivers/local_clock.h"
#include "pal/peripherals/network/netsocket.h"
#include "pal/threading/posix/mutex.h"

#define _WITH_LOG 1
#define _WITH_LOG_CONSOLE 1
#define _WITH_LOG_FILE 1
#define _WITH_LOG_SYSLOG 1
#define _WITH_LOG_DFLASH 0
#define _WITH_LOG_ANDROID 0

// Lets the compiler check arguments against a format of printf. Both are counted from 1, with
// the object as the first.
#if defined(__MINGW_PRINTF_FORMAT)
#define LOG_PRINTF_FORMAT(text, first) __attribute__((format(__MINGW_PRINTF_FORMAT, text, first)))
#elif defined(__GNUC__)
#define LOG_PRINTF_FORMAT(text, first) __attribute__((format(printf, text, first)))
#else
#define LOG_PRINTF_FORMAT(text, first)
#endif

class Log {
 public:
  enum Levels {
    LL_TRACE = 0,
    LL_DEBUG = 1,
    LL_INFO = 2,
    LL_WARN = 3,
    LL_ERROR = 4,
    LL_FATAL = 5,
    LL_LEVELS = 6
  };

  // Bits of outputs(). Data flash and Android are reserved: no such output exists here.
  enum Outputs {
    LO_NULL = 0,
    LO_CONSOLE = 1,
    LO_DFLASH = 2,
    LO_FILE = 4,
    LO_SYSLOG = 8,
    LO_ANDROID = 16,
    LO_ALL = 31
  };

  // How the log file is used again.
  enum RotateKind {
    LR_NONE = 0,   // it grows
    LR_SIZE = 1,   // a ring: past its size it is written over from the top
    LR_WEEKLY = 2  // a new day opens a file anew, under the name of that day
  };

  // In characters, without the NUL.
  enum Sizes {
    LS_HEADER = 40,    // room for a syslog header in front of the line
    LS_OUTPUT = 1024,  // the longest line
    LS_BUFFER = 1064,  // both
    LS_TRAILER = 6,    // the text that ends each line
    LS_FILENAME = 128,
    LS_HOSTNAME = 128
  };

  // Where a line is written from. Holds the pointers that it gets and copies nothing.
  class LocationInfo {
   public:
    LocationInfo(const char* fileName, const char* methodName, int lineNumber, int moduleNumber)
        : fileName_(fileName),
          methodName_(methodName),
          lineNumber_(lineNumber),
          moduleNumber_(moduleNumber) {}

    const char* fileName() const { return fileName_; }
    const char* methodName() const { return methodName_; }
    int lineNumber() const { return lineNumber_; }
    int moduleNumber() const { return moduleNumber_; }

   private:
    const char* fileName_;
    const char* methodName_;
    int lineNumber_;
    int moduleNumber_;
  };

  // The one object, built when first asked for, by whichever thread, and destroyed at the
  // process's exit or when the library is unloaded.
  static Log* GetInstance();
  virtual ~Log();

  // Writes a line with a ready text. Lines are cut at LS_OUTPUT characters; one that gets so
  // long lacks its trailer.
  void Write(Levels level, const LocationInfo& location, const char* message);
  // Writes a line with a text as printf makes it. A text that is cut leaves room for the
  // trailer's first character.
  void WriteF(Levels level, const LocationInfo& location, const char* format, ...)
      LOG_PRINTF_FORMAT(4, 5);
  // Writes a line with a text and, behind it, bytes as upper-case hexadecimal: as many as fit
  // in front of the trailer, with no mark where some do not.
  void WriteH(Levels level, const LocationInfo& location, const char* message, const void* data,
              size_t length);

  // Opens the outputs that are wanted: the console, the file if it has a name, adding to an
  // old one, and syslog if there is a host, whose address is looked up before this returns.
  // Then lines are written. May be called again after a change of names.
  void Start();
  // Drops every line from now on and closes the file and the syslog socket.
  void Stop();

  // The lowest level that is written.
  Levels level() const { return level_; }
  void set_level(Levels level) { level_ = level; }
  // Bit n is set when module n is written, n from 0 to 31; of larger numbers the low five
  // bits count.
  uint32_t modules() const { return modules_; }
  void set_modules(uint32_t modules) { modules_ = modules; }
  // The outputs wanted, bits of Outputs.
  uint32_t outputs() const { return outputs_; }
  void set_outputs(uint32_t outputs) { outputs_ = outputs; }
  // The log file's name, as a format of strftime, so that it may vary with the date.
  const char* output_file_name() const { return output_file_name_; }
  void set_output_file_name(const char* name);
  // The syslog server's name. An address found for another name is forgotten, and so is a
  // failure to find one.
  const char* output_syslog_host() const { return output_syslog_host_; }
  void set_output_syslog_host(const char* host);
  // The name that this machine gives itself in a syslog header.
  const char* syslog_hostname() const { return syslog_hostname_; }
  void set_syslog_hostname(const char* name);
  uint16_t output_syslog_port() const { return output_syslog_port_; }
  void set_output_syslog_port(uint16_t port) { output_syslog_port_ = port; }
  const char* trailer() const { return trailer_; }
  void set_trailer(const char* trailer);
  void set_file_rotate(RotateKind kind) { rotate_kind_ = kind; }
  // Bytes, for LR_SIZE.
  void set_file_rotate_size(int32_t size) { max_file_size_ = size; }

 protected:
  // Tests build logs of their own by these. Two logs must not have files open at one time.
  Log();

  // --- Lines (log.cpp).

  // Whether a line of that level and place is written at all.
  bool Passes(Levels level, const LocationInfo& location) const;
  // Starts the line: the prefix, up to the message. Gives its length. The mutex is held.
  size_t BeginLine(Levels level, const LocationInfo& location, const char* thread);
  // Appends at most limit characters of text to a line that has used so many, as far as it has
  // room. Gives the length then.
  size_t Append(size_t used, const char* text, size_t limit);
  // Hands the line to the outputs.
  void WriteOutput(Levels level);
  // Writes the local date and time, and gives the length. The buffer holds LocalClock::kTextSize
  // characters. The mutex is held.
  size_t PrependDate(char* buffer);
  // Prints a time, given in UTC, as local time by a format of strftime. The text is cut to
  // the buffer, of length characters with the NUL; it stays as it is when the time cannot be
  // turned or the text is longer than 127 characters.
  static void toLocalDateTime(char* buffer, size_t length, const char* format, const tm* time);

  // --- Console (log.cpp).

  void OpenConsole() { output_console_opened_ = true; }
  void WriteConsoleA();
  void CloseConsole() { output_console_opened_ = false; }

  // --- File (log_file.cpp).

  // Opens the file of now. With LR_SIZE writing goes on where the position file says and
  // append does not count; else append adds to the file and its absence empties it. With
  // LR_WEEKLY a file of an earlier day is always emptied.
  void OpenFile(bool append);
  void WriteFile();
  void CloseFile();
  // Called behind each line: starts the ring again, or the file of a new day.
  void RotateFile();

  // --- Syslog (log_syslog.cpp).

  // Prints the header of a syslog datagram in the form of RFC 3164, with facility 1 (user),
  // cut to LS_HEADER - 1 characters. Gives its length. The buffer holds LS_HEADER.
  static size_t FormatSyslogHeader(char* header, Levels level, const tm& time,
                                   const char* hostname);
  // Puts the header of now in front of the line, so that the two are one text; gives the
  // text's start. The mutex is held.
  const char* PrependSyslogHeader();
  // Starts with syslog closed: Start opens it where there is a host.
  void OpenSyslog();
  // Sends the line as one datagram. A server whose address is not known gets nothing, and
  // what becomes of the datagram is not looked at. The mutex is held.
  void WriteSyslog();
  void CloseSyslog();
  // Looks the server's address up where syslog is wanted and it is not known. After a failure
  // nothing is looked up for address_resolution_interval_. The look-up takes its time and
  // writes lines itself: the mutex is not held, and one thread at a time does it.
  void ResolveSyslogHost();

  // The settings are read and written without the mutex: a change shows at some line near it.
  std::atomic<bool> stopped_;  // every write is dropped at once
  tm last_opened_date_;        // local time at which the log file was last opened
  std::atomic<int32_t> max_file_size_;
  std::atomic<RotateKind> rotate_kind_;
  Mutex mutex_;  // guards the texts, the buffer and the outputs
  std::atomic<Levels> level_;
  std::atomic<uint32_t> modules_;
  std::atomic<uint32_t> outputs_;
  Levels output_level_;         // of the line in the buffer
  char* output_;                // start of the line, LS_HEADER characters into the buffer
  char buffer_[LS_BUFFER + 1];  // room for a syslog header, then the line
  char level_initials_[LL_LEVELS];
  const char* level_texts_[LL_LEVELS];  // kept; no line shows them
  char trailer_[LS_TRAILER + 1];
  bool output_console_opened_;
  bool output_dflash_opened_;  // always false
  bool output_file_opened_;
  bool output_syslog_opened_;
  char output_file_name_[LS_FILENAME + 1];
  char output_syslog_host_[LS_HOSTNAME + 1];
  char syslog_hostname_[LS_HOSTNAME + 1];
  uint32_t last_addr_resol_error_time_;  // of the last failed look-up of the syslog server
  // The least time between two look-ups after a failure: 30 minutes, in milliseconds.
  static constexpr int address_resolution_interval_ = 0x1B7740;
  int syslog_getaddr_errors_;  // failed look-ups
  static constexpr uint32_t kUnknownAddress = 0xFFFFFFFF;
  uint32_t output_syslog_addr_;  // the server's IPv4 address; all ones until known
  std::atomic<uint16_t> output_syslog_port_;
  NetSocket output_syslog_socket_;

 private:
  // Gives, in host, the server's name to look up now, if there is one. The mutex is taken.
  bool ClaimLookUp(char* host);
  void FinishLookUp(const char* host, int result, uint32_t address);

  // Whether a line has to look at the matter at all; all else here is guarded by the mutex.
  std::atomic<bool> syslog_unresolved_;
  bool syslog_look_up_failed_;   // the last one of this host, at last_addr_resol_error_time_
  bool syslog_look_up_running_;  // on some thread
  LocalClock clock_;             // of the lines and of the file of the day

  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;
};

// The enclosing function's bare name.
#define __LOG_FUNC__ __func__
#define __LOG_LOCATION__ Log::LocationInfo(__FILE__, __LOG_FUNC__, __LINE__, LOG_MODULE)

// A ready text.
#define LOG_TRACE(message) Log::GetInstance()->Write(Log::LL_TRACE, __LOG_LOCATION__, message)
#define LOG_DEBUG(message) Log::GetInstance()->Write(Log::LL_DEBUG, __LOG_LOCATION__, message)
#define LOG_INFO(message) Log::GetInstance()->Write(Log::LL_INFO, __LOG_LOCATION__, message)
#define LOG_WARN(message) Log::GetInstance()->Write(Log::LL_WARN, __LOG_LOCATION__, message)
#define LOG_ERROR(message) Log::GetInstance()->Write(Log::LL_ERROR, __LOG_LOCATION__, message)
#define LOG_FATAL(message) Log::GetInstance()->Write(Log::LL_FATAL, __LOG_LOCATION__, message)

// A format of printf and its arguments.
#define LOG_TRACE_F(...) Log::GetInstance()->WriteF(Log::LL_TRACE, __LOG_LOCATION__, __VA_ARGS__)
#define LOG_DEBUG_F(...) Log::GetInstance()->WriteF(Log::LL_DEBUG, __LOG_LOCATION__, __VA_ARGS__)
#define LOG_INFO_F(...) Log::GetInstance()->WriteF(Log::LL_INFO, __LOG_LOCATION__, __VA_ARGS__)
#define LOG_WARN_F(...) Log::GetInstance()->WriteF(Log::LL_WARN, __LOG_LOCATION__, __VA_ARGS__)
#define LOG_ERROR_F(...) Log::GetInstance()->WriteF(Log::LL_ERROR, __LOG_LOCATION__, __VA_ARGS__)
#define LOG_FATAL_F(...) Log::GetInstance()->WriteF(Log::LL_FATAL, __LOG_LOCATION__, __VA_ARGS__)

// A ready text, then count bytes from pointer on. LOG_DEBUG_H and the _R family stand on
// members that the class does not have: they are declared and cannot be used.
#define LOG_TRACE_H(message, pointer, count) \
  Log::GetInstance()->WriteH(Log::LL_TRACE, __LOG_LOCATION__, message, pointer, count)
#define LOG_DEBUG_H(message, pointer, count) \
  Log::GetInstance()->WriteG(Log::LL_DEBUG, __LOG_LOCATION__, message, pointer, count)
#define LOG_INFO_H(message, pointer, count) \
  Log::GetInstance()->WriteH(Log::LL_INFO, __LOG_LOCATION__, message, pointer, count)
#define LOG_WARN_H(message, pointer, count) \
  Log::GetInstance()->WriteH(Log::LL_WARN, __LOG_LOCATION__, message, pointer, count)
#define LOG_ERROR_H(message, pointer, count) \
  Log::GetInstance()->WriteH(Log::LL_ERROR, __LOG_LOCATION__, message, pointer, count)
#define LOG_FATAL_H(message, pointer, count) \
  Log::GetInstance()->WriteH(Log::LL_FATAL, __LOG_LOCATION__, message, pointer, count)

#define LOG_TRACE_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_TRACE, __LOG_LOCATION__, expression)
#define LOG_DEBUG_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_DEBUG, __LOG_LOCATION__, expression)
#define LOG_INFO_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_INFO, __LOG_LOCATION__, expression)
#define LOG_WARN_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_WARN, __LOG_LOCATION__, expression)
#define LOG_ERROR_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_ERROR, __LOG_LOCATION__, expression)
#define LOG_FATAL_R(expression) \
  Log::GetInstance()->WriteR(Log::LL_FATAL, __LOG_LOCATION__, expression)

// The module that a file's lines belong to. A file that has a number of its own defines it
// before it includes this header.
#ifndef LOG_MODULE
#define LOG_MODULE 0
#endif
