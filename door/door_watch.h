// The program as those see it who keep it running: its service manager, its journal, its figures,
// and the clients that follow its events.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "door/http/metrics_text.h"
#include "door/http/server.h"
#include "door/job/service.h"
#include "door/log/job_log.h"
#include "door/system/notices.h"
#include "door/system/service_manager.h"

namespace lorimat::door {

class Api;

// The parts outlive it, but for what it says.
class DoorWatch {
 public:
  struct Parts {
    JobLog& log;
    HttpServer& server;
    Service& service;
    Notices& notices;
    const ServiceManager& manager;
  };

  explicit DoorWatch(const Parts& parts) : parts_(parts) {}

  // A job has come or moved, or something else is to be told by the log's events.
  void Told(const Job* job);
  // How the device is; from the working thread. Throws RegisterError.
  void NoteDevice(DeviceTrouble trouble);
  // A job came that could not be written; by any thread. So it is until one is written, or
  // NoteWarnings finds that the log takes what it has. Whether it was not so before.
  bool NoteNotWritten() noexcept {
    const bool is_news = !writes_none_.exchange(true);
    // Behind it: NoteWarnings is to come by once more, whatever it is at.
    owes_warning_ = true;
    return is_news;
  }
  bool writes_none() const { return writes_none_; }
  // The certificate that clients are shown from now on: when it runs out, in seconds since 1970; 0
  // for none.
  void NoteCertificate(int64_t end) noexcept { certificate_end_ = end; }
  // Has the device asked for its warnings, which NoteWarnings tells; between two jobs, and once at
  // a time. Not for several threads.
  void AskDevice() noexcept;
  // What somebody should look at, as far as it is known here; to be called now and then.
  void NoteWarnings() noexcept;
  // The metrics of the program beside those of the log.
  void AddMetrics(MetricsText& text) const;
  // Whether the working thread, a thread that answers requests and the log come by: what was asked
  // of them the last time is answered. Asks anew. Not for several threads.
  bool IsAlive(Api& api);

 private:
  // Codes, as the device had them when it was asked last.
  struct DeviceWarnings {
    std::mutex mutex;
    std::vector<std::string> codes;
  };

  Parts parts_;
  // What is asked may come when this is gone.
  std::shared_ptr<DeviceWarnings> of_device_ = std::make_shared<DeviceWarnings>();
  std::shared_ptr<Question> question_;
  std::string told_;  // of the device, to the service manager
  std::atomic<bool> writes_none_{false};
  std::atomic<bool> owes_warning_{false};  // that it was so, also where a job was written since
  std::atomic<int64_t> certificate_end_{0};
  // Signs asked for that are not answered yet; what is asked may come when this is gone.
  std::shared_ptr<std::atomic<int>> asked_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace lorimat::door
