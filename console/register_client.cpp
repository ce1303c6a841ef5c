#include "register_client.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>
#include <optional>
#include <string_view>
#include <utility>

#include "failure.h"
#include "register/picture.h"
#include "register/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"
#include "text.h"

namespace {

// The number that the digits of this part of the text make; nothing when it holds others.
std::optional<int> digits(std::string_view text, size_t at, size_t count) {
  int number = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::optional<std::tm> parse_clock(std::string_view text) {
  if (text.size() != 16 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':') {
    return std::nullopt;
  }
  const auto year = digits(text, 0, 4);
  const auto month = digits(text, 5, 2);
  const auto day = digits(text, 8, 2);
  const auto hour = digits(text, 11, 2);
  const auto minute = digits(text, 14, 2);
  if (!year || !month || !day || !hour || !minute || *hour > 23 || *minute > 59) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) return std::nullopt;
  const std::chrono::sys_days days(date);
  std::tm time = {};
  time.tm_year = *year - 1900;
  time.tm_mon = *month - 1;
  time.tm_mday = *day;
  time.tm_hour = *hour;
  time.tm_min = *minute;
  time.tm_wday = static_cast<int>(std::chrono::weekday(days).c_encoding());
  time.tm_yday = static_cast<int>(
      (days - std::chrono::sys_days(date.year() / std::chrono::January / 1)).count());
  time.tm_isdst = -1;
  return time;
}

lorimat::RegisterSettings settings_for(const std::string& clock) {
  lorimat::RegisterSettings settings;
  if (clock.empty()) return settings;
  const std::optional<std::tm> time = parse_clock(clock);
  if (!time) {
    throw Failure(
        fmt::format("--clock {}: is no date and time of the form YYYY-MM-DD HH:MM", shown(clock)));
  }
  settings.clock = [fixed = *time] { return fixed; };
  return settings;
}

}  // namespace

// The register, with its log lines going to the trace.
class RegisterClient::Device : public lorimat::VirtualRegister {
 public:
  Device(const std::string& clock, Streams& streams)
      : VirtualRegister(settings_for(clock)), streams_(streams) {}

  void LogTrace(const char* line) override {
    VirtualRegister::LogTrace(line);
    if (line == nullptr) return;
    streams_.trace(shown(line));
    if (on_line_ && std::string_view(line).substr(0, 12) == "TradEcr Cmd<") on_line_();
  }

  void LogError(const char* line) override {
    VirtualRegister::LogError(line);
    if (line != nullptr) streams_.trace(shown(line));
  }

  void set_on_line(std::function<void()> callback) { on_line_ = std::move(callback); }

 private:
  Streams& streams_;
  std::function<void()> on_line_;
};

RegisterClient::RegisterClient(const std::string& clock, Streams& streams)
    : device_(std::make_unique<Device>(clock, streams)) {}

RegisterClient::~RegisterClient() = default;

RtfClientInterface* RegisterClient::client() { return device_.get(); }

std::string RegisterClient::paper() const { return device_->paper_text(); }

std::string RegisterClient::paper_png() const { return lorimat::RenderPng(device_->paper()); }

std::string RegisterClient::paper_pdf() const { return lorimat::RenderPdf(device_->paper()); }

bool RegisterClient::document_open() const {
  return device_->printer_state() != RTF_FPTR_PS_MONITOR;
}

void RegisterClient::on_line(std::function<void()> callback) {
  device_->set_on_line(std::move(callback));
}
