// The register's numbered properties: one table for the numeric, one for the text ones.
#pragma once

#include <string>
#include <string_view>

#include "register/core/core.h"

namespace lorimat {

// The longest text of a property; with its NUL it takes 128 characters of a caller's buffer.
inline constexpr size_t kPropertyTextSize = 127;

// How far a host has to have come with the device to read a property: the state at any time,
// what all classes have and the capabilities with an open one, the rest with an enabled one.
ServiceState PropertyNeeds(int property);

// Each answers RTF_E_ILLEGAL for a property that the register does not have, or that cannot
// be read or written.
int ReadIntProperty(const RegisterCore& core, int property, int* value);
int WriteIntProperty(RegisterCore& core, int property, int value);
int ReadTextProperty(const RegisterCore& core, int property, std::string* value);
int WriteTextProperty(RegisterCore& core, int property, std::string_view value);

}  // namespace lorimat
