#include "recording/conversation/script_fields.h"

#include <algorithm>
#include <cctype>

#include "recording/conversation/script_text.h"

namespace conversation {
namespace {

// "{NAME}", "{NAME:WIDTH}", "{NUMBER+NAME-NAME:WIDTH}": the terms, with their signs.
struct Field {
  struct Term {
    bool minus = false;
    std::string_view word;
  };
  std::vector<Term> terms;
  std::optional<std::size_t> width;
  std::size_t length = 0;  // as it is written, with its braces
};

// As many as any line needs; their sum stays far below the largest number.
constexpr std::size_t kMostTerms = 8;

// The field at the brace, or nothing where another use of braces begins.
std::optional<Field> ReadField(std::string_view text) {
  const std::size_t end = text.find('}');
  if (end == std::string_view::npos) return std::nullopt;
  std::string_view inside = text.substr(1, end - 1);
  Field field;
  field.length = end + 1;
  if (const std::size_t colon = inside.find(':'); colon != std::string_view::npos) {
    const auto width = WholeNumber(inside.substr(colon + 1));
    if (!width || *width < 1 || *width > 20) return std::nullopt;
    field.width = static_cast<std::size_t>(*width);
    inside = inside.substr(0, colon);
  }
  bool named = false;
  for (bool minus = false;;) {
    const std::size_t sign = inside.find_first_of("+-");
    const std::string_view word = inside.substr(0, sign);
    if (!IsName(word) && !WholeNumber(word)) return std::nullopt;
    named = named || IsName(word);
    field.terms.push_back({minus, word});
    if (sign == std::string_view::npos) break;
    if (field.terms.size() == kMostTerms) return std::nullopt;
    minus = inside[sign] == '-';
    inside = inside.substr(sign + 1);
  }
  if (!named) return std::nullopt;
  return field;
}

std::string TextOf(std::string_view name, const Written& written, Frame& frame) {
  for (Binding& binding : frame.bindings) {
    if (binding.name != name) continue;
    binding.used = true;
    return binding.value;
  }
  Fail(written, frame, "there is no column \"" + std::string(name) + "\"");
}

std::string ValueOf(const Field& field, const Written& written, Frame& frame) {
  if (field.terms.size() == 1 && !field.width) return TextOf(field.terms[0].word, written, frame);
  long long sum = 0;
  for (const Field::Term& term : field.terms) {
    std::string value(term.word);
    if (IsName(term.word)) value = TextOf(term.word, written, frame);
    const auto number = WholeNumber(value);
    if (!number) {
      Fail(written, frame,
           "\"" + std::string(term.word) + "\" is \"" + value + "\", which is no whole number");
    }
    sum += term.minus ? -*number : *number;
  }
  std::string shown = std::to_string(sum);
  if (!field.width) return shown;
  // A cut or a sign would be another number.
  if (sum < 0 || shown.size() > *field.width) {
    Fail(written, frame, shown + " does not go into " + std::to_string(*field.width) + " digits");
  }
  return std::string(*field.width - shown.size(), '0') + shown;
}

}  // namespace

bool IsName(std::string_view word) {
  return !word.empty() && std::islower(static_cast<unsigned char>(word[0])) &&
         std::all_of(word.begin(), word.end(), [](unsigned char c) {
           return std::islower(c) || std::isdigit(c) || c == '_';
         });
}

std::optional<long long> WholeNumber(std::string_view word) {
  if (word.empty() || word.size() > 15) return std::nullopt;
  long long number = 0;
  for (const char c : word) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

void Fail(const Written& at, const Frame& frame, const std::string& message) {
  if (at.file.empty()) throw Failure(at.number, message);
  throw Failure(frame.line, at.file + ":" + std::to_string(at.number) + ": " + message);
}

std::string Filled(const Written& written, Frame& frame) {
  const std::string& text = written.text;
  if (frame.bindings.empty() || text.empty() || text[0] == '#') return text;
  std::string filled;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '\\' && at + 1 < text.size()) {
      filled += text.substr(at, 2);
      at += 2;
      continue;
    }
    if (text[at] == '{') {
      if (const auto field = ReadField(std::string_view(text).substr(at))) {
        filled += ValueOf(*field, written, frame);
        at += field->length;
        continue;
      }
    }
    filled += text[at++];
  }
  return filled;
}

}  // namespace conversation
