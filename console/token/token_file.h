// The file of the tokens: read by the door, changed by "lorimat token".
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "console/token/token_table.h"

namespace lorimat::console {

// Reads a file of tokens for those who keep it. It is to be a file of the user who runs the
// program, or of root, that nobody else may read or write: looked at as it is open, so that no
// other is in its place by then. Root keeps the files of others too. A file in the folder that
// CREDENTIALS_DIRECTORY names, as systemd gives it to a service, may have mode 0440. Throws
// Failure.
TokenTable LoadTokens(const std::string& file);

// Adds a line, and makes the file where it is not there; false where the name has one already. What
// changes a file waits for others that do, and the file is replaced as a whole, with its owner and
// mode: it has its old lines or its new ones, whenever the program ends. Throws Failure.
bool AddToken(const std::string& file, const std::string& name, const TokenRow& row);
// Takes the line of a name out; false where there is none. Throws Failure.
bool RemoveToken(const std::string& file, const std::string& name);

// The door's: a file that is read, and read again. That of another user is refused though root runs
// the door: who comes in is not his to say. From any thread.
class TokenFile {
 public:
  // Throws Failure.
  explicit TokenFile(std::string file);

  // Reads it again; where that throws Failure, what was read before counts on.
  void Reload();
  std::optional<TokenHolder> Find(std::string_view token) const;

 private:
  std::shared_ptr<const TokenTable> table() const;

  const std::string file_;
  mutable std::mutex mutex_;
  std::shared_ptr<const TokenTable> table_;
};

}  // namespace lorimat::console
