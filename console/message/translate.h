// The program's messages in the user's language. A message is written where it is shown, in
// English, with the fields of {fmt}; italian.cpp has the Italian for each, in one table.
//
//   streams.error(Tr("lorimat: {}: cannot be opened: {}\n", name, cause));
//
// Italian goes to users whose LC_ALL, LC_MESSAGES or LANG, the first of them that is set,
// begins with "it". What the library answers, JSON and words of the command language are not
// translated.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace lorimat::console {

// Marks a text that reaches translated() by way of a variable or a table, so that the test of
// the Italian table finds it.
#define TR_TEXT(text) text

// Whether messages are Italian now: the user reads it, and no EnglishMessages lives.
bool MessagesAreItalian();

// The Italian of an English message; the English itself where there is none, or for a user of
// another language.
std::string_view Translated(std::string_view english);

template <typename... Arguments>
std::string Tr(fmt::format_string<Arguments...> english, Arguments&&... arguments) {
  const fmt::string_view text = english;
  return fmt::vformat(Translated({text.data(), text.size()}), fmt::make_format_args(arguments...));
}

// One message or the other, both marked by TR_TEXT and with one field for the count.
std::string TrCount(uint64_t count, std::string_view one, std::string_view several);

// A finished English message of a library that knows no Italian, held against patterns (marked
// by TR_TEXT) whose fields "{}" stand for any text: the translation of the first that fits, with
// what stood in the fields, or the message as it is.
std::string TrFinished(std::string_view message, const std::string_view* patterns, size_t count);

template <size_t kCount>
std::string TrFinished(std::string_view message, const std::string_view (&patterns)[kCount]) {
  return TrFinished(message, patterns, kCount);
}

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
