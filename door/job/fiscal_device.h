// What the door asks a device beside what the translator asks of it: the numbers by which the
// outcome of a job is known.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/device/device.h"
#include "door/job/device_report.h"
#include "door/log/job.h"

class RtfClientInterface;

namespace lorimat::door {

struct DeviceState {
  DeviceNumbers numbers;
  bool is_open = false;          // a document, fiscal or not
  bool is_fiscal_open = false;   // one that takes the mark of a job
  bool key_registering = false;  // the key lock
  bool operator==(const DeviceState&) const = default;
};

// A document as the device has it, with the marks that are printed on it.
struct LastDocument {
  JobDocument facts;
  bool is_invoice = false;
  std::vector<std::string> paper;  // its lines
};

// What the door has to know of a device, and was not told.
struct MissingItems {
  std::string text;      // for a person; empty when the door can work with the device
  bool may_pass = true;  // it has refused none of them: it may tell them another time
};

// What became of a question.
enum class Told : uint8_t {
  kYes,
  kNo,       // it has no such thing, or no such question
  kNoAnswer  // not now
};

class FiscalDevice {
 public:
  FiscalDevice() = default;
  virtual ~FiscalDevice() = default;
  FiscalDevice(const FiscalDevice&) = delete;
  FiscalDevice& operator=(const FiscalDevice&) = delete;

  // What the translator works on.
  virtual RtfClientInterface& client() = 0;
  // Nothing when the device does not answer all of it.
  virtual std::optional<DeviceState> Ask() = 0;
  // DeviceState::is_fiscal_open alone, which takes fewer calls; nothing when it does not answer.
  virtual std::optional<bool> AskFiscalOpen() = 0;
  virtual MissingItems Missing() = 0;
  // The document that it registered last, where it has these numbers.
  virtual Told FindLast(const DocumentName& name, LastDocument* document) = 0;
  // Whether its last document, of these numbers, makes that sale void as a whole.
  virtual Told FindVoid(const DocumentName& /*name*/, const DocumentName& /*sale*/) {
    return Told::kNo;
  }
  // The day closing that it made last: its number, time and the day's total; nothing when it does
  // not tell.
  virtual std::optional<JobDocument> LastClosing() { return std::nullopt; }
  // What it tells for people; nothing when it does not answer.
  virtual std::optional<DeviceReport> Report() = 0;
  // Adds what it knows beside its client to what that told.
  virtual void AddReport(DeviceReport* /*report*/) {}
  // A document as it was printed, line by line, in the code page of the device; no lines where
  // there is none of this name, or of that kind where one is given.
  virtual Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                         std::vector<std::string>* lines) = 0;
  // Its clock, as ISO 8601; empty when it does not tell.
  virtual std::string Clock() = 0;
  // Prints a job's mark on the open fiscal document; 0 or the device's result code.
  virtual int PrintMark(const std::string& mark) = 0;
  // How many operations it has refused until now, as far as it tells; what the last one was
  // answered and why, English and in UTF-8.
  virtual uint64_t refusals() const { return 0; }
  virtual console::DeviceRefusal last_refusal() const { return {}; }
  // Of one that went away: opens it anew. Throws what keeps it from being opened.
  virtual void Reopen() {}
};

}  // namespace lorimat::door
