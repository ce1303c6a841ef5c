// JSON as the console writes it: members in the order in which they were put, two blanks of
// indentation, a line end. Bytes that are no UTF-8 become the replacement character.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace lorimat::console {

using Json = nlohmann::ordered_json;

inline std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

// The same without a line end in it, for a stream of values with a line each.
inline std::string JsonLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace lorimat::console
