// A last change to a copy that has no name yet.
#pragma once

#include "register/storage/part_file.h"
#include "register/storage/sql_text.h"

namespace lorimat {

// Runs statements without results in what Database::CopyTo has made of a file. Throws RegisterError
// when they cannot be carried out: then the copy is to be given up.
void ChangeCopy(PartFile& part, SqlLiteral sql);

}  // namespace lorimat
