#include "translate.h"

#include <cstdlib>
#include <unordered_map>

#include "italian.h"

namespace {

// The variables in the order in which the C library asks them for the language of messages.
bool user_reads_italian() {
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

std::unordered_map<std::string_view, std::string_view> table_for_user() {
  std::unordered_map<std::string_view, std::string_view> table;
  if (!user_reads_italian()) return table;
  for (const ItalianText& row : italian_texts()) table.emplace(row.english, row.italian);
  return table;
}

}  // namespace

std::string_view translated(std::string_view english) {
  static const auto table = table_for_user();
  const auto found = table.find(english);
  return found == table.end() ? english : found->second;
}
