// The check of a register's file by itself: its pages, the types of its values, its tables.
#pragma once

#include <functional>

#include "register/storage/database.h"
#include "register/storage/finding.h"

namespace lorimat {

// The pages of the file, indexes included.
void CheckPages(Database& database, const std::function<void(Finding)>& find);
// Rows that refer to others which are not there.
void CheckReferences(Database& database, const std::function<void(Finding)>& find);
// Whether tables and indexes are those that this version makes, and nothing else is there, and
// whether every value has the type of its column.
void CheckValues(Database& database, const std::function<void(Finding)>& find);

}  // namespace lorimat
