// The members of a request's body, each by its name; the first one that is no good is told.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "door/http/api.h"

namespace lorimat::door {

class BodyReader {
 public:
  // An empty body counts as one without members where `may_be_empty` says so.
  BodyReader(const std::string& body, bool may_be_empty);

  // What is wrong with it; nothing as long as all is well.
  const std::optional<Reply>& problem() const { return problem_; }
  // The digest of its canonical form.
  std::string Digest() const;

  // Refuses a member of another name.
  void Allow(std::initializer_list<std::string_view> names);
  // A text of so many characters at most, without control characters; empty where it is missing.
  std::string Text(std::string_view name, size_t most);
  // A whole number in a range that a double has without loss, however it is written.
  static std::optional<int64_t> WholeNumber(const nlohmann::json& value, int64_t least,
                                            int64_t most);
  // The same of a member.
  int64_t Number(std::string_view name, int64_t least, int64_t most, int64_t missing);
  // The lines, in the code page of the device.
  std::vector<std::string> Lines();
  bool Has(std::string_view name) const { return value_.contains(name); }
  const nlohmann::json& value() const { return value_; }

  // `name` is the member that it lies in; empty for none.
  void Refuse(int status, std::string_view code, const std::string& detail,
              std::string_view name = {});

 private:
  nlohmann::json value_ = nlohmann::json::object();
  std::optional<Reply> problem_;
};

}  // namespace lorimat::door
