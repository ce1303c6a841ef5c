// The passwords of operators, which no screen is to show, and what recordings do not.
#pragma once

#include <string>
#include <string_view>

#include "console/check/language.h"

namespace lorimat::console {

// The line with stars in the place of an operator's password, one for each byte, so that places in
// the line stay where they are. It may be any text, misspelt ones too: in a line that the words do
// not read as one for an operator, a value is taken for a password when its field has the whole
// name of that field. Without words that name is the shipped one.
std::string WithoutPasswords(const Language* words, std::string_view line);

// The same for a recording, of all its secrets: passwords, tax and lottery codes that are keyed,
// the customers of invoices, each byte as recording::Blanked has it.
std::string WithoutSecrets(const Language* words, std::string_view line);

}  // namespace lorimat::console
