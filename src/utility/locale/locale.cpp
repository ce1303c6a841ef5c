// The one object and its languages.

#include "utility/locale/locale.h"

#include "utility/locale/texts_default.h"
#include "utility/locale/texts_greek.h"

constinit Locale loc;

namespace {

const unsigned int kErrorTexts = 149;

}  // namespace

const Locale::language_data_t Locale::languages[] = {
    {Locale::kDefault, texts_default::texts, "utf-8"},
    {Locale::kGreek, texts_greek::texts, "cp1253"},
};

const char* Locale::getText(TextCode::Enum code) const {
  return languages[language_index_].texts[code];
}

const char* Locale::getErrorText(unsigned int index) const {
  if (index >= kErrorTexts) return "";
  return getText(static_cast<TextCode::Enum>(TextCode::kErrorNull + static_cast<int>(index)));
}

const char* Locale::getDefaultLanguageText(TextCode::Enum code) const {
  return languages[0].texts[code];
}

int Locale::getAvailableLanguagesCount() { return sizeof languages / sizeof languages[0]; }

Locale::Languages Locale::getLanguageCode(int index) {
  if (index < 0 || index >= getAvailableLanguagesCount()) return kDefault;
  return languages[index].code;
}

int Locale::getLanguageIndexFromCode(Languages code) {
  for (int index = 0; index < getAvailableLanguagesCount(); ++index) {
    if (languages[index].code == code) return index;
  }
  return -1;
}

const char* Locale::getLanguageName(Languages code) const {
  if (code >= kEnd) return "";
  return getText(static_cast<TextCode::Enum>(TextCode::kLanguageDefault + static_cast<int>(code)));
}

const char* Locale::getLanguageName(int index) const {
  return getLanguageName(getLanguageCode(index));
}

int Locale::getCurrentLanguageIndex() const { return language_index_; }

Locale::Languages Locale::getCurrentLanguageCode() const {
  return getLanguageCode(language_index_);
}

void Locale::setCurrentLanguageIndex(int index) {
  if (index >= 0 && index < getAvailableLanguagesCount()) language_index_ = index;
}

void Locale::setCurrentLanguageCode(Languages code) {
  const int index = getLanguageIndexFromCode(code);
  language_index_ = index < 0 ? 0 : index;
}

const char* Locale::getCurrentLanguageEncoding() const {
  return languages[language_index_].encoding;
}
