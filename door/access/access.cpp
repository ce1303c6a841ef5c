#include "door/access/access.h"

#include <arpa/inet.h>

#include <CLI/CLI.hpp>
#include <array>
#include <ctime>
#include <exception>

#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "door/access/origin.h"

namespace lorimat::door {
namespace {

using console::Failure;
using console::Shown;
using console::Tr;

// An address as the system writes it, so that there is one text for each; empty for none.
std::string Plain(const std::string& address, int family) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (inet_pton(family, address.c_str(), bytes.data()) != 1) return {};
  return inet_ntop(family, bytes.data(), text.data(), text.size());
}

std::string InBrackets(const std::string& address) {
  return address.find(':') == address.npos ? address : "[" + address + "]";
}

}  // namespace

void AddAccessOptions(CLI::App* app, AccessOptions* options) {
  app->add_option("--listen", options->listen,
                  Tr("The address and the port to listen on; port 0 takes a free one. Beyond this "
                     "computer TLS and tokens are needed"))
      ->type_name("ADDRESS:PORT")
      ->capture_default_str();
  app->add_option("--tokens", options->tokens,
                  Tr("The file of the tokens, that of \"lorimat token\"; read again at SIGHUP"))
      ->type_name("FILE");
  app->add_flag("--require-token", options->require_token,
                Tr("Hear nobody without a token, on this computer either"));
  app->add_option("--tls-cert", options->certificate,
                  Tr("The certificate to speak TLS with, and its chain, in PEM; read again at "
                     "SIGHUP"))
      ->type_name("FILE");
  app->add_option("--tls-key", options->key, Tr("The key of the certificate, in PEM"))
      ->type_name("FILE");
  app->add_option("--host", options->hosts,
                  Tr("A name by which clients call this computer; may be given again"))
      ->type_name("NAME");
  app->add_option("--allow-origin", options->origins,
                  Tr("Whose pages may ask, such as https://till.example; may be given again"))
      ->type_name("ORIGIN");
}

void Access::ReadListen(const std::string& text) {
  const size_t colon = text.rfind(':');
  uint64_t port = 0;
  const bool is_number = colon != text.npos && colon + 1 < text.size() &&
                         text.size() - colon <= 6 &&
                         text.find_first_not_of("0123456789", colon + 1) == text.npos;
  if (is_number) port = std::stoul(text.substr(colon + 1));
  if (is_number && port <= UINT16_MAX) {
    const std::string address = text.substr(0, colon);
    const bool has_brackets = address.size() > 2 && address.front() == '[' && address.back() == ']';
    address_ = has_brackets ? Plain(address.substr(1, address.size() - 2), AF_INET6)
                            : Plain(address, AF_INET);
  }
  if (address_.empty()) {
    throw Failure(
        Tr("--listen {}: is no address with a port, such as 127.0.0.1:8577", Shown(text)));
  }
  port_ = static_cast<uint16_t>(port);
}

Access::Access(const AccessOptions& options, const Tell& tell) : options_(options) {
  ReadListen(options.listen);
  if (options.certificate.empty() != options.key.empty()) {
    throw Failure(Tr("--tls-cert and --tls-key: there is one without the other"));
  }
  if (options.require_token && options.tokens.empty()) {
    throw Failure(Tr("--require-token: there are no tokens without --tokens"));
  }
  if (!is_loopback() && (options.tokens.empty() || options.certificate.empty())) {
    throw Failure(
        Tr("--listen {}: beyond this computer there have to be --tls-cert, --tls-key and "
           "--tokens: what comes from outside would be neither encrypted nor known",
           Shown(options.listen)));
  }
  for (const std::string& host : options.hosts) {
    if (IsHostName(host)) continue;
    throw Failure(Tr("--host {}: is no name of a host, without a port", Shown(host)));
  }
  for (const std::string& origin : options.origins) {
    if (IsOrigin(origin)) continue;
    throw Failure(
        Tr("--allow-origin {}: is no origin such as https://till.example:8443, in small "
           "letters, without a path",
           Shown(origin)));
  }
  if (!options.tokens.empty()) tokens_.emplace(options.tokens);
  if (!options.certificate.empty()) {
    LoadedTls loaded = LoadTls(options.certificate, options.key, std::time(nullptr));
    tls_ = std::move(loaded.context);
    if (!loaded.notice.empty()) tell(loaded.notice);
  }
}

void Access::Reload(const Tell& tell) {
  const auto stays = [&tell](const std::string& why) {
    tell(Tr("{}; what was read before counts on", why));
  };
  // Whatever is thrown, no memory say, the door goes on.
  const auto attempt = [&stays](const auto& load) {
    try {
      try {
        load();
      } catch (const Failure& failure) {
        stays(failure.what());
      } catch (const std::exception& error) {
        stays(console::ErrorText(error));
      }
    } catch (const std::exception&) {
      // Nor is there any memory to tell it with.
    }
  };
  attempt([this] {
    if (tokens_) tokens_->Reload();
  });
  attempt([this, &tell] {
    if (!tls_) return;
    LoadedTls loaded = LoadTls(options_.certificate, options_.key, std::time(nullptr));
    if (!loaded.notice.empty()) tell(loaded.notice);
    tls_ = std::move(loaded.context);
  });
}

std::string Access::Url(uint16_t port) const {
  return Rules().scheme + "://" + InBrackets(address_) + ":" + std::to_string(port);
}

std::vector<std::string> Access::Hosts(uint16_t port) const {
  std::vector<std::string> names = {"127.0.0.1", "localhost"};
  if (!is_loopback() || address_ == "::1") names.push_back(InBrackets(address_));
  for (const std::string& host : options_.hosts) names.push_back(SmallLetters(host));
  std::vector<std::string> hosts;
  for (const std::string& name : names) {
    hosts.push_back(name + ":" + std::to_string(port));
    // The port of the protocol is left out by those who use it.
    if (port == (tls_ ? 443 : 80)) hosts.push_back(name);
  }
  return hosts;
}

AccessRules Access::Rules() const {
  AccessRules rules{.scheme = tls_ ? "https" : "http",
                    .origins = options_.origins,
                    .needs_token = options_.require_token || !is_loopback()};
  if (tokens_) rules.find = [this](std::string_view token) { return tokens_->Find(token); };
  return rules;
}

}  // namespace lorimat::door
