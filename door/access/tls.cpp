#include "door/access/tls.h"

#include <fcntl.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <vector>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/streams.h"

namespace lorimat::door {
namespace {

using console::Failure;
using console::Shown;
using console::SystemMessage;
using console::Tr;

constexpr size_t kMostBytes = 1 << 20;

template <typename Type, void (*free)(Type*)>
struct Freed {
  void operator()(Type* value) const { free(value); }
};
void FreeBio(BIO* bio) { BIO_free(bio); }
using Bio = std::unique_ptr<BIO, Freed<BIO, FreeBio>>;
using Certificate = std::unique_ptr<X509, Freed<X509, X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY, EVP_PKEY_free>>;

// Nobody sits at a door who could be asked.
int NoPassword(char*, int, int, void*) { return 0; }

std::string ReadPem(const std::string& file, bool is_secret) {
  const console::Descriptor opened(
      open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!opened.is_open()) {
    throw Failure(Tr("{}: cannot be opened: {}", Shown(file), SystemMessage(errno)));
  }
  struct stat status;
  if (fstat(opened.get(), &status) == 0 && is_secret && (status.st_mode & S_IRWXO) != 0) {
    throw Failure(Tr("{}: the key may be read or written by everybody; chmod 600 keeps them out",
                     Shown(file)));
  }
  std::string text;
  char part[16 * 1024];
  for (;;) {
    const ssize_t size = read(opened.get(), part, sizeof part);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) {
      throw Failure(Tr("{}: cannot be read: {}", Shown(file), SystemMessage(errno)));
    }
    text.append(part, static_cast<size_t>(size));
    if (size == 0 || text.size() > kMostBytes) return text;
  }
}

Bio Reader(const std::string& text) {
  return Bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
}

std::vector<Certificate> ReadCertificates(const std::string& file) {
  const std::string text = ReadPem(file, false);
  const Bio bio = Reader(text);
  std::vector<Certificate> all;
  while (X509* one = PEM_read_bio_X509(bio.get(), nullptr, NoPassword, nullptr)) {
    all.emplace_back(one);
  }
  // Behind the last one there is nothing more that begins; anything else is half of one.
  const unsigned long error = ERR_peek_last_error();
  const bool ended =
      ERR_GET_LIB(error) == ERR_LIB_PEM && ERR_GET_REASON(error) == PEM_R_NO_START_LINE;
  ERR_clear_error();
  if (all.empty() || !ended) {
    throw Failure(Tr("{}: is no certificate in PEM", Shown(file)));
  }
  return all;
}

Key ReadKey(const std::string& file) {
  std::string text = ReadPem(file, true);
  Key key;
  {
    const Bio bio = Reader(text);
    key = Key(PEM_read_bio_PrivateKey(bio.get(), nullptr, NoPassword, nullptr));
  }
  OPENSSL_cleanse(text.data(), text.size());
  ERR_clear_error();
  if (!key) throw Failure(Tr("{}: is no key in PEM without a password", Shown(file)));
  return key;
}

std::string DateOf(const ASN1_TIME* time) {
  std::tm date{};
  if (ASN1_TIME_to_tm(time, &date) != 1) return {};
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M UTC", &date);
  return text;
}

// Whether the time is behind `now`, in seconds since 1970.
bool IsBehind(const ASN1_TIME* time, int64_t now) {
  auto compared = static_cast<time_t>(now);
  return X509_cmp_time(time, &compared) > 0;
}

std::string NoticeOf(const X509& certificate, const std::string& file, int64_t now) {
  const ASN1_TIME* end = X509_get0_notAfter(&certificate);
  if (!IsBehind(end, now)) {
    throw Failure(Tr("{}: the certificate has run out on {}", Shown(file), DateOf(end)));
  }
  const ASN1_TIME* begin = X509_get0_notBefore(&certificate);
  if (IsBehind(begin, now)) {
    return Tr("{}: the certificate counts from {} on: is the clock right?", Shown(file),
              DateOf(begin));
  }
  if (!IsBehind(end, now + kCertificateNotice)) {
    return Tr("{}: the certificate runs out on {}", Shown(file), DateOf(end));
  }
  return {};
}

}  // namespace

int64_t CertificateEnd(const TlsContext& tls) {
  const X509* certificate = tls ? SSL_CTX_get0_certificate(tls.get()) : nullptr;
  std::tm date{};
  if (certificate == nullptr || ASN1_TIME_to_tm(X509_get0_notAfter(certificate), &date) != 1) {
    return 0;
  }
  return timegm(&date);
}

LoadedTls LoadTls(const std::string& certificate, const std::string& key, int64_t now) {
  LoadedTls loaded;
  ERR_clear_error();
  std::vector<Certificate> chain = ReadCertificates(certificate);
  loaded.notice = NoticeOf(*chain.front(), certificate, now);
  const Key own = ReadKey(key);
  loaded.context = TlsContext(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  SSL_CTX* context = loaded.context.get();
  if (context == nullptr) throw std::bad_alloc();
  SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
  SSL_CTX_set_options(context, SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION |
                                   SSL_OP_CIPHER_SERVER_PREFERENCE | SSL_OP_NO_TICKET);
  // A session that is taken up again would be opened by what the door kept of it, or by the key of
  // its tickets.
  SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
  if (SSL_CTX_set_num_tickets(context, 0) != 1) throw std::bad_alloc();
  SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);
  // Of 1.3 the library's own, which are all of the kind.
  bool good = SSL_CTX_set_cipher_list(context, "ECDHE+AESGCM:ECDHE+CHACHA20") == 1;
  good = good && SSL_CTX_use_certificate(context, chain.front().get()) == 1;
  for (size_t i = 1; good && i < chain.size(); ++i) {
    good = SSL_CTX_add1_chain_cert(context, chain[i].get()) == 1;
  }
  if (!good) {
    ERR_clear_error();
    throw Failure(Tr("{}: the certificate is too weak or of a kind that TLS does not know",
                     Shown(certificate)));
  }
  if (SSL_CTX_use_PrivateKey(context, own.get()) != 1 || SSL_CTX_check_private_key(context) != 1) {
    ERR_clear_error();
    throw Failure(
        Tr("{}: the key is not that of the certificate {}", Shown(key), Shown(certificate)));
  }
  return loaded;
}

}  // namespace lorimat::door
