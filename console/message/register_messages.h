// What the virtual register says of a failure, in the user's language. The register knows no
// languages: its messages are English.
#pragma once

#include <string>
#include <string_view>

namespace lorimat::console {

// The translation of a message of the register or of its pictures; the message itself when it is
// none that is known.
std::string RegisterMessage(std::string_view english);

}  // namespace lorimat::console
