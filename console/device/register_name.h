// Names that a register's file may have.
#pragma once

#include <string>

namespace lorimat::console {

// Throws Failure when the text cannot name a register's file, be it there or not: "-", a name in a
// folder that is not there, a folder's ("shop.register/"), and one that leads through another
// user's link in a folder where everybody writes. The database would read some of them as another
// name.
void RequireRegisterName(const std::string& file);
// The part of it that asks no disk: "-" is no file here, neither a register nor a copy of one.
void RequireNoStream(const std::string& file);

// The file that was named. Throws Failure, with a hint, when none was, or when nothing is there:
// these commands make no register. The hint for one that is to be set up is "init".
const std::string& RequireRegister(const std::string& file, bool set_up = false);

}  // namespace lorimat::console
