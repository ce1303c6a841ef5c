#include "console/token/token_table.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <functional>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/digest.h"

namespace lorimat::console {
namespace {

constexpr size_t kLongestName = 64;
constexpr size_t kLongestSecret = 256;
constexpr size_t kSaltBytes = 16;
constexpr size_t kSecretBytes = 32;
constexpr size_t kDigestDigits = 64;
constexpr char kDigits[] = "0123456789abcdef";

struct RoleRow {
  TokenRole role;
  std::string_view name;
};
constexpr RoleRow kRoles[] = {{TokenRole::kDesk, "desk"}, {TokenRole::kOperator, "operator"}};

template <size_t size>
std::string ByChance() {
  std::array<unsigned char, size> bytes;
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) {
    throw Failure(Tr("the system gives no random numbers"));
  }
  std::string text;
  for (const unsigned char byte : bytes) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xF]);
  }
  OPENSSL_cleanse(bytes.data(), bytes.size());
  return text;
}

bool IsHexadecimal(std::string_view text, size_t digits) {
  return text.size() == digits && text.find_first_not_of(kDigits) == text.npos;
}

std::string DigestOf(const TokenRow& row, std::string_view secret) {
  return Sha256(row.salt + std::string(secret));
}

// The next word of a line, up to one blank.
std::string_view TakeWord(std::string_view* line) {
  const size_t end = line->find(' ');
  const std::string_view word = line->substr(0, end);
  line->remove_prefix(end == line->npos ? line->size() : end + 1);
  return word;
}

}  // namespace

std::string_view TokenRoleName(TokenRole role) {
  const auto* row = std::find_if(std::begin(kRoles), std::end(kRoles),
                                 [role](const RoleRow& one) { return one.role == role; });
  return row->name;
}

std::optional<TokenRole> FindTokenRole(std::string_view name) {
  for (const RoleRow& row : kRoles) {
    if (row.name == name) return row.role;
  }
  return std::nullopt;
}

bool IsTokenName(std::string_view name) {
  return !name.empty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                  c == '_' || c == ':' || c == '-';
         });
}

NewToken MakeToken(TokenRole role) {
  NewToken made{.secret = ByChance<kSecretBytes>(),
                .row = {.role = role, .salt = ByChance<kSaltBytes>(), .digest = {}}};
  made.row.digest = DigestOf(made.row, made.secret);
  return made;
}

std::string_view NameOfLine(std::string_view line) {
  if (line.empty() || line.front() == '#') return {};
  return TakeWord(&line);
}

TokenTable ReadTokens(std::string_view text, const std::string& file) {
  TokenTable table;
  for (int number = 1; !text.empty(); ++number) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    if (line.empty() || line.front() == '#') continue;
    const std::string name(TakeWord(&line));
    const std::optional<TokenRole> role = FindTokenRole(TakeWord(&line));
    const std::string salt(TakeWord(&line));
    if (!IsTokenName(name)) {
      throw Failure(Tr("{}, line {}: {} is no name of a token, 1 to 64 of A-Z a-z 0-9 _ : -",
                       Shown(file), number, Shown(name)));
    }
    if (!role) {
      throw Failure(Tr("{}, line {}: the role of {} is neither desk nor operator", Shown(file),
                       number, name));
    }
    if (!IsHexadecimal(salt, 2 * kSaltBytes) || !IsHexadecimal(line, kDigestDigits)) {
      throw Failure(Tr("{}, line {}: salt and digest of {} are not 32 and 64 hexadecimal digits",
                       Shown(file), number, name));
    }
    if (!table.emplace(name, TokenRow{*role, salt, std::string(line)}).second) {
      throw Failure(Tr("{}, line {}: {} has a token already", Shown(file), number, name));
    }
  }
  return table;
}

std::string TokenLine(std::string_view name, const TokenRow& row) {
  return std::string(name) + " " + std::string(TokenRoleName(row.role)) + " " + row.salt + " " +
         row.digest + "\n";
}

std::optional<TokenHolder> FindHolder(const TokenTable& table, std::string_view token) {
  // For a name that is not there: of a digest that no secret has been found for.
  static const TokenRow kNobody{TokenRole::kDesk, std::string(2 * kSaltBytes, '0'),
                                std::string(kDigestDigits, '0')};
  const size_t point = token.find('.');
  if (point == token.npos || token.size() - point - 1 > kLongestSecret) return std::nullopt;
  const std::string_view name = token.substr(0, point);
  const auto found = table.find(name);
  const TokenRow& row = found == table.end() ? kNobody : found->second;
  const std::string digest = DigestOf(row, token.substr(point + 1));
  const bool same = CRYPTO_memcmp(digest.data(), row.digest.data(), kDigestDigits) == 0;
  if (!same || found == table.end()) return std::nullopt;
  return TokenHolder{found->first, row.role};
}

}  // namespace lorimat::console
