// The virtual register as the console's device client: clock, paper, and the trace.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "console/host/stoppable_client.h"
#include "console/terminal/streams.h"
#include "register/paper/picture.h"
#include "register/state/day_state.h"

class RtfClientInterface;
namespace lorimat {
struct Refusal;
struct RegisterSettings;
class VirtualRegister;
}  // namespace lorimat

namespace lorimat::console {

class RegisterClient {
 public:
  // clock is a date and time of clock_text.h, which stands still, or empty for the computer's
  // clock. register_file is where the register is kept, made when it is not there; empty keeps it
  // in memory. Tells on standard error that it was made, and what the register did about a document
  // that was cut off. Throws Failure when the clock is no such time or the file no register, with
  // file and cause.
  RegisterClient(const std::string& clock, const std::string& register_file, Streams& streams);
  // A new register in memory.
  RegisterClient(lorimat::RegisterSettings settings, Streams& streams);
  ~RegisterClient();

  RtfClientInterface* client();
  // The same, for whoever runs a batch that can be stopped.
  StoppableClient& stoppable() { return *stoppable_; }
  const lorimat::VirtualRegister& device() const;
  lorimat::VirtualRegister& device();
  // The file that the register is kept in; empty for one in memory.
  const std::string& file() const { return file_; }
  // Why the register could not be kept, with its file; empty when nothing failed.
  std::string last_failure() const;
  // Whether a receipt has gone out without its lottery code, and nobody was told.
  bool has_notes() const;
  // Tells it, once for each failure, and what there is to note.
  void TellFailure(Streams& streams);
  // For who sells on it: tells what is to be known of the day at the start, if anything is.
  void TellDay(Streams& streams);
  // Whether TellLimits has something to tell.
  bool LimitsToTell() const;
  // Tells that the last documents of the day, or the last closings, have come, once for each.
  void TellLimits(Streams& streams);
  // How many operations were refused until now, and the last one.
  uint64_t refusals() const;
  const lorimat::Refusal& last_refusal() const;
  // What the library takes a refusal for: a refused key is a wrong state.
  static int ResultOf(const lorimat::Refusal& refusal);
  // Why the register refused, in a sentence, when that led to this code of the library; empty when
  // it did not, or the reason is not known.
  std::string Reason(const lorimat::Refusal& refusal, long code) const;
  // The same of the last one, if it is not among the first so many.
  std::string ReasonSince(uint64_t refusals_before, long code) const;
  // Everything printed since the register was switched on; the text has a line feed behind each
  // line.
  const lorimat::Paper& printed() const;
  std::string paper() const;
  // The same drawn, as the content of a PNG or PDF file. Throws lorimat::PictureError and
  // lorimat::PictureStopped.
  std::string PaperPng(const lorimat::PictureProgress& progress) const;
  std::string PaperPdf(const lorimat::PictureProgress& progress) const;

 private:
  class Device;
  std::string file_;
  std::unique_ptr<Device> device_;
  std::unique_ptr<StoppableClient> stoppable_;
  lorimat::DayNotice FreshLimits() const;
  void TellNotice(const lorimat::DayNotice& notice, Streams& streams) const;
  lorimat::RegisterFailure told_;
  uint64_t drops_told_ = 0;
  lorimat::DayNotice told_limits_;
};

}  // namespace lorimat::console
