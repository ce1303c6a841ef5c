#include "console/check/password_mask.h"

#include <cctype>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/ascii.h"
#include "recording/secrets.h"

namespace lorimat::console {
namespace {

// A field whose value is not to be shown.
struct SecretField {
  int opcode;
  int field;
  bool is_password;
  size_t least;  // a shorter value is something else
  // Its name as it ships. A field of this name hides its value in lines too that the words do not
  // read as the command; null where other commands have such a field.
  const char* name;
};

constexpr size_t kShortestTaxCode = 11;

constexpr SecretField kSecretFields[] = {
    {53, 3, true, 1, "PASS"},  // the password of an operator
    // Keys: a lottery code, a tax code.
    {9, 1, false, kShortestTaxCode, nullptr},
    {9, 2, false, 1, nullptr},
    {9, 3, false, 1, "LOTTERIA"},
    // The customer of an invoice.
    {23, 4, false, 1, nullptr},
    {23, 5, false, 1, nullptr},
    {23, 6, false, 1, nullptr},
    {23, 7, false, 1, nullptr},
    {23, 8, false, 1, nullptr},
};

constexpr char kQuote = '\'';

bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '#'; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// The secret fields of one line.
class SecretFields {
 public:
  SecretFields(const Language* words, std::string_view line) : words_(words) {
    if (words_ == nullptr) return;
    size_t begin = 0;
    while (begin < line.size() && IsBlank(line[begin])) ++begin;
    size_t end = begin;
    while (end < line.size() && IsWord(line[end])) ++end;
    const Lookup command = words_->FindCommand(std::string(line.substr(begin, end - begin)));
    if (end > begin && command.failure == 0) opcode_ = command.number;
  }

  // The row of a field of this key; null for none.
  const SecretField* Find(std::string_view key) const {
    if (key.empty()) return nullptr;
    const std::string word(key);
    for (const SecretField& row : kSecretFields) {
      if (IsNamed(row, word) || (row.opcode == opcode_ && IsField(row, word))) return &row;
    }
    return nullptr;
  }

 private:
  // Without words the name is the shipped one.
  bool IsNamed(const SecretField& row, const std::string& word) const {
    if (row.name == nullptr) return false;
    const std::string name =
        words_ == nullptr ? row.name : words_->FieldName(row.opcode, row.field);
    return !name.empty() && EqualsIgnoringCase(word.c_str(), name.c_str());
  }
  bool IsField(const SecretField& row, const std::string& word) const {
    const Lookup field = words_->FindField(row.opcode, word);
    return word == "#" + std::to_string(row.field) ||
           (field.failure == 0 && field.number == row.field);
  }

  const Language* words_;
  int opcode_ = 0;
};

// The line with the values of secret fields gone through `blank`.
template <typename Wanted, typename Blank>
std::string WithoutFields(const Language* words, std::string_view line, Wanted wanted,
                          Blank blank) {
  const SecretFields secrets(words, line);
  std::string out(line);
  bool quoted = false;
  for (size_t at = 0; at < line.size(); ++at) {
    if (line[at] == kQuote) quoted = !quoted;
    if (line[at] != '=' || quoted) continue;
    size_t end = at;
    while (end > 0 && IsBlank(line[end - 1])) --end;
    size_t begin = end;
    while (begin > 0 && IsWord(line[begin - 1])) --begin;
    const SecretField* field = secrets.Find(line.substr(begin, end - begin));
    if (field == nullptr || !wanted(*field)) continue;
    // Up to the next field; to the end where a quote is missing.
    std::vector<size_t> places;
    bool in_value = false;
    for (++at; at < line.size() && (in_value || line[at] != ','); ++at) {
      if (line[at] == kQuote) {
        in_value = !in_value;
      } else if (in_value || !IsBlank(line[at])) {
        places.push_back(at);
      }
    }
    if (places.size() < field->least) continue;
    for (const size_t place : places) out[place] = blank(line[place]);
  }
  return out;
}

}  // namespace

std::string WithoutPasswords(const Language* words, std::string_view line) {
  return WithoutFields(
      words, line, [](const SecretField& field) { return field.is_password; },
      [](char) { return '*'; });
}

std::string WithoutSecrets(const Language* words, std::string_view line) {
  return WithoutFields(
      words, line, [](const SecretField&) { return true; },
      [](char c) { return recording::Blanked(c); });
}

}  // namespace lorimat::console
