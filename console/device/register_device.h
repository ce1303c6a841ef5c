// The virtual register as a device of the console: in memory, or in the file of its option "file".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "console/device/device.h"
#include "console/device/open_device.h"
#include "console/terminal/streams.h"
#include "register/inspect/register_file.h"
#include "register/state/day_state.h"

namespace lorimat {
struct Refusal;
struct RegisterFailure;
struct RegisterSettings;
class VirtualRegister;
}  // namespace lorimat

namespace lorimat::console {

// What a register's file holds. Throws Failure for a register that a start would change: one with
// an open document, or with faults that wait.
lorimat::RegisterStatus RequireQuietRegister(const std::string& file);

// What a register is now.
DeviceState StateOf(const lorimat::VirtualRegister& device);

// A refusal of a register as the library took it, and where the register could not be kept that
// cause.
DeviceRefusal ToldRefusal(const lorimat::Refusal& refusal, const lorimat::RegisterFailure& failure);

// Plans the fault of the words, or takes all away that wait: "clear". Throws Failure, or
// RegisterError, with the cause; then nothing is changed.
void PlanFault(lorimat::VirtualRegister& device, std::string_view words);

class RegisterDevice : public Device {
 public:
  // clock is a date and time of clock_text.h, which stands still, or empty for the computer's
  // clock. register_file is where the register is kept, made when it is not there; empty keeps it
  // in memory. Tells on standard error that it was made, and what the register did about a document
  // that was cut off. Throws Failure when the clock is no such time or the file no register, with
  // file and cause.
  RegisterDevice(const std::string& clock, const std::string& register_file, Streams& streams);
  // A new register in memory.
  RegisterDevice(lorimat::RegisterSettings settings, Streams& streams);
  ~RegisterDevice() override;

  // For commands that look after a register, and no other device.
  lorimat::VirtualRegister& machine();
  // Why the register could not be kept, with its file; empty when nothing failed.
  std::string keeping_failure() const;

  std::string name() const override { return std::string(kRegisterName); }
  std::string version() const override;
  std::string place() const override { return file_.empty() ? name() : file_; }
  std::string Greeting() const override;
  DeviceFacts facts() override;
  DeviceState state() override;
  bool ready() override;
  std::vector<std::pair<std::string, std::string>> StatusRows() override;
  DevicePaper* paper() override;
  DeviceFaults* faults() override;
  uint64_t refusals() const override;
  int last_result() const override;
  DeviceRefusal last_refusal() const override;
  std::string last_failure() const override;
  void TellStart(Streams& streams) override;
  bool HasNotes() override;
  void TellNotes(Streams& streams) override;
  std::string OpenDocumentFate() override;
  LeftNote NoteOfLeft() override;
  bool stays() const override { return !file_.empty(); }
  std::string LostPaperNote() const override;

 private:
  class Machine;
  class Paper;
  class Faults;

  void TellOfStart(bool made, Streams& streams);
  lorimat::DayNotice FreshLimits() const;
  void TellNotice(const lorimat::DayNotice& notice, Streams& streams) const;

  std::string file_;
  uint64_t drops_told_ = 0;
  lorimat::DayNotice told_limits_;
  std::unique_ptr<Machine> machine_;
  std::unique_ptr<Paper> paper_;
  std::unique_ptr<Faults> faults_;
};

// The row of the built-in device: its options are "file" and "clock".
std::unique_ptr<Device> OpenRegister(const DeviceRequest& request, Streams& streams);
std::vector<KeptFile> FilesOfRegister(const DeviceRequest& request);
void RequireRegisterFile(const DeviceRequest& request);

}  // namespace lorimat::console
