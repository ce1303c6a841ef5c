#include "console/message/translate.h"

#include <fmt/args.h>

#include <optional>
#include <vector>

#include "console/message/catalogs.h"
#include "console/message/fields.h"

namespace lorimat::console {
namespace {

bool english_wanted = false;

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

std::string_view LanguageOfMessages() {
  return english_wanted ? std::string_view() : LanguageOfCatalogs();
}

std::string_view Translated(std::string_view english) {
  if (english_wanted) return english;
  const char* found = FindTranslation(english);
  return found != nullptr && HasSameFields(english, found) ? found : english;
}

std::string TrCount(uint64_t count, std::string_view one, std::string_view several) {
  const std::string_view english = count == 1 ? one : several;
  const char* found = english_wanted ? nullptr : FindTranslation(one, several, count);
  const bool fits = found != nullptr && HasSameFields(english, found);
  return fmt::vformat(fits ? found : english, fmt::make_format_args(count));
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
