// What a register's file holds behind a day, looked at by a process that has seen none of it.
#pragma once

#include <string>

#include "report.h"

namespace lorimat {

// Notes in the report what does not agree with what the host was answered. The register is opened,
// sells once more and is closed.
void CheckFile(const std::string& folder, Report* report);

}  // namespace lorimat
