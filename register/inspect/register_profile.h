// Everything that a register is, as its file has it: identity, tables, settings, the day's totals,
// how full its memory is, its clock.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

#include "register/core/core.h"
#include "register/desk/clock_check.h"
#include "register/storage/database.h"
#include "register/storage/store.h"
#include "register/tables/tables.h"
#include "register/totals/totals.h"

namespace lorimat {

struct RegisterProfile {
  Tables tables;
  RegisterState state;
  DailyTotals day = {};       // of the day that is open
  uint64_t file_bytes = 0;    // without the log beside it
  uint64_t roll_lines = 0;    // that are kept
  std::tm clock = {};         // what the register's clock shows now
  int64_t last_document = 0;  // when it was made, YYYYMMDDHHMMSS; 0 without one
  int64_t last_closing = 0;
  std::optional<ClockBehind> clock_behind = {};
};

RegisterProfile MakeProfile(Database& database, const RegisterStore& store,
                            const RegisterState& state);

}  // namespace lorimat
