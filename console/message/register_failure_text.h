// Why the register, its file or a picture failed, in a sentence of the user's language; and what
// any other exception says.
#pragma once

#include <exception>
#include <string>

#include "register/value/register_failure.h"

namespace lorimat::console {

// "FILE: cause"; empty for a failure without a cause. Names show as on a terminal.
std::string RegisterFailureText(const lorimat::RegisterFailure& failure);
// The same with names and texts as they are, for JSON.
std::string RegisterFailureWords(const lorimat::RegisterFailure& failure);

// What was thrown, by its kind. What another library says in words stands in it as they are.
std::string ErrorText(const std::exception& error);

}  // namespace lorimat::console
