// The fields of JSON objects, each by its name; the first one that is no good is told, with its
// place as a JSON pointer.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "door/receipt/receipt_request.h"

namespace lorimat::door {

// What a number as a text has: see ReadDecimal.
struct DecimalForm {
  const char* name;  // "an amount"
  int places;
  int decimals;
  int whole;
};

class JsonFields {
 public:
  // Of an object; anything else is told as a problem and has no fields. `problem` takes the first
  // one, and lives longer than this.
  JsonFields(const nlohmann::json& value, std::string pointer,
             std::optional<ReceiptProblem>* problem);

  // Refuses a field of another name.
  void Allow(std::initializer_list<std::string_view> names) const;
  // Null where it is missing.
  const nlohmann::json* Find(std::string_view name) const;
  // The same, a problem where it is missing.
  const nlohmann::json* Need(std::string_view name) const;
  // A text in the code page of the device, of so many bytes at most; empty where it is missing.
  std::string Text(std::string_view name, size_t most) const;
  // A number as a text; nothing where it is missing.
  std::optional<int64_t> Decimal(std::string_view name, const DecimalForm& form) const;
  // A whole number; 0 where it is missing.
  int Whole(std::string_view name, int least, int most) const;
  // True or false; false where it is missing.
  bool Flag(std::string_view name) const;
  // A list of so many elements at most; null where it is missing, or no list.
  const nlohmann::json* List(std::string_view name, size_t most) const;
  // Texts, as Text has one.
  std::vector<std::string> Texts(std::string_view name, size_t most, size_t longest) const;

  // "/items/3/price".
  std::string Place(std::string_view name) const;
  void Refuse(int status, const char* code, std::string_view name, std::string detail) const;

 private:
  std::string DeviceText(const nlohmann::json& value, const std::string& pointer,
                         size_t most) const;
  void RefuseAt(int status, const char* code, std::string pointer, std::string detail) const;

  const nlohmann::json* value_;  // null for what is no object
  std::string pointer_;
  std::optional<ReceiptProblem>* problem_;
};

}  // namespace lorimat::door
