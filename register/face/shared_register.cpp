// lorimatrt::VirtualRegister: what the shared library shows of the register. It keeps the
// register's own classes and the libraries behind them out of the hosts' sight: they change, and
// this does not.

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "lorimatrt/register.h"
#include "register/client/virtual_register.h"
#include "register/fault/faults.h"
#include "register/paper/picture.h"
#include "register/tables/tables.h"
#include "register/value/register_error.h"
#include "register/value/register_failure.h"

namespace lorimatrt {
namespace {

// Runs some work of the register; what that throws goes on as the type that hosts know.
template <typename Work>
auto Translating(Work&& work) {
  try {
    return work();
  } catch (const lorimat::RegisterError& error) {
    throw RegisterError(lorimat::EnglishFailure(error.failure()));
  }
}

// The place of a number in a table that begins with 1; it grows up to there.
template <typename Row>
Row& RowOf(std::vector<Row>* rows, int number, int last, const char* what) {
  if (number < 1 || number > last) {
    throw std::invalid_argument(std::string(what) + " " + std::to_string(number) +
                                ": they are 1 to " + std::to_string(last));
  }
  const size_t index = static_cast<size_t>(number) - 1;
  if (rows->size() <= index) rows->resize(index + 1);
  return (*rows)[index];
}

RegisterError FaultError(lorimat::FailureCause cause, const std::string& text) {
  return RegisterError(lorimat::EnglishFailure(lorimat::MakeFailure(cause, {}, text)));
}

}  // namespace

RegisterError::RegisterError(const std::string& what) : std::runtime_error(what) {}
RegisterError::RegisterError(const RegisterError&) noexcept = default;
RegisterError& RegisterError::operator=(const RegisterError&) noexcept = default;
RegisterError::~RegisterError() = default;

struct RegisterSettings::Parts {
  lorimat::RegisterSettings settings;
};

RegisterSettings::RegisterSettings() : parts_(std::make_unique<Parts>()) {}
RegisterSettings::RegisterSettings(const RegisterSettings& other)
    : parts_(std::make_unique<Parts>(*other.parts_)) {}
RegisterSettings& RegisterSettings::operator=(const RegisterSettings& other) {
  *parts_ = Parts(*other.parts_);
  return *this;
}
RegisterSettings::~RegisterSettings() = default;

RegisterSettings& RegisterSettings::SetFile(const std::string& name) {
  parts_->settings.file = name;
  return *this;
}

RegisterSettings& RegisterSettings::SetSerialNumber(const std::string& number) {
  parts_->settings.serial_number = number;
  return *this;
}

RegisterSettings& RegisterSettings::SetHeader(const std::vector<std::string>& lines) {
  parts_->settings.header_lines = lines;
  return *this;
}

RegisterSettings& RegisterSettings::SetVatNumber(const std::string& number) {
  parts_->settings.vat_number = number;
  return *this;
}

RegisterSettings& RegisterSettings::SetVatRate(int entry, std::int32_t rate,
                                               const std::string& mark) {
  RowOf(&parts_->settings.vat_rates, entry, lorimat::Tables::kMaxVatEntries, "VAT entry") = {rate,
                                                                                             mark};
  return *this;
}

RegisterSettings& RegisterSettings::SetDepartment(int number, const std::string& name,
                                                  int vat_entry, std::int64_t price) {
  lorimat::Department& row =
      RowOf(&parts_->settings.departments, number, lorimat::Tables::kMaxDepartments, "department");
  row.name = name;
  row.vat = vat_entry;
  row.price = price;
  return *this;
}

RegisterSettings& RegisterSettings::SetCashRounding(bool yes) {
  parts_->settings.round_cash = yes;
  return *this;
}

RegisterSettings& RegisterSettings::SetInService(bool yes) {
  parts_->settings.commissioned = yes;
  return *this;
}

RegisterSettings& RegisterSettings::SetOutbox(const std::string& folder) {
  parts_->settings.outbox = folder;
  return *this;
}

RegisterSettings& RegisterSettings::SetClock(const std::function<std::tm()>& now) {
  parts_->settings.clock = now;
  return *this;
}

struct VirtualRegister::Parts {
  explicit Parts(const lorimat::RegisterSettings& settings) : device(settings) {}
  lorimat::VirtualRegister device;
};

VirtualRegister::VirtualRegister(const RegisterSettings& settings)
    : parts_(Translating([&] { return std::make_unique<Parts>(settings.parts_->settings); })) {}
VirtualRegister::~VirtualRegister() = default;

RtfClientInterface* VirtualRegister::client() noexcept { return &parts_->device; }

std::string VirtualRegister::paper_text() const { return parts_->device.paper_text(); }

std::string VirtualRegister::RenderPng() const {
  return Translating([&] { return lorimat::RenderPng(parts_->device.paper()); });
}

std::string VirtualRegister::RenderPdf() const {
  return Translating([&] { return lorimat::RenderPdf(parts_->device.paper()); });
}

int VirtualRegister::printer_state() const noexcept { return parts_->device.printer_state(); }

int VirtualRegister::drawer_count() const noexcept { return parts_->device.drawer_count(); }

std::string VirtualRegister::display_text(int display, int row) const {
  return parts_->device.display_text(display, row);
}

std::int64_t VirtualRegister::DayTotal(DayFigure figure) const {
  const lorimat::RegisterStore& store = parts_->device.store();
  switch (figure) {
    case DayFigure::kDocuments:
      return store.day().documents();
    case DayFigure::kReceipts:
      return store.daily().receipts;
    case DayFigure::kRefunds:
      return store.daily().refunds;
    case DayFigure::kVoids:
      return store.daily().cancels;
    case DayFigure::kNotPaid:
      return store.daily().not_paid;
  }
  return 0;
}

int VirtualRegister::last_closure() const noexcept { return parts_->device.store().last_closure(); }

std::string VirtualRegister::start_notice() const { return parts_->device.start_notice(); }

std::string VirtualRegister::last_failure() const { return parts_->device.last_failure(); }

void VirtualRegister::AddFault(const std::string& name, const std::string& operation,
                               const std::string& when, int count, int code) {
  lorimat::Fault fault{.name = name, .code = code, .count = count};
  if (!operation.empty()) {
    fault.operation = FindClientOperation(operation);
    if (!fault.operation) {
      throw FaultError(lorimat::FailureCause::kUnknownOperation, operation);
    }
  }
  const std::optional<lorimat::FaultWhen> occasion = lorimat::FindFaultWhen(when);
  if (!occasion) throw FaultError(lorimat::FailureCause::kUnknownOccasion, when);
  fault.when = *occasion;
  Translating([&] { parts_->device.AddFault(std::move(fault)); });
}

void VirtualRegister::ClearFaults() {
  Translating([&] { parts_->device.ClearFaults(); });
}

}  // namespace lorimatrt
