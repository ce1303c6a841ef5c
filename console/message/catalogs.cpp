#include "console/message/catalogs.h"

#include <libintl.h>
#include <locale.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "console/message/catalog_file.h"

namespace lorimat::console {
namespace {

constexpr const char* kDomain = "lorimat";

// The locale that messages are looked up in, null for English. The program's own stays as it is
// at its start: what the C library says of errors comes in English, and is translated by our
// catalogs; numbers and times look alike for all.
locale_t messages_locale = nullptr;

// LANGUAGE as the user has it, once this program has changed it: nothing where there was none.
bool language_is_ours = false;
std::optional<std::string> users_language;

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

bool IsEnglish(std::string_view locale) {
  return locale.empty() || locale == "C" || locale == "POSIX";
}

std::string_view UserLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const std::string_view value = Variable(name); !value.empty()) return value;
  }
  return {};
}

// "it" of "it_IT.UTF-8@euro".
std::string_view BareLanguage(std::string_view locale) {
  return locale.substr(0, locale.find_first_of("_.@"));
}

// Whether it has the form of a locale's name, and so leads to no folder outside that of the
// catalogs, nor by an alias to another language.
bool IsLocaleName(std::string_view name) {
  constexpr size_t kLongest = 60;
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto is_known = [&](char c) {
    return is_letter(c) || (c >= '0' && c <= '9') ||
           std::string_view("_.@-").find(c) != std::string_view::npos;
  };
  const std::string_view language = BareLanguage(name);
  return name.size() <= kLongest && (language.size() == 2 || language.size() == 3) &&
         std::all_of(language.begin(), language.end(), is_letter) &&
         std::all_of(name.begin(), name.end(), is_known);
}

// Whether the C library finds nothing in the folder for the language, or what can be given to it.
bool HasSoundCatalogs(const std::string& folder, std::string_view language) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (BareLanguage(entry->path().filename().native()) != language) continue;
    const std::filesystem::path file =
        entry->path() / "LC_MESSAGES" / (std::string(kDomain) + ".mo");
    std::error_code missing;
    const auto type = std::filesystem::status(file, missing).type();
    if (type != std::filesystem::file_type::not_found && !CatalogFile::Read(file)) return false;
  }
  return !error;
}

// Those of the user's languages that come before English, as LANGUAGE has them. English is a
// language without a catalog: for the C library it would be none.
std::string UserLanguages(const std::string& folder, std::string_view asked) {
  std::string languages;
  while (!asked.empty()) {
    const std::string_view name = asked.substr(0, asked.find(':'));
    asked.remove_prefix(std::min(name.size() + 1, asked.size()));
    const std::string_view language = BareLanguage(name);
    if (language == "C" || language == "POSIX" || language == "en") break;
    if (!IsLocaleName(name) || !HasSoundCatalogs(folder, language)) continue;
    if (!languages.empty()) languages += ':';
    languages += name;
  }
  return languages;
}

// While one lives, this thread is in the locale of the messages.
class MessagesLocale {
 public:
  MessagesLocale() : before_(uselocale(messages_locale)) {}
  ~MessagesLocale() { uselocale(before_); }
  MessagesLocale(const MessagesLocale&) = delete;
  MessagesLocale& operator=(const MessagesLocale&) = delete;

 private:
  locale_t before_;
};

// Null for the message itself, which is the C library's answer when it has no other.
const char* UnlessIt(const char* answer, const char* message) {
  return answer == message ? nullptr : answer;
}

}  // namespace

void OpenCatalogs(const std::string& folder) {
  const std::string_view locale = UserLocale();
  if (folder.empty() || IsEnglish(locale)) return;
  const std::string_view asked = Variable("LANGUAGE");
  const std::string languages = UserLanguages(folder, asked.empty() ? locale : asked);
  if (languages.empty()) return;
  if (bindtextdomain(kDomain, folder.c_str()) == nullptr ||
      bind_textdomain_codeset(kDomain, "UTF-8") == nullptr) {
    return;
  }
  // In the locale "C" the C library asks for no LANGUAGE. This one it has without any package.
  const locale_t found = newlocale(LC_MESSAGES_MASK, "C.UTF-8", nullptr);
  if (found == nullptr) return;
  if (asked != languages) {
    const char* before = std::getenv("LANGUAGE");
    if (before != nullptr) users_language = before;
    if (setenv("LANGUAGE", languages.c_str(), 1) != 0) {
      freelocale(found);
      return;
    }
    language_is_ours = true;
  }
  messages_locale = found;
}

std::vector<std::string> UserEnvironment() {
  constexpr std::string_view kLanguage = "LANGUAGE=";
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (!language_is_ours || !text.starts_with(kLanguage)) variables.emplace_back(text);
  }
  if (users_language) variables.push_back(std::string(kLanguage) + *users_language);
  return variables;
}

const char* FindTranslation(std::string_view english) {
  // The empty message is the catalog's own header.
  if (messages_locale == nullptr || english.empty()) return nullptr;
  const std::string message(english);
  const MessagesLocale locale;
  return UnlessIt(dgettext(kDomain, message.c_str()), message.c_str());
}

const char* FindTranslation(std::string_view one, std::string_view several, unsigned long count) {
  if (messages_locale == nullptr || one.empty()) return nullptr;
  const std::string singular(one);
  const std::string plural(several);
  const MessagesLocale locale;
  const char* answer = dngettext(kDomain, singular.c_str(), plural.c_str(), count);
  return answer == plural.c_str() ? nullptr : UnlessIt(answer, singular.c_str());
}

std::string_view LanguageOfCatalogs() {
  if (messages_locale == nullptr) return {};
  const MessagesLocale locale;
  const std::string_view header = dgettext(kDomain, "");
  constexpr std::string_view kLine = "\nLanguage: ";
  const size_t at = header.find(kLine);
  if (at == std::string_view::npos) return {};
  const std::string_view behind = header.substr(at + kLine.size());
  return behind.substr(0, behind.find('\n'));
}

}  // namespace lorimat::console
