// Where there is no gettext, messages are English.
#include "console/message/catalogs.h"

namespace lorimat::console {

void OpenCatalogs(const std::string&) {}

const char* FindTranslation(std::string_view) { return nullptr; }

const char* FindTranslation(std::string_view, std::string_view, unsigned long) { return nullptr; }

std::string_view LanguageOfCatalogs() { return {}; }

}  // namespace lorimat::console
