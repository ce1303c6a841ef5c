// Datagrams, and sockets that wait for clients.
#include <cstring>
#include <string>

#include "unit/pal/peripherals/network/netsocket_fixture.h"

namespace {

using loopback::Descriptor;

// --- Datagrams.

TEST_F(NetSocketTest, SendToMakesADatagramSocketAndLogsNothing) {
  loopback::Server receiver(SOCK_DGRAM);
  OpenSocket socket(NetSocket::NST_STREAM_TCP);
  const uint8_t data[] = {'a', 0, 0xFF};
  const std::string lines = Logged([&] {
    EXPECT_EQ(socket.SendTo(data, 3, loopback::Address(), receiver.port()), 3);
    EXPECT_EQ(socket.SendTo(data, 0, loopback::Address(), receiver.port()), 0);
  });
  EXPECT_EQ(lines, "");
  EXPECT_EQ(receiver.datagram(), std::string("a\0\xFF", 3));
  EXPECT_EQ(receiver.datagram(), "");
  EXPECT_EQ(Option(socket.handle(), SOL_SOCKET, SO_TYPE), SOCK_DGRAM);
}

TEST_F(NetSocketTest, ADatagramThatIsTooLongFails) {
  loopback::Server receiver(SOCK_DGRAM);
  OpenSocket socket(NetSocket::NST_DGRAM_UDP);
  const std::string data(70000, 'x');
  EXPECT_EQ(socket.SendTo(reinterpret_cast<const uint8_t*>(data.data()), data.size(),
                          loopback::Address(), receiver.port()),
            -1);
  EXPECT_EQ(receiver.datagram(), "none");
}

TEST_F(NetSocketTest, DatagramsGoOnBehindAFailedConnectAndAClose) {
  loopback::Server receiver(SOCK_DGRAM);
  OpenSocket socket;
  const uint8_t data[] = {'a'};
  EXPECT_EQ(Connect(socket, loopback::RefusedPort()), -1);
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), receiver.port()), 1);
  EXPECT_EQ(socket.Close(), 0);
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), receiver.port()), 1);
}

TEST_F(NetSocketTest, ADatagramSocketMadeBehindACloseIsNotWokenByIt) {
  loopback::Server receiver(SOCK_DGRAM);
  OpenSocket socket;
  { const Descriptor peer = Connected(socket); }
  socket.Close();
  const uint8_t data[] = {'a'};
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), receiver.port()), 1);
  const sockaddr_in own = loopback::Name(loopback::PortOf(socket.handle()));
  EXPECT_EQ(
      ::sendto(receiver.get(), "ha", 2, 0, reinterpret_cast<const sockaddr*>(&own), sizeof(own)),
      2);
  EXPECT_EQ(Recv(socket), "ha");
}

TEST_F(NetSocketTest, WithoutDescriptorsThereAreNoDatagrams) {
  OpenSocket socket;
  const uint8_t data[] = {'a'};
  char buffer[1];
  const DescriptorLimit none(0);
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), 9), -1);
  EXPECT_EQ(socket.RecvFrom(buffer, 1, 0, 0), -1);
  EXPECT_EQ(socket.Bind(loopback::Address(), 0), -1);
}

TEST_F(NetSocketTest, NumberZeroIsNoSocketOfDatagrams) {
  const Descriptor input(dup(STDIN_FILENO));
  ASSERT_NE(input.get(), -1);
  ::close(STDIN_FILENO);  // the socket becomes number 0
  OpenSocket socket;
  const uint8_t data[] = {'a'};
  char buffer[1] = {'#'};
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), 9), -1);
  EXPECT_EQ(socket.handle(), 0);
  loopback::Server sender(SOCK_DGRAM);
  const sockaddr_in any = loopback::Name(0);
  EXPECT_EQ(::bind(0, reinterpret_cast<const sockaddr*>(&any), sizeof(any)), 0);
  const sockaddr_in own = loopback::Name(loopback::PortOf(0));
  EXPECT_EQ(::sendto(sender.get(), "a", 1, 0, reinterpret_cast<const sockaddr*>(&own), sizeof(own)),
            1);
  EXPECT_EQ(socket.RecvFrom(buffer, 1, 0, 0), -1);
  EXPECT_EQ(buffer[0], '#');
  ::dup2(input.get(), STDIN_FILENO);
}

TEST_F(NetSocketTest, RecvFromGivesWhatCameOrFailsAfterItsTimeOut) {
  loopback::Server receiver(SOCK_DGRAM);
  OpenSocket socket(NetSocket::NST_DGRAM_UDP);
  const uint8_t data[] = {'a'};
  ASSERT_EQ(socket.SendTo(data, 1, loopback::Address(), receiver.port()), 1);
  char buffer[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(socket.RecvFrom(buffer, 3, 0, 0), -1);
  EXPECT_FALSE(IsNonBlocking(socket.handle()));
  timeval time = {};
  socklen_t size = sizeof(time);
  EXPECT_EQ(getsockopt(socket.handle(), SOL_SOCKET, SO_RCVTIMEO, &time, &size), 0);
  EXPECT_EQ(time.tv_sec, 0);
  EXPECT_GE(time.tv_usec, 5000);
  EXPECT_LT(time.tv_usec, 10000);  // the system counts in its own ticks, 4 ms at most

  const sockaddr_in own = loopback::Name(loopback::PortOf(socket.handle()));
  for (const char* text : {"ab", "defgh"}) {
    ASSERT_GT(::sendto(receiver.get(), text, strlen(text), 0,
                       reinterpret_cast<const sockaddr*>(&own), sizeof(own)),
              0);
  }
  // The sender's address and port are not looked at.
  EXPECT_EQ(socket.RecvFrom(buffer, 3, 1, 2), 2);
  EXPECT_EQ(std::string(buffer, 4), "ab##");
  EXPECT_EQ(socket.RecvFrom(buffer, 3, 0, 0), 3);  // what does not fit is lost
  EXPECT_EQ(std::string(buffer, 4), "def#");
  EXPECT_EQ(socket.RecvFrom(buffer, 3, 0, 0), -1);
}

TEST_F(NetSocketTest, RecvFromMakesADatagramSocket) {
  OpenSocket socket;
  char buffer[1];
  EXPECT_EQ(socket.RecvFrom(buffer, 1, 0, 0), -1);
  EXPECT_EQ(Option(socket.handle(), SOL_SOCKET, SO_TYPE), SOCK_DGRAM);
}

// --- Servers.

TEST_F(NetSocketTest, BindListenAcceptMakeAServer) {
  OpenSocket server;
  ASSERT_EQ(server.Bind(loopback::Address(), 0), 0);
  EXPECT_NE(Option(server.handle(), SOL_SOCKET, SO_REUSEADDR), 0);
  ASSERT_EQ(server.Listen(1), 0);
  EXPECT_TRUE(IsOpen(server.pipefd_[0]));
  OpenSocket caller;
  ASSERT_EQ(Connect(caller, loopback::PortOf(server.handle())), 0);

  OpenSocket client(NetSocket::NST_DGRAM_UDP);
  client.SetTimeout(1);
  client.socket_closed_by_peer_ = true;
  const int handle = server.Accept(&client);
  EXPECT_GT(handle, 0);
  EXPECT_EQ(client.handle(), handle);
  EXPECT_EQ(client.timeout_, 45000);
  EXPECT_FALSE(client.socket_closed_by_peer_);
  EXPECT_TRUE(IsNonBlocking(handle));
  EXPECT_TRUE(IsOpen(client.pipefd_[0]));
  EXPECT_EQ(fcntl(handle, F_GETFD), FD_CLOEXEC);
  EXPECT_EQ(Option(server.handle(), IPPROTO_TCP, 1 /* TCP_NODELAY */), 1);

  EXPECT_EQ(Send(caller, "question"), 8);
  EXPECT_EQ(Recv(client), "question");
  EXPECT_EQ(Send(client, "answer"), 6);
  EXPECT_EQ(Recv(caller), "answer");
}

TEST_F(NetSocketTest, BindTakesAnAddressInNetworkOrderAndAPortInHostOrder) {
  uint16_t port;
  {
    OpenSocket server;
    ASSERT_EQ(server.Bind(htonl(0x7F000002), 0), 0);
    port = loopback::PortOf(server.handle());
  }
  OpenSocket server;
  ASSERT_EQ(server.Bind(htonl(0x7F000002), port), 0);
  sockaddr_in own = {};
  socklen_t size = sizeof(own);
  ASSERT_EQ(getsockname(server.handle(), reinterpret_cast<sockaddr*>(&own), &size), 0);
  EXPECT_EQ(own.sin_addr.s_addr, htonl(0x7F000002));
  EXPECT_EQ(own.sin_port, htons(port));
}

TEST_F(NetSocketTest, ATakenPortCannotBeBound) {
  OpenSocket server;
  EXPECT_EQ(server.Bind(loopback::Address(), server_.port()), -1);
  EXPECT_GT(server.handle(), 0);
}

TEST_F(NetSocketTest, BindAgainMakesANewSocket) {
  OpenSocket server;
  ASSERT_EQ(server.Bind(loopback::Address(), 0), 0);
  const uint16_t port = loopback::PortOf(server.handle());
  ASSERT_EQ(server.Listen(1), 0);
  // The port would be taken, had the first socket not been closed.
  EXPECT_EQ(server.Bind(loopback::Address(), port), 0);
}

TEST_F(NetSocketTest, WithoutASocketThereIsNoServer) {
  OpenSocket server;
  OpenSocket client;
  EXPECT_EQ(server.Listen(1), -1);
  EXPECT_EQ(server.Accept(&client), -1);
  EXPECT_EQ(server.Accept(nullptr), -1);
  EXPECT_EQ(client.handle(), -1);
}

TEST_F(NetSocketTest, WithoutDescriptorsThereIsNoClient) {
  OpenSocket server;
  ASSERT_EQ(server.Bind(loopback::Address(), 0), 0);
  {
    const DescriptorLimit none(0);
    EXPECT_EQ(server.Listen(1), -1);
  }
  ASSERT_EQ(server.Listen(2), 0);
  OpenSocket caller;
  ASSERT_EQ(Connect(caller, loopback::PortOf(server.handle())), 0);
  OpenSocket client;
  {
    const DescriptorLimit none(0);
    EXPECT_EQ(server.Accept(&client), -1);  // the client stays in the queue
  }
  {
    const DescriptorLimit one(1);
    EXPECT_EQ(server.Accept(&client), -1);  // no pipe: the client is dropped
  }
  EXPECT_EQ(client.handle(), -1);
  EXPECT_EQ(Recv(caller), "closed");
}

}  // namespace
