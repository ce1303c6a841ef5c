#include "console/message/translate.h"

#include <fmt/args.h>

#include <cstdlib>
#include <optional>
#include <unordered_map>
#include <vector>

#include "console/message/italian.h"

namespace lorimat::console {
namespace {

bool english_wanted = false;

// The variables in the order in which the C library asks them for the language of messages.
bool AskEnvironmentForItalian() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == 0) continue;
    const std::string_view language(value);
    // "it", "it_IT.UTF-8", "it@euro", but no language that merely begins so.
    return language.substr(0, 2) == "it" &&
           (language.size() == 2 || language[2] == '_' || language[2] == '.' || language[2] == '@');
  }
  return false;
}

bool UserReadsItalian() {
  static const bool italian = AskEnvironmentForItalian();
  return italian;
}

std::unordered_map<std::string_view, std::string_view> TableForUser() {
  std::unordered_map<std::string_view, std::string_view> table;
  if (!UserReadsItalian()) return table;
  for (const std::span<const ItalianText> part : ItalianTexts()) {
    for (const ItalianText& row : part) table.emplace(row.english, row.italian);
  }
  return table;
}

// What stands in the fields of the pattern; nothing when the message does not fit it.
std::optional<std::vector<std::string_view>> FieldsOf(std::string_view message,
                                                      std::string_view pattern) {
  constexpr std::string_view kField = "{}";
  std::vector<std::string_view> fields;
  size_t field = pattern.find(kField);
  const std::string_view begin = pattern.substr(0, field);
  if (message.substr(0, begin.size()) != begin) return std::nullopt;
  message.remove_prefix(begin.size());
  while (field != std::string_view::npos) {
    pattern.remove_prefix(field + kField.size());
    field = pattern.find(kField);
    const std::string_view behind = pattern.substr(0, field);
    // The last field reaches as far as the message does.
    const bool last = field == std::string_view::npos;
    const size_t end = last && behind.size() <= message.size() ? message.size() - behind.size()
                                                               : message.find(behind);
    if (end == std::string_view::npos || message.substr(end, behind.size()) != behind) {
      return std::nullopt;
    }
    fields.push_back(message.substr(0, end));
    message.remove_prefix(end + behind.size());
  }
  if (!message.empty()) return std::nullopt;
  return fields;
}

}  // namespace

bool MessagesAreItalian() { return !english_wanted && UserReadsItalian(); }

std::string_view Translated(std::string_view english) {
  static const auto table = TableForUser();
  if (english_wanted) return english;
  const auto found = table.find(english);
  return found == table.end() ? english : found->second;
}

std::string TrCount(uint64_t count, std::string_view one, std::string_view several) {
  return fmt::vformat(Translated(count == 1 ? one : several), fmt::make_format_args(count));
}

std::string TrFinished(std::string_view message, const std::string_view* patterns, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const auto fields = FieldsOf(message, patterns[i]);
    if (!fields) continue;
    fmt::dynamic_format_arg_store<fmt::format_context> arguments;
    for (const std::string_view field : *fields) arguments.push_back(field);
    return fmt::vformat(Translated(patterns[i]), arguments);
  }
  return std::string(message);
}

EnglishMessages::EnglishMessages(bool wanted) : before_(english_wanted) {
  if (wanted) english_wanted = true;
}

EnglishMessages::~EnglishMessages() { english_wanted = before_; }

}  // namespace lorimat::console
