// The tables of a register's file, and what makes older files into files of today.
#pragma once

#include <span>

#include "register/database.h"

namespace lorimat {

// Marks the files that are registers: "LMRF".
inline constexpr int32_t kRegisterId = 0x4C4D5246;
inline constexpr int kSchemaVersion = 2;
inline constexpr DatabaseKind kRegisterKind = {kRegisterId, kSchemaVersion};

// One version further.
struct SchemaStep {
  int from = 0;
  const char* sql = "";
};

std::span<const SchemaStep> SchemaSteps();

// Makes the tables in an empty database, within a unit of work that the caller has begun.
void MakeSchema(Database& database);
// Brings the tables up to the newest version; each step is a unit of work, so that a file which
// is cut off between them goes on from there.
void Migrate(Database& database, std::span<const SchemaStep> steps = SchemaSteps());

}  // namespace lorimat
