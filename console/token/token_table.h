// Who may come in at the door: names, what each may do, and what its secret is known by. A token is
// "NAME.SECRET"; the table keeps no secret, only its digest.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace lorimat::console {

enum class TokenRole : uint8_t { kDesk, kOperator };

// "desk", "operator".
std::string_view TokenRoleName(TokenRole role);
std::optional<TokenRole> FindTokenRole(std::string_view name);

// 1 to 64 of A-Z a-z 0-9 _ : -, so that the point ends a name.
bool IsTokenName(std::string_view name);

// Of whom a token is.
struct TokenHolder {
  std::string name;
  TokenRole role = TokenRole::kDesk;
};

struct TokenRow {
  TokenRole role = TokenRole::kDesk;
  std::string salt;  // 32 hexadecimal digits, small letters
  // SHA-256 over the digits of the salt and the secret, as 64 such digits. A secret has 256 bits of
  // chance: there is nothing to guess that a slow digest would have to keep from being tried.
  std::string digest;
};

// By name.
using TokenTable = std::map<std::string, TokenRow, std::less<>>;

// A secret by chance, and the row that knows it: 64 hexadecimal digits. Throws Failure where the
// system has no chance to give.
struct NewToken {
  std::string secret;
  TokenRow row;
};
NewToken MakeToken(TokenRole role);

// Reads the text of a file of tokens: a line for each, "NAME ROLE SALT DIGEST" with a blank
// between, empty lines and lines that begin with '#'. Throws Failure with the file, the line and
// the cause.
TokenTable ReadTokens(std::string_view text, const std::string& file);
// A line of the text, with its end.
std::string TokenLine(std::string_view name, const TokenRow& row);
// The name that a line of the text begins with; empty for one that holds no token.
std::string_view NameOfLine(std::string_view line);

// Whose token it is; nothing for one that the table does not have. What it costs does not tell
// whether the name is there, nor how much of the secret is right.
std::optional<TokenHolder> FindHolder(const TokenTable& table, std::string_view token);

}  // namespace lorimat::console
