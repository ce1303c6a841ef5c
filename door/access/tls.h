// What the door shows of itself where it speaks TLS: a certificate, its chain and its key.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct ssl_ctx_st;

namespace lorimat::door {

// TLS 1.2 and 1.3, with ciphers of keys that each connection forgets, neither renegotiation nor
// sessions that are taken up again. What has it may go on with it when there is a newer one.
using TlsContext = std::shared_ptr<ssl_ctx_st>;

// How long ahead a certificate's end is told.
inline constexpr int64_t kCertificateNotice = int64_t{30} * 86400;  // seconds

// When the certificate runs out, in seconds since 1970; 0 where there is none.
int64_t CertificateEnd(const TlsContext& tls);

struct LoadedTls {
  TlsContext context;
  // What is to be told of a certificate that is good: that it runs out within 30 days, or that it
  // does not count yet. Empty for nothing.
  std::string notice;
};

// The certificate with its chain, and its key without a password, both as PEM. The key's file is
// nobody's to read or write but its owner's and group's. Throws console::Failure with the file and
// the cause: also for a certificate that has run out at `now` (seconds since 1970, UTC).
LoadedTls LoadTls(const std::string& certificate, const std::string& key, int64_t now);

}  // namespace lorimat::door
