// Figures in the text format of Prometheus, version 0.0.4.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "door/log/figures.h"
#include "door/log/job_log.h"

namespace lorimat::door {

// Names go as they are; texts of labels may hold anything.
class MetricsText {
 public:
  static constexpr const char* kContentType = "text/plain; version=0.0.4; charset=utf-8";
  using Labels = std::initializer_list<std::pair<std::string_view, std::string_view>>;

  // A metric of one value.
  void Gauge(std::string_view name, std::string_view help, double value);
  void Counter(std::string_view name, std::string_view help, int64_t value);
  // One with labels: its head, and then its values.
  void Head(std::string_view name, std::string_view help, std::string_view type);
  void Value(std::string_view name, const Labels& labels, double value);
  // The values of a histogram in seconds, behind its head.
  void Values(std::string_view name, const Labels& labels, const Durations& durations);

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// Of the jobs, the events, the log and the disk it is on.
void AddLogMetrics(JobLog& log, MetricsText* text);

}  // namespace lorimat::door
