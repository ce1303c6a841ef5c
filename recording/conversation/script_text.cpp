#include "recording/conversation/script_text.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace conversation {
namespace {

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// One character or escape at `at`, which moves behind it.
char ReadOne(std::string_view written, std::size_t& at) {
  const char c = written[at++];
  if (c != '\\') return c;
  if (at >= written.size()) throw Failure(0, "a lone \\ ends the text");
  switch (const char kind = written[at++]) {
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    case '\\':
    case '"':
    case '{':
      return kind;
    case 'x': {
      const int high = at < written.size() ? HexDigit(written[at]) : -1;
      const int low = at + 1 < written.size() ? HexDigit(written[at + 1]) : -1;
      if (high < 0 || low < 0) throw Failure(0, "\\x needs two hexadecimal digits");
      at += 2;
      return static_cast<char>(high * 16 + low);
    }
    default:
      throw Failure(0, std::string("unknown escape \\") + kind);
  }
}

// Reads words, texts and punctuation of a call.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool AtEnd() {
    SkipBlanks();
    return at_ >= text_.size();
  }
  bool Take(std::string_view mark) {
    SkipBlanks();
    if (text_.substr(at_, mark.size()) != mark) return false;
    at_ += mark.size();
    return true;
  }
  void Need(std::string_view mark) {
    if (!Take(mark)) {
      throw Failure(
          0, "\"" + std::string(mark) + "\" missing at \"" + std::string(text_.substr(at_)) + "\"");
    }
  }
  std::string Word() {
    SkipBlanks();
    const std::size_t start = at_;
    while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) ||
                                  text_[at_] == '_' || text_[at_] == '.' || text_[at_] == '+' ||
                                  (text_[at_] == '-' && text_.substr(at_, 2) != "->"))) {
      ++at_;
    }
    if (at_ == start) {
      throw Failure(0, "a word or text missing at \"" + std::string(text_.substr(at_)) + "\"");
    }
    return std::string(text_.substr(start, at_ - start));
  }
  Value AnyValue() {
    if (Take("*")) return {Value::kAny, ""};
    if (!Take("\"")) return Value::Word(Word());
    const std::size_t start = at_;
    while (at_ < text_.size() && text_[at_] != '"') at_ += text_[at_] == '\\' ? 2 : 1;
    if (at_ >= text_.size()) throw Failure(0, "the closing \" is missing");
    const std::string_view inside = text_.substr(start, at_ - start);
    ++at_;
    return Value::Text(Unescape(inside));
  }
  std::vector<Value> Values(std::string_view end) {
    std::vector<Value> values;
    if (Take(end)) return values;
    do {
      values.push_back(AnyValue());
    } while (Take(","));
    Need(end);
    return values;
  }
  std::string_view Rest() {
    SkipBlanks();
    return text_.substr(at_);
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::string Unescape(std::string_view written) {
  std::string bytes;
  std::size_t at = 0;
  while (at < written.size()) {
    if (written[at] != '{') {
      bytes += ReadOne(written, at);
      continue;
    }
    ++at;
    std::string repeated;
    while (at < written.size() && written[at] != '*') repeated += ReadOne(written, at);
    const std::size_t end = written.find('}', at);
    if (at >= written.size() || end == std::string_view::npos) {
      throw Failure(0, "a repetition is written {TEXT*N}, a brace alone \\{");
    }
    const long long times = ReadNumber(written.substr(at + 1, end - at - 1));
    if (times < 0 || times > 10'000'000) throw Failure(0, "a repetition of that size is refused");
    for (long long i = 0; i < times; ++i) bytes += repeated;
    at = end + 1;
  }
  return bytes;
}

std::uintmax_t UnescapedSize(std::string_view written) {
  std::uintmax_t size = written.size();
  for (std::size_t brace = written.find('{'); brace != std::string_view::npos;
       brace = written.find('{', brace + 1)) {
    const std::size_t star = written.find('*', brace);
    const std::size_t end = written.find('}', brace);
    if (star == std::string_view::npos || end == std::string_view::npos || end < star) continue;
    const std::string times(written.substr(star + 1, end - star - 1));
    size += (star - brace) * std::strtoull(times.c_str(), nullptr, 0);
  }
  return size;
}

namespace {

// `quoted` escapes a quote too.
std::string Escaped(std::string_view bytes, bool quoted) {
  std::string shown;
  std::size_t at = 0;
  while (at < bytes.size()) {
    const char c = bytes[at];
    std::size_t same = 1;
    while (at + same < bytes.size() && bytes[at + same] == c) ++same;
    std::string one;
    if (c == '\n') {
      one = "\\n";
    } else if (c == '\r') {
      one = "\\r";
    } else if (c == '\t') {
      one = "\\t";
    } else if (c == '\\' || c == '{' || (quoted && c == '"')) {
      one = std::string("\\") + c;
    } else if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7E) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X",
                    static_cast<unsigned>(static_cast<unsigned char>(c)));
      one = hex;
    } else {
      one = c;
    }
    if (same > 40) {
      if (c == '*') one = "\\x2A";  // the one that is repeated is no mark
      shown += "{" + one + "*" + std::to_string(same) + "}";
    } else {
      for (std::size_t i = 0; i < same; ++i) shown += one;
    }
    at += same;
  }
  return shown;
}

}  // namespace

std::string Quote(std::string_view bytes) { return "\"" + Escaped(bytes, true) + "\""; }

std::string Escape(std::string_view bytes) {
  std::string shown = Escaped(bytes, false);
  if (shown.empty() || shown.back() != ' ') return shown;
  shown.pop_back();
  return shown + "\\x20";
}

std::string Value::Shown() const {
  switch (kind) {
    case kText:
      return Quote(text);
    case kAny:
      return "*";
    default:
      return text;
  }
}

bool Value::Fits(const Value& seen) const {
  return kind == kAny || (kind == seen.kind && text == seen.text);
}

std::string Shown(const std::vector<Value>& values) {
  std::string shown;
  for (const Value& value : values) {
    if (!shown.empty()) shown += ", ";
    shown += value.Shown();
  }
  return shown;
}

bool Fit(const std::vector<Value>& expected, const std::vector<Value>& seen) {
  if (expected.size() != seen.size()) return false;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (!expected[i].Fits(seen[i])) return false;
  }
  return true;
}

std::optional<int> Call::Result() const {
  if (!has_answer) return 0;
  if (answer.kind == Value::kWord) {
    if (answer.text == "throws") return std::nullopt;
    if (answer.text == "true") return 1;
    if (answer.text == "false") return 0;
  }
  return static_cast<int>(ReadNumber(answer.text));
}

std::string Call::Shown() const { return name + "(" + conversation::Shown(arguments) + ")"; }

std::string Call::ShownAnswer() const {
  std::string shown = has_answer ? answer.Shown() : "";
  if (has_outs) shown += (shown.empty() ? "[" : " [") + conversation::Shown(outs) + "]";
  return shown.empty() ? "nothing" : shown;
}

Call ReadCall(std::string_view written) {
  Reader reader(written);
  Call call;
  call.name = reader.Word();
  call.operation = FindClientOperation(call.name);
  if (reader.Take("(")) {
    call.has_arguments = true;
    call.arguments = reader.Values(")");
  }
  if (reader.Take("->")) {
    if (!reader.Take("[")) {
      call.has_answer = true;
      call.answer = reader.AnyValue();
      call.has_outs = reader.Take("[");
    } else {
      call.has_outs = true;
    }
    if (call.has_outs) call.outs = reader.Values("]");
  }
  if (!reader.AtEnd()) {
    throw Failure(0, "\"" + std::string(reader.Rest()) + "\" is too much behind the call");
  }
  return call;
}

long long ReadNumber(std::string_view word) {
  const std::string text(Trimmed(word));
  char* end = nullptr;
  const long long number = std::strtoll(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0') throw Failure(0, "\"" + text + "\" is no number");
  return number;
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace conversation
