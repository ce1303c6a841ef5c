#include "console/host/answer_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

#include "language/code_table.h"
#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kSeparator = " : ";

std::optional<int64_t> WholeNumber(std::string_view text) {
  int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string Lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), [](char c) { return Lower(c); });
  return out;
}

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes what is made of these characters off the front.
std::string Take(std::string_view* text, std::string_view characters) {
  const size_t end = std::min(text->find_first_not_of(characters), text->size());
  std::string taken(text->substr(0, end));
  text->remove_prefix(end);
  return taken;
}

// The code behind each of the words, where what follows it ends the number as answers do.
template <typename Read>
std::optional<int> CodeBehind(std::string_view text, std::string_view word, Read read) {
  for (size_t at = text.find(word); at != text.npos; at = text.find(word, at + 1)) {
    std::string_view rest = text.substr(at + word.size());
    if (const std::optional<int> code = read(&rest)) return code;
  }
  return std::nullopt;
}

// "4/218", with nothing behind it, the text of the message, or " in line 7" of an error file.
std::optional<int> ReadClassAndIndex(std::string_view* rest) {
  constexpr std::string_view kOfErrorFile = " in line ";
  const std::string number = Take(rest, "0123456789/");
  if (number.find('/') == number.npos) return std::nullopt;
  const std::optional<int> code = ReadCodeNumber(number);
  if (rest->substr(0, kOfErrorFile.size()) == kOfErrorFile) return code;
  Take(rest, kBlanks);
  return rest->empty() || rest->front() == ':' ? code : std::nullopt;
}

// "257", with nothing behind it, or the answer; also "(code 257)".
std::optional<int> ReadWholeCode(std::string_view* rest) {
  const std::optional<int> code = ReadCodeNumber(Take(rest, "-0123456789"));
  const bool ends = rest->empty() || rest->front() == ':' || *rest == ")";
  return ends ? code : std::nullopt;
}

// Whether the text is that of an answer, all of it or from one of its separators on.
bool IsEndOf(std::string_view answer, std::string_view text) {
  for (;;) {
    if (Trimmed(answer) == text) return true;
    const size_t next = answer.find(kSeparator);
    if (next == answer.npos) return false;
    answer.remove_prefix(next + kSeparator.size());
  }
}

}  // namespace

std::optional<int> ReadCodeNumber(const std::string& text) {
  const size_t slash = text.find('/');
  std::optional<int64_t> number;
  if (slash == std::string::npos) {
    number = WholeNumber(text);
  } else {
    const std::optional<int64_t> shown_class = WholeNumber(text.substr(0, slash));
    const std::optional<int64_t> index = WholeNumber(text.substr(slash + 1));
    if (shown_class && index && *shown_class >= 0 && *shown_class <= (kCodeClassMask >> 8) &&
        *index >= 0 && *index <= kCodeIndexMask) {
      number = *shown_class << 8 | *index;
    }
  }
  if (!number || *number < std::numeric_limits<int32_t>::min() ||
      *number > std::numeric_limits<int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<int>(*number);
}

std::vector<int> CodesInAnswer(const std::string& text, MessageTexts& texts) {
  const std::string answer = Lowered(Trimmed(text));
  if (answer.empty()) return {};
  if (const auto code = CodeBehind(answer, "error ", ReadClassAndIndex)) return {*code};
  // As the program shows it, in its two languages.
  for (const std::string_view word : {"code ", "codice "}) {
    if (const auto code = CodeBehind(answer, word, ReadWholeCode)) return {*code};
  }
  std::vector<int> codes;
  const auto try_code = [&](int code) {
    if (IsEndOf(Lowered(texts.Answer(code)), answer)) codes.push_back(code);
  };
  try_code(0);
  for (const language::OwnCode& own : language::OwnCodes()) try_code(own.code);
  return codes;
}

}  // namespace lorimat::console
