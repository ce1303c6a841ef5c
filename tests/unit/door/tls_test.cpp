// Certificates and keys as the door takes them, and connections by TLS that are slow.
#include "door/access/tls.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "console/message/failure.h"
#include "console/terminal/streams.h"
#include "console/token/token_table.h"
#include "door/access/access.h"
#include "door/http/api.h"
#include "door/http/server.h"
#include "door_shop.h"

namespace lorimat::door {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Property;
using testing::Throws;

constexpr int64_t kDay = 86400;           // seconds
constexpr int64_t kMade = 1'700'000'000;  // seconds since 1970
constexpr int64_t kEnd = kMade + 90 * kDay;

class TlsTest : public testing::Test {
 protected:
  TlsTest() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directory(folder_);
    Certify("door");
  }
  ~TlsTest() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return folder_ + "/" + name; }
  // NAME.pem and NAME.key, which count for 90 days.
  void Certify(const std::string& name, int64_t made = kMade) const {
    EVP_PKEY* key = EVP_EC_gen("P-256");
    X509* certificate = X509_new();
    X509_set_version(certificate, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    ASN1_TIME_set(X509_getm_notBefore(certificate), made);
    ASN1_TIME_set(X509_getm_notAfter(certificate), made + 90 * kDay);
    X509_set_pubkey(certificate, key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("door"), -1, -1, 0);
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
    X509_sign(certificate, key, EVP_sha256());
    FILE* file = std::fopen(Path(name + ".pem").c_str(), "w");
    PEM_write_X509(file, certificate);
    std::fclose(file);
    file = std::fopen(Path(name + ".key").c_str(), "w");
    PEM_write_PrivateKey(file, key, nullptr, nullptr, 0, nullptr, nullptr);
    std::fclose(file);
    chmod(Path(name + ".key").c_str(), 0600);
    X509_free(certificate);
    EVP_PKEY_free(key);
  }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name)) << text;
    chmod(Path(name).c_str(), 0600);
  }
  LoadedTls Load(const std::string& certificate, const std::string& key,
                 int64_t now = kMade + kDay) const {
    return LoadTls(Path(certificate), Path(key), now);
  }
  void ExpectRefused(const std::string& certificate, const std::string& key,
                     const std::string& cause, int64_t now = kMade + kDay) const {
    EXPECT_THAT([&] { Load(certificate, key, now); },
                Throws<console::Failure>(Property(&console::Failure::what, HasSubstr(cause))));
  }

  const std::string folder_ = testing::TempDir() + "lorimat-tls-" +
                              testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(TlsTest, ACertificateIsTakenWhileItCounts) {
  EXPECT_NE(Load("door.pem", "door.key").context, nullptr);
  EXPECT_EQ(CertificateEnd(Load("door.pem", "door.key").context), kEnd);
  EXPECT_EQ(CertificateEnd(nullptr), 0);
  EXPECT_EQ(Load("door.pem", "door.key", kEnd - 31 * kDay).notice, "");
  EXPECT_THAT(Load("door.pem", "door.key", kEnd - 29 * kDay).notice,
              HasSubstr("door.pem: the certificate runs out on 2024-02-12 22:13 UTC"));
  EXPECT_THAT(Load("door.pem", "door.key", kMade - 60).notice,
              HasSubstr("counts from 2023-11-14 22:13 UTC on"));
  ExpectRefused("door.pem", "door.key", "has run out on 2024-02-12 22:13 UTC", kEnd + 1);
}

TEST_F(TlsTest, WhatDoesNotFitIsRefusedByName) {
  Certify("other");
  ExpectRefused("door.pem", "other.key", "other.key: the key is not that of the certificate");
  ExpectRefused("door.pem", "missing.key", "missing.key: cannot be opened");
  ExpectRefused("missing.pem", "door.key", "missing.pem: cannot be opened");
  ExpectRefused("door.key", "door.key", "door.key: is no certificate");
  ExpectRefused(".", "door.key", "cannot be read");
  Write("empty", "");
  ExpectRefused("empty", "door.key", "empty: is no certificate");
  ExpectRefused("door.pem", "empty", "empty: is no key");
  std::ifstream whole(Path("door.pem"));
  const std::string text{std::istreambuf_iterator<char>(whole), {}};
  // A chain whose second part is cut.
  Write("half.pem", text + text.substr(0, text.size() / 2));
  ExpectRefused("half.pem", "door.key", "half.pem: is no certificate");
  Write("chain.pem", "# ours\n" + text + text);
  EXPECT_NE(Load("chain.pem", "door.key").context, nullptr);
  chmod(Path("door.key").c_str(), 0644);
  ExpectRefused("door.pem", "door.key", "may be read or written by everybody");
}

// Nobody is asked for a password.
TEST_F(TlsTest, AKeyWithAPasswordIsRefused) {
  EVP_PKEY* key = EVP_EC_gen("P-256");
  FILE* file = std::fopen(Path("locked.key").c_str(), "w");
  PEM_write_PKCS8PrivateKey(file, key, EVP_aes_128_cbc(), "secret", 6, nullptr, nullptr);
  std::fclose(file);
  EVP_PKEY_free(key);
  chmod(Path("locked.key").c_str(), 0600);
  ExpectRefused("door.pem", "locked.key", "locked.key: is no key in PEM without a password");
}

// A client and a server in this process, with what they send each other.
class Pair {
 public:
  Pair(SSL_CTX* server, SSL_CTX* client) : server_(SSL_new(server)), client_(SSL_new(client)) {
    BIO* ends[2];
    BIO_new_bio_pair(&ends[0], 0, &ends[1], 0);
    SSL_set_bio(server_, ends[0], ends[0]);
    SSL_set_bio(client_, ends[1], ends[1]);
    SSL_set_accept_state(server_);
    SSL_set_connect_state(client_);
  }
  ~Pair() {
    SSL_free(server_);
    SSL_free(client_);
  }
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;

  // Shakes hands, and takes what the server sends behind that, which may be tickets.
  bool Connect() {
    for (int i = 0; i < 20; ++i) {
      SSL_do_handshake(client_);
      SSL_do_handshake(server_);
    }
    char byte = 'x';
    return SSL_write(server_, &byte, 1) == 1 && SSL_read(client_, &byte, 1) == 1;
  }
  SSL* client() { return client_; }

 private:
  SSL* server_;
  SSL* client_;
};

// A session that could be taken up again would be opened by what the door remembers.
TEST_F(TlsTest, NoSessionIsTakenUpAgain) {
  const TlsContext server = Load("door.pem", "door.key").context;
  for (const int version : {TLS1_2_VERSION, TLS1_3_VERSION}) {
    const TlsContext client(SSL_CTX_new(TLS_client_method()), SSL_CTX_free);
    SSL_CTX_set_min_proto_version(client.get(), version);
    SSL_CTX_set_max_proto_version(client.get(), version);
    Pair first(server.get(), client.get());
    ASSERT_TRUE(first.Connect()) << version;
    SSL_SESSION* session = SSL_get1_session(first.client());
    ASSERT_NE(session, nullptr);
    EXPECT_FALSE(SSL_SESSION_has_ticket(session)) << version;
    EXPECT_FALSE(SSL_SESSION_is_resumable(session)) << version;
    Pair second(server.get(), client.get());
    SSL_set_session(second.client(), session);
    ASSERT_TRUE(second.Connect()) << version;
    EXPECT_FALSE(SSL_session_reused(second.client())) << version;
    SSL_SESSION_free(session);
  }
}

// Whatever reading again throws, the door goes on with what it had.
TEST_F(TlsTest, NoMemoryToReadAgainEndsNothing) {
  // Its last 30 days have begun, which is told each time.
  Certify("late", std::time(nullptr) - 80 * kDay);
  const console::NewToken made = console::MakeToken(console::TokenRole::kDesk);
  Write("tokens", console::TokenLine("c1", made.row));
  AccessOptions options;
  options.tokens = Path("tokens");
  options.certificate = Path("late.pem");
  options.key = Path("late.key");
  Access access(options, [](const std::string&) {});
  const TlsContext before = access.tls();
  std::vector<std::string> told;
  access.Reload([&told](const std::string& text) {
    told.push_back(text);
    if (told.size() == 1) throw std::bad_alloc();
  });
  EXPECT_THAT(told, testing::ElementsAre(HasSubstr("runs out on"),
                                         "there is not enough memory; what was read before counts "
                                         "on"));
  EXPECT_EQ(access.tls(), before);
  told.clear();
  Write("tokens", "c1");
  access.Reload([&told](const std::string& text) { told.push_back(text); });
  EXPECT_THAT(told.front(), testing::StartsWith(Path("tokens") + ", line 1: the role of c1"));
  // Nor is there any to tell it with.
  EXPECT_NO_THROW(access.Reload([](const std::string&) { throw std::bad_alloc(); }));
  EXPECT_TRUE(access.Rules().find("c1." + made.secret));
}

TEST_F(TlsTest, WhoIsSlowWithTheHandshakeIsCut) {
  HttpServer server("127.0.0.1", 0, {.head_time = std::chrono::milliseconds(1)});
  server.SetTls(Load("door.pem", "door.key").context);
  JobLog log{""};
  Api api({.log = log,
           .judge = DoorShop::judge(),
           .hosts = {},
           .operators = {},
           .trouble = [] { return DeviceTrouble::kNone; },
           .log_failed = [] { return false; },
           .wake = [] {}});
  server.Start(api);
  // Nothing, a byte of a handshake, and plain HTTP.
  for (const std::string sent : {"", "\x16", "GET / HTTP/1.1\r\n\r\n"}) {
    const console::Descriptor client(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server.port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(connect(client.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    send(client.get(), sent.data(), sent.size(), MSG_NOSIGNAL);
    std::string all;
    char bytes[4096];
    for (ssize_t size; (size = recv(client.get(), bytes, sizeof bytes, 0)) > 0;) {
      all.append(bytes, static_cast<size_t>(size));
    }
    // An alert at most.
    EXPECT_EQ(all.find("HTTP"), all.npos);
    EXPECT_LT(all.size(), 64U);
  }
  server.Stop();
}

// A client by TLS that looks at no certificate.
class TlsClient {
 public:
  explicit TlsClient(uint16_t port)
      : context_(SSL_CTX_new(TLS_client_method()), SSL_CTX_free),
        socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
        tls_(SSL_new(context_.get()), SSL_free) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    SSL_set_fd(tls_.get(), socket_.get());
    EXPECT_EQ(SSL_connect(tls_.get()), 1);
  }
  void Send(const std::string& bytes) {
    EXPECT_EQ(SSL_write(tls_.get(), bytes.data(), static_cast<int>(bytes.size())),
              static_cast<int>(bytes.size()));
  }
  // New keys, of which there is nothing to answer.
  void ChangeKeys() {
    EXPECT_EQ(SSL_key_update(tls_.get(), SSL_KEY_UPDATE_NOT_REQUESTED), 1);
    EXPECT_EQ(SSL_do_handshake(tls_.get()), 1);
  }
  // Whether the text comes ahead of the end.
  bool ReadUntil(const std::string& text) {
    std::string all;
    char byte = 0;
    while (all.find(text) == all.npos) {
      if (SSL_read(tls_.get(), &byte, 1) != 1) return false;
      all += byte;
    }
    return true;
  }

 private:
  std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context_;
  console::Descriptor socket_;
  std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
};

// What TLS says of itself is no end, neither ahead of the events nor between them.
TEST_F(TlsTest, EventsGoOnUntilTheirReaderGoes) {
  constexpr int kStreams = 200;
  HttpServer server("127.0.0.1", 0, {.heartbeat = std::chrono::hours(1000)});
  server.SetTls(Load("door.pem", "door.key").context);
  JobLog log{""};
  log.Bind("99LRM0000001VR");
  log.SetEventObserver([&server](const Job*) { server.NotifyEvents(); });
  const auto accept = [&log](const std::string& key) {
    NewJob job;
    job.key = key;
    job.expires = log.Now() + 1'000'000;
    bool was_there = false;
    log.Accept(job, &was_there);
  };
  accept("first");
  const std::string host = "127.0.0.1:" + std::to_string(server.port());
  Api api({.log = log,
           .judge = DoorShop::judge(),
           .hosts = {host},
           .operators = {},
           .trouble = [] { return DeviceTrouble::kNone; },
           .log_failed = [] { return false; },
           .wake = [] {}});
  server.Start(api);
  int ended = 0;
  for (int i = 1; i <= kStreams; ++i) {
    TlsClient client(server.port());
    client.Send("GET /v1/events?after=" + std::to_string(i - 1) + " HTTP/1.1\r\nHost: " + host +
                "\r\n\r\n");
    bool goes_on = client.ReadUntil("id: " + std::to_string(i) + "\n");
    if (goes_on) client.ChangeKeys();
    accept(std::to_string(i));
    goes_on = goes_on && client.ReadUntil("id: " + std::to_string(i + 1) + "\n");
    if (!goes_on) ++ended;
  }
  EXPECT_EQ(ended, 0);
  // Those that have gone are let go.
  while (server.figures().streams != 0) std::this_thread::yield();
  server.Stop();
}

}  // namespace
}  // namespace lorimat::door
