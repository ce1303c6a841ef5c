// The program's messages in the user's language. A message is written where it is shown, in
// English, with the fields of {fmt}; the catalogs of po/ have it in other languages.
//
//   streams.error(Tr("lorimat: {}: cannot be opened: {}\n", name, cause));
//
// script/messages collects what stands in Tr, TrCount and TR_TEXT for the catalogs, so these are
// given literals. A translation whose fields are not those of the English is not used. What the
// library answers, JSON and words of the command language are not translated.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "language/message_text.h"

namespace lorimat::console {

// The language of messages now, as "it"; empty for English: the user has no other that there is a
// catalog of, or an EnglishMessages lives.
std::string_view LanguageOfMessages();

// What the user's language has for an English message; the English itself where that is nothing.
std::string_view Translated(std::string_view english);

template <typename... Arguments>
std::string Tr(fmt::format_string<Arguments...> english, Arguments&&... arguments) {
  const fmt::string_view text = english;
  return fmt::vformat(Translated({text.data(), text.size()}), fmt::make_format_args(arguments...));
}

// A message with a field for a count: the English for 1 and for any other, of which a language may
// make more forms.
std::string TrCount(uint64_t count, std::string_view one, std::string_view several);

// While one of these lives, messages are English: for texts that go into JSON, which programs
// read.
class EnglishMessages {
 public:
  explicit EnglishMessages(bool wanted = true);
  ~EnglishMessages();
  EnglishMessages(const EnglishMessages&) = delete;
  EnglishMessages& operator=(const EnglishMessages&) = delete;

 private:
  bool before_;
};

}  // namespace lorimat::console
