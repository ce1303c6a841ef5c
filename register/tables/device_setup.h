// What is programmed into the device beyond its tables: plain values, kept with them.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace lorimat {

// How far the register has come on its way into service; the values are those of
// RTF_PIDXFptr_CommissioningState.
enum class Commissioning {
  kNew = 0,
  kInService = 1,
  kRegistered = 2,  // known to the revenue agency
  kActivated = 3,   // for a shop
};

// A host set the clock back behind what was registered last. Times read as YYYYMMDDHHMMSS.
struct ClockSetBack {
  int64_t from = 0;  // the latest time that had been registered
  int64_t to = 0;    // the clock's, which documents follow from then on; 0 as long as none did
  // The last document and closing by then: later ones have times of their own.
  int64_t document = 0;
  int64_t closure = 0;

  bool operator==(const ClockSetBack&) const = default;
};
// As they are stored, "20990101120000 20261121090000 812 40 ".
std::string ToRecord(const ClockSetBack& back);
std::optional<ClockSetBack> ReadClockSetBack(std::string_view record);

struct DeviceSetup {
  static constexpr int kTrailerLines = 6;
  static constexpr size_t kTrailerLineSize = 50;
  static constexpr size_t kPosIdSize = 12;  // also of the cashier's

  // Printed behind a fiscal document; empty lines are not.
  std::array<std::string, kTrailerLines> trailer_lines = {};
  std::string fiscal_id = {};  // VAT number of the shop, for the telematic summary
  // Printed on fiscal documents when they are set.
  std::string pos_id = {};
  std::string cashier_id = {};
  std::string outbox = {};  // the shop's folder of what is sent; empty for none
  // Logos ahead of the header and behind the trailer; 0 for none.
  int header_logo = 0;
  int trailer_logo = 0;
  int64_t clock_offset = 0;  // seconds that the device's clock is ahead of the system's
  ClockSetBack clock_set_back = {};
  Commissioning commissioning = Commissioning::kInService;
  bool round_cash = false;  // what is paid wholly in cash, to five cents
  // Documents print, and nothing is registered.
  bool training = false;
  // Switch-offs in the middle of a document, and the last one's discovery.
  int power_losses = 0;
  std::tm last_power_loss = {};
};

}  // namespace lorimat
