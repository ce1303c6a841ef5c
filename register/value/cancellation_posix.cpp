#include <pthread.h>

#include "register/value/cancellation.h"

namespace lorimat {

CancellationDelay::CancellationDelay() noexcept {
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_);
}

CancellationDelay::~CancellationDelay() { pthread_setcancelstate(before_, nullptr); }

}  // namespace lorimat
