#include "door/http/canonical_json.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "console/message/shown_text.h"

namespace lorimat::door {
namespace {

using Json = nlohmann::json;

// What stops the reader beside what JSON itself forbids.
struct TooDeep {};
struct NamedTwice {
  std::string name;
};

// Names sort by the units of UTF-16, not by bytes: what lies beyond U+FFFF goes before U+E000.
std::vector<uint16_t> Units(std::string_view text) {
  std::vector<uint16_t> units;
  while (!text.empty()) {
    const console::Utf8Character character = console::CharacterAt(text);
    if (character.code < 0x10000) {
      units.push_back(static_cast<uint16_t>(character.code));
    } else {
      const uint32_t rest = character.code - 0x10000;
      units.push_back(static_cast<uint16_t>(0xD800 + (rest >> 10)));
      units.push_back(static_cast<uint16_t>(0xDC00 + (rest & 0x3FF)));
    }
    text.remove_prefix(character.size);
  }
  return units;
}

void AppendText(std::string* out, std::string_view text) {
  *out += '"';
  for (const char c : text) {
    switch (c) {
      case '"':
        *out += "\\\"";
        break;
      case '\\':
        *out += "\\\\";
        break;
      case '\b':
        *out += "\\b";
        break;
      case '\t':
        *out += "\\t";
        break;
      case '\n':
        *out += "\\n";
        break;
      case '\f':
        *out += "\\f";
        break;
      case '\r':
        *out += "\\r";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          *out += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
        } else {
          *out += c;
        }
    }
  }
  *out += '"';
}

void Append(std::string* out, const Json& value) {
  switch (value.type()) {
    case Json::value_t::object: {
      std::vector<std::pair<std::vector<uint16_t>, const std::string*>> names;
      for (const auto& [name, member] : value.get_ref<const Json::object_t&>()) {
        names.emplace_back(Units(name), &name);
      }
      std::sort(names.begin(), names.end(),
                [](const auto& a, const auto& b) { return a.first < b.first; });
      *out += '{';
      const char* comma = "";
      for (const auto& [units, name] : names) {
        *out += comma;
        AppendText(out, *name);
        *out += ':';
        Append(out, value.at(*name));
        comma = ",";
      }
      *out += '}';
      break;
    }
    case Json::value_t::array: {
      *out += '[';
      const char* comma = "";
      for (const Json& element : value) {
        *out += comma;
        Append(out, element);
        comma = ",";
      }
      *out += ']';
      break;
    }
    case Json::value_t::string:
      AppendText(out, value.get_ref<const std::string&>());
      break;
    case Json::value_t::boolean:
      *out += value.get<bool>() ? "true" : "false";
      break;
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float:
      *out += CanonicalNumber(value.get<double>());
      break;
    case Json::value_t::null:
    case Json::value_t::binary:
    case Json::value_t::discarded:
      *out += "null";
      break;
  }
}

}  // namespace

std::string CanonicalNumber(double value) {
  if (value == 0) return "0";  // also behind a minus
  // The shortest digits that read as this number, and where their point stands.
  char text[64];
  const auto end =
      std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific);
  const std::string_view scientific(text, static_cast<size_t>(end.ptr - text));
  const size_t mark = scientific.find('e');
  std::string digits(scientific.substr(0, mark));
  digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
  int exponent = 0;
  size_t begin = mark + 1;
  if (scientific[begin] == '+') ++begin;
  std::from_chars(scientific.data() + begin, scientific.data() + scientific.size(), exponent);
  const int point = exponent + 1;
  const int count = static_cast<int>(digits.size());
  std::string out = value < 0 ? "-" : "";
  if (point > 0 && point <= 21) {
    if (count <= point) {
      out += digits + std::string(static_cast<size_t>(point - count), '0');
    } else {
      out += digits.substr(0, static_cast<size_t>(point)) + '.' +
             digits.substr(static_cast<size_t>(point));
    }
  } else if (point > -6 && point <= 0) {
    out += "0." + std::string(static_cast<size_t>(-point), '0') + digits;
  } else {
    out += digits.substr(0, 1);
    if (count > 1) out += '.' + digits.substr(1);
    out += fmt::format("e{}{}", exponent < 0 ? '-' : '+', std::abs(exponent));
  }
  return out;
}

std::optional<Json> ReadJson(std::string_view text, std::string* fault) {
  std::vector<std::set<std::string>> names;
  const auto look = [&](int depth, Json::parse_event_t event, Json& parsed) {
    if (depth >= kDeepestJson) throw TooDeep();
    if (event == Json::parse_event_t::object_start) names.emplace_back();
    if (event == Json::parse_event_t::object_end) names.pop_back();
    if (event == Json::parse_event_t::key) {
      const std::string& name = parsed.get_ref<const std::string&>();
      if (!names.back().insert(name).second) throw NamedTwice{name};
    }
    return true;
  };
  try {
    return Json::parse(text, look);
  } catch (const Json::parse_error& error) {
    *fault = fmt::format("it is no JSON at byte {}", error.byte);
  } catch (const Json::exception&) {
    *fault = "it has a number that is too large";
  } catch (const TooDeep&) {
    *fault = fmt::format("it is deeper than {}", kDeepestJson);
  } catch (const NamedTwice& twice) {
    *fault = "a name stands twice in an object: " + twice.name;
  }
  return std::nullopt;
}

std::string CanonicalJson(const Json& value) {
  std::string out;
  Append(&out, value);
  return out;
}

}  // namespace lorimat::door
