#include "door/http/body_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "door/http/canonical_json.h"
#include "door/judge/code_page.h"
#include "register/value/digest.h"

namespace lorimat::door {

BodyReader::BodyReader(const std::string& body, bool may_be_empty) {
  if (body.empty() && may_be_empty) return;
  std::string fault;
  std::optional<nlohmann::json> value = ReadJson(body, &fault);
  if (!value) {
    Refuse(400, "bad_json", "the body cannot be read: " + fault);
  } else if (!value->is_object()) {
    Refuse(400, "bad_json", "the body is no object");
  } else {
    value_ = std::move(*value);
  }
}

std::string BodyReader::Digest() const { return Sha256(CanonicalJson(value_)); }

void BodyReader::Refuse(int status, std::string_view code, const std::string& detail,
                        std::string_view name) {
  if (!problem_) {
    problem_ = Problem(status, code, detail, name.empty() ? "" : "/" + std::string(name));
  }
}

void BodyReader::Allow(std::initializer_list<std::string_view> names) {
  for (const auto& [name, member] : value_.get_ref<const nlohmann::json::object_t&>()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      Refuse(400, "unknown_field", "the body has a field that is not known: " + name);
    }
  }
}

std::string BodyReader::Text(std::string_view name, size_t most) {
  const auto member = value_.find(name);
  if (member == value_.end()) return {};
  if (!member->is_string()) {
    Refuse(400, "bad_field", fmt::format("{}: is no text", name), name);
    return {};
  }
  const std::string& text = member->get_ref<const std::string&>();
  const DeviceText device = ToDevice(text);
  if (device.fault == TextFault::kControl) {
    Refuse(400, "control_character",
           fmt::format("{}: a control character at column {}", name, device.column), name);
  } else if (text.size() > most) {
    Refuse(400, "bad_field", fmt::format("{}: is longer than {} bytes", name, most), name);
  }
  return text;
}

// 600, 600.0 and 6e2 are one number.
std::optional<int64_t> BodyReader::WholeNumber(const nlohmann::json& value, int64_t least,
                                               int64_t most) {
  if (!value.is_number()) return std::nullopt;
  const double number = value.get<double>();
  const bool fits = number >= static_cast<double>(least) && number <= static_cast<double>(most) &&
                    std::trunc(number) == number;
  if (!fits) return std::nullopt;
  return static_cast<int64_t>(number);
}

int64_t BodyReader::Number(std::string_view name, int64_t least, int64_t most, int64_t missing) {
  const auto member = value_.find(name);
  if (member == value_.end()) return missing;
  const std::optional<int64_t> number = WholeNumber(*member, least, most);
  if (!number) {
    Refuse(400, "bad_field", fmt::format("{}: is no whole number of {} to {}", name, least, most),
           name);
  }
  return number.value_or(missing);
}

std::vector<std::string> BodyReader::Lines() {
  std::vector<std::string> lines;
  const auto member = value_.find("lines");
  if (member == value_.end() || !member->is_array() || member->empty()) {
    Refuse(400, "bad_field", "lines: is no list of lines");
    return lines;
  }
  if (member->size() > Api::kMostLines) {
    Refuse(413, "too_large", fmt::format("lines: more than {}", Api::kMostLines));
    return lines;
  }
  for (const nlohmann::json& line : *member) {
    const size_t number = lines.size() + 1;
    if (!line.is_string()) {
      Refuse(400, "bad_field", fmt::format("lines: line {} is no text", number));
      return lines;
    }
    DeviceText text = ToDevice(line.get_ref<const std::string&>());
    if (text.fault == TextFault::kControl) {
      Refuse(400, "control_character",
             fmt::format("line {}, column {}: a control character", number, text.column));
    } else if (text.fault == TextFault::kNotInCodePage) {
      Refuse(400, "not_in_code_page",
             fmt::format("line {}, column {}: a character that the device does not have", number,
                         text.column));
    } else if (text.bytes.size() > Api::kLongestLine) {
      Refuse(413, "too_large",
             fmt::format("line {}: longer than {} bytes", number, Api::kLongestLine));
    }
    lines.push_back(std::move(text.bytes));
  }
  return lines;
}

}  // namespace lorimat::door
