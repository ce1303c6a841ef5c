// An address that the API knows.
#pragma once

#include <array>

#include "door/http/api.h"

namespace lorimat::door {

struct Api::Route {
  const char* method;
  std::array<const char*, 5> segments;  // "#" is a number: of a job, of a day, of a document
  Handler handler;
  std::array<const char*, 5> query;
  Caller caller = Caller::kKnown;
};

// The answer to what a browser asks ahead of a page's request.
Reply Preflight(const Request& request);

}  // namespace lorimat::door
