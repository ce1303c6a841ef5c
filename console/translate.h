// The program's messages in the user's language. A message is written where it is shown, in
// English, with the fields of {fmt}; italian.cpp has the Italian for each, in one table.
//
//   streams.error(tr("lorimat: {}: cannot be opened: {}\n", name, cause));
//
// Italian goes to users whose LC_ALL, LC_MESSAGES or LANG, the first of them that is set,
// begins with "it". What the library answers, JSON and words of the command language are not
// translated.
#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>

// The Italian of an English message; the English itself where there is none, or for a user of
// another language.
std::string_view translated(std::string_view english);

template <typename... Arguments>
std::string tr(fmt::format_string<Arguments...> english, Arguments&&... arguments) {
  const fmt::string_view text = english;
  return fmt::vformat(translated({text.data(), text.size()}),
                      fmt::make_format_args(arguments...));
}
