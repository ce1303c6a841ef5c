// Who may what, as the API asks it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/token/token_table.h"

namespace lorimat::door {

struct AccessRules {
  std::string scheme = "http";            // of the door's own pages: "http", or "https" with TLS
  std::vector<std::string> origins = {};  // of other pages that may ask
  // Whether nobody is heard without a token. Without tokens nobody has one.
  bool needs_token = false;
  // Whose token it is; null where there are none.
  std::function<std::optional<console::TokenHolder>(std::string_view token)> find = nullptr;
};

}  // namespace lorimat::door
