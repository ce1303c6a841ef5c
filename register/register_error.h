// Why a register cannot be opened or kept: the file and the cause, ready to be shown.
#pragma once

#include <stdexcept>
#include <string>

namespace lorimat {

class RegisterError : public std::runtime_error {
 public:
  explicit RegisterError(const std::string& cause) : std::runtime_error(cause) {}
};

}  // namespace lorimat
