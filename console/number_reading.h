// Numbers that the library reads as another one: those with more digits than it has room for.
#pragma once

#include <string>

// What the library reads in this field of a command; empty where it is what stands there, and where
// the field takes no number, or one that is not known.
std::string other_number(int opcode, int field, const std::string& value);
