#include "console/check/password_mask.h"

#include <algorithm>
#include <cctype>

#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

constexpr int kOperator = 53;  // the command
constexpr int kPassword = 3;   // its field
constexpr char kQuote = '\'';

bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '#'; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

class PasswordField {
 public:
  PasswordField(const Language* words, std::string_view line) : words_(words) {
    if (words_ == nullptr) return;
    name_ = words_->FieldName(kOperator, kPassword);
    size_t begin = 0;
    while (begin < line.size() && IsBlank(line[begin])) ++begin;
    size_t end = begin;
    while (end < line.size() && IsWord(line[end])) ++end;
    const Lookup command = words_->FindCommand(std::string(line.substr(begin, end - begin)));
    is_operator_ = end > begin && command.failure == 0 && command.number == kOperator;
  }

  bool Is(std::string_view key) const {
    if (key.empty()) return false;
    const std::string word(key);
    if (!name_.empty() && EqualsIgnoringCase(word.c_str(), name_.c_str())) return true;
    if (!is_operator_) return false;
    const Lookup field = words_->FindField(kOperator, word);
    return word == "#" + std::to_string(kPassword) ||
           (field.failure == 0 && field.number == kPassword);
  }

 private:
  const Language* words_;
  std::string name_ = "PASS";
  bool is_operator_ = false;
};

}  // namespace

std::string WithoutPasswords(const Language* words, std::string_view line) {
  const PasswordField password(words, line);
  std::string out(line);
  bool quoted = false;
  for (size_t at = 0; at < line.size(); ++at) {
    if (line[at] == kQuote) quoted = !quoted;
    if (line[at] != '=' || quoted) continue;
    size_t end = at;
    while (end > 0 && IsBlank(line[end - 1])) --end;
    size_t begin = end;
    while (begin > 0 && IsWord(line[begin - 1])) --begin;
    if (!password.Is(line.substr(begin, end - begin))) continue;
    // Up to the next field; to the end where a quote is missing.
    bool in_value = false;
    for (++at; at < line.size() && (in_value || line[at] != ','); ++at) {
      if (line[at] == kQuote) {
        in_value = !in_value;
      } else if (in_value || !IsBlank(line[at])) {
        out[at] = '*';
      }
    }
  }
  return out;
}

}  // namespace lorimat::console
