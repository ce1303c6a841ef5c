// A server with clients, and without a worker: what comes of its jobs a test says.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <string>
#include <thread>
#include <utility>

#include "console/terminal/streams.h"
#include "door/http/api.h"
#include "door/http/server.h"
#include "door_shop.h"

namespace lorimat::door {

// A door on a log in memory, and connections to it.
class Network {
 public:
  explicit Network(const ServerLimits& limits, AccessRules access = {})
      : server_("127.0.0.1", 0, limits), access_(std::move(access)) {
    log_.Bind("99LRM0000001VR");
    log_.SetEventObserver([this](const Job*) { server_.NotifyEvents(); });
    server_.Start(api_);
  }
  // Ahead of what answers for it.
  ~Network() { server_.Stop(); }
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  console::Descriptor Connect() const {
    console::Descriptor client(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server_.port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(client.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return client;
  }
  std::string Get(const std::string& more = "\r\n") const {
    return "GET /v1/device HTTP/1.1\r\nHost: " + host() + "\r\n" + more;
  }
  std::string Follow(const std::string& more = "\r\n") const {
    return "GET /v1/events?after=0 HTTP/1.1\r\nHost: " + host() + "\r\n" + more;
  }
  void Accept(const std::string& key) {
    NewJob job;
    job.key = key;
    job.expires = log_.Now() + 1'000'000;
    bool was_there = false;
    log_.Accept(job, &was_there);
  }
  // Of this job: it was taken back.
  void Cancel(int64_t job) {
    log_.Move(job, JobState::kCancelled, Why::kCancelled);
    server_.Notify(job);
  }
  // A sale that waits for long; nobody works on it.
  std::string Sell(const std::string& key) const {
    const std::string body = R"({"lines":["VEND REP=1, PRE=1.20","CHIU"]})";
    return "POST /v1/jobs?wait=300 HTTP/1.1\r\nHost: " + host() +
           "\r\nContent-Type: application/json\r\nIdempotency-Key: " + key +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }
  // The door sees in its own time what a client does.
  void AwaitWaiting(size_t count) {
    while (server_.figures().waiting != count) std::this_thread::yield();
  }
  void Stop() { server_.Stop(); }
  ServerFigures figures() { return server_.figures(); }
  std::string host() const { return "127.0.0.1:" + std::to_string(server_.port()); }

 private:
  HttpServer server_;
  AccessRules access_;
  JobLog log_{""};
  Api api_{{.log = log_,
            .judge = DoorShop::judge(),
            .hosts = {host()},
            .operators = {},
            .trouble = [] { return DeviceTrouble::kNone; },
            .log_failed = [] { return false; },
            .wake = [] {},
            .access = access_}};
};

inline void Send(const console::Descriptor& client, const std::string& bytes) {
  EXPECT_EQ(send(client.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
            static_cast<ssize_t>(bytes.size()));
}

// Until the other side has closed.
inline std::string ReadAll(const console::Descriptor& client) {
  std::string all;
  char bytes[4096];
  for (ssize_t size; (size = recv(client.get(), bytes, sizeof bytes, 0)) > 0;) {
    all.append(bytes, static_cast<size_t>(size));
  }
  return all;
}

// Until the text has come.
inline std::string ReadUntil(const console::Descriptor& client, const std::string& text) {
  std::string all;
  char byte = 0;
  while (all.find(text) == all.npos && recv(client.get(), &byte, 1, 0) == 1) all += byte;
  return all;
}

inline size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// On a connection of its own, which may be closed before it is sent.
inline std::string Ask(const Network& network) {
  const console::Descriptor client = network.Connect();
  const std::string request = network.Get("Connection: close\r\n\r\n");
  send(client.get(), request.data(), request.size(), MSG_NOSIGNAL);
  return ReadAll(client);
}

}  // namespace lorimat::door
