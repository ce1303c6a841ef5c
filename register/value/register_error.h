// What the register throws when its file cannot be opened or kept, or when something else of it
// cannot be done: the failure as a value, and what() as an English sentence.
#pragma once

#include <memory>
#include <stdexcept>
#include <utility>

#include "register/value/register_failure.h"

namespace lorimat {

class RegisterError : public std::runtime_error {
 public:
  explicit RegisterError(RegisterFailure failure)
      : std::runtime_error(EnglishFailure(failure)),
        failure_(std::make_shared<const RegisterFailure>(std::move(failure))) {}

  const RegisterFailure& failure() const noexcept { return *failure_; }

 private:
  // Shared, as a copy of an exception must not throw.
  std::shared_ptr<const RegisterFailure> failure_;
};

}  // namespace lorimat
