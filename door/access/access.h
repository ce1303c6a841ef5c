// What the program is told of who may come in: its address, TLS, tokens, names and pages. Beyond
// this computer nothing is listened on without TLS and tokens.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "console/token/token_file.h"
#include "door/access/access_rules.h"
#include "door/access/tls.h"

namespace CLI {
class App;
}

namespace lorimat::door {

struct AccessOptions {
  std::string listen = "127.0.0.1:8577";
  std::string tokens;
  bool require_token = false;
  std::string certificate;
  std::string key;
  std::vector<std::string> hosts;
  std::vector<std::string> origins;
};

// Adds --listen, --tokens, --require-token, --tls-cert, --tls-key, --host and --allow-origin.
void AddAccessOptions(CLI::App* app, AccessOptions* options);

class Access {
 public:
  // A sentence about what goes on all the same.
  using Tell = std::function<void(const std::string& text)>;

  // Reads all files. Throws Failure for what cannot be, or is not to be.
  Access(const AccessOptions& options, const Tell& tell);

  const std::string& address() const { return address_; }  // as numbers, without brackets
  uint16_t port() const { return port_; }                  // 0: any
  // Null without TLS.
  const TlsContext& tls() const { return tls_; }
  // Reads tokens, certificate and key again. What is bad is told, and what was there before stays.
  // One thread at a time.
  void Reload(const Tell& tell);

  // Where the door is, with the port that it has by now: "https://127.0.0.1:8577".
  std::string Url(uint16_t port) const;
  // What a request may name as its host.
  std::vector<std::string> Hosts(uint16_t port) const;
  // What the API asks; valid as long as this.
  AccessRules Rules() const;

 private:
  void ReadListen(const std::string& text);
  bool is_loopback() const { return address_ == "127.0.0.1" || address_ == "::1"; }

  const AccessOptions options_;
  std::string address_;
  uint16_t port_ = 0;
  std::optional<console::TokenFile> tokens_;
  TlsContext tls_;
};

}  // namespace lorimat::door
