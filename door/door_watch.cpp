#include "door/door_watch.h"

#include <sys/statvfs.h>

#include <ctime>
#include <filesystem>
#include <optional>
#include <utility>

#include "door/access/tls.h"
#include "door/http/api.h"
#include "door/http/trouble_problem.h"

namespace lorimat::door {
namespace {

// Enough for some thousand jobs.
constexpr uint64_t kLittleRoom = 64 << 20;

bool IsDiskLow(const std::string& file) {
  const std::string folder = std::filesystem::path(file).parent_path().string();
  struct statvfs disk {};
  return statvfs(folder.empty() ? "." : folder.c_str(), &disk) == 0 &&
         uint64_t{disk.f_bavail} * disk.f_frsize < kLittleRoom;
}

}  // namespace

void DoorWatch::Told(const Job* job) {
  parts_.server.NotifyEvents();
  if (job == nullptr) return;
  writes_none_ = false;
  parts_.notices.TellJob(*job);
}

void DoorWatch::NoteDevice(DeviceTrouble trouble) {
  const std::string code(TroubleCode(trouble));
  parts_.log.NoteText(EventKind::kDevice, code);
  if (code == told_) return;
  parts_.manager.Notify("STATUS=" + (code.empty() ? "ready" : code));
  told_ = code;
}

void DoorWatch::AskDevice() noexcept {
  // While it cannot be asked, the places are for those that somebody waits for.
  if (question_ != nullptr && !question_->answered) return;
  try {
    auto question = std::make_shared<Question>();
    question->ask = [known = of_device_](FiscalDevice& device) {
      std::optional<DeviceReport> report = device.Report();
      if (!report) return;
      const std::lock_guard<std::mutex> lock(known->mutex);
      known->codes = std::move(report->warnings);
    };
    const bool is_put = parts_.service.Ask(question);
    question_ = is_put ? std::move(question) : nullptr;
  } catch (...) {
    // Another time.
  }
}

void DoorWatch::NoteWarnings() noexcept {
  const bool wrote_none = owes_warning_.exchange(false);
  try {
    std::string names;
    const auto add = [&names](const std::string& name) {
      if (!names.empty()) names += ' ';
      names += name;
    };
    if (IsDiskLow(parts_.log.file())) add("disk_low");
    if (parts_.log.Count(JobState::kNeedsOperator) > 0) add("needs_operator");
    const int64_t end = certificate_end_;
    if (end != 0 && end < std::time(nullptr) + kCertificateNotice) add("certificate_near_end");
    {
      const std::lock_guard<std::mutex> lock(of_device_->mutex);
      for (const std::string& code : of_device_->codes) add(code);
    }
    // One of the two is news, whatever was told last, and has to be written.
    if (wrote_none) parts_.log.NoteText(EventKind::kWarning, "disk_full");
    parts_.log.NoteText(EventKind::kWarning, names);
    // Unless another one came meanwhile.
    if (wrote_none) writes_none_ = owes_warning_.load();
  } catch (...) {
    // Another time.
    if (wrote_none) owes_warning_ = true;
  }
}

void DoorWatch::AddMetrics(MetricsText& text) const {
  const ServerFigures figures = parts_.server.figures();
  text.Gauge("lorimatd_connections", "Connections of clients.", figures.connections);
  text.Gauge("lorimatd_waiting_requests", "Requests that wait for a job.",
             static_cast<double>(figures.waiting));
  text.Gauge("lorimatd_event_streams", "Connections that follow the events.",
             static_cast<double>(figures.streams));
  text.Counter("lorimatd_connections_total", "Connections that have come.", figures.taken);
  text.Counter("lorimatd_connections_refused_total",
               "Connections that were closed since there were too many.", figures.refused);
  text.Counter("lorimatd_notices_lost_total", "Notices that the journal did not take in time.",
               parts_.notices.lost());
  if (const int64_t end = certificate_end_) {
    text.Gauge("lorimatd_certificate_end_seconds",
               "When the certificate runs out, in seconds since 1970.", static_cast<double>(end));
  }
  const ServiceFigures calls = parts_.service.figures();
  text.Counter("lorimatd_device_lines_failed_total", "Lines that were not answered with 0.",
               calls.failed);
  text.Head("lorimatd_device_call_seconds", "How long the device took for a line of a job.",
            "histogram");
  text.Values("lorimatd_device_call_seconds", {}, calls.lines);
}

bool DoorWatch::IsAlive(Api& api) {
  if (*asked_ > 0) return false;
  ++*asked_;
  try {
    parts_.server.Post([asked = asked_, &api] {
      // There is none, which the log has to be asked for.
      api.IsOver(0);
      --*asked;
    });
  } catch (...) {
    // Without memory nobody was asked.
    --*asked_;
    return false;
  }
  return parts_.service.IsAlive();
}

}  // namespace lorimat::door
