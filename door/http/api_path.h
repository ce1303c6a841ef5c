// What a handler of the API is given of a request's target.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "console/token/token_table.h"
#include "door/http/api.h"

namespace lorimat::door {

struct Api::Path {
  int64_t id = 0;      // of a job, or of a day's closing
  int64_t number = 0;  // of a document
  std::string action;  // the last segment
  std::map<std::string, std::string> query;
  // Whether there is a route to it that anybody may take, by whatever method.
  bool is_open = false;
  // Who asks, where a token says so.
  std::optional<console::TokenHolder> caller;

  // Whether the jobs of this desk are the caller's to see.
  bool MaySee(const std::string& desk) const {
    return !caller || caller->role == console::TokenRole::kOperator || caller->name == desk;
  }
  // Whose a request is that names no desk.
  std::string OwnDesk(const std::string& otherwise = {}) const {
    return caller ? caller->name : otherwise;
  }
};

}  // namespace lorimat::door
