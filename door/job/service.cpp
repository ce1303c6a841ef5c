#include "door/job/service.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "console/message/failure.h"

namespace lorimat::door {

Service::Service(Parts parts)
    : parts_(std::move(parts)),
      worker_(
          parts_.log, parts_.device, parts_.judge,
          [this](const std::string& line, std::string* answer) {
            NoteBeat();
            const int64_t begun = SteadyTime();
            const long code = parts_.run(line, answer);
            NoteLine(code, SteadyTime() - begun);
            NoteBeat();
            return code;
          },
          [this](Step step) {
            NoteBeat();
            if (parts_.watch) parts_.watch(step);
          },
          [this] { return questions_.any(); }, parts_.trouble) {}

Service::~Service() { Stop(); }

void Service::NoteBeat() { beat_ = parts_.clock(); }

void Service::NoteLine(long code, int64_t milliseconds) {
  const std::lock_guard<std::mutex> lock(figures_mutex_);
  figures_.lines.Add(
      std::chrono::duration<double>(std::chrono::milliseconds(milliseconds)).count());
  if (code != 0) ++figures_.failed;
}

ServiceFigures Service::figures() const {
  const std::lock_guard<std::mutex> lock(figures_mutex_);
  return figures_;
}

bool Service::IsAlive() const {
  // The longest pause is some seconds; a device that is opened again has a part more for each call.
  constexpr std::chrono::milliseconds kBeyond = std::chrono::seconds(60);
  constexpr int kPart = 12;
  const auto most = parts_.device_timeout + parts_.device_timeout / kPart + kBeyond;
  // One step of a job may be several calls, each of which may take its time.
  const std::optional<int64_t> call = parts_.calls ? parts_.calls->Since() : std::nullopt;
  const int64_t sign = std::max<int64_t>(beat_, parts_.calls ? parts_.calls->last_sign() : 0);
  return call.value_or(parts_.clock() - sign) <= most.count();
}

void Service::Start() {
  NoteBeat();
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
  if (noter_.joinable()) noter_.join();
}

void Service::Wake() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    woken_ = true;
    if (!pauses_) return;
  }
  wake_.notify_one();
}

bool Service::Ask(std::shared_ptr<Question> question) {
  const DeviceTrouble now = trouble();
  if (now == DeviceTrouble::kAway || now == DeviceTrouble::kOtherDevice) return false;
  if (!questions_.Put(std::move(question))) return false;
  Wake();
  return true;
}

// What an unknown job has done may come to be seen, or void, by the next call.
bool Service::MayAsk() const {
  const DeviceTrouble now = trouble();
  return !worker_.has_begun() && now != DeviceTrouble::kAway &&
         now != DeviceTrouble::kOtherDevice && !parts_.log.First(JobState::kRunning) &&
         !parts_.log.First(JobState::kUnknown);
}

bool Service::AnswerQuestions() noexcept {
  constexpr int64_t kLongest = 200;  // milliseconds
  if (!questions_.any()) return false;
  try {
    if (!MayAsk()) return false;
    for (const int64_t begun = SteadyTime(); SteadyTime() - begun < kLongest;) {
      const std::shared_ptr<Question> question = questions_.Next();
      if (question == nullptr) break;
      NoteBeat();
      try {
        question->ask(parts_.device);
      } catch (...) {
        // It has learnt nothing.
      }
      question->answered = true;
      if (parts_.answered) parts_.answered(question->id);
    }
  } catch (...) {
    // The log cannot be read, or nobody told: another round asks the rest.
    return false;
  }
  return questions_.any();
}

// Grows, so that a device that is away is not asked without end.
void Service::Pause(int* round) {
  constexpr int kDoublings = 6;
  const auto pause = parts_.first_pause * (1 << std::min(*round, kDoublings));
  ++*round;
  if (parts_.pauses) parts_.pauses(pause);
  std::unique_lock<std::mutex> lock(mutex_);
  pauses_ = true;
  if (wake_.wait_for(lock, pause, [this] { return stopping_ || woken_; })) *round = 0;
  pauses_ = woken_ = false;
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
  const bool failed_before = std::exchange(opening_failed_, true);
  NoteBeat();
  try {
    parts_.device.Reopen();
    NoteBeat();
    opening_failed_ = false;
    Tell(trouble(), nullptr);
    return failed_before;
  } catch (const console::DeviceHung& hung) {
    Tell(trouble(), &hung);
    if (parts_.hung) parts_.hung();
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
    NoteBeat();
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (stopping_ && !worker_.has_begun()) {
        ended_ = true;
        break;
      }
    }
    const Came came = Round();
    const bool more = AnswerQuestions();
    // What has come back is asked at the first step again.
    if (came != Came::kNothing) round = 0;
    if (came != Came::kWork && !more) Pause(&round);
  }
  changed_.notify_all();
}

void Service::WatchLoop() {
  constexpr std::chrono::milliseconds kLook{200};
  std::unique_lock<std::mutex> lock(mutex_);
  while (!ended_) {
    changed_.wait_for(lock, kLook);
    const std::optional<int64_t> since = parts_.calls ? parts_.calls->Since() : std::nullopt;
    if (ended_ || since.value_or(0) <= parts_.device_timeout.count()) continue;
    lock.unlock();
    NoteHang();
    if (parts_.hung) parts_.hung();
    return;
  }
}

// What cannot be written in time is running in the log, which says as much. Another thread waits
// for the disk and for whoever has the log.
void Service::NoteHang() {
  const int64_t job = worker_.at_work();
  if (job == 0) return;
  try {
    noter_ = std::thread([this, job] {
      try {
        parts_.log.Move(job, JobState::kUnknown, Why::kHang);
      } catch (...) {
      }
      {
        const std::lock_guard<std::mutex> lock(mutex_);
        hang_noted_ = true;
      }
      changed_.notify_all();
    });
  } catch (const std::system_error&) {
    return;
  }
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait_for(lock, parts_.log_grace, [this] { return hang_noted_; });
}

}  // namespace lorimat::door
