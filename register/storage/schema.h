// The tables of a register's file, and what makes older files into files of today.
#pragma once

#include <span>

#include "register/storage/database.h"

namespace lorimat {

// Marks the files that are registers: "LMRF".
inline constexpr int32_t kRegisterId = 0x4C4D5246;
inline constexpr int kSchemaVersion = 4;
inline constexpr DatabaseKind kRegisterKind = {kRegisterId, kSchemaVersion};

// One version further: the tables, then what is to be put into them.
struct SchemaStep {
  int from = 0;
  SqlLiteral sql = "";
  void (*fill)(Database&) = nullptr;
};

std::span<const SchemaStep> SchemaSteps();

// Makes the tables in an empty database, within a unit of work that the caller has begun.
void MakeSchema(Database& database);
// Brings the tables up to the newest version, in one unit of work: a file is of its old version
// or of the newest one, whatever happens.
void Migrate(Database& database, std::span<const SchemaStep> steps = SchemaSteps());

}  // namespace lorimat
