// A socket whose inside the tests see, and what the sockets log.
#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>
#include <string>

#include "pal/peripherals/network/netsocket.h"
#include "pal/peripherals/network/sockets.h"
#include "unit/pal/peripherals/network/loopback.h"

// What the system knows of a descriptor.
inline bool IsOpen(int descriptor) { return fcntl(descriptor, F_GETFD) != -1; }
inline bool IsNonBlocking(int descriptor) { return (fcntl(descriptor, F_GETFL) & O_NONBLOCK) != 0; }

inline int Option(int descriptor, int level, int name) {
  int value = -1;
  socklen_t size = sizeof(value);
  EXPECT_EQ(getsockopt(descriptor, level, name, &value, &size), 0);
  return value;
}

// Lets no descriptor be opened but so many. A sanitizer that looks at virtual tables asks through a
// pipe whether a table can be read, the first time it meets one, and takes a good object for a bad
// one without: NetSocketTest lets it meet those of the sockets before.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(int more) {
    getrlimit(RLIMIT_NOFILE, &old_);
    const int next = dup(0);  // the lowest number that is free
    ::close(next);
    rlimit limit = old_;
    limit.rlim_cur = static_cast<rlim_t>(next + more);
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &old_); }

 private:
  rlimit old_;
};

class OpenSocket : public NetSocket {
 public:
  explicit OpenSocket(Types type = NST_STREAM_TCP) : NetSocket(type) {}
  using NetSocket::ClearPipe;
  using NetSocket::GetAddressInfo;
  using NetSocket::InitPipe;
  using NetSocket::WaitReadable;

  using NetSocket::pipefd_;
  using NetSocket::socket_;
  using NetSocket::socket_closed_by_peer_;
  using NetSocket::timeout_;
  using NetSocket::type_;
};

class NetSocketTest : public testing::Test {
 protected:
  // Calls what the tests without descriptors call, while there are some.
  static void SetUpTestSuite() {
    OpenSocket socket;
    OpenSocket client;
    EXPECT_EQ(socket.Listen(1), -1);
    EXPECT_EQ(socket.Accept(&client), -1);
    EXPECT_EQ(Connect(client, 0), -1);
    EXPECT_EQ(socket.Bind(loopback::Address(), 0), 0);
  }
  ~NetSocketTest() override { sockets::SetResolveFunction(nullptr); }

  // What the log says, on standard output, meanwhile.
  static std::string Logged(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
  }
  // How a line of that message ends.
  static std::string EndOfLine(const std::string& message) { return " - " + message + "\n"; }

  static int Connect(NetSocket& socket, uint16_t port, int timeout = 20000) {
    char host[] = "127.0.0.1";
    return socket.Connect(host, port, timeout);
  }
  // Connects to the server; the other end is the result.
  loopback::Descriptor Connected(NetSocket& socket) {
    EXPECT_EQ(Connect(socket, server_.port()), 0);
    return server_.accept();
  }
  static int Send(NetSocket& socket, std::string text) {
    return socket.Send(reinterpret_cast<unsigned char*>(text.data()),
                       static_cast<int>(text.size()));
  }
  static void Put(const loopback::Descriptor& peer, const std::string& text) {
    ASSERT_EQ(::send(peer.get(), text.data(), text.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(text.size()));
  }
  // A receiving operation's text, "closed" for 0 and "failed" below.
  static std::string Recv(NetSocket& socket, int length = 100) {
    std::string buffer(static_cast<size_t>(length), '#');
    return Text(buffer, socket.Recv(reinterpret_cast<unsigned char*>(buffer.data()), length));
  }
  static std::string Peek(NetSocket& socket, int length = 100) {
    std::string buffer(static_cast<size_t>(length), '#');
    return Text(buffer, socket.Peek(reinterpret_cast<unsigned char*>(buffer.data()), length));
  }

  loopback::Server server_{SOCK_STREAM};

 private:
  static std::string Text(const std::string& buffer, int count) {
    if (count == -1) return "failed";
    if (count == 0) return "closed";
    EXPECT_GT(count, 0);
    EXPECT_LE(count, static_cast<int>(buffer.size()));
    return buffer.substr(0, static_cast<size_t>(count));
  }
};
