// The foundation beside its rivals: a line of the log, flushed into a file, beside spdlog's; a date
// read by strptime beside the C library's.
#include <benchmark/benchmark.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <string>

#include "bench_tools.h"
#include "pal/strptime.h"
#include "utility/log/log.h"

namespace {

constexpr char kMessage[] = "RtfProxy.PrintRecRedeem() enter";

int64_t FileSize(const std::string& name) {
  struct stat status;
  Require(stat(name.c_str(), &status) == 0, "there is no log");
  return status.st_size;
}

// A log of its own, with the file alone.
class FileLog : public Log {
 public:
  explicit FileLog(const char* name) {
    set_outputs(LO_FILE);
    set_output_file_name(name);
    Start();
    Require(output_file_opened_, "the log does not open");
  }
};

void LogLine(benchmark::State& state) {
  const TemporaryFile file("");
  FileLog log(file.path());
  for (auto _ : state) log.Write(Log::LL_INFO, __LOG_LOCATION__, kMessage);
  Require(FileSize(file.path()) > state.iterations() * int64_t{sizeof kMessage}, "lines are lost");
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(LogLine)->Name("log_line/ours");

void LogLineBySpdlog(benchmark::State& state) {
  const TemporaryFile file("");
  spdlog::logger logger("bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(file.path()));
  // The same fields: date, millisecond, level, thread, function, line, text.
  logger.set_pattern("%Y-%m-%d %H:%M:%S.%e:%L:%t:%!:%# - %v");
  logger.flush_on(spdlog::level::trace);
  for (auto _ : state) {
    logger.log(spdlog::source_loc{__FILE__, __LINE__, __func__}, spdlog::level::info, kMessage);
  }
  Require(FileSize(file.path()) > state.iterations() * int64_t{sizeof kMessage}, "lines are lost");
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(LogLineBySpdlog)->Name("log_line/spdlog");

struct Dates {
  const char* format;
  std::array<const char*, 4> texts;
};

constexpr Dates kPlainDates = {
    "%Y-%m-%d %H:%M:%S",
    {"2026-11-22 18:20:01", "1999-12-31 23:59:59", "2000-02-29 00:00:00", "2031-07-04 09:05:07"}};
constexpr Dates kNamedDates = {
    "%A, %d %B %Y %T",
    {"Sunday, 22 November 2026 18:20:01", "Fri, 31 Dec 1999 23:59:59",
     "tuesday, 29 FEBRUARY 2000 00:00:00", "Friday, 04 July 2031 09:05:07"}};

using Reader = char* (*)(const char*, const char*, struct tm*);

char* ReadByOurs(const char* text, const char* format, struct tm* time) {
  return pal::strptime(text, format, time);
}
char* ReadByGlibc(const char* text, const char* format, struct tm* time) {
  return ::strptime(text, format, time);
}

bool SameMoment(const struct tm& a, const struct tm& b) {
  return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday &&
         a.tm_hour == b.tm_hour && a.tm_min == b.tm_min && a.tm_sec == b.tm_sec;
}

void ReadDate(benchmark::State& state, Reader reader, const Dates& dates) {
  for (const char* text : dates.texts) {
    struct tm ours = {};
    struct tm theirs = {};
    const char* rest = reader(text, dates.format, &theirs);
    Require(rest != nullptr && *rest == 0, "not read");
    Require(pal::strptime(text, dates.format, &ours) != nullptr && SameMoment(ours, theirs),
            "the dates differ");
  }
  size_t place = 0;
  struct tm time = {};
  for (auto _ : state) {
    const char* text = dates.texts[place++ % dates.texts.size()];
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(reader(text, dates.format, &time));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(ReadDate, ours, ReadByOurs, kPlainDates)->Name("strptime/ours");
BENCHMARK_CAPTURE(ReadDate, glibc, ReadByGlibc, kPlainDates)->Name("strptime/glibc");
BENCHMARK_CAPTURE(ReadDate, ours_names, ReadByOurs, kNamedDates)->Name("strptime_names/ours");
BENCHMARK_CAPTURE(ReadDate, glibc_names, ReadByGlibc, kNamedDates)->Name("strptime_names/glibc");

}  // namespace
