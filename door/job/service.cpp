#include "door/job/service.h"

#include <algorithm>
#include <utility>

namespace lorimat::door {
namespace {

int64_t SteadyTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

Service::Service(Parts parts)
    : parts_(std::move(parts)),
      worker_(
          parts_.log, parts_.device, parts_.judge,
          [this](const std::string& line, std::string* answer) {
            NoteCall();
            const long code = parts_.run(line, answer);
            NoteCall();
            return code;
          },
          [this](Step step) {
            // What is asked and written between two steps does not add up.
            NoteCall();
            if (parts_.watch) parts_.watch(step);
          }) {}

Service::~Service() { Stop(); }

void Service::NoteCall() { call_ = SteadyTime(); }

int64_t Service::SinceCall() const {
  const int64_t call = call_;
  return call == 0 ? 0 : SteadyTime() - call;
}

void Service::Start() {
  thread_ = std::thread([this] { Loop(); });
  watcher_ = std::thread([this] { WatchLoop(); });
}

void Service::Stop() {
  worker_.BeginNoMore();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
  if (watcher_.joinable()) watcher_.join();
}

void Service::Wake() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    woken_ = true;
  }
  wake_.notify_all();
}

// Grows, so that a device that is away is not asked without end.
void Service::Pause(int* round) {
  constexpr int kDoublings = 6;
  const auto pause = parts_.first_pause * (1 << std::min(*round, kDoublings));
  ++*round;
  std::unique_lock<std::mutex> lock(mutex_);
  if (wake_.wait_for(lock, pause, [this] { return stopping_ || woken_; })) *round = 0;
  woken_ = false;
}

// What cannot be told now is told in another round.
void Service::Tell(DeviceTrouble trouble, const std::exception* failure) const noexcept {
  try {
    if (parts_.tell) parts_.tell(trouble, failure);
  } catch (...) {
  }
}

Service::Came Service::Round() {
  Worker::Did did = Worker::Did::kBlocked;
  try {
    did = worker_.Work();
  } catch (const IllegalMove&) {
    // It was cancelled as it was about to begin.
    did = Worker::Did::kWork;
  } catch (const std::exception& error) {
    // The log, or no memory: what was begun is running in the log, and is resolved.
    log_failed_ = true;
    Tell(DeviceTrouble::kNone, &error);
    return Came::kNothing;
  } catch (...) {
    log_failed_ = true;
    const std::exception unnamed;
    Tell(DeviceTrouble::kNone, &unnamed);
    return Came::kNothing;
  }
  log_failed_ = false;
  const DeviceTrouble now = trouble();
  const bool is_away = now == DeviceTrouble::kAway || now == DeviceTrouble::kOtherDevice;
  if (did == Worker::Did::kBlocked && is_away) {
    return ReopenDevice() ? Came::kDevice : Came::kNothing;
  }
  Tell(now, nullptr);
  return did == Worker::Did::kWork ? Came::kWork : Came::kNothing;
}

bool Service::ReopenDevice() {
  NoteCall();
  const bool failed_before = std::exchange(opening_failed_, true);
  try {
    parts_.device.Reopen();
    opening_failed_ = false;
    Tell(trouble(), nullptr);
    return failed_before;
  } catch (const std::exception& error) {
    Tell(trouble(), &error);
  } catch (...) {
    Tell(trouble(), nullptr);
  }
  return false;
}

void Service::Loop() {
  int round = 0;
  for (;;) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (stopping_ && !worker_.has_begun()) return;
    }
    NoteCall();
    const Came came = Round();
    call_ = 0;
    // What has come back is asked at the first step again.
    if (came != Came::kNothing) round = 0;
    if (came != Came::kWork) Pause(&round);
  }
}

void Service::WatchLoop() {
  constexpr std::chrono::milliseconds kLook{200};
  const int64_t limit = std::chrono::milliseconds(parts_.device_timeout).count();
  std::unique_lock<std::mutex> lock(mutex_);
  while (!(stopping_ && call_ == 0)) {
    wake_.wait_for(lock, kLook);
    if (SinceCall() <= limit) continue;
    lock.unlock();
    try {
      if (const std::optional<Job> job = parts_.log.First(JobState::kRunning)) {
        parts_.log.Move(job->id, JobState::kUnknown, Why::kHang);
      }
    } catch (...) {
      // It is running in the log, which says as much.
    }
    if (parts_.hung) parts_.hung();
    return;
  }
}

}  // namespace lorimat::door
