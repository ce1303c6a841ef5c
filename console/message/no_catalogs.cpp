// Where there is no gettext, messages are English.
#include <unistd.h>

#include "console/message/catalogs.h"

namespace lorimat::console {

void OpenCatalogs(const std::string&) {}

std::vector<std::string> UserEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
  }
  return variables;
}

const char* FindTranslation(std::string_view) { return nullptr; }

const char* FindTranslation(std::string_view, std::string_view, unsigned long) { return nullptr; }

std::string_view LanguageOfCatalogs() { return {}; }

}  // namespace lorimat::console
