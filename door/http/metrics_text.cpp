#include "door/http/metrics_text.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <filesystem>

#include "door/judge/code_page.h"

namespace lorimat::door {
namespace {

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\' || c == '"') escaped += '\\';
    escaped += c == '\n' ? std::string("\\n") : std::string(1, c);
  }
  return escaped;
}

std::string LabelsText(const MetricsText::Labels& labels, const std::string& bound = {}) {
  std::string text;
  for (const auto& [name, value] : labels) {
    text += fmt::format("{}{}=\"{}\"", text.empty() ? "" : ",", name, Escaped(value));
  }
  if (!bound.empty()) text += fmt::format("{}le=\"{}\"", text.empty() ? "" : ",", bound);
  return text.empty() ? text : "{" + text + "}";
}

// 0 for one that is not there.
double SizeOf(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

std::string_view StateName(size_t state) { return JobStateName(static_cast<JobState>(state)); }

void AddDiskMetrics(const std::string& file, MetricsText* text) {
  if (file.empty()) return;
  text->Gauge("lorimatd_log_bytes", "Size of the log, with what SQLite keeps beside it.",
              SizeOf(file) + SizeOf(file + "-wal"));
  const std::string folder = std::filesystem::path(file).parent_path().string();
  struct statvfs disk {};
  if (statvfs(folder.empty() ? "." : folder.c_str(), &disk) != 0) return;
  const auto block = static_cast<double>(disk.f_frsize);
  text->Gauge("lorimatd_disk_free_bytes", "What is free on the disk of the log.",
              block * static_cast<double>(disk.f_bavail));
  text->Gauge("lorimatd_disk_used_bytes", "What is used of the disk of the log.",
              block * static_cast<double>(disk.f_blocks - disk.f_bfree));
}

}  // namespace

void MetricsText::Head(std::string_view name, std::string_view help, std::string_view type) {
  text_ += fmt::format("# HELP {} {}\n# TYPE {} {}\n", name, help, name, type);
}

void MetricsText::Gauge(std::string_view name, std::string_view help, double value) {
  Head(name, help, "gauge");
  Value(name, {}, value);
}

void MetricsText::Counter(std::string_view name, std::string_view help, int64_t value) {
  Head(name, help, "counter");
  Value(name, {}, static_cast<double>(value));
}

void MetricsText::Value(std::string_view name, const Labels& labels, double value) {
  text_ += fmt::format("{}{} {:.16g}\n", name, LabelsText(labels), value);
}

void MetricsText::Values(std::string_view name, const Labels& labels, const Durations& durations) {
  int64_t count = 0;
  for (size_t i = 0; i < durations.counts.size(); ++i) {
    count += durations.counts[i];
    const bool is_last = i == Durations::kBounds.size();
    const std::string bound = is_last ? "+Inf" : fmt::format("{:g}", Durations::kBounds[i]);
    text_ += fmt::format("{}_bucket{} {}\n", name, LabelsText(labels, bound), count);
  }
  text_ += fmt::format("{}_sum{} {:.16g}\n", name, LabelsText(labels), durations.sum);
  text_ += fmt::format("{}_count{} {}\n", name, LabelsText(labels), count);
}

void AddLogMetrics(JobLog& log, MetricsText* text) {
  const LogFigures figures = log.Figures();
  text->Head("lorimatd_build_info", "The program, and the device that its log belongs to.",
             "gauge");
  const std::string serial = FromDevice(log.serial());
  text->Value("lorimatd_build_info", {{"version", LORIMAT_VERSION}, {"serial", serial}}, 1);
  text->Head("lorimatd_jobs", "Jobs of the log, by state.", "gauge");
  for (size_t i = 0; i < kJobStates; ++i) {
    text->Value("lorimatd_jobs", {{"state", StateName(i)}}, static_cast<double>(figures.jobs[i]));
  }
  text->Head("lorimatd_jobs_entered_total", "Jobs that have gone into a state since the start.",
             "counter");
  for (size_t i = 0; i < kJobStates; ++i) {
    text->Value("lorimatd_jobs_entered_total", {{"state", StateName(i)}},
                static_cast<double>(figures.entered[i]));
  }
  text->Head("lorimatd_job_state_seconds", "How long jobs were in a state that they have left.",
             "histogram");
  for (size_t i = 0; i < kJobStates; ++i) {
    if (IsFinal(static_cast<JobState>(i))) continue;
    text->Values("lorimatd_job_state_seconds", {{"state", StateName(i)}}, figures.left[i]);
  }
  constexpr double kSecond = 1000;  // milliseconds
  const int64_t since = figures.oldest_queued == 0 ? 0 : log.Now() - figures.oldest_queued;
  text->Gauge("lorimatd_oldest_queued_seconds",
              "How long ago the job was taken that has waited longest; 0 when none waits.",
              static_cast<double>(std::max<int64_t>(since, 0)) / kSecond);
  text->Head("lorimatd_log_commit_seconds", "How long the disk took for a commit of jobs.",
             "histogram");
  text->Values("lorimatd_log_commit_seconds", {}, figures.commits);
  text->Counter("lorimatd_events_total", "Events of the log, ever.", figures.last_event);
  AddDiskMetrics(log.file(), text);
}

}  // namespace lorimat::door
