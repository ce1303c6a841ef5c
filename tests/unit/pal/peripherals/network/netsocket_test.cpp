#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <type_traits>

#include "unit/pal/peripherals/network/netsocket_fixture.h"

namespace {

using loopback::Descriptor;
using testing::HasSubstr;

TEST_F(NetSocketTest, ANewSocketIsNoSocketYet) {
  OpenSocket stream;
  EXPECT_EQ(stream.handle(), -1);
  EXPECT_EQ(stream.timeout_, 45000);
  EXPECT_FALSE(stream.socket_closed_by_peer_);
  EXPECT_EQ(stream.pipefd_[0], -1);
  EXPECT_EQ(stream.pipefd_[1], -1);
  EXPECT_EQ(stream.type_, 0);
  EXPECT_EQ(stream.backup_socket(), nullptr);
  EXPECT_EQ(OpenSocket(NetSocket::NST_DGRAM_UDP).type_, 1);
}

TEST_F(NetSocketTest, ConstructorAndDestructorLogNothing) {
  EXPECT_EQ(Logged([] { NetSocket socket(NetSocket::NST_DGRAM_UDP); }), "");
}

TEST_F(NetSocketTest, SetTimeoutSetsTheTimeOut) {
  OpenSocket socket;
  socket.SetTimeout(1234);
  EXPECT_EQ(socket.timeout_, 1234);
}

TEST_F(NetSocketTest, TheHostQuestionsTellNothing) {
  NetSocket socket(NetSocket::NST_STREAM_TCP);
  char host[] = "text";
  uint16_t port = 7;
  EXPECT_EQ(socket.GetLocalHost(host, sizeof(host), &port), 0);
  EXPECT_EQ(socket.GetRemoteHost(host, sizeof(host), &port), -1);
  EXPECT_STREQ(host, "text");
  EXPECT_EQ(port, 7);
}

// --- Connect.

TEST_F(NetSocketTest, ConnectMakesANonBlockingStreamWithItsPipe) {
  OpenSocket socket;
  Descriptor peer;
  const std::string lines = Logged([&] { Descriptor(Connected(socket)); });
  EXPECT_THAT(lines, HasSubstr(":T:"));
  EXPECT_THAT(lines,
              HasSubstr(EndOfLine("Connecting to 127.0.0.1:" + std::to_string(server_.port()))));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("DNS translation: 127.0.0.1 -> 127.0.0.1")));
  EXPECT_GT(socket.handle(), 0);
  EXPECT_TRUE(IsNonBlocking(socket.handle()));
  EXPECT_EQ(Option(socket.handle(), IPPROTO_TCP, 1 /* TCP_NODELAY */), 1);
  EXPECT_EQ(Option(socket.handle(), SOL_SOCKET, SO_TYPE), SOCK_STREAM);
  EXPECT_TRUE(IsOpen(socket.pipefd_[0]));
  EXPECT_TRUE(IsOpen(socket.pipefd_[1]));
  EXPECT_EQ(fcntl(socket.handle(), F_GETFD), FD_CLOEXEC);
}

TEST_F(NetSocketTest, ARefusedPortFailsAndLeavesTheHandlesNumber) {
  OpenSocket socket;
  const uint16_t port = loopback::RefusedPort();
  int result = 0;
  const std::string lines = Logged([&] { result = Connect(socket, port); });
  EXPECT_EQ(result, -1);
  EXPECT_THAT(lines, HasSubstr(":E:"));
  EXPECT_THAT(lines, testing::AnyOf(HasSubstr(EndOfLine("Error socket select 1, errno: 111")),
                                    HasSubstr(EndOfLine("Error connecting socket: -1"))));
  EXPECT_GT(socket.handle(), 0);
  EXPECT_FALSE(IsOpen(socket.handle()));
}

TEST_F(NetSocketTest, AFailedConnectClosesNobodysDescriptorLater) {
  auto* socket = new OpenSocket;
  EXPECT_EQ(Connect(*socket, loopback::RefusedPort()), -1);
  // The next descriptor takes over the number.
  const int number = socket->handle();
  const Descriptor another(dup2(server_.get(), number));
  ASSERT_EQ(another.get(), number);
  EXPECT_EQ(Send(*socket, "x"), -1);
  EXPECT_EQ(Recv(*socket), "failed");
  EXPECT_EQ(socket->Blocking(false), -1);
  EXPECT_EQ(socket->Close(), 0);
  EXPECT_EQ(socket->handle(), -1);
  EXPECT_TRUE(IsOpen(number));
  EXPECT_FALSE(IsNonBlocking(number));
  delete socket;
  EXPECT_TRUE(IsOpen(number));

  OpenSocket again;
  EXPECT_EQ(Connect(again, loopback::RefusedPort()), -1);
  const Descriptor taken(dup2(server_.get(), again.handle()));
  const int kept = taken.get();
  const Descriptor peer = Connected(again);
  EXPECT_TRUE(IsOpen(kept));
  EXPECT_NE(again.handle(), kept);
}

TEST_F(NetSocketTest, AConnectThatStallsTimesOut) {
  // A server that takes one client into its queue and answers no more.
  loopback::Server full(SOCK_STREAM, 0);
  OpenSocket first;
  ASSERT_EQ(Connect(first, full.port()), 0);
  OpenSocket second;
  int result = 0;
  const std::string lines = Logged([&] { result = Connect(second, full.port(), 3); });
  EXPECT_EQ(result, -1);
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Socket select, timeout 3")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error socket select 0, errno: 0")));
  EXPECT_FALSE(IsOpen(second.handle()));
}

TEST_F(NetSocketTest, ANegativeTimeOutFailsAConnectThatIsNotDoneAtOnce) {
  loopback::Server full(SOCK_STREAM, 0);
  OpenSocket first;
  ASSERT_EQ(Connect(first, full.port()), 0);
  OpenSocket second;
  const std::string lines = Logged([&] { EXPECT_EQ(Connect(second, full.port(), -1), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error socket select -1, errno: 22")));
}

TEST_F(NetSocketTest, AnAddressThatCannotBeReachedFailsAtOnce) {
  // A stream to everybody is no connection.
  OpenSocket socket;
  char host[] = "255.255.255.255";
  const std::string lines = Logged([&] { EXPECT_EQ(socket.Connect(host, 9, 20000), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error connecting socket: -1")));
  EXPECT_FALSE(IsOpen(socket.handle()));
}

TEST_F(NetSocketTest, ConnectWithoutDescriptorsFails) {
  OpenSocket socket;
  std::string lines = Logged([&] {
    const DescriptorLimit none(0);
    EXPECT_EQ(Connect(socket, server_.port()), -1);
  });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error creating socket errno: 24, socket: -1")));
  EXPECT_EQ(socket.handle(), -1);

  lines = Logged([&] {
    const DescriptorLimit one(1);
    EXPECT_EQ(Connect(socket, server_.port()), -1);
  });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Returning -1. Errno: 24")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error initpipe socket errno: 24, socket: " +
                                         std::to_string(socket.handle()))));
  EXPECT_FALSE(IsOpen(socket.handle()));
  EXPECT_EQ(socket.pipefd_[0], -1);

  const Descriptor peer = Connected(socket);
  EXPECT_EQ(Send(socket, "well"), 4);
}

TEST_F(NetSocketTest, ConnectAgainClosesTheOldConnection) {
  OpenSocket socket;
  const Descriptor first = Connected(socket);
  const Descriptor second = Connected(socket);
  char byte;
  EXPECT_TRUE(loopback::Readable(first.get()));
  EXPECT_EQ(::recv(first.get(), &byte, 1, 0), 0);
  EXPECT_EQ(Send(socket, "x"), 1);
  EXPECT_EQ(::recv(second.get(), &byte, 1, 0), 1);
}

TEST_F(NetSocketTest, NoHostIsNoAddress) {
  OpenSocket socket;
  EXPECT_EQ(socket.Connect(nullptr, 1, 1), -1);
  char empty[] = "";
  EXPECT_EQ(socket.Connect(empty, 1, 1), -1);
}

// --- Names.

TEST_F(NetSocketTest, ADottedHostIsItsAddressInNetworkOrder) {
  uint32_t address = 0;
  EXPECT_EQ(NetSocket::GetHostAddress("127.0.0.1", &address), 0);
  EXPECT_EQ(address, htonl(0x7F000001));
  EXPECT_EQ(NetSocket::GetHostAddress("10.20.30.40", &address), 0);
  EXPECT_EQ(address, htonl(0x0A141E28));
}

TEST_F(NetSocketTest, AnAddressOfAllOnesIsNone) {
  uint32_t address = 0;
  EXPECT_EQ(NetSocket::GetHostAddress("255.255.255.255", &address), -1);
}

TEST_F(NetSocketTest, TheLongestDottedTextFits) {
  char dotted[17];
  dotted[16] = '#';
  EXPECT_EQ(OpenSocket::GetAddressInfo(dotted, "255.254.253.252"), 0);
  EXPECT_STREQ(dotted, "255.254.253.252");
  EXPECT_EQ(dotted[16], '#');
}

sockets::Resolution resolution;

sockets::Resolution ResolveAsTold(const char*, uint32_t* address) {
  *address = htonl(0x7F000001);
  return resolution;
}

TEST_F(NetSocketTest, ANameGoesThroughTheResolver) {
  sockets::SetResolveFunction(ResolveAsTold);
  resolution = sockets::Resolution::kFound;
  OpenSocket socket;
  char host[] = "till.example";
  const std::string lines =
      Logged([&] { EXPECT_EQ(socket.Connect(host, server_.port(), 20000), 0); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("DNS translation: till.example -> 127.0.0.1")));
}

TEST_F(NetSocketTest, AnUnknownHostFails) {
  sockets::SetResolveFunction(ResolveAsTold);
  const struct {
    sockets::Resolution resolution;
    const char* message;
  } rows[] = {
      {sockets::Resolution::kFailed, "gethostbyname failed"},
      {sockets::Resolution::kWrongType, "gethostbyname: invalid address type returned"},
      {sockets::Resolution::kNoAddress, "gethostbyname: no address returned"},
  };
  for (const auto& row : rows) {
    resolution = row.resolution;
    uint32_t address = 5;
    std::string lines =
        Logged([&] { EXPECT_EQ(NetSocket::GetHostAddress("till.example", &address), -1); });
    EXPECT_THAT(lines, HasSubstr(":E:"));
    EXPECT_THAT(lines, HasSubstr(EndOfLine(row.message)));
    EXPECT_EQ(address, 5u);

    OpenSocket socket;
    char host[] = "till.example";
    lines = Logged([&] { EXPECT_EQ(socket.Connect(host, server_.port(), 20000), -1); });
    EXPECT_THAT(lines, HasSubstr(EndOfLine(row.message)));
    EXPECT_THAT(lines, HasSubstr(EndOfLine("Error translating host name: -1")));
    EXPECT_FALSE(IsOpen(socket.handle()));
  }
}

TEST_F(NetSocketTest, TheSystemsResolverRefusesWhatIsNoName) {
  uint32_t address = 0;
  EXPECT_EQ(NetSocket::GetHostAddress("no name at all", &address), -1);
  EXPECT_EQ(NetSocket::GetHostAddress(std::string(5000, 'a').c_str(), &address), -1);
  EXPECT_EQ(NetSocket::GetHostAddress("::1", &address), -1);
  for (int byte = 1; byte < 256; ++byte) {
    if (byte >= '0' && byte <= '9') continue;  // a number is an address of one part
    const char host[] = {' ', static_cast<char>(byte), ' ', 0};
    EXPECT_EQ(NetSocket::GetHostAddress(host, &address), -1) << byte;
  }
}

// --- The pipe, copies, closing.

TEST_F(NetSocketTest, InitPipeStartsAfresh) {
  OpenSocket socket;
  EXPECT_EQ(socket.InitPipe(), 0);
  EXPECT_EQ(write(socket.pipefd_[1], "x", 1), 1);
  EXPECT_EQ(socket.InitPipe(), 0);
  char byte;
  EXPECT_EQ(read(socket.pipefd_[0], &byte, 1), -1);
  EXPECT_EQ(errno, EAGAIN);
  const int ends[] = {socket.pipefd_[0], socket.pipefd_[1]};
  socket.ClearPipe();
  EXPECT_FALSE(IsOpen(ends[0]));
  EXPECT_FALSE(IsOpen(ends[1]));
  EXPECT_EQ(socket.pipefd_[0], -1);
  EXPECT_EQ(socket.pipefd_[1], -1);
}

TEST_F(NetSocketTest, CloseWritesALineFeedAndLeavesTheReadEnd) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  const int number = socket.handle();
  const int write_end = socket.pipefd_[1];
  EXPECT_EQ(socket.Close(), 0);
  EXPECT_EQ(socket.handle(), -1);
  EXPECT_FALSE(IsOpen(number));
  EXPECT_EQ(socket.pipefd_[1], -1);
  EXPECT_FALSE(IsOpen(write_end));
  char bytes[2];
  EXPECT_EQ(read(socket.pipefd_[0], bytes, 2), 1);
  EXPECT_EQ(bytes[0], '\n');
  EXPECT_EQ(socket.Close(), 0);
}

TEST_F(NetSocketTest, CloseTellsWhatTheSystemReports) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  ::close(socket.handle());
  EXPECT_EQ(socket.Close(), -1);
  EXPECT_EQ(socket.handle(), -1);
}

TEST_F(NetSocketTest, TheDestructorClosesAll) {
  int numbers[3];
  {
    OpenSocket socket;
    const Descriptor peer = Connected(socket);
    numbers[0] = socket.handle();
    numbers[1] = socket.pipefd_[0];
    numbers[2] = socket.pipefd_[1];
  }
  for (int number : numbers) EXPECT_FALSE(IsOpen(number));
}

TEST_F(NetSocketTest, CopiesShareTheDescriptors) {
  OpenSocket socket;
  Descriptor peer = Connected(socket);
  socket.SetTimeout(77);
  socket.socket_closed_by_peer_ = true;
  // One that is never destroyed: the descriptors are the first's to close.
  alignas(OpenSocket) unsigned char room[2][sizeof(OpenSocket)];
  auto* copy = new (room[0]) OpenSocket(socket);
  auto* assigned = new (room[1]) OpenSocket(NetSocket::NST_DGRAM_UDP);
  *assigned = socket;
  for (OpenSocket* other : {copy, assigned}) {
    EXPECT_EQ(other->handle(), socket.handle());
    EXPECT_EQ(other->pipefd_[0], socket.pipefd_[0]);
    EXPECT_EQ(other->pipefd_[1], socket.pipefd_[1]);
    EXPECT_EQ(other->timeout_, 77);
    EXPECT_EQ(other->type_, NetSocket::NST_STREAM_TCP);
    EXPECT_TRUE(other->socket_closed_by_peer_);
    EXPECT_EQ(Send(*other, "x"), 1);
    char byte = 0;
    EXPECT_TRUE(loopback::Readable(peer.get()));
    EXPECT_EQ(::recv(peer.get(), &byte, 1, 0), 1);
  }
}

TEST_F(NetSocketTest, BlockingSwitchesTheSocket) {
  OpenSocket socket;
  EXPECT_EQ(socket.Blocking(true), -1);
  const Descriptor peer = Connected(socket);
  EXPECT_EQ(socket.Blocking(true), 0);
  EXPECT_FALSE(IsNonBlocking(socket.handle()));
  EXPECT_EQ(socket.Blocking(false), 0);
  EXPECT_TRUE(IsNonBlocking(socket.handle()));
}

// --- The backup socket.

class MockTransport : public AbstractSocket {
 public:
  MOCK_METHOD(int, Connect, (char*, int, int), (override));
  MOCK_METHOD(int, Send, (unsigned char*, int), (override));
  MOCK_METHOD(int, Recv, (unsigned char*, int), (override));
  MOCK_METHOD(int, Close, (), (override));
  MOCK_METHOD(void, SetTimeout, (int), (override));
  MOCK_METHOD(void, SetServerCertVerification, (bool), (override));
  MOCK_METHOD(int, AddCertDb, (char*), (override));
};

TEST_F(NetSocketTest, ABackupSocketGetsTheTraffic) {
  testing::StrictMock<MockTransport> transport;
  OpenSocket socket;
  socket.set_backup_socket(&transport);
  EXPECT_EQ(socket.backup_socket(), &transport);
  char host[] = "there";
  unsigned char data[10] = {};
  socket.socket_closed_by_peer_ = true;
  EXPECT_CALL(transport, Connect(host, 12, 34)).WillOnce(testing::Return(-5));
  const std::string lines = Logged([&] { EXPECT_EQ(socket.Connect(host, 12, 34), -5); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Connecting to there:12")));
  EXPECT_FALSE(socket.socket_closed_by_peer_);
  // socket_ is -1 and nobody looks at it.
  EXPECT_CALL(transport, Send(data, 10)).WillOnce(testing::Return(3));
  EXPECT_EQ(Logged([&] { EXPECT_EQ(socket.Send(data, 10), 3); }), "");
  EXPECT_CALL(transport, Recv(data, 10)).WillOnce(testing::Return(4));
  EXPECT_EQ(socket.Recv(data, 10), 4);
  EXPECT_CALL(transport, Recv(data, 10)).WillOnce(testing::Return(6));
  EXPECT_CALL(transport, Recv(data + 6, 4)).WillOnce(testing::Return(4));
  EXPECT_EQ(socket.RecvAllBlock(data, 10), 10);
  EXPECT_EQ(Peek(socket, 10), "failed");
  socket.SetTimeout(9);
  EXPECT_EQ(socket.timeout_, 9);
  EXPECT_CALL(transport, Close()).WillOnce(testing::Return(8)).WillOnce(testing::Return(0));
  EXPECT_EQ(socket.Close(), 8);  // and the destructor's
}

TEST_F(NetSocketTest, ClosingTheBackupSocketLeavesTheOwn) {
  testing::NiceMock<MockTransport> transport;
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  socket.set_backup_socket(&transport);
  EXPECT_EQ(socket.Close(), 0);
  EXPECT_TRUE(IsOpen(socket.handle()));
  socket.set_backup_socket(nullptr);
  EXPECT_EQ(Send(socket, "x"), 1);
}

static_assert(std::is_copy_constructible_v<NetSocket> && std::is_copy_assignable_v<NetSocket>);
static_assert(std::is_abstract_v<AbstractSocket>);

}  // namespace
