// Why a register cannot be opened or kept: the file and the cause, ready to be shown.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace lorimat {

class RegisterError : public std::runtime_error {
 public:
  explicit RegisterError(const std::string& cause) : std::runtime_error(cause) {}
  RegisterError(const std::string& file, const std::string& cause)
      : std::runtime_error(file + ": " + cause), cause_at_(file.size() + 2) {}

  // Without the file.
  const char* cause() const noexcept { return what() + cause_at_; }

 private:
  size_t cause_at_ = 0;
};

}  // namespace lorimat
