// What a handler of the API is given of a request's target.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "door/http/api.h"

namespace lorimat::door {

struct Api::Path {
  int64_t id = 0;      // of a job, or of a day's closing
  int64_t number = 0;  // of a document
  std::string action;  // the last segment
  std::map<std::string, std::string> query;
};

}  // namespace lorimat::door
