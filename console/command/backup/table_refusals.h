// A client between the library and a device that notes what of a table the device does not have,
// and what it could not be asked for: the library leaves either out of a dump without a word.
#pragma once

#include <cstdint>
#include <string>

#include "recording/conversation/recording_client.h"

namespace lorimat::console {

class TableRefusals final : public conversation::RecordingClient, private conversation::CallBook {
 public:
  // The device outlives this object.
  explicit TableRefusals(RtfClientInterface& device)
      : RecordingClient(static_cast<conversation::CallBook&>(*this)), device_(device) {}

  // Forgets what was noted.
  void Begin();
  // Whether there were calls, and the device has none of them.
  bool lacks_all() const { return answered_ == 0 && !first_.empty(); }
  // The first call that it has not, with its arguments; empty for none.
  const std::string& first() const { return first_; }
  // The first question that the device did not answer for another cause (it is off, it failed),
  // with its arguments; empty for none. A dump without the answer is not the table.
  const std::string& unanswered() const { return unanswered_; }
  // What it said in the place of an answer: a result of the client interface.
  int unanswered_result() const { return unanswered_result_; }

 private:
  int Answer(ClientOperation operation, const conversation::CallSlip& slip,
             const conversation::Forward& forward) override;

  RtfClientInterface& device_;
  uint64_t answered_ = 0;
  std::string first_;
  std::string unanswered_;
  int unanswered_result_ = 0;
};

}  // namespace lorimat::console
