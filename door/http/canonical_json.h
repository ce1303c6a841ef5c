// JSON in its canonical form (RFC 8785): the same value, the same bytes.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace lorimat::door {

// The deepest value that ReadJson takes.
inline constexpr int kDeepestJson = 16;

// A text as a value; nothing for one that is no JSON, has a name twice in an object, is deeper or
// has a number that is none of JSON's. *fault says what is wrong, with its place.
std::optional<nlohmann::json> ReadJson(std::string_view text, std::string* fault);

std::string CanonicalJson(const nlohmann::json& value);

// A number as ECMAScript writes it; not NaN and not infinite.
std::string CanonicalNumber(double value);

}  // namespace lorimat::door
