// A definition file as wide as the tables are: commands of forty fields each, VEND among them with
// the fields of a sale.
#pragma once

#include <string>

// Of so many commands, 149 at most; the last is VEND, so that look-up has all others before it.
std::string WideLanguage(int commands = 149, int fields = 40);
