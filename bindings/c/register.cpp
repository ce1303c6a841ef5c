// The virtual register for hosts in C.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "bindings/c/border.h"
#include "bindings/c/host_struct.h"
#include "lorimatrt/lorimat_register.h"
#include "register/client/virtual_register.h"
#include "register/paper/picture.h"
#include "register/tables/tables.h"
#include "register/value/nature.h"

struct lorimat_register {
  explicit lorimat_register(lorimat::RegisterSettings settings) : device(std::move(settings)) {}
  lorimat::VirtualRegister device;
};

// The structs of the first contract.
namespace lorimat::c {
template <>
constexpr size_t FirstSize<lorimat_register_settings>() {
  return offsetof(lorimat_register_settings, user_data) +
         sizeof(lorimat_register_settings::user_data);
}
template <>
constexpr size_t FirstSize<lorimat_register_state>() {
  return offsetof(lorimat_register_state, journal_entries) +
         sizeof(lorimat_register_state::journal_entries);
}
template <>
constexpr size_t FirstSize<lorimat_register_totals>() {
  return offsetof(lorimat_register_totals, grand_amount) +
         sizeof(lorimat_register_totals::grand_amount);
}
static_assert(sizeof(void*) != 8 || (FirstSize<lorimat_register_settings>() == 96 &&
                                     FirstSize<lorimat_register_state>() == 64 &&
                                     FirstSize<lorimat_register_totals>() == 112));
}  // namespace lorimat::c

namespace {

using lorimat::c::Fail;

// Runs what a function does with a register, which is null only by a host's fault; what the
// register throws becomes LORIMAT_REGISTER_FAULT.
template <typename Work>
int With(lorimat_register* device, Work&& work) {
  if (device == nullptr) return Fail(LORIMAT_NULL_ARGUMENT);
  return lorimat::c::Guarded([&] {
    try {
      return work(device->device);
    } catch (const lorimat::RegisterError& error) {
      return Fail(LORIMAT_REGISTER_FAULT, error.what());
    }
  });
}

int GiveBytes(std::string_view made, lorimat_bytes* bytes) {
  char* data = static_cast<char*>(std::malloc(made.size() + 1));
  if (data == nullptr) return Fail(LORIMAT_NO_MEMORY);
  if (!made.empty()) std::memcpy(data, made.data(), made.size());
  data[made.size()] = 0;
  *bytes = {data, made.size()};
  return LORIMAT_OK;
}

// Bytes of a register, made by a function of it.
template <typename Make>
int MakeBytes(lorimat_register* device, lorimat_bytes* bytes, Make&& make) {
  if (bytes == nullptr) return Fail(LORIMAT_NULL_ARGUMENT);
  *bytes = {};
  return With(device, [&](lorimat::VirtualRegister& made) { return GiveBytes(make(made), bytes); });
}

// A text of the settings and how long it may be.
struct TextSetting {
  const char* lorimat_register_settings::*given;
  std::string lorimat::RegisterSettings::*kept;
  const char* name;
  size_t most;
};
constexpr size_t kMostPath = 4095;
constexpr TextSetting kTextSettings[] = {
    {&lorimat_register_settings::file, &lorimat::RegisterSettings::file, "file", kMostPath},
    {&lorimat_register_settings::serial_number, &lorimat::RegisterSettings::serial_number,
     "serial_number", lorimat::Tables::kSerialNumberSize},
    {&lorimat_register_settings::firmware_version, &lorimat::RegisterSettings::firmware_version,
     "firmware_version", lorimat::Tables::kFirmwareVersionSize},
    {&lorimat_register_settings::vat_number, &lorimat::RegisterSettings::vat_number, "vat_number",
     lorimat::Tables::kLongestVatNumber},
    {&lorimat_register_settings::outbox, &lorimat::RegisterSettings::outbox, "outbox", kMostPath},
};
constexpr size_t kMostHeaderLines = lorimat::Tables::kHeaderLines;
constexpr size_t kLongestHeaderLine = lorimat::Tables::kHeaderLineSize;
constexpr int kLastInvoice = 999'999;

constexpr size_t kMostVatEntries = 99;

// A rate of the table, or a nature; nothing for another text.
std::optional<lorimat::VatRate> ReadVat(std::string_view text) {
  if (const lorimat::Nature* const nature = lorimat::FindNature(text)) {
    return lorimat::VatRate{0, std::string(nature->mark)};
  }
  constexpr int kDecimals = 2;
  const std::optional<int64_t> hundredths = lorimat::ParseDecimal(text, kDecimals, 0);
  constexpr int64_t kMostHundredths = 9999;
  if (!hundredths || *hundredths > kMostHundredths) return std::nullopt;
  if (*hundredths == 0) return lorimat::VatRate{0, std::string(lorimat::kExempt.mark)};
  return lorimat::VatRate{static_cast<int32_t>(*hundredths * 100), {}};
}

int ReadVatTable(const lorimat_register_settings& given, lorimat::RegisterSettings* settings) {
  if (given.vat == nullptr) return LORIMAT_OK;
  if (given.vat_count < 1 || given.vat_count > kMostVatEntries) {
    return Fail(LORIMAT_BAD_VALUE, "vat has no entry, or more than 99");
  }
  settings->vat_rates.clear();
  for (size_t i = 0; i < given.vat_count; ++i) {
    if (given.vat[i] == nullptr) return Fail(LORIMAT_NULL_ARGUMENT, "an entry of vat is null");
    const std::optional<lorimat::VatRate> rate = ReadVat(given.vat[i]);
    if (!rate) {
      return Fail(LORIMAT_BAD_VALUE,
                  "entry " + std::to_string(i + 1) + " of vat is no rate and no nature");
    }
    settings->vat_rates.push_back(*rate);
  }
  return LORIMAT_OK;
}

// A tm of the host's clock. Throws when there is no such time.
std::tm TimeOf(const lorimat_register_settings& settings) {
  lorimat_time now = {};
  if (!settings.clock(settings.user_data, &now)) throw std::runtime_error("the clock has no time");
  struct Field {
    int value, least, most;
  };
  const std::array<Field, 6> fields = {{{now.year, 1900, 9999},
                                        {now.month, 1, 12},
                                        {now.day, 1, 31},
                                        {now.hour, 0, 23},
                                        {now.minute, 0, 59},
                                        {now.second, 0, 60}}};
  for (const Field& field : fields) {
    if (field.value < field.least || field.value > field.most) {
      throw std::runtime_error("the clock shows what is no time");
    }
  }
  std::tm time = {};
  time.tm_year = now.year - 1900;
  time.tm_mon = now.month - 1;
  time.tm_mday = now.day;
  time.tm_hour = now.hour;
  time.tm_min = now.minute;
  time.tm_sec = now.second;
  time.tm_isdst = -1;
  return time;
}

// The settings as the register takes them; LORIMAT_OK when all of them can be.
int ReadSettings(const lorimat_register_settings& given, lorimat::RegisterSettings* settings) {
  for (const TextSetting& row : kTextSettings) {
    const char* text = given.*row.given;
    if (text == nullptr) continue;
    // No name would be a register in memory, which loses what it sells.
    if (row.given == &lorimat_register_settings::file && *text == 0) {
      return Fail(LORIMAT_BAD_VALUE, "file is empty");
    }
    if (std::strlen(text) > row.most) {
      return Fail(LORIMAT_BAD_VALUE,
                  std::string(row.name) + " has more than " + std::to_string(row.most) + " bytes");
    }
    settings->*row.kept = text;
  }
  if (given.header_lines != nullptr) {
    if (given.header_line_count > kMostHeaderLines) {
      return Fail(LORIMAT_BAD_VALUE, std::string("there are more than ") +
                                         std::to_string(kMostHeaderLines) + " header lines");
    }
    settings->header_lines.clear();
    for (size_t i = 0; i < given.header_line_count; ++i) {
      const char* line = given.header_lines[i];
      if (line == nullptr) return Fail(LORIMAT_NULL_ARGUMENT, "a header line is null");
      if (std::strlen(line) > kLongestHeaderLine) {
        return Fail(LORIMAT_BAD_VALUE, std::string("a header line has more than ") +
                                           std::to_string(kLongestHeaderLine) + " bytes");
      }
      settings->header_lines.emplace_back(line);
    }
  }
  if (given.last_closure < 0 || given.last_closure > lorimat::RegisterStore::kLastNumber) {
    return Fail(LORIMAT_BAD_VALUE, "last_closure is out of range");
  }
  if (given.last_invoice < 0 || given.last_invoice > kLastInvoice) {
    return Fail(LORIMAT_BAD_VALUE, "last_invoice is out of range");
  }
  if (const int result = ReadVatTable(given, settings)) return result;
  settings->commissioned = !given.not_in_service;
  settings->round_cash = given.round_cash;
  settings->last_closure = given.last_closure;
  settings->last_invoice = given.last_invoice;
  if (given.clock != nullptr) {
    settings->clock = [given] { return TimeOf(given); };
  }
  return LORIMAT_OK;
}

}  // namespace

int lorimat_register_open(const lorimat_register_settings* settings, lorimat_register** device) {
  if (device == nullptr) return Fail(LORIMAT_NULL_ARGUMENT);
  *device = nullptr;
  if (settings != nullptr) {
    if (const lorimat_result fault = lorimat::c::FaultOf(settings)) return Fail(fault);
  }
  return lorimat::c::Guarded([&] {
    try {
      lorimat::RegisterSettings read;
      if (settings != nullptr) {
        if (const int result = ReadSettings(lorimat::c::Taken(*settings), &read)) return result;
      }
      *device = new lorimat_register(std::move(read));
      return int{LORIMAT_OK};
    } catch (const lorimat::RegisterError& error) {
      return Fail(LORIMAT_REGISTER_FAULT, error.what());
    }
  });
}

void lorimat_register_close(lorimat_register* device) { delete device; }

void* lorimat_register_interface(lorimat_register* device) {
  return device != nullptr ? static_cast<RtfClientInterface*>(&device->device) : nullptr;
}

const char* lorimat_register_error(void) { return lorimat::c::LastError(); }

void lorimat_bytes_free(lorimat_bytes* bytes) {
  if (bytes == nullptr) return;
  std::free(bytes->data);
  *bytes = {};
}

int lorimat_register_paper(lorimat_register* device, lorimat_bytes* bytes) {
  return MakeBytes(device, bytes, [](lorimat::VirtualRegister& one) { return one.paper_text(); });
}

int lorimat_register_png(lorimat_register* device, lorimat_bytes* bytes) {
  return MakeBytes(device, bytes,
                   [](lorimat::VirtualRegister& one) { return lorimat::RenderPng(one.paper()); });
}

int lorimat_register_pdf(lorimat_register* device, lorimat_bytes* bytes) {
  return MakeBytes(device, bytes,
                   [](lorimat::VirtualRegister& one) { return lorimat::RenderPdf(one.paper()); });
}

int lorimat_register_start_notice(lorimat_register* device, lorimat_bytes* bytes) {
  return MakeBytes(device, bytes, [](lorimat::VirtualRegister& one) { return one.start_notice(); });
}

int lorimat_register_failure(lorimat_register* device, lorimat_bytes* bytes) {
  return MakeBytes(device, bytes, [](lorimat::VirtualRegister& one) { return one.last_failure(); });
}

int lorimat_register_add_fault(lorimat_register* device, const char* name, int code,
                               const char* operation, int when, int count) {
  static constexpr std::array kWhen = {lorimat::FaultWhen::kNext, lorimat::FaultWhen::kNth,
                                       lorimat::FaultWhen::kEvery, lorimat::FaultWhen::kTimes};
  if (name == nullptr) return Fail(LORIMAT_NULL_ARGUMENT);
  if (when < 0 || static_cast<size_t>(when) >= kWhen.size()) {
    return Fail(LORIMAT_BAD_VALUE, "there is no such time for a fault");
  }
  return With(device, [&](lorimat::VirtualRegister& one) {
    lorimat::Fault fault;
    fault.name = name;
    fault.code = code;
    fault.when = kWhen[static_cast<size_t>(when)];
    const bool counted = when == LORIMAT_FAULT_NTH || when == LORIMAT_FAULT_TIMES;
    if (counted) fault.count = count;
    if (operation != nullptr) {
      fault.operation = FindClientOperation(operation);
      if (!fault.operation) {
        return Fail(LORIMAT_BAD_VALUE, std::string("no operation is called ") + operation);
      }
    }
    one.AddFault(std::move(fault));
    return int{LORIMAT_OK};
  });
}

int lorimat_register_clear_faults(lorimat_register* device) {
  return With(device, [](lorimat::VirtualRegister& one) {
    one.ClearFaults();
    return int{LORIMAT_OK};
  });
}

int lorimat_register_get_state(lorimat_register* device, lorimat_register_state* given) {
  if (const lorimat_result fault = lorimat::c::FaultOf(given)) return Fail(fault);
  return With(device, [&](lorimat::VirtualRegister& one) {
    const lorimat::RegisterStore& store = one.store();
    lorimat_register_state state = lorimat::c::Taken(*given);
    state.printer_state = one.printer_state();
    state.key_position = static_cast<int>(one.key_position());
    state.training = one.training();
    state.day_open = store.day_open();
    state.drawer_openings = one.drawer_count();
    state.last_closure = store.last_closure();
    state.next_invoice = store.next_invoice();
    state.pending_summaries = store.pending_closures();
    state.waiting_faults = static_cast<int>(one.faults().faults().size());
    state.documents = store.document_count();
    state.journal_entries = static_cast<int64_t>(store.journal_count());
    lorimat::c::GiveBack(state, given);
    return int{LORIMAT_OK};
  });
}

int lorimat_register_get_totals(lorimat_register* device, lorimat_register_totals* given) {
  if (const lorimat_result fault = lorimat::c::FaultOf(given)) return Fail(fault);
  return With(device, [&](lorimat::VirtualRegister& one) {
    lorimat_register_totals totals = lorimat::c::Taken(*given);
    const lorimat::DailyTotals day = one.store().daily();
    const lorimat::DailyCounters& counters = one.store().counters();
    totals.receipts_number = counters.documents;
    totals.sales = counters.sales;
    totals.invoices = counters.invoices;
    totals.refunds = counters.refunds;
    totals.cancels = counters.cancels;
    totals.abandoned = counters.abandoned;
    totals.non_fiscal = counters.non_fiscal;
    totals.receipts_amount = day.receipts;
    totals.invoices_amount = day.invoices;
    totals.refunds_amount = day.refunds;
    totals.cancels_amount = day.cancels;
    totals.not_paid_amount = day.not_paid;
    totals.discounts_amount = day.discounts;
    totals.surcharges_amount = day.surcharges;
    totals.net_amount = day.net();
    totals.grand_amount = one.store().grand_total();
    lorimat::c::GiveBack(totals, given);
    return int{LORIMAT_OK};
  });
}

int lorimat_register_get_tenders(lorimat_register* device, lorimat_tender_total* totals,
                                 size_t room, size_t* count) {
  if (count == nullptr || (totals == nullptr && room > 0)) return Fail(LORIMAT_NULL_ARGUMENT);
  *count = 0;
  return With(device, [&](lorimat::VirtualRegister& one) {
    const lorimat::DailyTotals day = one.store().daily();
    for (const auto& [tender, amount] : day.by_tender) {
      if (*count < room) {
        lorimat_tender_total& total = totals[*count];
        total = {};
        const size_t length = std::min(tender.size(), sizeof total.tender - 1);
        if (length > 0) std::memcpy(total.tender, tender.data(), length);
        total.amount = amount;
      }
      ++*count;
    }
    return int{LORIMAT_OK};
  });
}
