// A device at work for the console: what the library gets as its client, what the console shows of
// it, and what only some devices can do. open_device.h opens one by its name; what stands behind
// it, a virtual register or a plug-in, is known to its own file alone.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/device/stoppable_client.h"
#include "console/terminal/streams.h"
#include "register/document/receipt.h"
#include "register/fault/faults.h"
#include "register/paper/picture.h"

class RtfClientInterface;

namespace lorimat::console {

// The receipt that is open.
struct OpenReceipt {
  lorimat::DocumentKind kind = {};
  uint64_t items = 0;  // lines that have not been taken back
  lorimat::Amount total = {};
  lorimat::Amount paid = {};
  lorimat::Amount remaining = {};
};

// What a device is at a moment. What it does not tell is none.
struct DeviceState {
  std::optional<int> printer;  // of RTF_PIDXFptr_PrinterState
  std::optional<OpenReceipt> receipt = {};
  std::optional<int> key_position = {};
  std::optional<bool> training = {};
  std::optional<lorimat::FaultPlan> faults = {};  // that wait

  // Whether no document is open; also of a printer whose state is not known.
  bool ready() const;
};

// What commands have to know of a device ahead of their work.
struct DeviceFacts {
  std::string serial_number = {};  // empty where it is not told; so is the next
  std::string firmware_version = {};
  std::optional<int> key_position = {};
  bool day_open = false;
};

// What a device refused last.
struct DeviceRefusal {
  int result = 0;            // what the library was answered
  bool no_document = false;  // a line of a receipt where none is open
  std::string reason = {};   // a sentence for a person; empty where it is not known
};

// What was printed.
class DevicePaper {
 public:
  virtual ~DevicePaper() = default;
  // The lines since the device was opened, which stay, and grow as it prints.
  virtual const std::vector<std::string>& printed() = 0;
  // Whether lines of it are shown at all.
  virtual bool has_lines() const { return true; }
  // Those and the ones of earlier times, as far as the device has them.
  virtual const std::vector<std::string>& roll() { return printed(); }
  virtual bool has_pictures() const { return false; }
  // What was printed drawn, as the content of a file. Throws Failure, lorimat::PictureError and
  // lorimat::PictureStopped.
  virtual std::string Png(const lorimat::PictureProgress&) { return {}; }
  virtual std::string Pdf(const lorimat::PictureProgress&) { return {}; }

  // The printed lines as a text, with a line feed behind each.
  std::string text();
};

// Faults that are ordered to strike.
class DeviceFaults {
 public:
  virtual ~DeviceFaults() = default;
  // The words behind ".fault", "clear" among them. Throws Failure with the cause, whose texts are
  // not for a terminal yet; then nothing is changed.
  virtual void Plan(std::string_view words) = 0;
  // The faults there are, and those that wait, in lines of at most so many columns; 0 gives each
  // one line.
  virtual std::string List(size_t columns) = 0;
  // The words that may stand behind ".fault".
  virtual std::vector<std::string> words() const = 0;
};

// What went wrong with a call beside its answer.
enum class DeviceCallFault : uint8_t {
  kNone,
  kThrew,    // an exception left the operation
  kOverrun,  // it wrote behind the room of a text; nothing of that was taken
  kHung,     // it did not come back, and the device is given up: so of all calls from then on
};

class Device {
 public:
  virtual ~Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // --- For the library

  // The client, with all that stands in front of the device.
  RtfClientInterface* client() { return &stoppable_; }
  // The same, for whoever runs a batch that can be stopped.
  StoppableClient& stoppable() { return stoppable_; }

  using ClientWrapper =
      std::function<std::unique_ptr<RtfClientInterface>(RtfClientInterface& inner)>;
  // Puts a client of one's own between the library and the device, before the library gets it. It
  // sees what reaches the device, and outlives the library.
  void Wrap(const ClientWrapper& make);

  // --- What it is

  // As "--device" has it or, of a file, as the plug-in calls itself.
  virtual std::string name() const = 0;
  virtual std::string version() const = 0;
  // What messages call it: the file of a register, or the name.
  virtual std::string place() const { return name(); }
  // The first line of the shell.
  virtual std::string Greeting() const = 0;
  virtual DeviceFacts facts() = 0;
  virtual DeviceState state() = 0;
  // state().ready(), asked behind every line.
  virtual bool ready() { return state().ready(); }
  // More rows for ".status", beside those that the state gives.
  virtual std::vector<std::pair<std::string, std::string>> StatusRows() { return {}; }

  // --- What some can do; null where it cannot

  virtual DevicePaper* paper() { return nullptr; }
  virtual DeviceFaults* faults() { return nullptr; }

  // --- What went wrong

  // How many operations were refused until now, as far as the device tells; the result of the last
  // one, and all of it.
  virtual uint64_t refusals() const { return 0; }
  virtual int last_result() const { return 0; }
  virtual DeviceRefusal last_refusal() const { return {}; }
  // Why the last refusal led to this code of the library, if it is not among the first so many;
  // empty when it did not.
  std::string ReasonSince(uint64_t refusals_before, long code) const;
  static std::string Reason(const DeviceRefusal& refusal, long code);

  // What went wrong with the calls since this was asked last: the latest.
  virtual DeviceCallFault TakeCallFault() { return DeviceCallFault::kNone; }

  // How many exceptions have left operations until now; what those answered is the client's.
  virtual uint64_t exceptions() const { return 0; }

  // Whether it hung in a call and is given up: every call is refused from then on.
  virtual bool given_up() const { return false; }

  // What is wrong with the device itself, in the reader's language; empty when nothing is.
  virtual std::string last_failure() const { return {}; }
  // Tells it, once for each failure.
  virtual void TellFailure(Streams& streams);
  // For who sells on it: tells what is to be known of the day at the start, if anything is.
  virtual void TellStart(Streams&) {}
  // Whether something came up that is no failure, and nobody was told: a receipt that went out
  // without its lottery code, the last documents of the day. TellNotes tells it, once.
  virtual bool HasNotes() { return false; }
  virtual void TellNotes(Streams&) {}

  // --- At its end

  // What becomes of the document that is open now when the shell is left, in a sentence.
  virtual std::string OpenDocumentFate() = 0;
  // For the time when the device is closed and gone: a note of the document that was open then,
  // from what came to its end ("receipt.cmd") and from the words of OpenDocumentWords.
  using LeftNote = std::function<std::string(const std::string& ended, const std::string& words)>;
  virtual LeftNote NoteOfLeft() = 0;
  // Whether the device, and with it what is open, is there when the shell has gone.
  virtual bool stays() const { return true; }
  // A note for whom a paper was lost: what ran is kept, and where the paper is. Empty for none.
  virtual std::string LostPaperNote() const { return {}; }

 protected:
  Device() = default;
  // The device's own client, which has to live as long as this object.
  void Use(RtfClientInterface& own) { stoppable_.SetDevice(own); }

 private:
  std::vector<std::unique_ptr<RtfClientInterface>> wrappers_;
  StoppableClient stoppable_;
  std::string told_;
};

}  // namespace lorimat::console
