// Looks after a database that works long: whoever waits for it can stop it within a statement.
#pragma once

#include <exception>
#include <functional>

#include "register/storage/database.h"

namespace lorimat {

// A statement was stopped. Nothing is wrong with the file.
class WorkStopped : public std::exception {
 public:
  const char* what() const noexcept override { return "the work was stopped"; }
};

// While it is there, `goes_on` is asked again and again within the statements that run; once it
// answers false the one at work throws WorkStopped. One at a time, for statements that only read.
class WorkWatch {
 public:
  WorkWatch(Database& database, std::function<bool()> goes_on);
  ~WorkWatch();
  WorkWatch(const WorkWatch&) = delete;
  WorkWatch& operator=(const WorkWatch&) = delete;

 private:
  static int Ask(void* watch) noexcept;

  Database& database_;
  std::function<bool()> goes_on_;
};

}  // namespace lorimat
