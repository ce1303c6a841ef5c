#include "door/receipt/json_fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "door/judge/code_page.h"
#include "door/receipt/decimal.h"

namespace lorimat::door {

using nlohmann::json;

JsonFields::JsonFields(const json& value, std::string pointer,
                       std::optional<ReceiptProblem>* problem)
    : value_(value.is_object() ? &value : nullptr),
      pointer_(std::move(pointer)),
      problem_(problem) {
  if (value_ == nullptr) RefuseAt(400, "bad_field", pointer_, "it is no object");
}

void JsonFields::RefuseAt(int status, const char* code, std::string pointer,
                          std::string detail) const {
  if (!*problem_) *problem_ = {status, code, std::move(pointer), std::move(detail)};
}

void JsonFields::Refuse(int status, const char* code, std::string_view name,
                        std::string detail) const {
  RefuseAt(status, code, Place(name), std::move(detail));
}

std::string JsonFields::Place(std::string_view name) const {
  std::string place = pointer_ + "/";
  for (const char c : name) {
    if (c == '~') {
      place += "~0";
    } else if (c == '/') {
      place += "~1";
    } else {
      place += c;
    }
  }
  return place;
}

void JsonFields::Allow(std::initializer_list<std::string_view> names) const {
  if (value_ == nullptr) return;
  for (const auto& [name, member] : value_->get_ref<const json::object_t&>()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      Refuse(400, "unknown_field", name, "there is no such field here");
    }
  }
}

const json* JsonFields::Find(std::string_view name) const {
  if (value_ == nullptr) return nullptr;
  const auto found = value_->find(name);
  return found == value_->end() ? nullptr : &*found;
}

const json* JsonFields::Need(std::string_view name) const {
  const json* value = Find(name);
  if (value == nullptr) Refuse(400, "missing_field", name, "it is missing");
  return value;
}

std::string JsonFields::DeviceText(const json& value, const std::string& pointer,
                                   size_t most) const {
  if (!value.is_string()) {
    RefuseAt(400, "bad_field", pointer, "it is no text");
    return {};
  }
  door::DeviceText text = ToDevice(value.get_ref<const std::string&>());
  if (text.fault == TextFault::kControl) {
    RefuseAt(400, "control_character", pointer,
             fmt::format("column {} has a control character", text.column));
  } else if (text.fault == TextFault::kNotInCodePage) {
    RefuseAt(400, "not_in_code_page", pointer,
             fmt::format("column {} has a character that the device does not have", text.column));
  } else if (text.bytes.size() > most) {
    RefuseAt(400, "too_long", pointer, fmt::format("it has more than {} characters", most));
    return {};
  }
  return std::move(text.bytes);
}

std::string JsonFields::Text(std::string_view name, size_t most) const {
  const json* value = Find(name);
  return value == nullptr ? std::string() : DeviceText(*value, Place(name), most);
}

std::optional<int64_t> JsonFields::Decimal(std::string_view name, const DecimalForm& form) const {
  const json* value = Find(name);
  if (value == nullptr) return std::nullopt;
  if (value->is_number()) {
    Refuse(400, "number_not_text", name,
           fmt::format("{} is a text, such as \"1.50\", and no JSON number", form.name));
    return std::nullopt;
  }
  if (!value->is_string()) {
    Refuse(400, "bad_field", name, fmt::format("{} is a text, such as \"1.50\"", form.name));
    return std::nullopt;
  }
  const std::optional<int64_t> number =
      ReadDecimal(value->get_ref<const std::string&>(), form.places, form.decimals, form.whole);
  if (!number) {
    Refuse(400, "bad_number", name,
           fmt::format("{} has 1 to {} digits, and behind a point 1 to {} more, and nothing else",
                       form.name, form.whole, form.decimals));
  }
  return number;
}

int JsonFields::Whole(std::string_view name, int least, int most) const {
  const json* value = Find(name);
  if (value == nullptr) return 0;
  // 1, 1.0 and 1e0 are one value, and count as the same body.
  const double number = value->is_number() ? value->get<double>() : -1;
  if (number < least || number > most || number != std::floor(number)) {
    Refuse(400, "bad_field", name, fmt::format("it is no whole number of {} to {}", least, most));
    return 0;
  }
  return static_cast<int>(number);
}

bool JsonFields::Flag(std::string_view name) const {
  const json* value = Find(name);
  if (value == nullptr) return false;
  if (!value->is_boolean()) {
    Refuse(400, "bad_field", name, "it is neither true nor false");
    return false;
  }
  return value->get<bool>();
}

const json* JsonFields::List(std::string_view name, size_t most) const {
  const json* value = Find(name);
  if (value == nullptr) return nullptr;
  if (!value->is_array()) {
    Refuse(400, "bad_field", name, "it is no list");
    return nullptr;
  }
  if (value->size() > most) {
    Refuse(413, "too_large", name, fmt::format("it has more than {} elements", most));
    return nullptr;
  }
  return value;
}

std::vector<std::string> JsonFields::Texts(std::string_view name, size_t most,
                                           size_t longest) const {
  std::vector<std::string> texts;
  const json* list = List(name, most);
  if (list == nullptr) return texts;
  for (const json& value : *list) {
    texts.push_back(DeviceText(value, fmt::format("{}/{}", Place(name), texts.size()), longest));
  }
  return texts;
}

}  // namespace lorimat::door
