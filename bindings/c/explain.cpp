// The explanations of result codes, in the languages that are compiled in.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "bindings/c/border.h"
#include "language/code_explanation.h"

namespace {

struct Message {
  std::string_view english;
  std::string_view italian;
};
// From po/it.po, ordered by the English.
constexpr Message kItalian[] = {
#include "italian.inc"
};

std::string_view English(std::string_view english) { return english; }

std::string_view Italian(std::string_view english) {
  const auto* found = std::lower_bound(
      std::begin(kItalian), std::end(kItalian), english,
      [](const Message& row, std::string_view text) { return row.english < text; });
  return found != std::end(kItalian) && found->english == english ? found->italian : english;
}

struct Language {
  std::string_view name;
  language::Translation translation;
};
constexpr Language kLanguages[] = {{"en", English}, {"it", Italian}};

// Null for one that there is not. Behind the name may stand what a locale has.
const Language* FindLanguage(const char* name) {
  if (name == nullptr) return &kLanguages[0];
  const std::string_view text = name;
  for (const Language& one : kLanguages) {
    if (text.substr(0, text.find_first_of("_-.@")) == one.name) return &one;
  }
  return nullptr;
}

constexpr size_t kTextSize = 4096;
thread_local char explanation[kTextSize];

// Cuts no character of UTF-8 in two.
size_t CutLength(std::string_view text) {
  if (text.size() < kTextSize) return text.size();
  size_t length = kTextSize - 1;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  return length;
}

}  // namespace

const char* lorimat_explain(long code, const char* language) {
  const Language* const found = FindLanguage(language);
  if (found == nullptr) {
    lorimat::c::Fail(LORIMAT_BAD_VALUE, "there are explanations in \"en\" and \"it\" alone");
    return nullptr;
  }
  const int result = lorimat::c::Guarded([&] {
    std::string text;
    for (const std::string& line : ::language::ExplainCode(code, found->translation)) {
      text += (text.empty() ? "" : "\n") + line;
    }
    const size_t length = CutLength(text);
    if (length > 0) std::memcpy(explanation, text.data(), length);
    explanation[length] = 0;
    return int{LORIMAT_OK};
  });
  return result == LORIMAT_OK ? explanation : nullptr;
}
