// A folder taken away with all that is in it.
#pragma once

#include <string>

namespace lorimat::console {

// As far as the system lets it be; without memory the folder stays. Fit for destructors, which the
// standard library's own removal is not: it ends the program when there is no memory.
void RemoveFolder(const std::string& path) noexcept;

}  // namespace lorimat::console
