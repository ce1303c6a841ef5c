// The catalogs of messages, one for each language that the program has besides English, and the
// user's choice among them.
//
// The languages are those of gettext: LC_ALL, LC_MESSAGES or LANG, the first of them that is set,
// names the locale; "C" and "POSIX" mean English. In another, LANGUAGE names languages in the order
// in which the user likes them, and without it the locale does. The locale need not be installed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

// Opens the catalogs FOLDER/LANGUAGE/LC_MESSAGES/lorimat.mo of the user's languages; a broken one
// counts as missing. To be called once, before there is a second thread: it may set LANGUAGE, which
// the C library asks for. An empty folder has no catalogs.
void OpenCatalogs(const std::string& folder);

// The environment as the user gave it, "NAME=VALUE" each, for programs that are started.
std::vector<std::string> UserEnvironment();

// What the catalogs have for a message, null for nothing.
const char* FindTranslation(std::string_view english);
// The same of a message with a count, in the form that the language has for it.
const char* FindTranslation(std::string_view one, std::string_view several, unsigned long count);

// The language of the catalog that messages come from first, as "it"; empty without catalogs.
std::string_view LanguageOfCatalogs();

}  // namespace lorimat::console
