// A thread that is cancelled (pthread_cancel) while this lives goes on and is cancelled behind it,
// at its next point of cancellation; one that may be cancelled anywhere (asynchronously) is no
// thread for a register. Where threads cannot be cancelled from outside, nothing.
#pragma once

namespace lorimat {

class CancellationDelay {
 public:
  CancellationDelay() noexcept;
  ~CancellationDelay();
  CancellationDelay(const CancellationDelay&) = delete;
  CancellationDelay& operator=(const CancellationDelay&) = delete;

 private:
  int before_ = 0;
};

}  // namespace lorimat
