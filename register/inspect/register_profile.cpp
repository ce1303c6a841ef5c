#include "register/inspect/register_profile.h"

#include <filesystem>
#include <system_error>

#include "register/storage/store_tables.h"
#include "register/value/device_clock.h"

namespace lorimat {

RegisterProfile MakeProfile(Database& database, const RegisterStore& store,
                            const RegisterState& state) {
  RegisterProfile profile{.tables = LoadTables(database, RegisterSettings()), .state = state};
  profile.day = store.daily();
  std::error_code error;
  const uintmax_t bytes = std::filesystem::file_size(database.file(), error);
  if (!error) profile.file_bytes = bytes;
  {
    Statement roll = database.Prepare("SELECT coalesce(sum(lines), 0) FROM roll");
    if (roll.Step()) profile.roll_lines = static_cast<uint64_t>(roll.Integer(0));
  }
  profile.clock = LaterBy(ComputerTime(), state.setup.clock_offset);
  profile.last_document = store.last_document_time();
  profile.last_closing = store.last_closure_time();
  profile.clock_behind = FindClockBehind(state.setup, store, profile.clock);
  return profile;
}

}  // namespace lorimat
