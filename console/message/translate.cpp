#include "console/message/translate.h"

#include "console/message/catalogs.h"
#include "console/message/fields.h"

namespace lorimat::console {
namespace {

// Of a thread: while one makes JSON, another may tell a person something.
thread_local bool english_wanted = false;

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

EnglishMessages::EnglishMessages(bool wanted) : before_(english_wanted) {
  if (wanted) english_wanted = true;
}

EnglishMessages::~EnglishMessages() { english_wanted = before_; }

}  // namespace lorimat::console
