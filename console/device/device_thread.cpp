#include "console/device/device_thread.h"

#include <cxxabi.h>
#include <pthread.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

using Clock = std::chrono::steady_clock;

// How often a signal is looked for while a call is at work: a handler can wake nobody.
constexpr std::chrono::milliseconds kLook{50};

bool any_given_up = false;

// The program's signals are for its own thread.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

// It lives as long as the longer one of both threads.
struct DeviceThread::Shared {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> work;
  bool ending = false;
  std::thread thread;

  static void Loop(const std::shared_ptr<Shared>& shared) {
    std::unique_lock lock(shared->mutex);
    for (;;) {
      shared->changed.wait(lock, [&] { return shared->work != nullptr || shared->ending; });
      if (shared->work == nullptr) return;
      lock.unlock();
      try {
        shared->work();
      } catch (abi::__forced_unwind&) {
        throw;  // the plug-in ends its thread
      } catch (...) {
      }
      lock.lock();
      shared->work = nullptr;
      shared->changed.notify_all();
    }
  }
};

DeviceThread::DeviceThread(std::chrono::milliseconds limit, std::chrono::milliseconds grace,
                           std::function<void()> at_call)
    : limit_(limit),
      grace_(grace),
      at_call_(std::move(at_call)),
      shared_(std::make_shared<Shared>()) {
  const SignalsBlocked blocked;
  try {
    shared_->thread = std::thread([shared = shared_] { Shared::Loop(shared); });
  } catch (const std::system_error& error) {
    throw Failure(Tr("there is no thread for the device: {}", SystemMessage(error.code().value())));
  }
}

DeviceThread::~DeviceThread() {
  if (!given_up_.call.empty()) return;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->ending = true;
  }
  shared_->changed.notify_all();
  shared_->thread.join();
}

bool DeviceThread::Run(const char* call, std::function<void()> work) {
  if (!given_up_.call.empty()) return false;
  if (at_call_) at_call_();
  std::unique_lock lock(shared_->mutex);
  shared_->work = std::move(work);
  shared_->changed.notify_all();
  const auto begun = Clock::now();
  const auto end = begun + limit_;
  const int signals_before = interrupt_count;
  std::optional<Clock::time_point> stop;
  for (;;) {
    const auto now = Clock::now();
    const auto until = std::min(stop.value_or(end), end);
    const auto slice = std::min<Clock::duration>(until - now, kLook);
    if (shared_->changed.wait_for(lock, std::max<Clock::duration>(slice, Clock::duration::zero()),
                                  [this] { return shared_->work == nullptr; })) {
      return true;
    }
    // A second signal is one too many.
    if (!stop && interrupted != 0) stop = Clock::now() + grace_;
    if (interrupt_count > signals_before + 1) stop = Clock::now();
    if (Clock::now() < std::min(stop.value_or(end), end)) continue;
    given_up_ = {call, std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begun),
                 stop.has_value()};
    any_given_up = true;
    shared_->thread.detach();
    return false;
  }
}

bool DeviceThread::AnyGivenUp() { return any_given_up; }

}  // namespace lorimat::console
