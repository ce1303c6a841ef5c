#include "console/device/stoppable_client.h"

namespace lorimat::console {

void StoppableClient::Begin(const volatile std::sig_atomic_t* stop,
                            std::function<void()> line_begins) {
  End();
  stop_ = stop;
  line_begins_ = std::move(line_begins);
}

bool StoppableClient::End() {
  stop_ = nullptr;
  line_begins_ = nullptr;
  stopping_ = behind_ = false;
  return std::exchange(refused_, false);
}

void StoppableClient::LineBegins() {
  if (stop_ == nullptr) return;
  behind_ = refused_;
  if (line_begins_) line_begins_();
  if (*stop_ != 0) stopping_ = true;
}

}  // namespace lorimat::console
