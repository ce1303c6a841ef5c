// Plain sockets on 127.0.0.1 for the sockets under test to talk to. Whatever waits here gives
// up, with a failure, rather than hang.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>

namespace loopback {

inline uint32_t Address() { return htonl(INADDR_LOOPBACK); }

inline sockaddr_in Name(uint16_t port) {
  sockaddr_in result = {};
  result.sin_family = AF_INET;
  result.sin_port = htons(port);
  result.sin_addr.s_addr = Address();
  return result;
}

inline uint16_t PortOf(int descriptor) {
  sockaddr_in own = {};
  socklen_t size = sizeof(own);
  EXPECT_EQ(getsockname(descriptor, reinterpret_cast<sockaddr*>(&own), &size), 0);
  return ntohs(own.sin_port);
}

inline bool Readable(int descriptor) {
  pollfd entry = {descriptor, POLLIN, 0};
  return poll(&entry, 1, 20000) == 1;
}

// A descriptor of the test's own.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
  ~Descriptor() { Close(); }
  int get() const { return number_; }
  void Close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }
  // Closes a connection so that the peer sees a reset.
  void Reset() {
    const linger at_once = {1, 0};
    EXPECT_EQ(setsockopt(number_, SOL_SOCKET, SO_LINGER, &at_once, sizeof(at_once)), 0);
    Close();
  }

 private:
  int number_;
};

// A server for streams or datagrams.
class Server {
 public:
  explicit Server(int type, int backlog = 4)
      : socket_(socket(AF_INET, type | SOCK_CLOEXEC, 0)), port_(0) {
    const sockaddr_in own = Name(0);
    EXPECT_EQ(bind(get(), reinterpret_cast<const sockaddr*>(&own), sizeof(own)), 0);
    if (type == SOCK_STREAM) {
      EXPECT_EQ(listen(get(), backlog), 0);
    }
    port_ = PortOf(get());
  }
  int get() const { return socket_.get(); }
  uint16_t port() const { return port_; }
  void Close() { socket_.Close(); }

  Descriptor accept() {
    EXPECT_TRUE(Readable(get()));
    return Descriptor(::accept(get(), nullptr, nullptr));
  }
  // The next datagram, "none" when none has come: on this path a datagram is there when its
  // sending returns.
  std::string datagram() {
    char text[65536];
    const ssize_t length = recv(get(), text, sizeof(text), MSG_DONTWAIT);
    return length < 0 ? "none" : std::string(text, static_cast<size_t>(length));
  }

 private:
  Descriptor socket_;
  uint16_t port_;
};

// A port at which nobody listens.
inline uint16_t RefusedPort() { return Server(SOCK_STREAM).port(); }

}  // namespace loopback
