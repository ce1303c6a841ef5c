// What the door asks a device beside what the translator asks of it: the numbers by which the
// outcome of a job is known.
#pragma once

#include <optional>
#include <string>
#include <vector>

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
  // What it cannot tell, for a person; empty when the door can work with it.
  virtual std::string Missing() = 0;
  // What it registered last; nothing when it does not tell.
  virtual std::optional<LastDocument> Last() = 0;
  // The day closing that it made last: its number, time and the day's total.
  virtual std::optional<JobDocument> LastClosing() = 0;
  // Prints a job's mark on the open fiscal document; 0 or the device's result code.
  virtual int PrintMark(const std::string& mark) = 0;
};

}  // namespace lorimat::door
